// TMyCAD: construction and destruction, property setters, the shape registry.
#include "cad/canvas/mycad.h"

#include "cad/geometry/markers.h"
#include "cad/shapes/shape_factory.h"
#include "platform/system.h"

#include <QLabel>

namespace faroven {

TMyCAD::TMyCAD(QWidget* owner) : TGraphicControl(owner) {
    SetControlStyle((ControlStyle() | csOpaque) & ~TControlStyle(csReplicatable));
    m_grid.OnChange = [this](TObject*) { Invalidate(); };
    m_bkBitmap.OnChange = [this](TObject*) { Invalidate(); };
    SetBkBitmapMode(Center);
    SetPageStyle(A4);
    NewLayer(QStringLiteral("Layer0"), true);
    m_preZoom = m_zoom;
    SetCursor(crCross);
    setFocusPolicy(Qt::StrongFocus);
}

TMyCAD::~TMyCAD() {
    EndTextInput(false);
    m_workingShapes.clear();
    m_currentShape = nullptr;
    m_drawnShape.reset();
    for (TMyShape* shape : m_memShapes) delete shape;
    m_memShapes.clear();
    for (TMyShape* shape : m_myShapes) delete shape;
    m_myShapes.clear();
    m_undo.Clear();
    // The layers go without OnDeleteLayer: the owner is being torn down too.
    while (m_layers.Count() > 0) m_layers.RemoveAt(0);
}

// ---- Property setters that repaint ---------------------------------------------------------

void TMyCAD::SetBkBitmap(const TBitmap& v) {
    m_bkBitmap.Assign(v);
    Invalidate();
}

void TMyCAD::SetBkBitmapMode(TBkBitmapMode v) {
    m_bkBitmapMode = v;
    Invalidate();
}

void TMyCAD::SetColorOfBackGround(TColor v) {
    m_colorOfBackGround = v;
    Invalidate();
}

void TMyCAD::SetColorOfHot(TColor v) {
    m_colorOfHot = v;
    SetHotColor(v);
    Invalidate();
}

void TMyCAD::SetHotShow(bool v) {
    m_hotShow = v;
    Invalidate();
}

void TMyCAD::SetHotSize(int v) {
    m_hotSize = uint8_t(v);
    Invalidate();
}

void TMyCAD::SetLabelValue(QLabel* v) {
    m_labelValue = v;
    FreeNotification(v);
}

void TMyCAD::SetLabelXY(QLabel* v) {
    m_labelXY = v;
    FreeNotification(v);
}

void TMyCAD::SetPageFoot(const QString& v) {
    m_pageFoot = v;
    Invalidate();
}

void TMyCAD::SetPageFootAlignment(TAlignment v) {
    m_pageFootAlignment = v;
    Invalidate();
}

void TMyCAD::SetPageFootToBottom(int v) {
    m_pageFootToBottom = uint8_t(v);
    Invalidate();
}

void TMyCAD::SetPageHead(const QString& v) {
    m_pageHead = v;
    Invalidate();
}

void TMyCAD::SetPageHeadAlignment(TAlignment v) {
    m_pageHeadAlignment = v;
    Invalidate();
}

void TMyCAD::SetPageHeadToTop(int v) {
    m_pageHeadToTop = uint8_t(v);
    Invalidate();
}

void TMyCAD::SetShowHotLink(bool v) {
    m_showHotLink = v;
    Invalidate();
}

void TMyCAD::SetUnit(TUnits v) {
    m_theUnit = v;
    Invalidate();
}

void TMyCAD::SetShapeTool(TDrawTool tool) {
    // A shape half drawn with the former tool is dropped.
    CancelMouseEdit();
    m_shapeTool = tool;
    switch (tool) {
    case SpSelecting: m_action = dtSelecting; break;
    case SpRotateSelecting: m_action = dtRotateSelecting; break;
    case SpClose: m_action = dtClose; break;
    case SpPolylinePolygonPointRemoving: m_action = dtPolylinePolygonPointRemoving; break;
    case SpPolylinePolygonPointAdding: m_action = dtPolylinePolygonPointAdding; break;
    case SpDragWhole: m_action = dtDragWhole; break;
    case SpBrowse: m_action = dtBrowse; break;
    default:
        // Every other tool draws a new shape.
        m_action = dtDrawing;
        m_currentShape = nullptr;
        ClearAllLinkHot();
        break;
    }
    Invalidate();
}

void TMyCAD::Notification(QObject* component, TOperation operation) {
    if (operation != opRemove) return;
    // Compared as QObject pointers: the label is already half destroyed.
    if (component == static_cast<QObject*>(m_labelValue)) m_labelValue = nullptr;
    if (component == static_cast<QObject*>(m_labelXY)) m_labelXY = nullptr;
}

void TMyCAD::ShapeChanged(TMyShape* shape) {
    if (shape) markShapeDirty(shape);
    if (!m_painting) Invalidate();
}

// ---- Registry -------------------------------------------------------------------------------

bool TMyCAD::AddShape(TMyShape* shape, bool keepLayer, bool noCount) {
    if (!shape) return false;
    if (m_layers.Count() == 0) {
        FatalExit(QStringLiteral("Error!There is no Layer!"));
        return false;
    }
    m_myShapes.push_back(shape);
    m_idIndex.Appended(shape);
    if (!keepLayer) shape->SetLayerId(m_layers.CurrentId());
    if (!noCount) ++m_nextShapeId;
    Invalidate();
    return true;
}

void TMyCAD::SetShapesCountForLoad(int count) {
    m_myShapes.resize(size_t(std::max(count, 0)), nullptr);
    shapeIdsChanged();
}

bool TMyCAD::AddShapeforLoadfromStream(int index, TMyShape* shape, bool noCount) {
    if (m_layers.Count() == 0) {
        FatalExit(QStringLiteral("Error!There is no Layer!"));
        return false;
    }
    if (!shape || index < 0 || index >= GetShapesCount()) return false;
    m_myShapes[size_t(index)] = shape;
    shapeIdsChanged();
    if (!noCount) ++m_nextShapeId;
    return true;
}

bool TMyCAD::AddNewShape(TMyShape* shape) {
    if (!shape) return false;
    shape->SetShapeNo(GetShapesCount());
    shape->SetShapeId(m_nextShapeId);
    shape->SetName(QStringLiteral("Shape%1").arg(m_nextShapeId));
    // A shape made by code turns about its middle, as one drawn with the mouse does.
    shape->SetCenterPoint(shape->ComputeCenterPoint());
    return AddShape(shape, false, false);
}

TMyShape* TMyCAD::CreateShapeByName(const QString& className, TMyCAD* canvas) const {
    return NewShapeOfClass(className, canvas ? canvas : const_cast<TMyCAD*>(this));
}

TMyShape* TMyCAD::GetShapeByNo(int no) const {
    if (no < 0 || no >= GetShapesCount()) return nullptr;
    return m_myShapes[size_t(no)];
}

TMyShape* TMyCAD::GetShapeByID(int id) const {
    if (id < 0 || id >= m_nextShapeId) return nullptr;
    for (TMyShape* shape : m_myShapes)
        if (shape && shape->GetShapeId() == id) return shape;
    return nullptr;
}

TMyShape* TMyCAD::GetShapeByName(const QString& name) const {
    for (TMyShape* shape : m_myShapes)
        if (shape && shape->Name() == name) return shape;
    return nullptr;
}

int TMyCAD::GetShapeNoById(int id) const { return m_idIndex.NumberOf(id, m_myShapes); }

void TMyCAD::shapeIdsChanged() { m_idIndex.Invalidate(); }

void TMyCAD::shapeIdChanged(TMyShape* shape) {
    if (GetShapeByNo(shape->ShapeNo()) == shape) shapeIdsChanged();
}

int TMyCAD::GetShapeNoInMyShapes(const TMyShape* shape) const {
    for (size_t i = 0; i < m_myShapes.size(); ++i)
        if (m_myShapes[i] == shape) return int(i);
    return -1;
}

TMyShape* TMyCAD::GetRootParentShape(TMyShape* shape) const {
    // A damaged file could make the parent chain loop; it cannot be longer than the list.
    for (int steps = 0; shape && shape->HasParentShape() && steps <= GetShapesCount(); ++steps) {
        TMyShape* parent = GetShapeByNo(shape->ParentShapeNo());
        if (!parent) break;
        shape = parent;
    }
    return shape;
}

TMyShape* TMyCAD::GetNextSingleorRootShape(int no) const {
    for (int i = std::max(no + 1, 0); i < GetShapesCount(); ++i)
        if (m_myShapes[size_t(i)] && !m_myShapes[size_t(i)]->HasParentShape()) return m_myShapes[size_t(i)];
    return nullptr;
}

TMyShape* TMyCAD::GetPrevSingleorRootShape(int no) const {
    for (int i = std::min(no - 1, GetShapesCount() - 1); i >= 0; --i)
        if (m_myShapes[size_t(i)] && !m_myShapes[size_t(i)]->HasParentShape()) return m_myShapes[size_t(i)];
    return nullptr;
}

TMyShape* TMyCAD::GetSelectedShape() const {
    return m_workingShapes.size() == 1 ? m_workingShapes.front() : nullptr;
}

}  // namespace faroven
