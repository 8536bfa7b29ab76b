// TMyCAD: the keyboard and the wheel. Arrows nudge the selection (one pixel,
// or a grid step with Shift) as one undo step each; Delete deletes it; Escape
// cancels the shape being drawn or the edit in progress; Ctrl+A selects the
// current layer. Ctrl+wheel zooms about the mouse, keeping the point under it
// in place when the canvas sits in a scroll area.
#include "cad/canvas/mycad.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace faroven {

namespace {
constexpr double kWheelZoomStep = 1.25;
constexpr double kMinZoom = 0.05, kMaxZoom = 32;
}  // namespace

void TMyCAD::SetKeyboardEditing(bool v) {
    m_keyboardEditing = v;
    setFocusPolicy(v ? Qt::StrongFocus : Qt::NoFocus);
}

bool TMyCAD::HandleKey(int key, Qt::KeyboardModifiers modifiers) {
    if (!m_keyboardEditing) return false;
    if (key == Qt::Key_Escape) {
        if (!m_drawnShape && !m_mousePressed) return false;
        CancelMouseEdit();
        return true;
    }
    if (m_mousePressed || m_drawnShape) return false;
    if (key == Qt::Key_A && (modifiers & Qt::ControlModifier)) {
        SelectAllShapesByLayerId(CurrentLayerId());
        return true;
    }
    if (m_workingShapes.empty()) return false;
    if (key == Qt::Key_Delete) {
        DeleteSelectedShapes();
        return true;
    }
    int dx = 0, dy = 0;
    switch (key) {
    case Qt::Key_Left: dx = -1; break;
    case Qt::Key_Right: dx = 1; break;
    case Qt::Key_Up: dy = -1; break;
    case Qt::Key_Down: dy = 1; break;
    default: return false;
    }
    // One control pixel, or with Shift one grid step, in drawing units.
    const bool grid = modifiers & Qt::ShiftModifier;
    const double stepX = grid ? m_grid.GridWidth() : 1.0 / m_zoom;
    const double stepY = grid ? m_grid.GridHeight() : 1.0 / m_zoom;
    std::vector<TMyShape*> moving;
    for (TMyShape* s : m_workingShapes)
        if (!s->Locked() && s->DragEnable()) moving.push_back(s);
    if (moving.empty()) return true;
    PushtoUndoRedoShapeList(moving, QStringLiteral("ACT_CHANGE"));
    for (TMyShape* s : moving) DragChangeValueDxDyforShapes(s, dx * stepX, dy * stepY);
    for (TMyShape* s : moving) ChangeLinkShapes(s);
    m_changed = true;
    Invalidate();
    return true;
}

void TMyCAD::keyPressEvent(QKeyEvent* event) {
    if (HandleKey(event->key(), event->modifiers()))
        event->accept();
    else
        TGraphicControl::keyPressEvent(event);
}

void TMyCAD::wheelEvent(QWheelEvent* event) {
    if (!m_wheelZoom || !(event->modifiers() & Qt::ControlModifier) || event->angleDelta().y() == 0) {
        TGraphicControl::wheelEvent(event);
        return;
    }
    const double steps = event->angleDelta().y() / 120.0;
    const double zoom = std::clamp(m_zoom * std::pow(kWheelZoomStep, steps), kMinZoom, kMaxZoom);
    const QPointF at = event->position();
    const double unitX = at.x() / m_zoom, unitY = at.y() / m_zoom;
    SetZoom(zoom);
    // The drawing point under the mouse stays under it: scroll by how far it moved.
    for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
        if (auto* area = qobject_cast<QAbstractScrollArea*>(w)) {
            area->horizontalScrollBar()->setValue(area->horizontalScrollBar()->value() +
                                                  int(std::lround(unitX * zoom - at.x())));
            area->verticalScrollBar()->setValue(area->verticalScrollBar()->value() +
                                                int(std::lround(unitY * zoom - at.y())));
            break;
        }
    }
    if (OnZoomChanged) OnZoomChanged(this);
    event->accept();
}

}  // namespace faroven
