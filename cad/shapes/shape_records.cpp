// The binary records of the shapes, kept in one file so that the layout reads
// top to bottom as it lies in the stream. docs/file_format.md ("Shape
// records") has the table.
//
// Writers write the newest layout, "XP.j", unless the canvas asks for an
// older one (RecordWriteVersion, "XP.6" on, for upgrading libraries). Readers follow the version
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
#include "platform/ansi.h"
#include "platform/bitmap.h"
#include "platform/system.h"

#include <cstring>

namespace faroven {

namespace {

static_assert(sizeof(TMyPoint) == 8, "points are copied as Single pairs");

TFileVersion recordVersion(const TMyShape* shape) {
    return shape->Canvas() ? shape->Canvas()->DiskFileVersionCode() : TFileVersion::XPj;
}
// The layout a record is written in: "XP.j", or an older one from "XP.6" on
// while a library is being upgraded step by step.
TFileVersion writeVersion(const TMyShape* shape) {
    return shape->Canvas() ? shape->Canvas()->RecordWriteVersion() : TFileVersion::XPj;
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

// Fixed-size fields that follow one another, read with one call and taken
// in order: records are mostly such runs, and a call per field would cost
// more than the fields.
class FieldRun {
public:
    FieldRun(TStream& s, int size) : m_start(s.Position()) {
        Q_ASSERT(size <= int(sizeof m_bytes));
        s.ReadBuffer(m_bytes, size);
    }
    template <class T>
    T take() {
        T v;
        std::memcpy(&v, m_bytes + m_at, sizeof v);
        m_at += int(sizeof v);
        return v;
    }
    bool takeBool() { return take<uint8_t>() != 0; }
    template <class E>
    E takeEnum(E last, const char* what) {
        const int64_t at = m_start + m_at;
        const uint8_t v = take<uint8_t>();
        if (v > uint8_t(last))
            throw EFileFormatError(QStringLiteral("%1 %2 is not a known value").arg(QLatin1String(what)).arg(v), at);
        return E(v);
    }
    void skip(int count) { m_at += count; }

private:
    uint8_t m_bytes[40];
    int64_t m_start;
    int m_at = 0;
};

// A Str (the same length rule as ReadStr) for text that repeats from record
// to record, such as font names: the last text read is kept, and the same
// bytes again share it instead of allocating a new string.
QString readRepeatedStr(TStream& s) {
    thread_local QByteArray lastBytes;
    thread_local QString lastText;
    const int kept = int(uint32_t(ReadInt32(s)) % 256);
    char buffer[256];
    if (kept) s.ReadBuffer(buffer, kept);
    if (lastBytes.size() != kept || std::memcmp(lastBytes.constData(), buffer, size_t(kept)) != 0) {
        lastBytes = QByteArray(buffer, kept);
        lastText = FromAnsi(buffer, kept);
    }
    return lastText;
}

void skipBytes(TStream& s, int count) {
    uint8_t buffer[10];
    s.ReadBuffer(buffer, count);
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
    using V = TFileVersion;
    const V version = writeVersion(this);
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
    if (version != V::XP7) {
        WriteInt32(s, 0);  // two reserved Int32
        WriteInt32(s, 0);
    }
    WriteByte(s, m_gradientStyle);
    WriteStr(s, m_info);
    WriteColor(s, m_pen.Color());
    WriteByte(s, m_pen.Mode());
    WriteByte(s, m_pen.Style());
    WriteInt32(s, m_pen.Width());
    if (!VersionFrom(version, V::XP8)) return;
    if (m_extras)
        m_extras->userData.SaveToStream(s);
    else
        WriteInt32(s, 0);
    if (!VersionFrom(version, V::XP9)) return;
    writeBool(s, m_isFlipHorz);
    writeBool(s, m_isFlipVert);
    writeBool(s, m_visible);
    if (!VersionFrom(version, V::XPe)) return;
    writeLines(s, multiInfoLines());
    WriteByte(s, m_multiInfoAlignment);
    if (!VersionFrom(version, V::XPh)) return;
    WriteInt32(s, m_logHeight);
    writeBool(s, m_logUse);
    WriteInt32(s, m_logWidth);
    writeBool(s, m_locked);
    if (version != V::XPj) return;
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
    {
        FieldRun r(s, 16);
        const int32_t shapeId = r.take<int32_t>();
        m_shapeNo = r.take<int32_t>();
        SetShapeId(shapeId);  // after the number: the canvas finds its shapes by both
        m_layerId = r.take<int32_t>();
        m_parentShapeNo = r.take<int32_t>();
    }
    const int32_t children = ReadCount(s, 4, "Child shape");
    if (children || m_extras) readShapeNos(s, extras().childShapeNos, children);
    const int32_t linkLines = ReadCount(s, 4, "Link line");
    if (linkLines || m_extras) readShapeNos(s, extras().linkShapeNos, linkLines);
    readPoints(s, form, m_points, "Point");
    readPoints(s, form, m_linkPoints, "Link point");

    // Text point, Tag and Angle.
    if (form == TCoordinateForm::Single) {
        FieldRun r(s, 16);
        m_textPoint.x = r.take<float>();
        m_textPoint.y = r.take<float>();
        SetTag(r.take<int32_t>());
        m_angle = r.take<float>();
    } else if (form == TCoordinateForm::Extended) {
        m_textPoint.x = ReadExtended(s);
        m_textPoint.y = ReadExtended(s);
        SetTag(ReadInt32(s));
        m_angle = ReadExtended(s);
    } else if (version == V::XP2) {
        // Two 10-byte blocks; the first four bytes of each are the Single.
        for (float* coordinate : {&m_textPoint.x, &m_textPoint.y}) {
            *coordinate = ReadSingle(s);
            skipBytes(s, 6);
        }
    }

    std::unique_ptr<TBitmap> brushBitmap;
    ReadBitmapBuffer(s, brushBitmap);
    {
        FieldRun r(s, 5);
        const TColor color = r.take<TColor>();
        // A brush with a bitmap ignores its colour and style; ours have no
        // bitmaps, so such a brush is read and stays as it was.
        if (!brushBitmap) {
            TBrush stored;
            stored.SetColor(color);
            stored.SetStyle(r.takeEnum(bsDiagCross, "Brush style"));
            if (stored.Color() != m_brush.Color() || stored.Style() != m_brush.Style()) m_brush.Assign(stored);
        }
    }

    const QString caption = ReadStr(s);
    if (!caption.isEmpty() || m_extras) extras().caption = caption;
    {
        FieldRun r(s, 8);
        m_colorBegin = r.take<TColor>();
        m_colorEnd = r.take<TColor>();
    }

    TFont font;
    font.SetName(readRepeatedStr(s));
    const int reserved = version != V::Unknown && version != V::XP7 ? 8 : 0;
    {
        FieldRun r(s, 19 + reserved + 1);
        font.SetCharset(r.take<uint8_t>());
        font.SetColor(r.take<TColor>());
        r.take<int32_t>();  // Height: the Size that follows wins, as it is set last
        font.SetSize(r.take<int32_t>());
        font.SetPitch(r.takeEnum(fpFixed, "Font pitch"));
        r.take<int32_t>();  // the writer's pixels per inch; sizes are in points
        font.SetStyle(TFontStyles::FromBits(r.take<uint8_t>()));
        r.skip(reserved);
        m_gradientStyle = r.takeEnum(gsNone, "Gradient style");
    }
    if (!sameFont(font, FontRef())) Font()->Assign(font);
    if (VersionBetween(version, V::XP2, V::XP5)) skipBytes(s, 2);
    m_info = ReadStr(s);

    {
        FieldRun r(s, 10);
        TPen pen;
        pen.SetColor(r.take<TColor>());
        pen.SetMode(r.takeEnum(pmNotXor, "Pen mode"));
        pen.SetStyle(r.takeEnum(psInsideFrame, "Pen style"));
        pen.SetWidth(r.take<int32_t>());
        if (pen.Color() != m_pen.Color() || pen.Mode() != m_pen.Mode() || pen.Style() != m_pen.Style() ||
            pen.Width() != m_pen.Width())
            m_pen.Assign(pen);
    }

    if (VersionFrom(version, V::XP8)) {
        const int32_t pairs = ReadCount(s, 8, "User data");
        if (pairs) extras().userData.ReadPairs(s, pairs);
    }
    if (VersionFrom(version, V::XP9)) {
        FieldRun r(s, 3);
        m_isFlipHorz = r.takeBool();
        m_isFlipVert = r.takeBool();
        m_visible = r.takeBool();
    }
    if (VersionFrom(version, V::XPe)) {
        const int32_t lines = ReadCount(s, 4, "Caption line");
        if (lines) appendLines(s, extras().multiInfo, lines);
    }
    // The fixed fields at the end: the caption lines' alignment, the log
    // size and lock, and the pen geometry and mouse permissions.
    const bool alignment = VersionFrom(version, V::XPe), log = VersionFrom(version, V::XPh),
               lastFive = version == V::XPj;
    if (alignment) {
        FieldRun r(s, 1 + (log ? 10 : 0) + (lastFive ? 5 : 0));
        m_multiInfoAlignment = r.takeEnum(taCenter, "Caption alignment");
        if (log) {
            m_logHeight = r.take<int32_t>();
            m_logUse = r.takeBool();
            m_logWidth = r.take<int32_t>();
            m_locked = r.takeBool();
        }
        if (lastFive) {
            m_penStyleEndCapType = r.takeEnum(psectMASK, "Pen end cap");
            m_penStyleJoinType = r.takeEnum(psjtMASK, "Pen join");
            m_hotShow = r.takeBool();
            m_resizeEnable = r.takeBool();
            m_rotateEnable = r.takeBool();
        }
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
    FieldRun r(s, 7);
    m_arrowAngle = r.take<int32_t>();
    m_arrowLength = r.take<uint8_t>();
    m_arrowOffset = r.take<uint8_t>();
    m_arrowStyle = r.takeEnum(ADouble, "Arrow style");
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
    if (VersionFrom(writeVersion(this), TFileVersion::XP5)) WriteByte(s, m_linkLineDrawStyle);
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
    if (!VersionFrom(writeVersion(this), TFileVersion::XPa)) return;
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
        FieldRun r(s, 3);
        m_vAlignment = r.takeEnum(jvCenter, "Vertical alignment");
        m_hAlignment = r.takeEnum(jhCenter, "Horizontal alignment");
        m_wordWrap = r.takeBool();
    }
    changed();
}

// ---- TMyImage -----------------------------------------------------------------------------------

void TMyImage::SaveToStream(TStream& s) {
    TMyRectangle::SaveToStream(s);
    WriteBitmapBuffer(s, &m_bitmap);
    const TFileVersion version = writeVersion(this);
    if (!VersionFrom(version, TFileVersion::XP9)) return;
    WriteInt32(s, m_brightness);
    WriteInt32(s, m_contrast);
    writeBool(s, m_transparent);
    writeBool(s, m_border);
    writeBool(s, m_grayScale);
    if (!VersionFrom(version, TFileVersion::XPi)) return;
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
