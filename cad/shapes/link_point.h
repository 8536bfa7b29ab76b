// Shapes that offer link points: TMyLinkPoint, a small marker that offers one
// link point, and TMyLineLinkLine, a connector point (a round junction that
// link lines attach to).
#pragma once

#include "cad/shapes/rectangle.h"

namespace faroven {

// A small square marker whose centre is its one link point.
class TMyLinkPoint : public TMyRectangle {
    Q_OBJECT
    Q_PROPERTY(int Size READ Size WRITE SetSize)
public:
    static constexpr TShapeKind Kind = TShapeKind::LinkPoint;
    TShapeKind kind() const override { return Kind; }
    explicit TMyLinkPoint(TMyCAD* canvas);

    // Side of the marker in drawing units.
    uint8_t Size() const { return m_size; }
    void SetSize(int v) { m_size = uint8_t(v); changed(); }

private:
    uint8_t m_size = 8;
};

// A connector point: a round junction that link lines attach to.
class TMyLineLinkLine : public TMyRectangle {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::LineLinkLine;
    TShapeKind kind() const override { return Kind; }
    explicit TMyLineLinkLine(TMyCAD* canvas);
};

}  // namespace faroven
