// Selecting shapes with the mouse, until the canvas does it by itself: a left
// click selects the shape under the mouse alone (or nothing, on empty
// paper), Shift+click adds it to the selection or takes it out. Remove this
// file pair once TMyCAD handles selection clicks.
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>

class SelectionClicks : public QObject {
    Q_OBJECT
public:
    // Hooks the canvas's OnMouseDown; a handler set before keeps running first.
    explicit SelectionClicks(faroven::TMyCAD* cad, QObject* parent = nullptr);

signals:
    void selectionChanged();

private:
    void click(faroven::TShiftState shift, int x, int y);

    faroven::TMyCAD* m_cad;
};
