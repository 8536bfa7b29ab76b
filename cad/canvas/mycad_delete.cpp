// TMyCAD: deleting shapes, and remapShapeNumbers, the one place where
// MyShapes is reordered or shortened and every number reference between
// shapes (parent, members, attached link lines, a link line's ends) follows.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include <stdexcept>
#include <unordered_set>

namespace faroven {

std::vector<TMyShape*> TMyCAD::remapShapeNumbers(const std::vector<int>& oldToNew) {
    const size_t count = m_myShapes.size();
    if (oldToNew.size() != count)
        throw std::invalid_argument("TMyCAD::remapShapeNumbers: the map has " + std::to_string(oldToNew.size()) +
                                    " entries for " + std::to_string(count) + " shapes");
    size_t kept = 0;
    for (int target : oldToNew) {
        if (target < -1)
            throw std::invalid_argument("TMyCAD::remapShapeNumbers: " + std::to_string(target) +
                                        " is neither a shape number nor -1");
        if (target >= 0) ++kept;
    }
    // Every kept shape needs a slot of its own in 0..kept-1.
    std::vector<TMyShape*> next(kept, nullptr);
    std::vector<bool> taken(kept, false);
    for (size_t i = 0; i < count; ++i) {
        const int target = oldToNew[i];
        if (target < 0) continue;
        if (size_t(target) >= kept || taken[size_t(target)])
            throw std::invalid_argument("TMyCAD::remapShapeNumbers: new number " + std::to_string(target) +
                                        " of shape " + std::to_string(i) + " is out of range or given twice");
        taken[size_t(target)] = true;
    }

    std::vector<TMyShape*> removed;
    for (size_t i = 0; i < count; ++i) {
        if (oldToNew[i] < 0) {
            if (m_myShapes[i]) removed.push_back(m_myShapes[i]);
        } else {
            next[size_t(oldToNew[i])] = m_myShapes[i];
        }
    }
    m_myShapes.swap(next);
    for (const TMyShape* shape : removed) m_idIndex.Removed(shape);
    for (size_t i = 0; i < m_myShapes.size(); ++i) {
        TMyShape* shape = m_myShapes[i];
        if (!shape) continue;
        shape->SetShapeNo(int(i));
        shape->remapShapeNos(oldToNew);
    }

    // The canvas's own numbers.
    m_linkHotShapeNo = MapShapeNo(oldToNew, m_linkHotShapeNo);
    if (m_linkHotShapeNo < 0) m_linkHotPointIndex = 0;
    std::vector<int> painted;
    for (int no : m_paintedShapes)
        if (const int mapped = MapShapeNo(oldToNew, no); mapped >= 0) painted.push_back(mapped);
    m_paintedShapes.swap(painted);
    return removed;
}

bool canvas_detail::isConnectorPoint(const TMyShape* shape) { return shape->kind() == TShapeKind::LineLinkLine; }

std::vector<TMyShape*> canvas_detail::shapeTree(const TMyCAD& cad, TMyShape* shape) {
    std::vector<TMyShape*> out;
    std::unordered_set<TMyShape*> seen;
    std::vector<TMyShape*> stack{shape};
    while (!stack.empty()) {
        TMyShape* s = stack.back();
        stack.pop_back();
        if (!s || !seen.insert(s).second) continue;
        out.push_back(s);
        const std::vector<int32_t>& children = s->ChildShapeNos();
        for (size_t i = children.size(); i-- > 0;) stack.push_back(cad.GetShapeByNo(children[i]));
    }
    return out;
}

void TMyCAD::recordDeletion(const std::vector<TMyShape*>& shapes) {
    PushtoUndoRedoShapeList(shapes, QString::fromLatin1(ACT_DELETE));
}

bool TMyCAD::DeleteShapeById(int id, bool recordUndo) {
    if (id < 0) return false;
    // The last shape carrying the id (the id table checks that the shape
    // still sits at its number, so a stale number cannot pick another).
    TMyShape* shape = GetShapeByNo(GetShapeNoById(id));
    return shape && deleteShapes({shape}, recordUndo);
}

bool TMyCAD::deleteShapes(const std::vector<TMyShape*>& roots, bool recordUndo, bool evenLocked) {
    bool all = true;
    std::vector<TMyShape*> chosen;
    for (TMyShape* shape : roots) {
        if (!shape) continue;
        if (shape->Locked() && !evenLocked)
            all = false;
        else
            chosen.push_back(shape);
    }
    if (chosen.empty()) return all && !roots.empty();
    if (recordUndo) recordDeletion(chosen);

    // Each shape with its members, once even when a member was given as well.
    std::vector<TMyShape*> doomed;
    for (TMyShape* shape : chosen)
        for (TMyShape* s : canvas_detail::shapeTree(*this, shape)) doomed.push_back(s);
    std::unordered_set<TMyShape*> gone;
    std::vector<TMyShape*> ordered;
    for (TMyShape* s : doomed)
        if (gone.insert(s).second) ordered.push_back(s);

    const size_t selectedBefore = m_workingShapes.size();
    for (size_t i = m_workingShapes.size(); i-- > 0;)
        if (gone.count(m_workingShapes[i])) m_workingShapes.erase(m_workingShapes.begin() + long(i));
    if (gone.count(m_currentShape)) m_currentShape = nullptr;
    if (gone.count(m_hoverShape)) m_hoverShape = nullptr;
    forgetMouseShapes([&](TMyShape* s) { return gone.count(s) > 0; });

    std::vector<int> oldToNew(m_myShapes.size());
    int next = 0;
    for (size_t i = 0; i < m_myShapes.size(); ++i) oldToNew[i] = gone.count(m_myShapes[i]) ? -1 : next++;
    remapShapeNumbers(oldToNew);

    // The shapes have left the drawing: a handler that edits the drawing
    // cannot reach them, and they are still alive while it runs.
    for (TMyShape* s : ordered)
        if (OnShapeDeleted) OnShapeDeleted(s);
    for (TMyShape* s : ordered) delete s;
    Invalidate();
    if (m_workingShapes.size() != selectedBefore) emit selectionChanged();
    return all;
}

// Every selected shape that is not Locked goes, as one step; a selected
// member of a selected group goes with the group.
void TMyCAD::DeleteSelectedShapes() {
    const std::vector<TMyShape*> selected = m_workingShapes;
    deleteShapes(selected, true);
}

void TMyCAD::DeleteAllShapes() {
    const bool hadSelection = !m_workingShapes.empty();
    m_workingShapes.clear();
    m_currentShape = nullptr;
    m_hoverShape = nullptr;
    forgetMouseShapes([](TMyShape*) { return true; });
    m_linkHotShapeNo = -1;
    m_linkHotPointIndex = 0;
    m_paintedShapes.clear();
    std::vector<TMyShape*> shapes;
    shapes.swap(m_myShapes);
    shapeIdsChanged();
    for (TMyShape* shape : shapes) delete shape;
    m_nextShapeId = 0;
    Invalidate();
    if (hadSelection) emit selectionChanged();
}

}  // namespace faroven
