// The rectangle family: TMyRectangle and the shapes that keep its four
// corners and eight handles (TMyEllipse, TMyGroup, TMyCombine; the text, image
// and link-point shapes descend from it too).
//
// Geometry. A rectangle keeps exactly four points in drawing units, in the
// order the mouse creates them: 0 = the first corner clicked, 1 = the corner
// in the same row, 2 = the opposite corner, 3 = the corner in the same column
// as point 0 (top-left, top-right, bottom-right, bottom-left for a rectangle
// drawn from top-left to bottom-right). With a non-zero Angle the stored points
// are already turned about the centre; operations that need the upright
// figure turn them back by -Angle, work, and turn the result forward.
//
// Handles (InWhichHot, GetPoint): 0..3 the corners, 4 the middle of side 0-1,
// 5 of side 1-2, 6 of side 3-2, 7 of the left side; -1 none. Side handles can
// be hidden (ShowSideHot, ShowVerticalSideHot for 4 and 6, ShowHorizontalSideHot
// for 5 and 7); a hidden one sits at the origin turned about the centre and
// still answers there. When handles overlap, the highest number wins.
#pragma once

#include "cad/shapes/shape.h"
#include "cad/shapes/shape_p.h"

#include <array>
#include <optional>

namespace faroven {

class TMyRectangle : public TMyShape {
    Q_OBJECT
    Q_PROPERTY(bool AssociateSideResizing READ AssociateSideResizing WRITE SetAssociateSideResizing)
    Q_PROPERTY(bool ShowSideHot READ ShowSideHot WRITE SetShowSideHot)
    Q_PROPERTY(bool ShowHorizontalSideHot READ ShowHorizontalSideHot WRITE SetShowHorizontalSideHot)
    Q_PROPERTY(bool ShowVerticalSideHot READ ShowVerticalSideHot WRITE SetShowVerticalSideHot)

public:
    static constexpr TShapeKind Kind = TShapeKind::Rectangle;
    TShapeKind kind() const override { return Kind; }
    explicit TMyRectangle(TMyCAD* canvas);

    // ---- Published properties (the setters only store) -------------------------
    // Kept and saved with the shape; no operation of the rectangle reads it.
    bool AssociateSideResizing() const { return m_associateSideResizing; }
    void SetAssociateSideResizing(bool v) { m_associateSideResizing = v; }
    bool ShowSideHot() const { return m_showSideHot; }
    void SetShowSideHot(bool v) { m_showSideHot = v; }
    bool ShowHorizontalSideHot() const { return m_showHorizontalSideHot; }
    void SetShowHorizontalSideHot(bool v) { m_showHorizontalSideHot = v; }
    bool ShowVerticalSideHot() const { return m_showVerticalSideHot; }
    void SetShowVerticalSideHot(bool v) { m_showVerticalSideHot = v; }

    // ---- Operations ------------------------------------------------------------------
    // First press: point 0. Second press: unless it shares a row or a column
    // with point 0, the three other corners (p.x, y0), p, (x0, p.y).
    void AddPointByMouse(TPoint point) override;
    // Finished with exactly four points.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // The four rounded zoomed corners and the first again, filled and outlined
    // by PowerDrawShape; then the caption (not for text shapes).
    void Draw(TCanvas* canvas) override;
    // Outline through pts[0..3] and back to pts[0], with the canvas's current pen.
    void DrawRectangle(TCanvas* canvas, const TArrPoint& pts);
    // Rubber bands, drawn in the exclusive-or state (set here), so that a
    // second call with the same arguments erases the first.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // Squares at the corners and the shown side middles (only the corners
    // while the canvas rotates), then the caption diamond at the text point.
    void DrawHot(TCanvas* canvas) override;
    int InWhichHot(TPoint point) override;
    TCursor GetMouseCursor(int x, int y) override;
    // Inside the polygon region of the four rounded zoomed corners (alternate
    // rule, no tolerance: right and bottom edge pixels are outside).
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // Moves the current handle to the mouse (to, in pixels): corners move
    // freely up to the opposite corner but never across it; side handles move
    // their side along its normal only.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // Mirroring also mirrors the turn: the angle changes sign.
    void FlipHoriz() override;
    void FlipVert() override;
    // The handle's position (drawing units) by the handle table; -1 gives the
    // origin turned about the centre; indices below -1 or above 7 give (0, 0).
    TMyPoint GetPoint(int index) const override;
    // The centre of the four points, recomputed and stored at every call.
    TMyPoint GetCenterPoint() override;
    TMyPoint GetCenterPointInZoom() override;
    // "Rectangle: width 26.46 mm, height 13.23 mm, angle 30.0°" in the canvas's
    // unit; groups, combines and other descendants put their own kind first.
    QString GetInfo() override;
    // The perimeter in the canvas's unit.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;

    // Width and height of the upright figure in drawing units.
    float UprightWidth() const;
    float UprightHeight() const;

protected:
    // The four corners in pixels moved to the handle table's result for a
    // mouse at target; nothing when the move would cross the opposite corner.
    // corners, centre and target are in one frame (drawing units or pixels).
    static std::optional<std::array<TMyPoint, 4>> sizedCorners(const std::array<TMyPoint, 4>& corners,
                                                                TMyPoint centre, float angle, int handle,
                                                                TMyPoint target);
    // The eight handle positions in pixels (hidden side handles at the turned origin).
    std::array<TMyPoint, 8> handlesInZoom() const;
    std::array<TMyPoint, 4> corners() const;
    std::array<TMyPoint, 4> cornersInZoom() const;
    // Moves the link points with a resize of the frame from before to after.
    void carryLinkPoints(const std::array<TMyPoint, 4>& before, const std::array<TMyPoint, 4>& after);
    // The four switches of the handles.
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    bool m_associateSideResizing = false;
    bool m_showSideHot = true;
    bool m_showHorizontalSideHot = true;
    bool m_showVerticalSideHot = true;
};

// An ellipse inscribed in the rectangle, drawn as 73 points (every 5 degrees,
// the last closing the figure). It keeps the rectangle's handles, hit test
// (a click inside the rectangle counts) and sizing.
class TMyEllipse : public TMyRectangle {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::Ellipse;
    TShapeKind kind() const override { return Kind; }
    explicit TMyEllipse(TMyCAD* canvas);
    void Draw(TCanvas* canvas) override;
    // The moved 73-point figure as a path, stroked and filled (clear brush).
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    // The ellipse inscribed in the box from point 0 to the mouse.
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    // "Ellipse: axes 26.46 mm x 13.23 mm, angle 0.0°".
    QString GetInfo() override;
    // The circumference (Ramanujan's second approximation) in the canvas's unit.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;

    // The 73 pixel points of the ellipse with radii rx, ry about (cx, cy), turned by angle.
    static TArrPoint EllipsePoints(double cx, double cy, double rx, double ry, double angle);
    // The shape's own 73 points at the current zoom.
    TArrPoint OutlineInZoom() const;

private:
    // The pixels of the outline at the last paint into the canvas's buffer,
    // written back directly while the shape and the zoom stay the same.
    shape_detail::RasterRows m_rows;
};

// A group: its members draw themselves (children paint before their parent);
// the group itself draws only its caption.
class TMyGroup : public TMyRectangle {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::Group;
    TShapeKind kind() const override { return Kind; }
    explicit TMyGroup(TMyCAD* canvas);
    void Draw(TCanvas* canvas) override;
};

// A combined shape: a group with a class of its own.
class TMyCombine : public TMyGroup {
    Q_OBJECT
public:
    static constexpr TShapeKind Kind = TShapeKind::Combine;
    TShapeKind kind() const override { return Kind; }
    explicit TMyCombine(TMyCAD* canvas);
};

}  // namespace faroven
