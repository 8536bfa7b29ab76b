// TLibManager: the library file in memory, its entry walk, the entry
// readers and writers, the probes, and the step-by-step upgrade of older
// libraries.
#include "cad/persistence/lib_manager.h"

#include "cad/canvas/mycad.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/shape.h"
#include "cad/shapes/shape_factory.h"
#include "cad/shapes/shape_relations.h"
#include "platform/ansi.h"
#include "platform/bitmap.h"
#include "platform/stream.h"

#include <QPainter>
#include <QSaveFile>
#include <algorithm>
#include <cstring>

namespace faroven {

namespace {

constexpr int kClassNameWidth = 16;
constexpr int kMaxNameBytes = 255;
// The smallest shape of an entry: its class name and the leanest base record.
constexpr int kMinShapeBytes = kClassNameWidth + 99;

struct TagVersion {
    const char* tag;
    const char* version;
};
// The record version each tag's entries are written in.
constexpr TagVersion kTagVersions[] = {
    {"ZEMALIBX.j", "XP.j"}, {"ZEMALIBX.i", "XP.i"}, {"ZEMALIBX.h", "XP.h"}, {"ZEMALIBX.e", "XP.e"},
    {"ZEMALIBX.a", "XP.a"}, {"ZEMALIBX.9", "XP.9"}, {"ZEMALIBX.8", "XP.8"}, {"ZEMALIBX.7", "XP.7"},
    {"ZEMALIBX.6", "XP.6"}, {"ZEMALIBX.3", "XP.4"}, {"ZEMALIBX.2", "XP.2"}};

bool fileTagIsOneOf(const QString& fileName, std::initializer_list<const char*> tags) {
    const QString tag = ReadLibFileTag(fileName);
    return std::any_of(tags.begin(), tags.end(), [&](const char* t) { return tag == QLatin1String(t); });
}

// A read-only window on bytes [0, end) of a memory image: positions are the
// image's own, so error offsets are file offsets, while nothing read
// through it can run past the end of the entry it is opened on.
class TEntryView : public TStream {
public:
    TEntryView(const uint8_t* data, int64_t start, int64_t end) : m_data(data), m_end(end), m_position(start) {}
    int64_t Read(void* buffer, int64_t count) override {
        if (count <= 0 || m_position >= m_end) return 0;
        const int64_t n = std::min(count, m_end - m_position);
        std::memcpy(buffer, m_data + m_position, size_t(n));
        m_position += n;
        return n;
    }
    int64_t Write(const void*, int64_t) override { return 0; }
    int64_t Seek(int64_t offset, TSeekOrigin origin) override {
        const int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? m_position : m_end;
        m_position = std::clamp<int64_t>(base + offset, 0, m_end);
        return m_position;
    }
    int64_t Size() const override { return m_end; }
    void SetSize(int64_t) override {}

private:
    const uint8_t* m_data;
    int64_t m_end;
    int64_t m_position;
};

// ---- Fields, on any stream ----

int writeName(TStream& s, const QString& name) {
    const QByteArray bytes = ToAnsi(name);
    WriteByte(s, uint8_t(bytes.size()));
    s.WriteBuffer(bytes.constData(), bytes.size());
    return 1 + int(bytes.size());
}

int writeUserData(TStream& s, const TUserData& userData) {
    const int64_t start = s.Position();
    userData.SaveToStream(s);
    return int(s.Position() - start);
}

bool validName(const QString& name) { return !name.isEmpty() && ToAnsi(name).size() <= kMaxNameBytes; }

void scalePoints(TArrMyPoint& points, double width, double height) {
    for (TMyPoint& p : points) {
        p.x = float(p.x * width);
        p.y = float(p.y * height);
    }
}

void mapPoints(TArrMyPoint& points, double dx, double dy, double width, double height) {
    for (TMyPoint& p : points) {
        p.x = float((p.x - dx) / width);
        p.y = float((p.y - dy) / height);
    }
}

// The smallest rectangle holding every pixel that is not the background.
QRect inkBounds(const QImage& image, QRgb background) {
    int left = image.width(), top = image.height(), right = -1, bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (line[x] != background) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

}  // namespace

// ---- Probes ----------------------------------------------------------------------------------

QString LibTagRecordVersion(const QString& tag) {
    for (const TagVersion& tv : kTagVersions)
        if (tag == QLatin1String(tv.tag)) return QString::fromLatin1(tv.version);
    return {};
}

QString ReadLibFileTag(const QString& fileName) {
    TFileStream file(fileName, fmOpenRead);
    char tag[kLibTagWidth];
    if (file.Read(tag, kLibTagWidth) != kLibTagWidth) return {};
    return QString::fromLatin1(tag, kLibTagWidth);
}

bool IsZEMALibFile(const QString& f) {
    return fileTagIsOneOf(f, {"ZEMALIBX.j", "ZEMALIBX.h", "ZEMALIBX.a", "ZEMALIBX.9", "ZEMALIBX.8", "ZEMALIBX.7",
                              "ZEMALIBX.6", "ZEMALIBX.3", "ZEMALIBX.2"});
}
bool IsZEMALibFileX8(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.8"}); }
bool IsZEMALibFileX9(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.9"}); }
bool IsZEMALibFileXA(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.a"}); }
bool IsZEMALibFileXE(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.e"}); }
bool IsZEMALibFileXH(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.h"}); }
bool IsZEMALibFileXI(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.i"}); }
bool IsZEMALibFileX67(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.6", "ZEMALIBX.7"}); }
bool IsZEMALibX2File(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIBX.2"}); }
bool IsOLDZEMALibFile(const QString& f) { return fileTagIsOneOf(f, {"ZEMALIB2.1"}); }

// ---- The memory image --------------------------------------------------------------------------

struct TLibManager::EntryHead {
    int64_t start = 0;    // the name length byte
    QString name;
    int64_t payload = 0;  // the width field, after the size
    int64_t end = 0;      // the next entry
};

TLibManager::TLibManager(const QString& fileName)
    : m_libFileName(fileName), m_memory(std::make_unique<TMemoryStream>()), m_canvas(std::make_unique<TMyCAD>()) {
    if (!fileName.isEmpty()) m_memory->LoadFromFile(fileName);
    WriteLibTag();
}

TLibManager::~TLibManager() = default;

QByteArray TLibManager::Bytes() const { return m_memory->ToByteArray(); }

void TLibManager::LoadFromFile(const QString& fileName) {
    auto image = std::make_unique<TMemoryStream>();
    image->LoadFromFile(fileName);
    m_memory = std::move(image);
    m_libFileName = fileName;
}

void TLibManager::SaveToFile(const QString& fileName) {
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    const QByteArray bytes = Bytes();
    if (file.write(bytes) != bytes.size() || !file.commit())
        throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(fileName, file.errorString()));
}

int64_t TLibManager::entriesStart() const { return m_memory->Size() >= kLibTagWidth ? kLibTagWidth : 0; }

TLibManager::EntryHead TLibManager::readEntryHead(int64_t start) {
    const int64_t total = m_memory->Size();
    TEntryView s(m_memory->Memory(), start, total);
    EntryHead head;
    head.start = start;
    const int n = ReadByte(s);
    if (total - s.Position() < n + 4)
        throw EFileFormatError(QStringLiteral("Library entry: its name (%1 bytes) and size run past the end of the file")
                                   .arg(n),
                               start);
    head.name = FromAnsi(reinterpret_cast<const char*>(m_memory->Memory() + start + 1), n);
    s.Seek(n, soCurrent);
    const int64_t sizeAt = s.Position();
    const int32_t size = ReadInt32(s);
    head.payload = s.Position();
    if (size < 0 || size > total - head.payload)
        throw EFileFormatError(QStringLiteral("Library entry \"%1\": its size %2 does not fit the %3 bytes left")
                                   .arg(head.name).arg(size).arg(total - head.payload),
                               sizeAt);
    head.end = head.payload + size;
    return head;
}

bool TLibManager::isEntryBoundary(int64_t position) {
    for (int64_t at = entriesStart(); at < m_memory->Size(); at = readEntryHead(at).end)
        if (at == position) return true;
    return position == m_memory->Size();
}

bool TLibManager::findEntry(const QString& name, EntryHead& head) {
    // Every step moves on by at least the name length byte and the size.
    for (int64_t at = entriesStart(); at < m_memory->Size(); at = head.end) {
        head = readEntryHead(at);
        if (head.name == name) return true;
    }
    return false;
}

int TLibManager::GetcmbShapesCount() {
    int count = 0;
    for (int64_t at = entriesStart(); at < m_memory->Size(); at = readEntryHead(at).end) ++count;
    return count;
}

QStringList TLibManager::GetCmbShapesNames() {
    QStringList names;
    for (int64_t at = entriesStart(); at < m_memory->Size();) {
        const EntryHead head = readEntryHead(at);
        names.push_back(head.name);
        at = head.end;
    }
    return names;
}

QString TLibManager::GetCmbShapesNameByID(int index) {
    int i = 0;
    for (int64_t at = entriesStart(); at < m_memory->Size(); ++i) {
        const EntryHead head = readEntryHead(at);
        if (i == index) return head.name;
        at = head.end;
    }
    return {};
}

bool TLibManager::GetExistShape(const QString& name, int64_t& position, int64_t& length) {
    EntryHead head;
    if (!findEntry(name, head)) return false;
    position = head.start;
    length = head.end - head.start;
    return true;
}

bool TLibManager::GetCmbShapeSize(const QString& name, int& width, int& height) {
    EntryHead head;
    if (!findEntry(name, head)) return false;
    TEntryView s(m_memory->Memory(), head.payload, head.end);
    try {
        width = ReadInt32(s);
        height = ReadInt32(s);
    } catch (const Exception&) {
        throw EFileFormatError(QStringLiteral("Library entry \"%1\" is too short for its size").arg(name), head.payload);
    }
    return true;
}

// ---- Reading entries -------------------------------------------------------------------------------

bool TLibManager::readEntry(const QString& name, TFileVersion version, bool withUserData, TArrMyPoint& linkPoints,
                            TUserData* userData, TLibShapes& shapes, double width, double height,
                            bool skipLinkPoints) {
    EntryHead head;
    if (!findEntry(name, head)) return false;
    TEntryView s(m_memory->Memory(), head.payload, head.end);
    const QString oldVersion = m_canvas->DiskFileVersion();
    try {
        const int32_t storedWidth = ReadInt32(s), storedHeight = ReadInt32(s);
        TUserData pairs;
        if (withUserData) pairs.LoadFromStream(s);
        if (width <= 0 || height <= 0) {
            width = storedWidth;
            height = storedHeight;
        }
        m_canvas->SetDiskFileVersion(FileVersionName(version));
        TArrMyPoint readLinkPoints;
        TLibShapes read;
        readShapes(s, readLinkPoints, read, width, height, skipLinkPoints);
        m_canvas->SetDiskFileVersion(oldVersion);
        linkPoints = std::move(readLinkPoints);
        shapes = std::move(read);
        if (userData && withUserData) userData->Assign(pairs);
        return true;
    } catch (const Exception& e) {
        m_canvas->SetDiskFileVersion(oldVersion);
        throw EFileFormatError(QStringLiteral("Library entry \"%1\" cannot be read: %2").arg(name, e.Message()),
                               head.start);
    }
}

int TLibManager::readShapes(TStream& s, TArrMyPoint& linkPoints, TLibShapes& shapes, double width, double height,
                            bool skipLinkPoints) {
    const int64_t start = s.Position();
    const int32_t count = ReadCount(s, kMinShapeBytes, "Shape");
    m_canvas->SetZoom(1.0);
    m_canvas->DeleteAllShapes();
    TLibShapes all;
    std::vector<int64_t> starts;
    all.reserve(size_t(count));
    starts.reserve(size_t(count));
    for (int32_t i = 0; i < count; ++i) {
        starts.push_back(s.Position());
        const QString className = ReadText(s, kClassNameWidth);
        std::unique_ptr<TMyShape> shape(m_canvas->CreateShapeByName(className));
        if (!shape) throw EFileFormatError(QStringLiteral("Unknown shape class \"%1\"").arg(className), starts.back());
        shape->LoadFromStream(s);
        all.push_back(std::move(shape));
    }
    CheckShapeRelations(all, starts);
    // The shapes returned are numbered among themselves; references to the
    // link points taken out come loose.
    std::vector<int> oldToNew(all.size(), -1);
    int kept = 0;
    for (size_t i = 0; i < all.size(); ++i)
        if (!(skipLinkPoints && all[i]->kind() == TShapeKind::LinkPoint)) oldToNew[i] = kept++;
    const size_t first = shapes.size();
    for (std::unique_ptr<TMyShape>& shape : all) {
        scalePoints(shape->Points(), width, height);
        scalePoints(shape->LinkPoints(), width, height);
        if (oldToNew[size_t(shape->ShapeNo())] < 0) {
            linkPoints.push_back(shape->ComputeCenterPoint());
            continue;
        }
        shape->SetName(QString());
        const TMyPoint text = shape->TextPoint();
        shape->SetTextPoint({float(text.x * width), float(text.y * height)});
        shape->SetCenterPoint(shape->ComputeCenterPoint());
        shapes.push_back(std::move(shape));
    }
    for (size_t i = first; i < shapes.size(); ++i) {
        shapes[i]->remapShapeNos(oldToNew);
        shapes[i]->SetShapeNo(int(i - first));
    }
    return int(s.Position() - start);
}

bool TLibManager::GetCmbShape(const QString& name, TArrMyPoint& linkPoints, TUserData* userData, TLibShapes& shapes,
                              double width, double height, bool skipLinkPoints) {
    QString tag;
    ReadLibTag(tag);
    const TFileVersion version = ParseFileVersion(LibTagRecordVersion(tag));
    return readEntry(name, version, tag == QLatin1String(CurrentLibTag), linkPoints, userData, shapes, width, height,
                     skipLinkPoints);
}

#define FAROVEN_LIB_READER(Suffix, Version)                                                                     \
    bool TLibManager::GetCmbShapefor##Suffix(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes,    \
                                             double width, double height, bool skipLinkPoints) {                  \
        return readEntry(name, TFileVersion::Version, false, linkPoints, nullptr, shapes, width, height,          \
                         skipLinkPoints);                                                                         \
    }
FAROVEN_LIB_READER(X8, XP8)
FAROVEN_LIB_READER(X9, XP9)
FAROVEN_LIB_READER(XA, XPa)
FAROVEN_LIB_READER(XE, XPe)
FAROVEN_LIB_READER(XH, XPh)
FAROVEN_LIB_READER(XI, XPi)
#undef FAROVEN_LIB_READER

// ---- Writing entries -------------------------------------------------------------------------------

int TLibManager::writeShapes(TStream& s, const std::vector<TMyShape*>& shapes, int32_t& width, int32_t& height) {
    const int64_t start = s.Position();
    // The box the entry is normalised to leaves the link points out: they
    // sit on the outline of the shapes they belong to.
    bool any = false;
    TMyRect box;
    for (const TMyShape* shape : shapes) {
        if (shape->kind() == TShapeKind::LinkPoint || shape->GetPointsCount() == 0) continue;
        const TMyRect b = shape->GetBounds();
        if (!any) box = b;
        box = {std::min(box.left, b.left), std::min(box.top, b.top), std::max(box.right, b.right),
               std::max(box.bottom, b.bottom)};
        any = true;
    }
    width = std::max(Round(box.right - box.left), 1);
    height = std::max(Round(box.bottom - box.top), 1);

    // Relations are stored numbered within the entry; ones that lead out of it come loose.
    std::vector<int> oldToNew;
    for (size_t i = 0; i < shapes.size(); ++i) {
        const int no = shapes[i]->ShapeNo();
        if (no < 0) continue;
        if (size_t(no) >= oldToNew.size()) oldToNew.resize(size_t(no) + 1, -1);
        oldToNew[size_t(no)] = int(i);
    }
    WriteInt32(s, int32_t(shapes.size()));
    for (size_t i = 0; i < shapes.size(); ++i) {
        // A copy on the hidden canvas is written, so the caller's shape stays
        // exactly as it was, and the record takes the hidden canvas's layout.
        const QString className = ShapeClassName(shapes[i]);
        std::unique_ptr<TMyShape> copy(m_canvas->CreateShapeByName(className));
        copy->Assign(shapes[i]);
        copy->remapShapeNos(oldToNew);
        copy->SetShapeNo(int(i));
        copy->SetName(QString());
        mapPoints(copy->Points(), box.left, box.top, width, height);
        mapPoints(copy->LinkPoints(), box.left, box.top, width, height);
        const TMyPoint text = copy->TextPoint();
        copy->SetTextPoint({float((text.x - box.left) / width), float((text.y - box.top) / height)});
        WriteText(s, className, kClassNameWidth);
        copy->SaveToStream(s);
    }
    return int(s.Position() - start);
}

QByteArray TLibManager::entryBytes(const QString& name, const std::vector<TMyShape*>& shapes,
                                   const TUserData* userData, TFileVersion version, int* width, int* height) {
    TMemoryStream s;
    writeName(s, name);
    const int64_t sizeAt = s.Position();
    WriteInt32(s, 0);
    int32_t w = 1, h = 1;
    {
        TMemoryStream body;
        const TFileVersion oldVersion = m_canvas->RecordWriteVersion();
        m_canvas->SetRecordWriteVersion(version);
        writeShapes(body, shapes, w, h);
        m_canvas->SetRecordWriteVersion(oldVersion);
        WriteInt32(s, w);
        WriteInt32(s, h);
        if (version == TFileVersion::XPj) writeUserData(s, userData ? *userData : TUserData());
        body.SetPosition(0);
        s.CopyFrom(body, 0);
    }
    const int64_t end = s.Position();
    s.SetPosition(sizeAt);
    WriteInt32(s, int32_t(end - sizeAt - 4));
    if (width) *width = w;
    if (height) *height = h;
    return s.ToByteArray();
}

void TLibManager::replaceBytes(int64_t position, int64_t length, const QByteArray& bytes) {
    QByteArray all = Bytes();
    all.replace(qsizetype(position), qsizetype(length), bytes);
    m_memory = TMemoryStream::FromBytes(all);
}

bool TLibManager::AppendNewShape(const QString& name, const std::vector<TMyShape*>& shapes,
                                 const TUserData* userData, int* width, int* height) {
    return InsertNewShape(m_memory->Size(), name, shapes, userData, width, height);
}

bool TLibManager::InsertNewShape(int64_t position, const QString& name, const std::vector<TMyShape*>& shapes,
                                 const TUserData* userData, int* width, int* height) {
    int64_t at = 0, length = 0;
    if (!validName(name) || shapes.empty() || !isEntryBoundary(position) || GetExistShape(name, at, length))
        return false;
    replaceBytes(position, 0, entryBytes(name, shapes, userData, TFileVersion::XPj, width, height));
    return true;
}

bool TLibManager::RepalceExistShape(const QString& name, const std::vector<TMyShape*>& shapes,
                                    const TUserData* userData, int* width, int* height) {
    int64_t at = 0, length = 0;
    if (shapes.empty() || !GetExistShape(name, at, length)) return false;
    replaceBytes(at, length, entryBytes(name, shapes, userData, m_canvas->RecordWriteVersion(), width, height));
    return true;
}

bool TLibManager::DeleteShape(const QString& name) {
    int64_t at = 0, length = 0;
    if (!GetExistShape(name, at, length)) return false;
    replaceBytes(at, length, {});
    return true;
}

bool TLibManager::RenameCmbShapeName(const QString& oldName, const QString& newName) {
    int64_t at = 0, length = 0, other = 0, otherLength = 0;
    if (!validName(newName) || !GetExistShape(oldName, at, length)) return false;
    if (newName != oldName && GetExistShape(newName, other, otherLength)) return false;
    const int oldNameBytes = m_memory->Memory()[at] + 1;
    TMemoryStream name;
    writeName(name, newName);
    replaceBytes(at, oldNameBytes, name.ToByteArray());
    return true;
}

bool TLibManager::MoveCmbShapeBeforeByName(const QString& name, const QString& beforeName) {
    int64_t at = 0, length = 0, before = 0, beforeLength = 0;
    if (!GetExistShape(name, at, length) || !GetExistShape(beforeName, before, beforeLength)) return false;
    if (name == beforeName) return true;
    QByteArray all = Bytes();
    const QByteArray entry = all.mid(qsizetype(at), qsizetype(length));
    all.remove(qsizetype(at), qsizetype(length));
    all.insert(qsizetype(before > at ? before - length : before), entry);
    m_memory = TMemoryStream::FromBytes(all);
    return true;
}

// ---- Pictures ----------------------------------------------------------------------------------------

bool TLibManager::GetCmbShapeImage(const QString& name, double scale, TBitmap& bitmap, TColor background) {
    int storedWidth = 0, storedHeight = 0;
    if (!GetCmbShapeSize(name, storedWidth, storedHeight)) return false;
    scale = scale > 0 ? scale : 1.0;
    // A stored size from a damaged file must not ask for a giant picture.
    scale = std::min(scale, double(kMaxImageSide) / std::max({storedWidth, storedHeight, 1}));
    const double width = std::max(storedWidth, 1) * scale, height = std::max(storedHeight, 1) * scale;
    TArrMyPoint linkPoints;
    TLibShapes shapes;
    if (!GetCmbShape(name, linkPoints, nullptr, shapes, width, height, true)) return false;

    // The shapes go onto the hidden canvas so that groups find their members.
    const int layer = m_canvas->CurrentLayerId();
    m_canvas->SetShapesCountForLoad(int(shapes.size()));
    std::vector<TMyShape*> roots;
    for (size_t i = 0; i < shapes.size(); ++i) {
        TMyShape* shape = shapes[i].release();
        shape->SetLayerId(layer);
        m_canvas->AddShapeforLoadfromStream(int(i), shape, true);
        if (!shape->HasParentShape()) roots.push_back(shape);
    }
    // The picture holds the entry's box and whatever its shapes paint
    // beyond it (arrow heads, wide pens, captions).
    TRect painted{0, 0, int(std::ceil(width)), int(std::ceil(height))};
    for (TMyShape* shape : m_canvas->MyShapes()) {
        const TRect b = shape->GetPaintBoundsInZoom();
        painted = {std::min(painted.left, b.left), std::min(painted.top, b.top), std::max(painted.right, b.right),
                   std::max(painted.bottom, b.bottom)};
    }
    // Ink further out than kMaxInkBeyond (a caption placed far away) is left out.
    painted = {std::max(painted.left, -kMaxInkBeyond), std::max(painted.top, -kMaxInkBeyond),
               std::min(painted.right, int(std::ceil(width)) + kMaxInkBeyond),
               std::min(painted.bottom, int(std::ceil(height)) + kMaxInkBeyond)};
    const int w = painted.right - painted.left + 2 * kImageMargin, h = painted.bottom - painted.top + 2 * kImageMargin;
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(ToQColor(background));
    {
        QPainter painter(&image);
        TCanvas canvas;
        canvas.AttachPainter(&painter, TRect{0, 0, w, h});
        canvas.SetWindowOrg(painted.left - kImageMargin, painted.top - kImageMargin);
        m_canvas->DrawShapes(&canvas, roots);
        canvas.DetachPainter();
    }
    m_canvas->DeleteAllShapes();
    // Cut to the entry's box and the ink beyond it, with the margin.
    QRect keep(kImageMargin - painted.left, kImageMargin - painted.top, int(std::ceil(width)),
               int(std::ceil(height)));
    keep = keep.united(inkBounds(image, ToQColor(background).rgb()));
    bitmap.SetImage(image.copy(keep.adjusted(-kImageMargin, -kImageMargin, kImageMargin, kImageMargin)));
    return true;
}

// ---- Fields on the memory image ----------------------------------------------------------------------

int TLibManager::ReadLibTag(QString& tag) {
    if (m_memory->Size() < kLibTagWidth) {
        tag.clear();
        m_memory->SetPosition(0);
        return 0;
    }
    tag = QString::fromLatin1(reinterpret_cast<const char*>(m_memory->Memory()), kLibTagWidth);
    m_memory->SetPosition(kLibTagWidth);
    return kLibTagWidth;
}

int TLibManager::WriteLibTag(const QString& tag) {
    QByteArray bytes = tag.toLatin1().left(kLibTagWidth);
    bytes.append(kLibTagWidth - bytes.size(), ' ');
    m_memory->SetPosition(0);
    m_memory->WriteBuffer(bytes.constData(), kLibTagWidth);
    return kLibTagWidth;
}

int TLibManager::ReplaceoldTagwithNewTag(const QString& newTag) { return WriteLibTag(newTag); }

int TLibManager::ReadCmbShapeName(QString& name) {
    const int n = ReadByte(*m_memory);
    name = ::faroven::ReadStrBuffer(*m_memory, uint8_t(n));
    return 1 + n;
}

int TLibManager::WriteCmbShapeName(const QString& name) { return writeName(*m_memory, name); }

int TLibManager::ReadCmbShapeSize(int32_t& size) {
    size = ReadInt32(*m_memory);
    return 4;
}

int TLibManager::WriteCmbShapeSize(int32_t size) {
    WriteInt32(*m_memory, size);
    return 4;
}

int TLibManager::ReadWidthHeight(int32_t& width, int32_t& height) {
    width = ReadInt32(*m_memory);
    height = ReadInt32(*m_memory);
    return 8;
}

int TLibManager::WriteWidthHeight(int32_t width, int32_t height) {
    WriteInt32(*m_memory, width);
    WriteInt32(*m_memory, height);
    return 8;
}

int TLibManager::ReadUserDataRecords(TUserData& userData) {
    const int64_t start = m_memory->Position();
    userData.LoadFromStream(*m_memory);
    return int(m_memory->Position() - start);
}

int TLibManager::WriteUserDataRecords(const TUserData& userData) { return writeUserData(*m_memory, userData); }

int TLibManager::ReadShapes(TArrMyPoint& linkPoints, TLibShapes& shapes, double width, double height,
                            bool skipLinkPoints) {
    return readShapes(*m_memory, linkPoints, shapes, width, height, skipLinkPoints);
}

int TLibManager::WriteShapes(const std::vector<TMyShape*>& shapes, int32_t& width, int32_t& height) {
    return writeShapes(*m_memory, shapes, width, height);
}

int TLibManager::ReadStrBuffer(QString& text, uint8_t count) {
    text = ::faroven::ReadStrBuffer(*m_memory, count);
    return count;
}

int TLibManager::WriteStrBuffer(const QString& text, uint8_t count) {
    ::faroven::WriteStrBuffer(*m_memory, text, count);
    return count;
}

// ---- Older libraries ------------------------------------------------------------------------------

void TLibManager::upgradeStep(TFileVersion from, const char* newTag) {
    const TFileVersion to = ParseFileVersion(LibTagRecordVersion(QString::fromLatin1(newTag)));
    const QStringList names = GetCmbShapesNames();
    const TFileVersion oldWrite = m_canvas->RecordWriteVersion();
    m_canvas->SetRecordWriteVersion(to);
    try {
        for (const QString& name : names) {
            TArrMyPoint linkPoints;
            TLibShapes shapes;
            // Link points stay shapes of the entry: they are rewritten as they are.
            readEntry(name, from, false, linkPoints, nullptr, shapes, 0, 0, false);
            std::vector<TMyShape*> raw;
            for (auto& shape : shapes) raw.push_back(shape.get());
            if (!raw.empty()) {
                RepalceExistShape(name, raw, nullptr);
            } else {
                int64_t at = 0, length = 0;
                GetExistShape(name, at, length);
                replaceBytes(at, length, entryBytes(name, {}, nullptr, to, nullptr, nullptr));
            }
        }
    } catch (...) {
        m_canvas->SetRecordWriteVersion(oldWrite);
        throw;
    }
    m_canvas->SetRecordWriteVersion(oldWrite);
    ReplaceoldTagwithNewTag(QString::fromLatin1(newTag));
}

void TLibManager::Upgradefromx6tox8() {
    // The first step also takes the oldest tags the entry layout is known for.
    QString tag;
    ReadLibTag(tag);
    TFileVersion from = ParseFileVersion(LibTagRecordVersion(tag));
    if (!VersionBetween(from, TFileVersion::XP2, TFileVersion::XP7)) from = TFileVersion::XP6;
    upgradeStep(from, "ZEMALIBX.8");
}
void TLibManager::Upgradefromx8tox9() { upgradeStep(TFileVersion::XP8, "ZEMALIBX.9"); }
void TLibManager::Upgradefromx9toxa() { upgradeStep(TFileVersion::XP9, "ZEMALIBX.a"); }
void TLibManager::Upgradefromxatoxe() { upgradeStep(TFileVersion::XPa, "ZEMALIBX.e"); }
void TLibManager::Upgradefromxetoxh() { upgradeStep(TFileVersion::XPe, "ZEMALIBX.h"); }
void TLibManager::Upgradefromxhtoxi() { upgradeStep(TFileVersion::XPh, "ZEMALIBX.i"); }
void TLibManager::Upgradefromxitoxj() { upgradeStep(TFileVersion::XPi, "ZEMALIBX.j"); }

bool TLibManager::UpgradeFrom(const QString& tag) {
    using V = TFileVersion;
    const V version = ParseFileVersion(LibTagRecordVersion(tag));
    if (version == V::Unknown) return false;
    // The memory image may carry the current tag already (the constructor
    // writes it): the first step reads in the layout of the tag given.
    WriteLibTag(tag);
    if (VersionBetween(version, V::XP2, V::XP7)) Upgradefromx6tox8();
    if (VersionBetween(version, V::XP2, V::XP8)) Upgradefromx8tox9();
    if (VersionBetween(version, V::XP2, V::XP9)) Upgradefromx9toxa();
    if (VersionBetween(version, V::XP2, V::XPa)) Upgradefromxatoxe();
    if (VersionBetween(version, V::XP2, V::XPe)) Upgradefromxetoxh();
    if (VersionBetween(version, V::XP2, V::XPh)) Upgradefromxhtoxi();
    if (VersionBetween(version, V::XP2, V::XPi)) Upgradefromxitoxj();
    return true;
}

void TLibManager::LoadFromOldFile(const QString& fileName) {
    if (!IsOLDZEMALibFile(fileName))
        throw EFileFormatError(QStringLiteral("\"%1\" is not a \"ZEMALIB2.1\" library").arg(fileName), 0);
    throw EFileFormatError(
        QStringLiteral("\"%1\" is a \"ZEMALIB2.1\" library, whose layout this program does not know; it cannot be read")
            .arg(fileName),
        0);
}

}  // namespace faroven
