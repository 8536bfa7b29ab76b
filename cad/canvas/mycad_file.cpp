// TMyCAD: the drawing as a stream and a file, and blocks (drawing files
// inserted into another drawing).
//
// A stream is parsed completely into a DrawingImage before the canvas is
// touched, so a file that turns out short or corrupt half-way leaves the open
// drawing as it was; only a complete image replaces the drawing (or joins it,
// as a block). The layout is documented in docs/file_format.md.
#include "cad/canvas/mycad.h"
#include "cad/canvas/drawing_image.h"
#include "cad/canvas/mycad_p.h"

#include "cad/persistence/buffered_stream.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/shape_relations.h"
#include "cad/shapes/shape_factory.h"
#include "platform/ansi.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <cstring>

namespace faroven {

namespace {
constexpr char kSignature[] = "Faroven Component";
constexpr char kDescription[] = "Faroven drawing";
constexpr char kBuildDate[] = "20091209";
constexpr int kSignatureWidth = 64, kDescriptionWidth = 64, kVersionWidth = 16, kDateWidth = 10,
              kReservedWidth = 64, kClassNameWidth = 16;
// The smallest shape entry: its class name and a base record of empty
// strings and zero counts in the leanest layout (an unknown version's).
constexpr int kMinShapeBytes = kClassNameWidth + 99;
// Loads tell their progress this often.
constexpr int kProgressEvery = 2000;

bool tagAndUserDataIn(TFileVersion v) { return VersionFrom(v, TFileVersion::XPh); }

}  // namespace


// ---- Stream fields ----------------------------------------------------------------------------

void TMyCAD::SetDiskFileVersion(const QString& v) {
    m_diskFileVersion = v;
    m_fileVersion = ParseFileVersion(v);
}

void TMyCAD::SetRecordWriteVersion(TFileVersion v) {
    if (VersionFrom(v, TFileVersion::XP6)) m_writeVersion = v;
}

bool TMyCAD::WriteStrBuffer(TStream& stream, const QString& text, uint8_t count) {
    return faroven::WriteStrBuffer(stream, text, count);
}
bool TMyCAD::ReadBitmapBuffer(TStream& stream, std::unique_ptr<TBitmap>& bitmap) {
    return faroven::ReadBitmapBuffer(stream, bitmap);
}
bool TMyCAD::WriteBitmapBuffer(TStream& stream, const TBitmap* bitmap) {
    return faroven::WriteBitmapBuffer(stream, bitmap);
}

// ---- Writing ----------------------------------------------------------------------------------

void TMyCAD::writeDrawing(TStream& stream, const std::vector<TMyShape*>& shapes) {
    WriteText(stream, QString::fromLatin1(kSignature), kSignatureWidth);
    WriteText(stream, QString::fromLatin1(kDescription), kDescriptionWidth);
    WriteText(stream, QString::fromLatin1(CurrentFileVersion), kVersionWidth);
    WriteText(stream, QString::fromLatin1(kBuildDate), kDateWidth);
    WriteText(stream, QString(), kReservedWidth);
    WriteColor(stream, m_colorOfBackGround);
    // The size at zoom 1, whatever the zoom now.
    WriteInt32(stream, Round(Width() / m_zoom));
    WriteInt32(stream, Round(Height() / m_zoom));
    WriteByte(stream, uint8_t(m_theUnit));
    WriteBitmapBuffer(stream, &m_bkBitmap);
    WriteInt32(stream, int32_t(uint8_t(m_bkBitmapMode)));  // the ordinal and three zero bytes
    WriteDouble(stream, m_ratio);
    WriteInt32(stream, Tag());
    m_userData.SaveToStream(stream);
    WriteInt32(stream, m_layers.Count());
    for (const TLayerRecord& layer : m_layers.Records()) {
        WriteStr(stream, layer.LayerName);
        WriteInt32(stream, layer.LayerId);
        WriteInt32(stream, layer.Visible ? 1 : 0);
    }
    WriteInt32(stream, m_layers.CurrentId());
    WriteInt32(stream, int32_t(shapes.size()));
    for (TMyShape* shape : shapes) {
        WriteText(stream, ShapeClassName(shape), kClassNameWidth);
        shape->SaveToStream(stream);
    }
}

bool TMyCAD::SaveToStream(TStream& stream) {
    std::vector<TMyShape*> shapes;
    shapes.reserve(m_myShapes.size());
    for (TMyShape* shape : m_myShapes)
        if (shape) shapes.push_back(shape);
    writeDrawing(stream, shapes);
    return true;
}

bool TMyCAD::SaveToFile(const QString& fileName) {
    // The new file is written beside the old one and takes its place only
    // when complete: a failed save leaves the old file as it was.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    TWriteBufferStream stream(file);
    const bool result = SaveToStream(stream);
    stream.Flush();
    if (!file.commit())
        throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(fileName, file.errorString()));
    m_changed = false;
    return result;
}

// ---- Reading ----------------------------------------------------------------------------------

TMyCAD::DrawingImage TMyCAD::readDrawing(TStream& stream) {
    const QString oldVersion = m_diskFileVersion;
    DrawingImage image;
    int64_t shapeStart = 0;
    int shapeIndex = -1;
    QString className;
    try {
        stream.SetPosition(0);
        const int64_t total = stream.Size();
        ReadText(stream, kSignatureWidth);
        ReadText(stream, kDescriptionWidth);
        image.version = ReadText(stream, kVersionWidth);
        ReadText(stream, kDateWidth);
        ReadText(stream, kReservedWidth);
        SetDiskFileVersion(image.version);
        const TFileVersion version = m_fileVersion;

        image.background = ReadColor(stream);
        image.width = ReadInt32(stream);
        image.height = ReadInt32(stream);
        image.unit = ReadByte(stream);
        ReadBitmapBuffer(stream, image.bkBitmap);
        uint8_t mode[4];
        stream.ReadBuffer(mode, 4);
        image.bkBitmapMode = mode[0];
        image.ratio = ReadDouble(stream);
        if (image.unit > uint8_t(inch))
            throw EFileFormatError(QStringLiteral("Unknown unit %1").arg(image.unit), stream.Position() - 20);
        if (image.bkBitmapMode > uint8_t(LeftTop))
            throw EFileFormatError(QStringLiteral("Unknown background mode %1").arg(image.bkBitmapMode),
                                   stream.Position() - 12);
        image.hasTagAndUserData = tagAndUserDataIn(version);
        if (image.hasTagAndUserData) {
            image.tag = ReadInt32(stream);
            image.userData.LoadFromStream(stream);
        }

        const int64_t layersAt = stream.Position();
        const int32_t layerCount = ReadCount(stream, 12, "Layer");
        if (layerCount > TLayerTable::kMaxLayers)
            throw EFileFormatError(QStringLiteral("Layer count %1 is more than %2").arg(layerCount).arg(TLayerTable::kMaxLayers),
                                   layersAt);
        image.layers.reserve(size_t(layerCount));
        for (int32_t i = 0; i < layerCount; ++i) {
            TLayerRecord layer;
            layer.LayerName = ReadStr(stream);
            layer.LayerId = ReadInt32(stream);
            layer.Visible = ReadInt32(stream) == 1;
            image.layers.push_back(layer);
        }
        image.currentLayerId = ReadInt32(stream);

        const int64_t shapesAt = stream.Position();
        const int32_t shapeCount = ReadCount(stream, kMinShapeBytes, "Shape");
        if (shapeCount > 0 && image.layers.empty())
            throw EFileFormatError(QStringLiteral("%1 shapes but no layer to hold them").arg(shapeCount), shapesAt);
        image.shapes.reserve(size_t(shapeCount));
        std::vector<int64_t> starts;
        starts.reserve(size_t(shapeCount));
        // Class names repeat from shape to shape: the same field bytes as the
        // last shape's reuse its name instead of converting them again.
        char lastField[kClassNameWidth] = {};
        for (shapeIndex = 0; shapeIndex < shapeCount; ++shapeIndex) {
            shapeStart = stream.Position();
            starts.push_back(shapeStart);
            char field[kClassNameWidth];
            stream.ReadBuffer(field, kClassNameWidth);
            if (shapeIndex == 0 || std::memcmp(field, lastField, kClassNameWidth) != 0) {
                className = FromAnsi(field, kClassNameWidth).trimmed();
                std::memcpy(lastField, field, kClassNameWidth);
            }
            std::unique_ptr<TMyShape> shape(CreateShapeByName(className));
            if (!shape) throw EFileFormatError(QStringLiteral("Unknown shape class \"%1\"").arg(className), shapeStart);
            shape->LoadFromStream(stream);
            shape->SetCenterPoint(shape->ComputeCenterPoint());
            image.shapes.push_back(std::move(shape));
            if (OnLoadProgress && shapeIndex % kProgressEvery == 0) OnLoadProgress(stream.Position(), total);
        }
        shapeIndex = -1;
        CheckShapeRelations(image.shapes, starts);
        if (OnLoadProgress) OnLoadProgress(total, total);
        return image;
    } catch (const Exception& e) {
        SetDiskFileVersion(oldVersion);
        // Inside a record, say which one; the message keeps the error's own position.
        if (shapeIndex >= 0)
            throw EFileFormatError(QStringLiteral("Shape %1 (class \"%2\") cannot be read: %3")
                                       .arg(shapeIndex).arg(className, e.Message()),
                                   shapeStart);
        if (dynamic_cast<const EFileFormatError*>(&e)) throw;
        throw EFileFormatError(QStringLiteral("The drawing's header cannot be read: %1").arg(e.Message()),
                               stream.Position());
    }
}

void TMyCAD::freeMemShapes() {
    for (TMyShape* shape : m_memShapes) delete shape;
    m_memShapes.clear();
}

bool TMyCAD::LoadFromStream(TStream& stream) {
    DrawingImage image = readDrawing(stream);

    // The stream is good: the drawing is replaced.
    m_loading = true;
    EndTextInput(false);
    CancelMouseEdit();
    freeMemShapes();
    SetZoom(1.0);
    RemoveAllWorkingShapes();
    DeleteAllShapes();
    ClearAllUndoStuff();

    m_colorOfBackGround = image.background;
    SetWidth(image.width);
    SetHeight(image.height);
    m_theUnit = TUnits(image.unit);
    if (image.bkBitmap) m_bkBitmap.Assign(*image.bkBitmap);
    else m_bkBitmap.Assign(TBitmap());
    m_bkBitmapMode = TBkBitmapMode(image.bkBitmapMode);
    m_ratio = image.ratio;
    if (image.hasTagAndUserData) {
        SetTag(image.tag);
        for (const TUserDataRecord& pair : image.userData.Records()) m_userData.AddKeyandValue(pair.Key, pair.Value);
    }
    int maxLayerId = -1;
    for (const TLayerRecord& layer : image.layers) maxLayerId = std::max(maxLayerId, layer.LayerId);
    m_layers.Replace(std::move(image.layers), image.currentLayerId, maxLayerId + 1);

    const int count = int(image.shapes.size());
    SetShapesCountForLoad(count);
    int maxShapeId = -1;
    for (int i = 0; i < count; ++i) {
        TMyShape* shape = image.shapes[size_t(i)].release();
        maxShapeId = std::max(maxShapeId, shape->GetShapeId());
        AddShapeforLoadfromStream(i, shape, true);
    }
    m_nextShapeId = maxShapeId + 1;
    m_loading = false;
    Invalidate();
    return true;
}

bool TMyCAD::IsZEMAFile(const QString& fileName) {
    TFileStream file(fileName, fmOpenRead);
    char head[kSignatureWidth];
    const int64_t got = file.Read(head, kSignatureWidth);
    return FromAnsi(QByteArray(head, int(got))).trimmed() == QLatin1String(kSignature);
}

bool TMyCAD::LoadFromFile(const QString& fileName) {
    if (!IsZEMAFile(fileName)) return false;
    TFileStream file(fileName, fmOpenRead);
    TReadBufferStream stream(file);
    return LoadFromStream(stream);
}

// ---- Blocks -----------------------------------------------------------------------------------

void TMyCAD::takeBlockShapes(DrawingImage& image, TBlockLayerMode mode) {
    freeMemShapes();
    // Import: the block's layers are matched by position; the ones the
    // canvas lacks are added, named after them.
    std::vector<int> layerAt;  // canvas layer id for each block layer position
    if (mode == Import) {
        // The prefix must not push a name past the 255 characters a file keeps.
        for (size_t i = size_t(m_layers.Count()); i < image.layers.size(); ++i)
            NewLayer((QStringLiteral("Block") + image.layers[i].LayerName).left(255), true);
        for (size_t i = 0; i < image.layers.size(); ++i) layerAt.push_back(GetLayerIdByNo(int(i)));
    }
    const int current = CurrentLayerId();
    for (size_t i = 0; i < image.shapes.size(); ++i) {
        TMyShape* shape = image.shapes[i].release();
        shape->SetShapeId(m_nextShapeId + int(i));
        shape->SetName(QString());
        int layer = current;
        if (mode == Import) {
            const auto it = std::find_if(image.layers.begin(), image.layers.end(),
                                         [&](const TLayerRecord& r) { return r.LayerId == shape->LayerId(); });
            if (it != image.layers.end() && layerAt[size_t(it - image.layers.begin())] >= 0)
                layer = layerAt[size_t(it - image.layers.begin())];
        }
        shape->SetLayerId(layer);
        m_memShapes.push_back(shape);
    }
}

bool TMyCAD::LoadFromStreamforBlock(TStream& stream, TBlockLayerMode mode) {
    DrawingImage image = readDrawing(stream);

    m_loading = true;
    EndTextInput(false);
    CancelMouseEdit();
    SetZoom(1.0);
    RemoveAllWorkingShapes();
    m_colorOfBackGround = image.background;
    m_theUnit = TUnits(image.unit);
    if (image.bkBitmap) m_bkBitmap.Assign(*image.bkBitmap);
    else m_bkBitmap.Assign(TBitmap());
    m_bkBitmapMode = TBkBitmapMode(image.bkBitmapMode);
    m_ratio = image.ratio;
    // The block only ever enlarges the canvas.
    if (image.width > Width()) SetWidth(image.width);
    if (image.height > Height()) SetHeight(image.height);
    if (image.hasTagAndUserData) {
        SetTag(image.tag);
        for (const TUserDataRecord& pair : image.userData.Records()) m_userData.AddKeyandValue(pair.Key, pair.Value);
    }
    takeBlockShapes(image, mode);
    ClearAllUndoStuff();
    m_loading = false;
    Invalidate();
    return true;
}

bool TMyCAD::PasteforBlock() {
    if (m_memShapes.empty() || m_layers.Count() == 0) return false;
    std::vector<TMyShape*> shapes;
    shapes.swap(m_memShapes);
    // The block numbered its shapes 0..n-1; they go on top of the drawing.
    const int base = GetShapesCount();
    std::vector<int> oldToNew(shapes.size());
    for (size_t i = 0; i < shapes.size(); ++i) oldToNew[i] = base + int(i);
    std::vector<TMyShape*> roots;
    for (size_t i = 0; i < shapes.size(); ++i) {
        TMyShape* shape = shapes[i];
        shape->remapShapeNos(oldToNew);
        shape->SetShapeNo(base + int(i));
        shape->SetName(QStringLiteral("Shape%1").arg(shape->GetShapeId()));
        m_nextShapeId = std::max(m_nextShapeId, shape->GetShapeId() + 1);
        AddShape(shape, true, true);
        if (!shape->HasParentShape()) roots.push_back(shape);
    }
    RemoveAllWorkingShapes();
    for (TMyShape* root : roots) AddWorkingShapes(root);
    PushtoUndoRedoShapeList(roots, QString::fromLatin1(ACT_ADD));
    m_changed = true;
    Invalidate();
    return true;
}

bool TMyCAD::AddBlockfromZEMAFile(const QString& fileName, TBlockLayerMode mode) {
    if (!IsZEMAFile(fileName)) return false;
    TFileStream file(fileName, fmOpenRead);
    TReadBufferStream stream(file);
    return LoadFromStreamforBlock(stream, mode) && PasteforBlock();
}

}  // namespace faroven
