// Test doubles for the shape base: a closed figure through its points that
// hit-tests with its polygon region and finds hot marks on every point; it
// counts its paints and destructions into caller-provided logs.
#pragma once

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/rectangle.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace faroven::test {

class FigureShape : public TMyShape {
public:
    explicit FigureShape(TMyCAD* cad, std::vector<std::string>* paintLog = nullptr, int* destroyed = nullptr)
        : TMyShape(cad), m_paintLog(paintLog), m_destroyed(destroyed) {}
    ~FigureShape() override {
        if (m_destroyed) ++*m_destroyed;
    }
    void Draw(TCanvas* canvas) override {
        if (m_paintLog) m_paintLog->push_back(Name().toStdString());
        PowerDrawShape(canvas, pointsInZoom(), true);
        DrawInfo(canvas);
    }
    bool IsClickedMe(TCanvas*, TPoint p) override { return PtInRegion(CreatePolygonRgn(pointsInZoom()), p.x, p.y); }
    int InWhichHot(TPoint p) override {
        int found = -1;
        for (int i = 0; i < GetPointsCount(); ++i)
            if (inHotSquare(GetPointInZoom(i), p)) found = i;
        SetHotIndex(found);
        return found;
    }
    using TMyShape::inHotSquare;

private:
    std::vector<std::string>* m_paintLog;
    int* m_destroyed;
};

// A figure added to the canvas the way drawing with the mouse adds one: a
// rectangle from (l, t) to (r, b) in drawing units.
inline FigureShape* AddBox(TMyCAD* cad, float l, float t, float r, float b, std::vector<std::string>* log = nullptr,
                           int* destroyed = nullptr) {
    auto s = new FigureShape(cad, log, destroyed);
    s->AddPoint({l, t});
    s->AddPoint({r, t});
    s->AddPoint({r, b});
    s->AddPoint({l, b});
    cad->AddNewShape(s);
    return s;
}

// A rectangle-family shape from drawing-unit corners, independent of the
// zoom, drawn and added as the mouse would.
template <class T = TMyRectangle>
T* AddRect(TMyCAD& cad, float l, float t, float r, float b) {
    auto s = new T(&cad);
    s->AddPoint({l, t});
    s->AddPoint({r, t});
    s->AddPoint({r, b});
    s->AddPoint({l, b});
    s->Drawed({}, {});
    cad.AddNewShape(s);
    return s;
}

// A shape through the given points in drawing units, drawn and added as the
// mouse would.
template <class T>
T* AddShape(TMyCAD& cad, std::initializer_list<TMyPoint> pts) {
    auto s = new T(&cad);
    for (const TMyPoint& p : pts) s->AddPoint(p);
    s->Drawed({}, {});
    cad.AddNewShape(s);
    return s;
}

}  // namespace faroven::test
