// TMyCAD: the selection and the region tests that painting and picking use.
#include "cad/canvas/mycad.h"

#include "cad/geometry/geometry.h"

#include <utility>

namespace faroven {

void TMyCAD::AddWorkingShapes(TMyShape* shape) {
    if (!shape) return;
    m_workingShapes.push_back(shape);
    Invalidate();
    emit selectionChanged();
}

void TMyCAD::RemoveWorkingShape(TMyShape* shape) {
    const int i = IsInWorkingShape(shape);
    if (i < 0) return;
    m_workingShapes.erase(m_workingShapes.begin() + i);
    Invalidate();
    emit selectionChanged();
}

void TMyCAD::RemoveAllWorkingShapes() {
    if (m_workingShapes.empty()) return;
    m_workingShapes.clear();
    Invalidate();
    emit selectionChanged();
}

int TMyCAD::IsInWorkingShape(const TMyShape* shape) const {
    for (size_t i = 0; i < m_workingShapes.size(); ++i)
        if (m_workingShapes[i] == shape) return int(i);
    return -1;
}

TMyRect TMyCAD::zoomedBounds(TMyShape* shape) const {
    const TMyRect r = GetPointsLTRB(shape->Points());
    return TMyRect{float(r.left * m_zoom), float(r.top * m_zoom), float(r.right * m_zoom), float(r.bottom * m_zoom)};
}

bool TMyCAD::IsPtinRegion(const TRect& rect, TMyShape* shape) {
    return anyPointIn(rect, shape);
}

bool TMyCAD::anyPointIn(const TRect& rect, TMyShape* shape) {
    if (!shape) return false;
    for (int i = 0; i < shape->GetPointsCount(); ++i)
        if (PtInRect(rect, MyPtToPt(shape->GetPointInZoom(i)))) return true;
    for (int child : std::as_const(*shape).ChildShapeNos())
        if (TMyShape* c = GetShapeByNo(child); c && c != shape && anyPointIn(rect, c)) return true;
    return false;
}

bool TMyCAD::IsShapeBigthanRegion(const TRect& rect, TMyShape* shape) {
    if (!shape || shape->GetPointsCount() == 0) return false;
    const TRect b = myRecttoRect(zoomedBounds(shape));
    return b.left <= rect.left && b.top <= rect.top && b.right >= rect.right && b.bottom >= rect.bottom;
}

bool TMyCAD::IsInRegion(TPoint p1, TPoint p2, TMyShape* shape) {
    TMyShape* root = GetRootParentShape(shape);
    if (!root || root->GetPointsCount() == 0) return false;
    const TMyRect b = zoomedBounds(root);
    return std::min(p1.x, p2.x) <= b.left && std::min(p1.y, p2.y) <= b.top && std::max(p1.x, p2.x) >= b.right &&
           std::max(p1.y, p2.y) >= b.bottom;
}

bool TMyCAD::IsClickedMeforShape(TCanvas* canvas, TMyShape* shape, TPoint point) {
    if (!shape || !shape->Visible()) return false;
    if (shape->IsClickedMe(canvas, point)) return true;
    for (int child : std::as_const(*shape).ChildShapeNos())
        if (TMyShape* c = GetShapeByNo(child); c && c != shape && IsClickedMeforShape(canvas, c, point)) return true;
    return false;
}

}  // namespace faroven
