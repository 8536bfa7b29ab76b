// Connections: link lines joining link points of two shapes. A link line
// keeps the numbers and link point indices of its two ends; each joined shape
// keeps the link line's number in LinkShapeNos. Renumbering keeps both sides
// (remapShapeNos); this file makes and breaks connections and routes the
// lines again when their shapes change.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/link.h"
#include "cad/shapes/shape_factory.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace faroven {

namespace {

// The line families that can be split at a point: open lines made of
// straight segments (not the closed polygon, not the curves).
TMyLine* splittableLine(TMyShape* shape) {
    auto* line = dynamic_cast<TMyLine*>(shape);
    if (!line || line->GetPointsCount() < 2) return nullptr;
    switch (line->kind()) {
    case TShapeKind::Polygon:
    case TShapeKind::PolyBezier:
    case TShapeKind::BLine: return nullptr;
    default: return line;
    }
}

// The point of segment a-b nearest to p.
TMyPoint nearestOnSegment(TMyPoint a, TMyPoint b, TMyPoint p) {
    const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
    const double len2 = dx * dx + dy * dy;
    double t = len2 > 0 ? ((double(p.x) - a.x) * dx + (double(p.y) - a.y) * dy) / len2 : 0;
    t = std::clamp(t, 0.0, 1.0);
    return {float(a.x + t * dx), float(a.y + t * dy)};
}

}  // namespace

// ---- Both sides, by id, for undo --------------------------------------------------------------

namespace canvas_detail {

std::vector<TUndoLink> linksOf(const TMyCAD& cad, const TMyShape* shape) {
    std::vector<TUndoLink> links;
    auto endsOf = [&](const TMyLine* line, const TMyShape* only) {
        const TMyShape* start = cad.GetShapeByNo(line->StartSpNo());
        const TMyShape* end = cad.GetShapeByNo(line->EndSpNo());
        if (start && (!only || start == only))
            links.push_back({line->GetShapeId(), start->GetShapeId(), true, line->StartSpPtId()});
        if (end && (!only || end == only))
            links.push_back({line->GetShapeId(), end->GetShapeId(), false, line->EndSpPtId()});
    };
    if (const auto* line = shape_cast<TMyLinkLine>(shape)) endsOf(line, nullptr);
    for (uint32_t no : shape->LinkShapeNos())
        if (const auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByNo(int(no)))) endsOf(line, shape);
    return links;
}

std::vector<std::pair<int, TArrMyPoint>> routesOf(const TMyCAD& cad, const TMyShape* shape) {
    std::vector<std::pair<int, TArrMyPoint>> routes;
    if (shape_cast<TMyLinkLine>(shape)) routes.emplace_back(shape->GetShapeId(), shape->Points());
    for (uint32_t no : shape->LinkShapeNos())
        if (const auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByNo(int(no))))
            routes.emplace_back(line->GetShapeId(), line->Points());
    return routes;
}

void restoreRoutes(TMyCAD& cad, const std::vector<std::pair<int, TArrMyPoint>>& routes) {
    for (const auto& [id, points] : routes)
        if (auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByID(id))) {
            line->SetPoints(points);
            line->SetCenterPoint(line->ComputeCenterPoint());
        }
}

void setEnds(TMyCAD& cad, TMyShape* shape, const std::vector<TUndoLink>& links) {
    auto* line = shape_cast<TMyLinkLine>(shape);
    if (!line) return;
    const uint32_t lineNo = uint32_t(line->ShapeNo());
    for (const bool atStart : {true, false}) {
        const TUndoLink* recorded = nullptr;
        for (const TUndoLink& link : links)
            if (link.LineId == line->GetShapeId() && link.AtStart == atStart) recorded = &link;
        TMyShape* target = recorded ? cad.GetShapeByID(recorded->ShapeId) : nullptr;
        const int targetPt = target ? recorded->PtId : -1;
        const int now = atStart ? line->StartSpNo() : line->EndSpNo();
        const int nowPt = atStart ? line->StartSpPtId() : line->EndSpPtId();
        if (target ? target->ShapeNo() == now && targetPt == nowPt : now < 0) continue;
        // Off the shape it rests on now (which keeps the line when the other end stays on it).
        const int other = atStart ? line->EndSpNo() : line->StartSpNo();
        if (TMyShape* old = cad.GetShapeByNo(now); old && other != now) RemoveLinklineShape(old, lineNo);
        if (atStart) {
            line->SetStartSpNo(target ? target->ShapeNo() : -1);
            line->SetStartSpPtId(targetPt);
        } else {
            line->SetEndSpNo(target ? target->ShapeNo() : -1);
            line->SetEndSpPtId(targetPt);
        }
        if (target) AddLinklineShape(target, lineNo);
    }
}

void rejoin(TMyCAD& cad, const TUndoLink& link) {
    auto* line = shape_cast<TMyLinkLine>(cad.GetShapeByID(link.LineId));
    TMyShape* shape = cad.GetShapeByID(link.ShapeId);
    if (!line || !shape || link.PtId < 0 || link.PtId >= shape->GetLinkPointsCount()) return;
    if ((link.AtStart ? line->StartSpNo() : line->EndSpNo()) >= 0) return;
    if (link.AtStart) {
        line->SetStartSpNo(shape->ShapeNo());
        line->SetStartSpPtId(link.PtId);
    } else {
        line->SetEndSpNo(shape->ShapeNo());
        line->SetEndSpPtId(link.PtId);
    }
    AddLinklineShape(shape, uint32_t(line->ShapeNo()));
}

}  // namespace canvas_detail

// ---- Making connections -----------------------------------------------------------------------

int TMyCAD::CreateLink(const QString& name, TMyShape* startShape, int endPtId, TMyShape* endShape, int startPtId) {
    return createLink(name, startShape, endPtId, endShape, startPtId, nullptr);
}

int TMyCAD::createLink(const QString& name, TMyShape* startShape, int endPtId, TMyShape* endShape, int startPtId,
                       const TMyLine* looks) {
    if (!startShape || !endShape) return -1;
    if (startPtId < 0 || startPtId >= startShape->GetLinkPointsCount()) return -1;
    if (endPtId < 0 || endPtId >= endShape->GetLinkPointsCount()) return -1;
    if (GetShapeNoInMyShapes(startShape) < 0 || GetShapeNoInMyShapes(endShape) < 0) return -1;

    auto* line = new TMyLinkLine(this);
    m_currentShape = line;
    line->GetPath(startShape, startPtId, endShape, endPtId);
    line->SetName(name);
    line->SetShapeId(m_nextShapeId);
    line->SetShapeNo(GetShapesCount());
    line->SetLayerId(CurrentLayerId());
    line->SetStartSpNo(startShape->ShapeNo());
    line->SetStartSpPtId(startPtId);
    line->SetEndSpNo(endShape->ShapeNo());
    line->SetEndSpPtId(endPtId);
    line->Drawed({}, {});  // centre, and the caption below the route
    if (looks) {
        line->SetPen(*looks->Pen());
        line->SetArrowAngle(looks->ArrowAngle());
        line->SetArrowLength(looks->ArrowLength());
        line->SetArrowOffset(looks->ArrowOffset());
        line->SetArrowStyle(looks->ArrowStyle());
    }

    int result = -1;
    if (AddShape(line)) {
        AddLinklineShape(startShape, uint32_t(line->ShapeNo()));
        AddLinklineShape(endShape, uint32_t(line->ShapeNo()));
        TMyShape* added = line;
        if (OnShapeAdded) OnShapeAdded(added, GetShapesCount());
        PushtoUndoRedoShapeList({line}, QString::fromLatin1(ACT_ADD));
        result = line->GetShapeId();
        RemoveAllWorkingShapes();
        AddWorkingShapes(line);
    } else {
        delete line;
    }
    Invalidate();
    m_currentShape = nullptr;
    return result;
}

int TMyCAD::CreateAndDelete(TMyShape* line) {
    auto* plain = shape_cast<TMyLine>(line);
    if (!plain) return -1;
    TMyShape* start = GetShapeByNo(plain->StartSpNo());
    TMyShape* end = GetShapeByNo(plain->EndSpNo());
    if (!start || !end || start == end) return -1;
    const bool beingDrawn = m_currentShape == plain;
    // The connection keeps the looks the user drew the line with.
    const int id = createLink(QStringLiteral("Shape") + QString::number(m_nextShapeId), start, plain->EndSpPtId(),
                              end, plain->StartSpPtId(), plain);
    if (id < 0) return -1;
    if (GetShapeNoInMyShapes(plain) >= 0) {
        deleteShapes({plain}, false, true);
    } else if (beingDrawn) {
        delete plain;  // the canvas owns the shape it is drawing
    }
    return id;
}

// ---- Link points under the mouse ------------------------------------------------------------------

bool TMyCAD::InWhichShapeWhichHotLinkId(int& shapeNo, int& ptId, TPoint point) {
    shapeNo = -1;
    ptId = -1;
    std::unordered_set<const TMyShape*> selected;
    if (m_workingShapes.size() > 1) selected.insert(m_workingShapes.begin(), m_workingShapes.end());
    for (size_t i = 0; i < m_myShapes.size(); ++i) {
        const TMyShape* shape = m_myShapes[i];
        if (!shape || shape->GetLinkPointsCount() == 0 || selected.count(shape)) continue;
        if (const int id = shape->InWhichLinkHot(point); id >= 0) {
            shapeNo = int(i);
            ptId = id;
            return true;
        }
    }
    return false;
}

int TMyCAD::IsinHotLink(const TMyShape* shape, TPoint point) const {
    if (!shape) return -1;
    int found = -1;
    for (int i = 0; i < shape->GetLinkPointsCount(); ++i) {
        const TPoint p = MyPtToPt(shape->GetLinkPointInZoom(i));
        if (point.x >= p.x - 5 && point.x < p.x + 5 && point.y >= p.y - 5 && point.y < p.y + 5) found = i;
    }
    return found;
}

int TMyCAD::IsLinked(const TMyShape* shape1, const TMyShape* shape2) const {
    if (!shape1 || !shape2) return -1;
    const TMyShapeNo& second = shape2->LinkShapeNos();
    for (uint32_t no : shape1->LinkShapeNos())
        if (std::find(second.begin(), second.end(), no) != second.end())
            if (const TMyShape* line = GetShapeByNo(int(no))) return line->GetShapeId();
    return -1;
}

void TMyCAD::ClearAllLinkHot() {
    m_linkHotShapeNo = -1;
    m_linkHotPointIndex = 0;
}

// Stores the shape and link point under the point at one end of the line;
// when one is found the point moves onto that link point. Returns the
// former shape number of that end.
static int attachEnd(TMyCAD& cad, TMyLine* line, TLinkLineEndPoint end, TPoint& point, int& shapeNo) {
    int ptId = -1;
    const bool found = cad.InWhichShapeWhichHotLinkId(shapeNo, ptId, point);
    const int former = end == llStart ? line->StartSpNo() : line->EndSpNo();
    if (end == llStart) {
        line->SetStartSpNo(shapeNo);
        line->SetStartSpPtId(ptId);
    } else {
        line->SetEndSpNo(shapeNo);
        line->SetEndSpPtId(ptId);
    }
    if (found) point = MyPtToPt(cad.GetShapeByNo(shapeNo)->GetLinkPointInZoom(ptId));
    return former;
}

void TMyCAD::GetMainShape(TMyShape* linkLine, TLinkLineEndPoint end, TPoint& point) {
    auto* line = dynamic_cast<TMyLine*>(linkLine);
    if (!line) return;
    int shapeNo = -1;
    const int former = attachEnd(*this, line, end, point, shapeNo);
    if (line->ShapeNo() < 0) return;
    const uint32_t lineNo = uint32_t(line->ShapeNo());
    if (TMyShape* old = GetShapeByNo(former)) {
        // The other end may rest on the same shape, which then keeps the line.
        const int other = end == llStart ? line->EndSpNo() : line->StartSpNo();
        if (other != former) RemoveLinklineShape(old, lineNo);
    }
    if (TMyShape* now = GetShapeByNo(shapeNo)) AddLinklineShape(now, lineNo);
}

void TMyCAD::GetMergeShape(TMyShape* line, TLinkLineEndPoint end, TPoint& point) {
    auto* plain = dynamic_cast<TMyLine*>(line);
    if (!plain) return;
    int shapeNo = -1;
    attachEnd(*this, plain, end, point, shapeNo);
}

// ---- Routing again ----------------------------------------------------------------------------------

void TMyCAD::ChangeLinkShapes(TMyShape* shape) {
    if (!shape) return;
    std::vector<TMyLinkLine*> lines;
    auto take = [&](TMyShape* s) {
        auto* line = shape_cast<TMyLinkLine>(s);
        // A line with both ends free has nothing to follow.
        if (!line || (line->StartSpNo() < 0 && line->EndSpNo() < 0)) return;
        if (std::find(lines.begin(), lines.end(), line) == lines.end()) lines.push_back(line);
    };
    for (TMyShape* s : canvas_detail::shapeTree(*this, shape)) {
        take(s);
        for (uint32_t no : std::as_const(*s).LinkShapeNos()) take(GetShapeByNo(int(no)));
    }
    for (TMyLinkLine* line : lines) line->ReRoute();
}

std::vector<TMyRect> TMyCAD::RouteObstacles(const TMyRect& region, int layerId,
                                            const std::vector<const TMyShape*>& skip) {
    std::vector<TMyRect> boxes;
    if (!m_layers.IsVisible(layerId)) return boxes;
    const TRect pixels{int(std::floor(region.left * m_zoom)) - 1, int(std::floor(region.top * m_zoom)) - 1,
                       int(std::ceil(region.right * m_zoom)) + 2, int(std::ceil(region.bottom * m_zoom)) + 2};
    const std::vector<int> roots = rootsMeetingNow(pixels);
    for (int no : roots) {
        const TMyShape* shape = m_myShapes[size_t(no)];
        if (!shape || shape->HasParentShape() || shape->LayerId() != layerId || !shape->Visible()) continue;
        if (dynamic_cast<const TMyLine*>(shape) || std::find(skip.begin(), skip.end(), shape) != skip.end()) continue;
        const TMyRect box = shape->GetBounds();
        if (box.right < region.left || box.left > region.right || box.bottom < region.top || box.top > region.bottom)
            continue;
        boxes.push_back(box);
    }
    return boxes;
}

// ---- Splitting lines --------------------------------------------------------------------------------

bool TMyCAD::IsBreakLineByAPoint(TMyShape* line, TPoint point) {
    TMyLine* l = splittableLine(line);
    int before = -1;
    if (!l || !l->IsClickedMeBeforeWhichPoint(before, point)) return false;
    // Not on one of its points: that press would pick a handle instead.
    for (int i = 0; i < l->GetPointsCount(); ++i) {
        const TPoint p = MyPtToPt(l->GetPointInZoom(i));
        if (std::abs(p.x - point.x) <= m_hotSize && std::abs(p.y - point.y) <= m_hotSize) return false;
    }
    return true;
}

TMyShape* TMyCAD::BreakLineByAPoint(TMyShape* line, TPoint point, bool recordUndo) {
    if (!IsBreakLineByAPoint(line, point)) return nullptr;
    TMyLine* l = splittableLine(line);
    int before = -1;
    l->IsClickedMeBeforeWhichPoint(before, point);
    const TMyPoint p{float(point.x / m_zoom), float(point.y / m_zoom)};
    return splitLine(l, before, nearestOnSegment(l->GetPoint(before - 1), l->GetPoint(before), p), recordUndo);
}

TMyShape* TMyCAD::BreakLine(TMyShape* line, bool recordUndo) {
    TMyLine* l = splittableLine(line);
    if (!l) return nullptr;
    double total = 0;
    for (int i = 1; i < l->GetPointsCount(); ++i) total += GetLengthinPixel(l->GetPoint(i - 1), l->GetPoint(i));
    if (total <= 0) return nullptr;
    double walked = 0;
    for (int i = 1; i < l->GetPointsCount(); ++i) {
        const TMyPoint a = l->GetPoint(i - 1), b = l->GetPoint(i);
        const double length = GetLengthinPixel(a, b);
        if (walked + length >= total / 2 && length > 0) {
            const double t = (total / 2 - walked) / length;
            return splitLine(l, i, {float(a.x + t * (b.x - a.x)), float(a.y + t * (b.y - a.y))}, recordUndo);
        }
        walked += length;
    }
    return nullptr;
}

TMyShape* TMyCAD::splitLine(TMyLine* line, int before, TMyPoint at, bool recordUndo) {
    TMyShape* second = NewShapeOfClass(ShapeClassName(line), this);
    if (!second) return nullptr;
    if (recordUndo) PushtoUndoRedoShapeList({line}, QString::fromLatin1(ACT_CHANGE));
    const TArrMyPoint& pts = std::as_const(*line).Points();
    TArrMyPoint first(pts.begin(), pts.begin() + before);
    TArrMyPoint rest(pts.begin() + before, pts.end());
    first.push_back(at);
    rest.insert(rest.begin(), at);
    second->AssignWithoutRelation(line);
    second->SetPoints(rest);
    line->SetPoints(first);
    line->SetCenterPoint(line->ComputeCenterPoint());

    // The end attachment passes to the second part.
    auto* tail = static_cast<TMyLine*>(second);
    const int endNo = line->EndSpNo(), endPt = line->EndSpPtId();
    TMyShape* endShape = GetShapeByNo(endNo);
    const TMyShapeNo* endList = endShape ? &std::as_const(*endShape).LinkShapeNos() : nullptr;
    const bool listed = endList && std::find(endList->begin(), endList->end(), uint32_t(line->ShapeNo())) != endList->end();
    if (listed && endNo != line->StartSpNo()) RemoveLinklineShape(endShape, uint32_t(line->ShapeNo()));
    line->SetEndSpNo(-1);
    line->SetEndSpPtId(-1);
    if (!AddNewShape(second)) {
        delete second;
        return nullptr;
    }
    second->SetLayerId(line->LayerId());
    if (endShape) {
        tail->SetEndSpNo(endNo);
        tail->SetEndSpPtId(endPt);
        if (listed) AddLinklineShape(endShape, uint32_t(second->ShapeNo()));
    }
    if (recordUndo) PushtoUndoRedoShapeList({second}, QString::fromLatin1(ACT_ADD));
    Invalidate();
    return second;
}

}  // namespace faroven
