// Shapes that offer link points: TMyLinkPoint, a small marker that offers one
// link point, and TMyLineLinkLine, a connector point (a round junction that
// link lines attach to).
//
// Both are made with one press: the press is the centre of a square frame
// (the rectangle's four points, in its order: top-left, top-right,
// bottom-right, bottom-left) and the link points are placed from that frame.
// The frame stays square: a resize keeps the corner opposite the dragged
// handle and takes the larger of the new width and height as the side. The
// link points are put back from the frame after every resize, so they never
// drift and are never added twice. Only the corners are handles; the canvas
// draws the link crosses of every shape itself (ShowHotLink).
#pragma once

#include "cad/shapes/rectangle.h"

namespace faroven {

// A small square marker whose centre is its one link point; drawn as a cross
// in a square with the shape's pen.
class TMyLinkPoint : public TMyRectangle {
    Q_OBJECT
    Q_PROPERTY(int Size READ Size WRITE SetSize)
public:
    static constexpr TShapeKind Kind = TShapeKind::LinkPoint;
    TShapeKind kind() const override { return Kind; }
    // Side handles off.
    explicit TMyLinkPoint(TMyCAD* canvas);

    // Side of the marker in drawing units (0 to 255). Setting it makes the
    // frame a square of that side about its centre (turned with the shape)
    // and puts the link point back on the centre. A resize by the mouse sets
    // it to the new side, rounded (at most 255).
    uint8_t Size() const { return m_size; }
    void SetSize(int v);

    // The one press: a square of Size centred on the press, and its link point.
    void AddPointByMouse(TPoint point) override;
    // Stores the centre and text point, and places the link point.
    void Drawed(TPoint from, TPoint to) override;
    // The square, filled and outlined, its two diagonals, then the caption.
    void Draw(TCanvas* canvas) override;
    // The square where it stands (centred on the mouse before the press).
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    // The rectangle's resize, kept square; Size and the link point follow.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // "Link point: size 2.12 mm" in the canvas's unit.
    QString GetInfo() override;
    // A marker has no length.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;

    // Makes the centre of the frame the one link point.
    void placeLinkPoints();

    // The record: the parent's, then Size (stored as it is: the frame is not rebuilt).
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    uint8_t m_size = 8;
};

// A connector point: a round junction that link lines attach to. The circle
// fills the square frame (its diameter is the frame's side), so it stays
// inside the boxes the base computes for painting and picking. It offers four link
// points on the circle, at its top, right, bottom and left on screen (indices
// 0 to 3), so that orthogonal connectors leave it at right angles. A circle
// looks the same when turned or mirrored, so these stay at the four screen
// directions through rotations and flips and an attached line keeps its side.
// A press anywhere inside the circle picks it before any other shape.
class TMyLineLinkLine : public TMyRectangle {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::LineLinkLine;
    TShapeKind kind() const override { return Kind; }
    // Diameter of a junction placed with the mouse, in drawing units.
    static constexpr float DefaultDiameter = 12;
    // Side handles off.
    explicit TMyLineLinkLine(TMyCAD* canvas);

    // The one press: the frame of a circle of DefaultDiameter centred on the
    // press, and the four link points.
    void AddPointByMouse(TPoint point) override;
    // Stores the centre and text point, and places the link points.
    void Drawed(TPoint from, TPoint to) override;
    // The circle filled and outlined like any figure, then a dot of half its
    // radius in the pen's colour, then the caption.
    void Draw(TCanvas* canvas) override;
    // Rubber bands: the circle (moved, or where it stands while drawing).
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    // Inside the polygon region of the circle's 73-point outline.
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // The rectangle's resize, kept square; the link points follow.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // Turning and mirroring leave the link points at the four screen directions.
    void RotateChangeValueByAngle(double angle) override;
    void FlipHoriz() override;
    void FlipVert() override;
    // "Connector point: diameter 3.18 mm" in the canvas's unit.
    QString GetInfo() override;
    // A junction has no length.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;

    // Radius of the circle in drawing units: half the frame's upright side
    // (the shorter one, should a group have scaled the frame unevenly).
    float Radius() const;
    // The circle's 73 pixel points at the current zoom; the dot's with inner true.
    TArrPoint CircleInZoom(bool inner = false) const;
    // Puts the four link points on the circle: top, right, bottom, left.
    void placeLinkPoints();
};

}  // namespace faroven
