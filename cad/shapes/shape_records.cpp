// The binary records of the shapes, kept in one file so that the layout reads
// top to bottom as it lies in the stream. docs/file_format.md ("Shape
// records") has the table.
//
// Writers always write the newest layout, "XP.j". Readers follow the version
// the canvas is reading (DiskFileVersionCode): fields a version lacks are
// skipped and keep their values. Versions are an exact list (file_version.h):
// a string outside it reads only the fields every version has, without point
// coordinates, text point or the reserved pair after the font.
//
// Reading is on the load path of large drawings, so fields go straight into
// the members: one change notice per record instead of one per field, the
// shared font kept when the stored font equals it, and none of the side
// parts (caption, caption lines, user data, child and link lists) created
// for a value that is empty.
#include "cad/canvas/mycad.h"
#include "cad/persistence/file_version.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/image.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/shape.h"
#include "cad/shapes/text.h"
#include "platform/bitmap.h"
#include "platform/system.h"

namespace faroven {

namespace {

static_assert(sizeof(TMyPoint) == 8, "points are copied as Single pairs");

TFileVersion recordVersion(const TMyShape* shape) {
    return shape->Canvas() ? shape->Canvas()->DiskFileVersionCode() : TFileVersion::XPj;
}

bool readBool(TStream& s) { return ReadByte(s) != 0; }
void writeBool(TStream& s, bool v) { WriteByte(s, v ? 1 : 0); }

// An enumeration stored as its ordinal byte; an ordinal past `last` cannot
// come from a writer and would index past the tables that use the value.
template <class E>
E readEnum(TStream& s, E last, const char* what) {
    const uint8_t v = ReadByte(s);
    if (v > uint8_t(last))
        throw EFileFormatError(QStringLiteral("%1 %2 is not a known value").arg(QLatin1String(what)).arg(v),
                               s.Position() - 1);
    return E(v);
}

void skipBytes(TStream& s, int count) {
    uint8_t buffer[10];
    s.ReadBuffer(buffer, count);
}

// One coordinate in the form the version stores it.
float readCoordinate(TStream& s, TCoordinateForm form) {
    return form == TCoordinateForm::Extended ? ReadExtended(s) : ReadSingle(s);
}

// A count and that many points. Without coordinates (XP.2, unknown
// versions) the points are zero; the count is still held to one byte per
// point of what is left, so a corrupt count cannot allocate without bound.
void readPoints(TStream& s, TCoordinateForm form, TArrMyPoint& points, const char* what) {
    const int bytesPerPoint = form == TCoordinateForm::Single ? 8 : form == TCoordinateForm::Extended ? 20 : 1;
    const int32_t count = ReadCount(s, bytesPerPoint, what);
    points.assign(size_t(count), TMyPoint{});
    if (form == TCoordinateForm::Single) {
        if (count) s.ReadBuffer(points.data(), int64_t(count) * 8);  // little-endian like the machine
    } else if (form == TCoordinateForm::Extended) {
        for (TMyPoint& p : points) {
            p.x = ReadExtended(s);
            p.y = ReadExtended(s);
        }
    }
}

void writePoints(TStream& s, const TArrMyPoint& points) {
    WriteInt32(s, int32_t(points.size()));
    if (!points.empty()) s.WriteBuffer(points.data(), int64_t(points.size()) * 8);
}

template <class V>
void readShapeNos(TStream& s, V& nos, int32_t count) {
    static_assert(sizeof(typename V::value_type) == 4);
    nos.resize(size_t(count));
    if (count) s.ReadBuffer(nos.data(), int64_t(count) * 4);
}

template <class V>
void writeShapeNos(TStream& s, const V& nos) {
    static_assert(sizeof(typename V::value_type) == 4);
    WriteInt32(s, int32_t(nos.size()));
    if (!nos.empty()) s.WriteBuffer(nos.data(), int64_t(nos.size()) * 4);
}

// `count` Str lines (the count already read), appended to `lines` in one assignment.
void appendLines(TStream& s, TStrings& lines, int32_t count) {
    if (count == 0) return;
    QStringList all = lines.Lines();
    all.reserve(all.size() + count);
    for (int32_t i = 0; i < count; ++i) all.append(ReadStr(s));
    lines.SetLines(all);
}

void writeLines(TStream& s, const QStringList& lines) {
    WriteInt32(s, int32_t(lines.size()));
    for (const QString& line : lines) WriteStr(s, line);
}

bool sameFont(const TFont& a, const TFont& b) {
    return a.Name() == b.Name() && a.Charset() == b.Charset() && a.Color() == b.Color() && a.Size() == b.Size() &&
           a.Pitch() == b.Pitch() && a.Style() == b.Style();
}

}  // namespace

// ---- TMyShape ----------------------------------------------------------------------------------

void TMyShape::SaveToStream(TStream& s) {
    WriteStr(s, Name());
    WriteInt32(s, m_shapeId);
    WriteInt32(s, m_shapeNo);
    WriteInt32(s, m_layerId);
    WriteInt32(s, m_parentShapeNo);
    const TMyShape& self = *this;  // the const lists create no side record
    writeShapeNos(s, self.ChildShapeNos());
    writeShapeNos(s, self.LinkShapeNos());
    writePoints(s, m_points);
    writePoints(s, m_linkPoints);
    WriteSingle(s, m_textPoint.x);
    WriteSingle(s, m_textPoint.y);
    WriteInt32(s, Tag());
    WriteSingle(s, m_angle);
    WriteBitmapBuffer(s, nullptr);  // brushes carry no bitmap here
    WriteColor(s, m_brush.Color());
    WriteByte(s, m_brush.Style());
    WriteStr(s, Caption());
    WriteColor(s, m_colorBegin);
    WriteColor(s, m_colorEnd);
    const TFont& font = FontRef();
    WriteStr(s, font.Name());
    WriteByte(s, font.Charset());
    WriteColor(s, font.Color());
    WriteInt32(s, font.Height());
    WriteInt32(s, font.Size());
    WriteByte(s, font.Pitch());
    WriteInt32(s, ScreenPixelsPerInch());
    WriteByte(s, font.Style().Bits());
    WriteInt32(s, 0);  // two reserved Int32
    WriteInt32(s, 0);
    WriteByte(s, m_gradientStyle);
    WriteStr(s, m_info);
    WriteColor(s, m_pen.Color());
    WriteByte(s, m_pen.Mode());
    WriteByte(s, m_pen.Style());
    WriteInt32(s, m_pen.Width());
    if (m_extras)
        m_extras->userData.SaveToStream(s);
    else
        WriteInt32(s, 0);
    writeBool(s, m_isFlipHorz);
    writeBool(s, m_isFlipVert);
    writeBool(s, m_visible);
    writeLines(s, multiInfoLines());
    WriteByte(s, m_multiInfoAlignment);
    WriteInt32(s, m_logHeight);
    writeBool(s, m_logUse);
    WriteInt32(s, m_logWidth);
    writeBool(s, m_locked);
    WriteByte(s, m_penStyleEndCapType);
    WriteByte(s, m_penStyleJoinType);
    writeBool(s, m_hotShow);
    writeBool(s, m_resizeEnable);
    writeBool(s, m_rotateEnable);
}

void TMyShape::LoadFromStream(TStream& s) {
    using V = TFileVersion;
    const V version = recordVersion(this);
    const TCoordinateForm form = CoordinateForm(version);

    const QString name = ReadStr(s);
    if (name != Name()) SetName(name);  // an unchanged name allocates nothing
    const int32_t shapeId = ReadInt32(s);
    m_shapeNo = ReadInt32(s);
    SetShapeId(shapeId);  // after the number: the canvas finds its shapes by both
    m_layerId = ReadInt32(s);
    m_parentShapeNo = ReadInt32(s);
    const int32_t children = ReadCount(s, 4, "Child shape");
    if (children || m_extras) readShapeNos(s, extras().childShapeNos, children);
    const int32_t linkLines = ReadCount(s, 4, "Link line");
    if (linkLines || m_extras) readShapeNos(s, extras().linkShapeNos, linkLines);
    readPoints(s, form, m_points, "Point");
    readPoints(s, form, m_linkPoints, "Link point");

    if (form == TCoordinateForm::Single) {
        m_textPoint.x = ReadSingle(s);
        m_textPoint.y = ReadSingle(s);
    } else if (form == TCoordinateForm::Extended) {
        m_textPoint.x = ReadExtended(s);
        m_textPoint.y = ReadExtended(s);
    } else if (version == V::XP2) {
        // Two 10-byte blocks; the first four bytes of each are the Single.
        for (float* coordinate : {&m_textPoint.x, &m_textPoint.y}) {
            *coordinate = ReadSingle(s);
            skipBytes(s, 6);
        }
    }
    if (VersionFrom(version, V::XP3)) {
        SetTag(ReadInt32(s));
        m_angle = readCoordinate(s, form);
    }

    std::unique_ptr<TBitmap> brushBitmap;
    ReadBitmapBuffer(s, brushBitmap);
    const TColor brushColor = ReadColor(s);
    const uint8_t brushStyle = ReadByte(s);
    // A brush with a bitmap ignores its colour and style; ours have no
    // bitmaps, so such a brush is read and stays as it was.
    if (!brushBitmap) {
        if (brushStyle > bsDiagCross)
            throw EFileFormatError(QStringLiteral("Brush style %1 is not a known value").arg(brushStyle),
                                   s.Position() - 1);
        TBrush stored;
        stored.SetColor(brushColor);
        stored.SetStyle(TBrushStyle(brushStyle));
        if (stored.Color() != m_brush.Color() || stored.Style() != m_brush.Style()) m_brush.Assign(stored);
    }

    const QString caption = ReadStr(s);
    if (!caption.isEmpty() || m_extras) extras().caption = caption;
    m_colorBegin = ReadColor(s);
    m_colorEnd = ReadColor(s);

    TFont font;
    font.SetName(ReadStr(s));
    font.SetCharset(ReadByte(s));
    font.SetColor(ReadColor(s));
    ReadInt32(s);  // Height: the Size that follows wins, as it is set last
    font.SetSize(ReadInt32(s));
    font.SetPitch(readEnum(s, fpFixed, "Font pitch"));
    ReadInt32(s);  // the writer's pixels per inch; sizes are in points
    font.SetStyle(TFontStyles::FromBits(ReadByte(s)));
    if (!sameFont(font, FontRef())) Font()->Assign(font);

    if (version != V::Unknown && version != V::XP7) skipBytes(s, 8);
    m_gradientStyle = readEnum(s, gsNone, "Gradient style");
    if (VersionBetween(version, V::XP2, V::XP5)) skipBytes(s, 2);
    m_info = ReadStr(s);

    TPen pen;
    pen.SetColor(ReadColor(s));
    pen.SetMode(readEnum(s, pmNotXor, "Pen mode"));
    pen.SetStyle(readEnum(s, psInsideFrame, "Pen style"));
    pen.SetWidth(ReadInt32(s));
    if (pen.Color() != m_pen.Color() || pen.Mode() != m_pen.Mode() || pen.Style() != m_pen.Style() ||
        pen.Width() != m_pen.Width())
        m_pen.Assign(pen);

    if (VersionFrom(version, V::XP8)) {
        const int32_t pairs = ReadCount(s, 8, "User data");
        if (pairs) extras().userData.ReadPairs(s, pairs);
    }
    if (VersionFrom(version, V::XP9)) {
        m_isFlipHorz = readBool(s);
        m_isFlipVert = readBool(s);
        m_visible = readBool(s);
    }
    if (VersionFrom(version, V::XPe)) {
        const int32_t lines = ReadCount(s, 4, "Caption line");
        if (lines) appendLines(s, extras().multiInfo, lines);
        m_multiInfoAlignment = readEnum(s, taCenter, "Caption alignment");
    }
    if (VersionFrom(version, V::XPh)) {
        m_logHeight = ReadInt32(s);
        m_logUse = readBool(s);
        m_logWidth = ReadInt32(s);
        m_locked = readBool(s);
    }
    if (version == V::XPj) {
        m_penStyleEndCapType = readEnum(s, psectMASK, "Pen end cap");
        m_penStyleJoinType = readEnum(s, psjtMASK, "Pen join");
        m_hotShow = readBool(s);
        m_resizeEnable = readBool(s);
        m_rotateEnable = readBool(s);
    }
    changed();
}

// ---- TMyLine and its descendants --------------------------------------------------------------

void TMyLine::SaveToStream(TStream& s) {
    TMyShape::SaveToStream(s);
    WriteInt32(s, m_arrowAngle);
    WriteByte(s, m_arrowLength);
    WriteByte(s, m_arrowOffset);
    WriteByte(s, m_arrowStyle);
}

void TMyLine::LoadFromStream(TStream& s) {
    TMyShape::LoadFromStream(s);
    m_arrowAngle = ReadInt32(s);
    m_arrowLength = ReadByte(s);
    m_arrowOffset = ReadByte(s);
    m_arrowStyle = readEnum(s, ADouble, "Arrow style");
    changed();
}

void TMyRuleLine::SaveToStream(TStream& s) {
    TMyLine::SaveToStream(s);
    writeBool(s, m_showUserInfo);
    WriteByte(s, m_tickStyle);
    WriteStr(s, m_userInfo);
}

void TMyRuleLine::LoadFromStream(TStream& s) {
    TMyLine::LoadFromStream(s);
    m_showUserInfo = readBool(s);
    m_tickStyle = readEnum(s, tsNone, "Tick style");
    m_userInfo = ReadStr(s);
    changed();
}

void TMyLinkLine::SaveToStream(TStream& s) {
    TMyLine::SaveToStream(s);
    WriteInt32(s, StartSpNo());
    WriteInt32(s, StartSpPtId());
    WriteInt32(s, EndSpNo());
    WriteInt32(s, EndSpPtId());
    WriteByte(s, m_linkLineDrawStyle);
}

void TMyLinkLine::LoadFromStream(TStream& s) {
    TMyLine::LoadFromStream(s);
    SetStartSpNo(ReadInt32(s));
    SetStartSpPtId(ReadInt32(s));
    SetEndSpNo(ReadInt32(s));
    SetEndSpPtId(ReadInt32(s));
    if (VersionFrom(recordVersion(this), TFileVersion::XP5))
        m_linkLineDrawStyle = readEnum(s, lldsFree, "Link line draw style");
    changed();
}

// ---- TMyElliArc ---------------------------------------------------------------------------------

void TMyElliArc::SaveToStream(TStream& s) {
    TMyShape::SaveToStream(s);
    WriteByte(s, m_arcMode);
    WriteByte(s, m_arcStyle);
}

void TMyElliArc::LoadFromStream(TStream& s) {
    TMyShape::LoadFromStream(s);
    m_arcMode = readEnum(s, amEllipse, "Arc mode");
    m_arcStyle = readEnum(s, asSector, "Arc style");
    changed();
}

// ---- TMyLinkPoint -------------------------------------------------------------------------------

void TMyLinkPoint::SaveToStream(TStream& s) {
    TMyRectangle::SaveToStream(s);
    WriteByte(s, m_size);
}

void TMyLinkPoint::LoadFromStream(TStream& s) {
    TMyRectangle::LoadFromStream(s);
    m_size = ReadByte(s);  // the stored frame stays as it is: no SetSize
    changed();
}

// ---- TMyText ------------------------------------------------------------------------------------

void TMyText::SaveToStream(TStream& s) {
    TMyRectangle::SaveToStream(s);
    writeBool(s, m_isBorder);
    writeBool(s, m_isSolid);
    writeLines(s, m_lines.Lines());
    WriteByte(s, m_vAlignment);
    WriteByte(s, m_hAlignment);
    writeBool(s, m_wordWrap);
}

void TMyText::LoadFromStream(TStream& s) {
    TMyRectangle::LoadFromStream(s);
    m_isBorder = readBool(s);
    m_isSolid = readBool(s);
    if (VersionFrom(recordVersion(this), TFileVersion::XPa)) {
        appendLines(s, m_lines, ReadCount(s, 4, "Text line"));
        m_vAlignment = readEnum(s, jvCenter, "Vertical alignment");
        m_hAlignment = readEnum(s, jhCenter, "Horizontal alignment");
        m_wordWrap = readBool(s);
    }
    changed();
}

// ---- TMyImage -----------------------------------------------------------------------------------

void TMyImage::SaveToStream(TStream& s) {
    TMyRectangle::SaveToStream(s);
    WriteBitmapBuffer(s, &m_bitmap);
    WriteInt32(s, m_brightness);
    WriteInt32(s, m_contrast);
    writeBool(s, m_transparent);
    writeBool(s, m_border);
    writeBool(s, m_grayScale);
    WriteColor(s, m_transparentColor);
    WriteInt32(s, int32_t(uint8_t(m_transparentMode)));  // the ordinal and three zero bytes
}

void TMyImage::LoadFromStream(TStream& s) {
    using V = TFileVersion;
    TMyRectangle::LoadFromStream(s);
    const V version = recordVersion(this);
    std::unique_ptr<TBitmap> bitmap;
    ReadBitmapBuffer(s, bitmap);
    if (bitmap) m_bitmap.Assign(*bitmap);  // without one the bitmap stays as it was
    if (VersionFrom(version, V::XP9)) {
        m_brightness = ReadInt32(s);
        m_contrast = ReadInt32(s);
        m_transparent = readBool(s);
        m_border = readBool(s);
        m_grayScale = readBool(s);
    }
    if (VersionFrom(version, V::XPi)) {
        m_transparentColor = ReadColor(s);
        m_transparentMode = readEnum(s, tmFixed, "Transparent mode");
        skipBytes(s, 3);
    }
    changed();
}

}  // namespace faroven
