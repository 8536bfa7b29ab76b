// What the component combo box and tree share: an entry's text and choosing
// a component on its canvas.
#pragma once

#include <QString>

class QObject;

namespace faroven {

class TMyCAD;

// "Shape3: TMyRectangle", "Canvas1: TMyCAD" (the class without its namespace).
QString ComponentEntryText(const QObject* component);

// Makes the component the canvas's selection: the canvas empties it, a shape
// (a group member too) becomes the only selected shape.
void SelectComponentOnCanvas(TMyCAD* canvas, QObject* component);

}  // namespace faroven
