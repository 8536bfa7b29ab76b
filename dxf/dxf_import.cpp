#include "dxf/dxf_import.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"
#include "dxf/dxf_import_extended.h"
#include "platform/convert.h"
#include "platform/system.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace faroven {

namespace {
constexpr double kDegree = std::numbers::pi / 180;
constexpr int kProgressEvery = 10000;

double real(const TGroupTable& entry, int code) { return entry.Value(code).IsEmpty() ? 0.0 : entry.Value(code).AsDouble(); }
int integer(const TGroupTable& entry, int code) { return entry.Value(code).IsEmpty() ? 0 : int(entry.Value(code).AsInteger()); }
QString text(const TGroupTable& entry, int code) { return entry.Value(code).IsEmpty() ? QString() : entry.Value(code).AsString(); }
}  // namespace

class TDXF2DImport::EntryLease {
public:
    explicit EntryLease(TDXF2DImport& import) : m_import(import) {
        auto& pool = import.m_entries;
        if (import.m_entriesInUse == pool.size()) pool.push_back(std::make_unique<PooledEntry>());
        m_entry = pool[import.m_entriesInUse++].get();
        for (int code : m_entry->filled) m_entry->table.SetValue(code, TVariant());
        m_entry->filled.clear();
    }
    ~EntryLease() { --m_import.m_entriesInUse; }
    EntryLease(const EntryLease&) = delete;
    EntryLease& operator=(const EntryLease&) = delete;
    TGroupTable& table() { return m_entry->table; }
    std::vector<int>* filled() { return &m_entry->filled; }
    void clear() {
        for (int code : m_entry->filled) m_entry->table.SetValue(code, TVariant());
        m_entry->filled.clear();
    }

private:
    TDXF2DImport& m_import;
    PooledEntry* m_entry;
};

TDXF2DImport::TDXF2DImport(const QString& fileName, TMyCAD* canvas)
    : TDXF2DImport(std::make_unique<TDXFRead>(fileName), canvas) {}

TDXF2DImport::TDXF2DImport(const QByteArray& bytes, TMyCAD* canvas, const QString& name)
    : TDXF2DImport(TDXFRead::FromBytes(bytes, name), canvas) {}

TDXF2DImport::TDXF2DImport(std::unique_ptr<TDXFRead> reader, TMyCAD* canvas)
    : m_canvas(canvas), m_reader(std::move(reader)) {
    m_defaultFont.SetSize(8);
}

TDXF2DImport::~TDXF2DImport() {
    for (auto& [shape, layer] : m_pending) delete shape;
}

// Coordinates beyond what a shape can hold are held at that limit, so that
// a file cannot give a shape infinite or undefined points.
static float saturated(double v) {
    constexpr double limit = 1e30;
    return std::isnan(v) ? 0.0f : float(std::clamp(v, -limit, limit));
}

TMyPoint TDXF2DImport::mm2Pixel(double x, double y) const {
    const auto& t = m_transform;
    const double tx = t[0] * x + t[2] * y + t[4], ty = t[1] * x + t[3] * y + t[5];
    return ModeChange(TMyPoint{saturated((tx + m_offSetX) * m_scalex), saturated((ty + m_offSetY) * m_scaley)}, 0);
}

bool TDXF2DImport::atGroup(int code, const char* value) const {
    return m_reader->CurrentGroupCode() == code && m_reader->CurrentValue() == TVariant(value);
}

bool TDXF2DImport::atSectionEnd() const { return m_reader->Eof() || atGroup(0, "ENDSEC"); }

[[noreturn]] void TDXF2DImport::invalid(int line) const {
    throw EDXFImportError(QStringLiteral("Invalid DXF file."), m_reader->Name(), line);
}

void TDXF2DImport::skip(const QString& entity, const QString& why) {
    m_unsupported = true;
    // The report is for people; a file of a million unknown entities need not fill memory.
    if (m_skipped.size() < 1000)
        m_skipped << QStringLiteral("line %1: %2: %3").arg(m_entityLine).arg(entity, why);
}

// ---- The walk ---------------------------------------------------------------------------------

void TDXF2DImport::ReadDXF() {
    if (!m_canvas) return;
    m_unsupported = false;
    m_readFailed = false;
    m_skipped.clear();
    m_entityCount = 0;
    m_createdLayers.clear();
    m_currentLayerId = m_layerBefore = m_canvas->CurrentLayerId();
    m_lastLayerName.clear();
    m_lastLayerId = -1;
    if (m_extended) m_extension = std::make_unique<Extension>(*this);
    m_reader->Rewind();
    try {
        while (m_reader->CurrentSection() != scUnknow) {
            switch (m_reader->CurrentSection()) {
            case scHeader: ReadHeader(); break;
            case scTables: ReadTables(); break;
            case scBlocks: ReadBlocks(); break;
            case scEntities: ReadEntities(); break;
            case scClasses: ReadClasses(); break;
            case scUnknow: break;
            }
            m_reader->NextSection();
        }
    } catch (...) {
        m_readFailed = true;
        if (m_keepPartial) commit();
        else rollback();
        m_extension.reset();
        throw;
    }
    commit();
    m_extension.reset();
}

bool TDXF2DImport::GoToSection(TSections section) {
    m_reader->Rewind();
    while (m_reader->CurrentSection() != section && m_reader->CurrentSection() != scUnknow) m_reader->NextSection();
    return m_reader->CurrentSection() == section;
}

void TDXF2DImport::ReadHeader() {
    TGroupTable entry;
    while (!atSectionEnd()) {
        entry.Clear();
        if (m_reader->ReadAnEntry(9, entry) == 0) {
            // A group other than a variable: step over it.
            if (!atSectionEnd() && !m_reader->ConsumeGroup()) return;
            continue;
        }
        const QString name = text(entry, 9);
        if (name == u"$EXTMIN")
            m_extents.first = TPoint2D{float(real(entry, 10)), float(real(entry, 20)), 1};
        else if (name == u"$EXTMAX")
            m_extents.second = TPoint2D{float(real(entry, 10)), float(real(entry, 20)), 1};
        else if (name == u"$ANGDIR")
            m_angleDirection = integer(entry, 70) == 1 ? adClockwise : adCounterClockwise;
    }
    m_extents = ReorderRect2D(m_extents);
}

void TDXF2DImport::ReadTables() {
    TGroupTable entry;
    while (!atSectionEnd()) {
        entry.Clear();
        if (!collectEntity(entry, &m_groups)) return;
        if (text(entry, 0) != u"LAYER") continue;
        const QString name = text(entry, 2);
        if (m_canvas->GetLayerIdByName(name) >= 0) {
            if (m_extension) m_extension->LayerRead(entry, m_groups, m_canvas->GetLayerIdByName(name), false);
            continue;
        }
        const int id = m_canvas->NewLayer(name, true);
        if (id < 0) {
            skip(QStringLiteral("LAYER"), QStringLiteral("the canvas holds no more layers; \"%1\" not created").arg(name));
            continue;
        }
        m_createdLayers.push_back(id);
        if (m_extension) m_extension->LayerRead(entry, m_groups, id, true);
    }
}

void TDXF2DImport::ReadClasses() {
    TGroupTable entry;
    while (!atSectionEnd()) {
        entry.Clear();
        if (!collectEntity(entry, nullptr)) return;
    }
}

void TDXF2DImport::ReadBlocks() {
    while (!atSectionEnd()) {
        if (atGroup(0, "BLOCK")) {
            ReadBlock();
            continue;
        }
        TGroupTable entry;
        if (!collectEntity(entry, nullptr)) return;
    }
}

void TDXF2DImport::ReadBlock() {
    TGroupTable header;
    if (!collectEntity(header, nullptr)) return;
    if (m_extension) {
        m_extension->ReadBlockDefinition(header);
        return;
    }
    ReadSourceBlock();
}

void TDXF2DImport::ReadSourceBlock() {
    while (!m_reader->Eof() && !atGroup(0, "ENDBLK") && !atGroup(0, "ENDSEC")) {
        if (TMyShape* shape = ReadEntity(true)) addImported(shape);
        else if (m_reader->CurrentGroupCode() != 0 && !m_reader->Eof()) invalid(m_reader->CurrentLine());
    }
}

void TDXF2DImport::ReadEntities() {
    while (!atSectionEnd()) {
        if (TMyShape* shape = ReadEntity(false)) addImported(shape);
        else if (m_reader->CurrentGroupCode() != 0 && !m_reader->Eof()) invalid(m_reader->CurrentLine());
    }
}

bool TDXF2DImport::collectEntity(TGroupTable& entry, std::vector<TDxfGroup>* groups, std::vector<int>* filled) {
    if (groups) groups->clear();
    // Stand on the next 0 group first.
    while (m_reader->CurrentGroupCode() != 0)
        if (!m_reader->ConsumeGroup()) return false;
    do {
        const uint16_t code = m_reader->CurrentGroupCode();
        entry.SetValue(code, m_reader->CurrentValue());
        if (filled) filled->push_back(code);
        if (groups) groups->push_back(TDxfGroup{code, m_reader->CurrentValue()});
        if (!m_reader->ConsumeGroup()) return !m_reader->Eof() || m_reader->CurrentGroupCode() == 0;
    } while (m_reader->CurrentGroupCode() != 0);
    return true;
}

int TDXF2DImport::layerIdOf(const QString& name) {
    if (name != m_lastLayerName || m_lastLayerId < 0) {
        m_lastLayerName = name;
        m_lastLayerId = m_canvas->GetLayerIdByName(name);
    }
    return m_lastLayerId;
}

TMyShape* TDXF2DImport::ReadEntity(bool inBlock) {
    EntryLease lease(*this);
    TGroupTable& entry = lease.table();
    const int line = m_entityLine = m_reader->CurrentLine();
    if (!collectEntity(entry, &m_groups, lease.filled())) return nullptr;
    if (++m_entityCount % kProgressEvery == 0 && OnProgress) OnProgress(m_entityCount);
    const QString layerName = Trim(text(entry, 8));
    int layer = -1;
    if (!m_extension || !m_extension->TakesInsertLayer(layerName, layer)) layer = layerIdOf(layerName);
    if (layer >= 0) m_currentLayerId = layer;
    const QString name = text(entry, 0);
    if (m_extension) return m_extension->ReadEntity(name, entry, m_groups, inBlock, line);
    return readBasicEntity(name, entry, inBlock);
}

TMyShape* TDXF2DImport::readBasicEntity(const QString& name, const TGroupTable& entry, bool inBlock) {
    if (name == u"LINE") return ReadLine2D(entry);
    if (name == u"ARC") return ReadArc2D(entry);
    if (name == u"SOLID") return ReadSolid2D(entry);
    if (name == u"DIMENSION") return ReadDIMENSION2D(entry);
    if (name == u"CIRCLE") return ReadCircle2D(entry);
    if (name == u"ELLIPSE") return ReadEllipse2D(entry);
    if (name == u"LWPOLYLINE") return ReadLWPolyline2D(entry);
    if (name == u"POLYLINE") return ReadPolyline2D(entry);
    if (name == u"TEXT") return ReadText2D(entry);
    if (name == u"INSERT" && !inBlock) skip(name, QStringLiteral("block references are not expanded"));
    else if (!name.isEmpty()) skip(name, QStringLiteral("entity not supported"));
    return nullptr;
}

// ---- Adding -----------------------------------------------------------------------------------

void TDXF2DImport::addImported(TMyShape* shape) {
    m_pending.emplace_back(shape, m_currentLayerId);
    if (m_keepPartial) commit();
}

// Puts the waiting shapes on the canvas, named and numbered as shapes made by
// code, and records them as one undo step (a partial import records its own).
void TDXF2DImport::commit() {
    if (m_pending.empty()) {
        if (m_currentLayerId >= 0) m_canvas->SetCurrentLayerId(m_currentLayerId);
        return;
    }
    if (m_canvas->GetLayersCount() == 0) {
        // Shapes need a layer; DXF's own default layer is "0".
        m_createdLayers.push_back(m_canvas->NewLayer(QStringLiteral("0"), true));
        for (auto& [shape, layer] : m_pending)
            if (layer < 0) layer = m_createdLayers.back();
    }
    placeInDestRegion();
    std::vector<TMyShape*> added;
    added.reserve(m_pending.size());
    for (auto& [shape, layer] : m_pending) {
        shape->SetShapeNo(m_canvas->GetShapesCount());
        shape->SetShapeId(m_canvas->NextShapeId());
        shape->SetName(QStringLiteral("Shape%1").arg(m_canvas->NextShapeId()));
        const TMyPoint centre = shape->ComputeCenterPoint();
        shape->SetCenterPoint(centre);
        shape->SetTextPoint(TMyPoint{centre.x, shape->GetRightBottom().y + 10});
        m_canvas->AddShape(shape, false, false);
        shape->SetLayerId(layer >= 0 ? layer : m_canvas->CurrentLayerId());
        added.push_back(shape);
    }
    m_pending.clear();
    if (m_currentLayerId >= 0) m_canvas->SetCurrentLayerId(m_currentLayerId);
    if (m_keepPartial) return;
    m_canvas->RemoveAllWorkingShapes();
    for (TMyShape* shape : added) m_canvas->AddWorkingShapes(shape);
    m_canvas->PushtoUndoRedoShapeList(added, QString::fromLatin1(ACT_ADD));
    m_canvas->Invalidate();
}

// With a destination region, the shapes read move together so that the top
// left corner of their bounds lies on the region's (an import that keeps
// partial results adds shapes one by one and is not moved).
void TDXF2DImport::placeInDestRegion() {
    const TRect& region = m_destRegion;
    if (m_keepPartial || (region.right <= region.left && region.bottom <= region.top) || m_pending.empty()) return;
    float left = std::numeric_limits<float>::max(), top = left;
    for (const auto& [shape, layer] : m_pending) {
        const TMyRect b = shape->GetBounds();
        left = std::min(left, b.left);
        top = std::min(top, b.top);
    }
    for (const auto& [shape, layer] : m_pending) shape->DragChangeValuedxdy(region.left - double(left), region.top - double(top));
}

// Undoes what a failed import did to the canvas: the waiting shapes go, the
// layers it created go, and the current layer is the one from before.
void TDXF2DImport::rollback() {
    for (auto& [shape, layer] : m_pending) delete shape;
    m_pending.clear();
    for (int id : m_createdLayers) m_canvas->DeleteLayerByID(id);
    m_createdLayers.clear();
    m_canvas->SetCurrentLayerId(m_layerBefore);
}

// ---- Entities ---------------------------------------------------------------------------------

TMyShape* TDXF2DImport::ReadLine2D(const TGroupTable& entry) {
    auto* line = new TMyLine(m_canvas);
    line->AddPoint(mm2Pixel(real(entry, 10), real(entry, 20)));
    line->AddPoint(mm2Pixel(real(entry, 11), real(entry, 21)));
    return line;
}

// Three points on the circle: at the start angle, half-way and at the end
// angle, counter-clockwise from start to end as DXF arcs run.
TMyShape* TDXF2DImport::ReadArc2D(const TGroupTable& entry) {
    const double cx = real(entry, 10), cy = real(entry, 20), r = real(entry, 40);
    double start = real(entry, 50), end = real(entry, 51);
    if (end <= start) end += 360;
    auto* arc = new TMyElliArc(m_canvas);
    arc->SetArcMode(amCircle);
    for (double a : {start, (start + end) / 2, end})
        arc->AddPoint(mm2Pixel(cx + r * std::cos(a * kDegree), cy + r * std::sin(a * kDegree)));
    return arc;
}

// The outline of the solid: corners 1, 2, 4, 3 (DXF's order zigzags), back to
// the first; a triangle repeats its third corner as the fourth.
TMyShape* TDXF2DImport::ReadSolid2D(const TGroupTable& entry) {
    auto* solid = new TMyPolyLine(m_canvas);
    const bool fourth = entry.Has(13) && (real(entry, 13) != real(entry, 12) || real(entry, 23) != real(entry, 22));
    for (int code : {10, 11, 13, 12, 10}) {
        if (code == 13 && !fourth) continue;
        solid->AddPoint(mm2Pixel(real(entry, code), real(entry, code + 10)));
    }
    return solid;
}

// The extension line origins and the dimension line's point: the outline
// the dimension's geometry spans.
TMyShape* TDXF2DImport::ReadDIMENSION2D(const TGroupTable& entry) {
    auto* dimension = new TMyPolyLine(m_canvas);
    for (int code : {13, 14, 10})
        if (entry.Has(code) || entry.Has(code + 10)) dimension->AddPoint(mm2Pixel(real(entry, code), real(entry, code + 10)));
    if (dimension->GetPointsCount() < 2) {
        delete dimension;
        skip(QStringLiteral("DIMENSION"), QStringLiteral("fewer than two definition points"));
        return nullptr;
    }
    return dimension;
}

// An ellipse shape whose frame is the upright box of the half sizes about
// the centre, corners in the order (−, −), (+, −), (+, +), (−, +).
TMyShape* TDXF2DImport::uprightEllipse(double cx, double cy, double halfWidth, double halfHeight) {
    auto* ellipse = new TMyEllipse(m_canvas);
    ellipse->AddPoint(mm2Pixel(cx - halfWidth, cy - halfHeight));
    ellipse->AddPoint(mm2Pixel(cx + halfWidth, cy - halfHeight));
    ellipse->AddPoint(mm2Pixel(cx + halfWidth, cy + halfHeight));
    ellipse->AddPoint(mm2Pixel(cx - halfWidth, cy + halfHeight));
    return ellipse;
}

TMyShape* TDXF2DImport::ReadCircle2D(const TGroupTable& entry) {
    const double r = real(entry, 40);
    return uprightEllipse(real(entry, 10), real(entry, 20), r, r);
}

// Whole ellipses only, as an upright frame: half-width the distance from the
// centre to the axis point, half-height the ratio as it stands.
TMyShape* TDXF2DImport::ReadEllipse2D(const TGroupTable& entry) {
    const double cx = real(entry, 10), cy = real(entry, 20), ratio = real(entry, 40);
    if (real(entry, 41) != 0 || real(entry, 42) != 2 * std::numbers::pi) {
        skip(QStringLiteral("ELLIPSE"), QStringLiteral("elliptic arcs are not supported"));
        return nullptr;
    }
    const double l = GetLengthinPixel(TMyPoint{float(cx), float(cy)}, TMyPoint{float(real(entry, 11)), float(real(entry, 21))});
    return uprightEllipse(cx, cy, l, ratio);
}

// Its vertices in order; a closed one comes back to its first vertex.
TMyShape* TDXF2DImport::ReadLWPolyline2D(const TGroupTable& entry) {
    auto* polyline = new TMyPolyLine(m_canvas);
    double x = 0;
    bool haveX = false;
    for (const TDxfGroup& g : m_groups) {
        if (g.code == 10) {
            x = g.value.AsDouble();
            haveX = true;
        } else if (g.code == 20 && haveX) {
            polyline->AddPoint(mm2Pixel(x, g.value.AsDouble()));
            haveX = false;
        }
    }
    if (polyline->GetPointsCount() == 0) {
        delete polyline;
        skip(QStringLiteral("LWPOLYLINE"), QStringLiteral("no vertices"));
        return nullptr;
    }
    if ((integer(entry, 70) & 1) && polyline->GetPointsCount() > 2)
        polyline->AddPoint(std::as_const(*polyline).Points().front());
    return polyline;
}

// The VERTEX entries up to SEQEND. Spline frame points (flag 16) and the face
// records of meshes (flag 128 without 64) carry no outline and are passed
// over. Anything else before SEQEND, or the end of the file, is a broken file.
TMyShape* TDXF2DImport::ReadPolyline2D(const TGroupTable& entry) {
    const bool closed = integer(entry, 70) & 1;
    auto polyline = std::make_unique<TMyPolyLine>(m_canvas);
    EntryLease lease(*this);
    TGroupTable& vertex = lease.table();
    for (;;) {
        if (m_reader->Eof() || m_reader->CurrentGroupCode() != 0) {
            m_unsupported = true;
            invalid(m_reader->CurrentLine());
        }
        lease.clear();
        const int line = m_reader->CurrentLine();
        const bool complete = collectEntity(vertex, nullptr, lease.filled());
        const QString name = text(vertex, 0);
        if (name == u"SEQEND") break;
        if (name != u"VERTEX" || !complete) {
            m_unsupported = true;
            invalid(line);
        }
        const int flags = integer(vertex, 70);
        if ((flags & 16) || ((flags & 128) && !(flags & 64))) continue;
        polyline->AddPoint(mm2Pixel(real(vertex, 10), real(vertex, 20)));
    }
    if (polyline->GetPointsCount() == 0) {
        m_unsupported = true;
        skip(QStringLiteral("POLYLINE"), QStringLiteral("spline frame without fitted points"));
        if (m_reportUnsupported) ShowMessage(QStringLiteral("Spline without spline-fitting isn't supported."));
        return nullptr;
    }
    if (closed && polyline->GetPointsCount() > 2) polyline->AddPoint(std::as_const(*polyline).Points().front());
    return polyline.release();
}

// A text box holding the text in the default font at the TEXT's height, its
// frame's lower left corner on the insertion point, turned by the TEXT's
// angle as the mapping turns it.
TMyShape* TDXF2DImport::ReadText2D(const TGroupTable& entry) {
    auto* shape = new TMyText(m_canvas);
    shape->SetFont(m_defaultFont);
    const double height = real(entry, 40) * std::abs(double(m_scaley));
    if (height >= 1 && height < 32768) shape->Font()->SetHeight(-Round(height));
    shape->SetInfo(text(entry, 1));
    const double angle = real(entry, 50) * kDegree;
    shape->SetAngle(float(std::atan2(m_scaley * std::sin(angle), m_scalex * std::cos(angle))));
    const TMyPoint insertion = mm2Pixel(real(entry, 10), real(entry, 20));
    shape->AddPoint(insertion);
    shape->reCaclpoints();
    const TMyPoint corner = std::as_const(*shape).Points()[3];
    shape->DragChangeValuedxdy(insertion.x - corner.x, insertion.y - corner.y);
    return shape;
}

}  // namespace faroven
