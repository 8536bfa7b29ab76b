// A figure for the first cut of the editor: a closed outline through its
// points, drawn with the shape's pen, brush and gradient, with the caption below.
#pragma once

#include "cad/shapes/shape.h"

class DemoFigure : public faroven::TMyShape {
public:
    using TMyShape::TMyShape;
    void Draw(faroven::TCanvas* canvas) override {
        PowerDrawShape(canvas, pointsInZoom(), true);
        DrawInfo(canvas);
    }
};
