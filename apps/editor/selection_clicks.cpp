#include "selection_clicks.h"

using namespace faroven;

SelectionClicks::SelectionClicks(TMyCAD* cad, QObject* parent) : QObject(parent), m_cad(cad) {
    auto previous = m_cad->OnMouseDown;
    m_cad->OnMouseDown = [this, previous](TObject* sender, TMouseButton button, TShiftState shift, int x, int y) {
        if (previous) previous(sender, button, shift, x, y);
        // The second press of a double click has been handled by the first;
        // toggling again would undo a Shift+click.
        // Only the selection tool picks shapes; the others draw or edit.
        if (button == mbLeft && !(shift & ssDouble) && m_cad->ShapeTool() == SpSelecting) click(shift, x, y);
    };
}

void SelectionClicks::click(TShiftState shift, int x, int y) {
    // Keys typed next (Delete, Ctrl+A, ...) are meant for the drawing, not
    // for a text field of the tool bar clicked before.
    m_cad->setFocus(Qt::MouseFocusReason);
    TMyShape* shape = m_cad->GetShapeAtPoint(TPoint{x, y});
    if (shift & ssShift) {
        if (!shape) return;
        if (m_cad->IsInWorkingShape(shape) >= 0)
            m_cad->RemoveWorkingShape(shape);
        else
            m_cad->AddWorkingShapes(shape);
    } else {
        m_cad->RemoveAllWorkingShapes();
        if (shape) m_cad->AddWorkingShapes(shape);
    }
    emit selectionChanged();
}
