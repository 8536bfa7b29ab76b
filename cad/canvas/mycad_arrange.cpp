// TMyCAD: arranging existing shapes: grouping, z-order, swapping, alignment
// and even spacing, flipping, locking and resizing by code, and applying a
// move or a resize to a shape together with its members.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/shape_factory.h"

#include <algorithm>
#include <numeric>
#include <unordered_set>

namespace faroven {

// ---- Bounds of a set of shapes ----------------------------------------------------------------

TMyRect TMyCAD::GetShapesLTRB(const std::vector<TMyShape*>& shapes, int lastIndex) const {
    TArrMyPoint corners;
    const size_t count = lastIndex < 0 ? shapes.size() : std::min(shapes.size(), size_t(lastIndex) + 1);
    for (size_t i = 0; i < count; ++i) {
        if (!shapes[i] || shapes[i]->GetPointsCount() == 0) continue;
        const TMyRect b = shapes[i]->GetBounds();
        corners.push_back({b.left, b.top});
        corners.push_back({b.right, b.bottom});
    }
    return GetPointsLTRB(corners);
}

TMyRect TMyCAD::GetShapesLTRBinZoom(const std::vector<TMyShape*>& shapes, int lastIndex) const {
    const TMyRect r = GetShapesLTRB(shapes, lastIndex);
    const float z = float(m_zoom);
    return TMyRect{r.left * z, r.top * z, r.right * z, r.bottom * z};
}

// ---- Applying an edit to a shape and its members -------------------------------------------

void TMyCAD::DragChangeValueDxDyforShapes(TMyShape* shape, double dx, double dy) {
    if (!shape) return;
    const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
    for (TMyShape* s : tree) s->DragChangeValuedxdy(dx, dy);
}

void TMyCAD::SizeChangeValueforShapes(TMyShape* shape, TPoint from, TPoint to) {
    if (!shape) return;
    const TMyRect before = shape->GetBounds();
    shape->SizeChangeValue(from, to);
    if (!shape->HasChildShapes()) return;
    // Members follow the change of the box: scaled about its old corner, then
    // moved to its new one.
    const TMyRect after = shape->GetBounds();
    const double w = double(before.right) - before.left, h = double(before.bottom) - before.top;
    const double sx = w != 0 ? (double(after.right) - after.left) / w : 1.0;
    const double sy = h != 0 ? (double(after.bottom) - after.top) / h : 1.0;
    const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
    for (size_t i = 1; i < tree.size(); ++i) {
        tree[i]->SizeChangeValueByScale(sx, sy, TMyPoint{before.left, before.top});
        tree[i]->DragChangeValuedxdy(double(after.left) - before.left, double(after.top) - before.top);
    }
}

// ---- Grouping ---------------------------------------------------------------------------------

int TMyCAD::GroupShapes(const std::vector<TMyShape*>& shapes, bool recordUndo) {
    return groupShapes(shapes, recordUndo, QStringLiteral("TMyGroup"));
}

int TMyCAD::groupShapes(const std::vector<TMyShape*>& shapes, bool recordUndo, const QString& groupClass) {
    if (shapes.empty() || !shapes.front()) return -1;
    // Members must be visible root shapes of this drawing, on one layer.
    std::vector<TMyShape*> members;
    std::unordered_set<TMyShape*> seen;
    for (TMyShape* s : shapes) {
        if (!s || s->LayerId() != shapes.front()->LayerId() || !s->Visible() || s->HasParentShape() ||
            GetShapeByNo(s->ShapeNo()) != s)
            return -1;
        if (seen.insert(s).second) members.push_back(s);
    }

    const TMyRect box = GetShapesLTRB(members);
    TMyShape* made = NewShapeOfClass(groupClass, this);
    auto* group = dynamic_cast<TMyGroup*>(made);
    if (!group) {
        delete made;
        group = new TMyGroup(this);
    }
    group->SetLayerId(members.front()->LayerId());
    group->AddPoint({box.left, box.top});
    group->AddPoint({box.right, box.top});
    group->AddPoint({box.right, box.bottom});
    group->AddPoint({box.left, box.bottom});
    const int id = m_nextShapeId;
    group->SetShapeNo(GetShapesCount());
    group->SetShapeId(id);
    group->SetName(QStringLiteral("Shape%1").arg(id));
    std::vector<int32_t> children;
    for (TMyShape* s : members) children.push_back(s->ShapeNo());
    std::sort(children.begin(), children.end());
    group->SetChildShapeNos(children);
    for (TMyShape* s : members) s->SetParentShapeNo(group->ShapeNo());
    const TMyPoint centre = group->ComputeCenterPoint();
    group->SetCenterPoint(centre);
    group->SetTextPoint({centre.x, box.bottom + 10});
    group->SetParentShapeNo(-1);
    AddShape(group, true, false);

    if (recordUndo) PushtoUndoRedoShapeList({group}, QString::fromLatin1(ACT_GROUP));
    RemoveAllWorkingShapes();
    AddWorkingShapes(group);
    m_currentShape = group;
    Invalidate();
    return id;
}

void TMyCAD::UnGroupShape(TMyShape* group, bool recordUndo) {
    // Only a root group can be taken apart; a locked one stays as it is.
    if (!group || !group->HasChildShapes() || group->HasParentShape() || group->Locked() ||
        GetShapeByNo(group->ShapeNo()) != group)
        return;
    m_busy = true;
    RemoveAllWorkingShapes();
    if (recordUndo) PushtoUndoRedoShapeList({group}, QString::fromLatin1(ACT_UNGROUP));
    for (int no : std::as_const(*group).ChildShapeNos())
        if (TMyShape* member = GetShapeByNo(no); member && member != group) member->SetParentShapeNo(-1);
    group->SetChildShapeNos({});
    deleteShapes({group}, false);
    Invalidate();
    m_busy = false;
}

bool TMyCAD::areTheyBrother(const TMyShape* a, const TMyShape* b) const {
    return a && b && a->HasParentShape() && b->HasParentShape() && a->ParentShapeNo() == b->ParentShapeNo();
}

// ---- Z-order ------------------------------------------------------------------------------------

bool TMyCAD::isRootInList(const TMyShape* shape) const {
    return shape && !shape->HasParentShape() && GetShapeByNo(shape->ShapeNo()) == shape;
}

void TMyCAD::stepAcrossRoot(TMyShape* shape, bool toFront, bool recordUndo) {
    if (!isRootInList(shape)) return;
    TMyShape* neighbour =
        toFront ? GetNextSingleorRootShape(shape->ShapeNo()) : GetPrevSingleorRootShape(shape->ShapeNo());
    if (!neighbour) return;
    SwapShape(shape, neighbour);
    Invalidate();
    if (recordUndo)
        PushtoUndoRedoShapeList({shape}, QString::fromLatin1(toFront ? ACT_BRINGTOFRONTBYSTEP : ACT_SENDTOBACKBYSTEP));
}

void TMyCAD::BringToFrontByStep(TMyShape* shape, bool recordUndo) { stepAcrossRoot(shape, true, recordUndo); }
void TMyCAD::SendToBackByStep(TMyShape* shape, bool recordUndo) { stepAcrossRoot(shape, false, recordUndo); }

// Swapping with each next root in turn moves the shape to the last root's
// place and every root it passed one root place back; members stay. That
// permutation is applied in one renumbering instead of one per swap.
void TMyCAD::moveAcrossRoots(TMyShape* shape, bool toFront, bool recordUndo) {
    if (!isRootInList(shape)) return;
    const int from = shape->ShapeNo();
    std::vector<int> places;  // root places the shape passes, in passing order
    if (toFront) {
        for (int i = from + 1; i < GetShapesCount(); ++i)
            if (m_myShapes[size_t(i)] && !m_myShapes[size_t(i)]->HasParentShape()) places.push_back(i);
    } else {
        for (int i = from - 1; i >= 0; --i)
            if (m_myShapes[size_t(i)] && !m_myShapes[size_t(i)]->HasParentShape()) places.push_back(i);
    }
    std::vector<int> oldToNew(m_myShapes.size());
    std::iota(oldToNew.begin(), oldToNew.end(), 0);
    oldToNew[size_t(from)] = places.empty() ? from : places.back();
    int previous = from;
    for (int place : places) {
        oldToNew[size_t(place)] = previous;
        previous = place;
    }
    if (!places.empty()) remapShapeNumbers(oldToNew);
    Invalidate();
    // Recorded even when the shape was already in front (at the back).
    if (recordUndo) PushtoUndoRedoShapeList({shape}, QString::fromLatin1(toFront ? ACT_BRINGTOFRONT : ACT_SENDTOBACK));
}

void TMyCAD::BringToFront(TMyShape* shape, bool recordUndo) { moveAcrossRoots(shape, true, recordUndo); }
void TMyCAD::SendToBack(TMyShape* shape, bool recordUndo) { moveAcrossRoots(shape, false, recordUndo); }

void TMyCAD::SwapShape(TMyShape* a, TMyShape* b) {
    if (!a || !b || a == b) return;
    const int i = a->ShapeNo(), j = b->ShapeNo();
    if (GetShapeByNo(i) != a || GetShapeByNo(j) != b) return;
    std::vector<int> oldToNew(m_myShapes.size());
    std::iota(oldToNew.begin(), oldToNew.end(), 0);
    std::swap(oldToNew[size_t(i)], oldToNew[size_t(j)]);
    remapShapeNumbers(oldToNew);
    Invalidate();
}

// ---- Alignment and spacing ---------------------------------------------------------------------

void TMyCAD::alignWorkingShapes(TMyPoint (*target)(const TMyRect& box, const TMyRect& own)) {
    if (m_workingShapes.size() < 2) return;
    const std::vector<TMyShape*> shapes = m_workingShapes;
    PushtoUndoRedoShapeList(shapes, QString::fromLatin1(ACT_CHANGE));
    const TMyRect box = GetShapesLTRB(shapes);
    for (TMyShape* shape : shapes) {
        const TMyPoint offset = target(box, shape->GetBounds());
        DragChangeValueDxDyforShapes(shape, offset.x, offset.y);
        ChangeLinkShapes(shape);
    }
    Invalidate();
}

void TMyCAD::AlignLeft() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) { return TMyPoint{box.left - own.left, 0}; });
}

void TMyCAD::AlignRight() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) { return TMyPoint{box.right - own.right, 0}; });
}

void TMyCAD::AlignTop() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) { return TMyPoint{0, box.top - own.top}; });
}

void TMyCAD::AlignBottom() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) { return TMyPoint{0, box.bottom - own.bottom}; });
}

void TMyCAD::AlignHorizontalCenter() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) {
        return TMyPoint{(box.left + box.right) / 2 - (own.left + own.right) / 2, 0};
    });
}

void TMyCAD::AlignVerticalCenter() {
    alignWorkingShapes([](const TMyRect& box, const TMyRect& own) {
        return TMyPoint{0, (box.top + box.bottom) / 2 - (own.top + own.bottom) / 2};
    });
}

// Equal gaps between neighbouring boxes: the first and the last shape (by
// their near edge) stay, the others are moved along one axis.
void TMyCAD::spreadEvenly(const std::vector<TMyShape*>& shapes, bool vertical) {
    std::vector<TMyShape*> list;
    for (TMyShape* s : shapes)
        if (s && s->GetPointsCount() > 0) list.push_back(s);
    if (list.size() < 3) return;
    auto nearEdge = [vertical](TMyShape* s) { return vertical ? s->GetBounds().top : s->GetBounds().left; };
    auto extent = [vertical](TMyShape* s) {
        const TMyRect b = s->GetBounds();
        return double(vertical ? b.bottom - b.top : b.right - b.left);
    };
    std::stable_sort(list.begin(), list.end(), [&](TMyShape* a, TMyShape* b) { return nearEdge(a) < nearEdge(b); });
    double inner = 0;
    for (size_t i = 1; i + 1 < list.size(); ++i) inner += extent(list[i]);
    const double start = nearEdge(list.front()) + extent(list.front());
    const double gap = (nearEdge(list.back()) - start - inner) / double(list.size() - 1);
    double position = start + gap;
    for (size_t i = 1; i + 1 < list.size(); ++i) {
        const double delta = position - nearEdge(list[i]);
        DragChangeValueDxDyforShapes(list[i], vertical ? 0 : delta, vertical ? delta : 0);
        ChangeLinkShapes(list[i]);
        position += extent(list[i]) + gap;
    }
    Invalidate();
}

void TMyCAD::AverageHeight(const std::vector<TMyShape*>& shapes) { spreadEvenly(shapes, true); }

void TMyCAD::AverageWidth(const std::vector<TMyShape*>& shapes) { spreadEvenly(shapes, false); }

// ---- Flipping, locking, resizing by code ---------------------------------------------------------

// Each shape mirrors itself; its members are mirrored about the same line,
// so that a group flips as one figure. Link lines are left alone.
void TMyCAD::flipShapes(const std::vector<TMyShape*>& shapes, bool horizontal) {
    std::vector<TMyShape*> flipped;
    for (TMyShape* s : shapes)
        if (s && s->kind() != TShapeKind::LinkLine) flipped.push_back(s);
    if (flipped.empty()) return;
    PushtoUndoRedoShapeList(flipped, QString::fromLatin1(ACT_CHANGE));
    for (TMyShape* shape : flipped) {
        const TMyPoint axis = shape->GetCenterPoint();
        const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
        for (TMyShape* s : tree) {
            const TMyPoint own = s->GetCenterPoint();
            if (horizontal) {
                s->FlipHoriz();
                if (s != shape) s->DragChangeValuedxdy(2.0 * (double(axis.x) - own.x), 0);
            } else {
                s->FlipVert();
                if (s != shape) s->DragChangeValuedxdy(0, 2.0 * (double(axis.y) - own.y));
            }
        }
        ChangeLinkShapes(shape);
    }
    Invalidate();
}

void TMyCAD::FlipHoriz(TMyShape* shape) { flipShapes({shape}, true); }
void TMyCAD::FlipVert(TMyShape* shape) { flipShapes({shape}, false); }
void TMyCAD::FlipHoriz(const std::vector<TMyShape*>& shapes) { flipShapes(shapes, true); }
void TMyCAD::FlipVert(const std::vector<TMyShape*>& shapes) { flipShapes(shapes, false); }

void TMyCAD::LockUnLockforShapes(TMyShape* shape, bool locked) {
    if (!shape) return;
    const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
    for (TMyShape* s : tree) s->SetLocked(locked);
    Invalidate();
}

void TMyCAD::SizeShape(TMyShape* shape, int hotIndex, TPoint target) {
    if (!shape || hotIndex < 0) return;
    shape->SetHotIndex(hotIndex);
    // Rectangle-family hot indices from 4 on are the side handles; the point
    // the resize starts from is then index - 4.
    const int pointIndex = dynamic_cast<TMyRectangle*>(shape) && hotIndex >= 4 ? hotIndex - 4 : hotIndex;
    const TPoint from = MyPtToPt(shape->GetPointInZoom(pointIndex));
    SizeChangeValueforShapes(shape, from, target);
    ChangeLinkShapes(shape);
    Invalidate();
}

}  // namespace faroven
