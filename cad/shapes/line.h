// Straight lines: TMyLine, an open line through its points with optional
// filled arrow heads at either end, and TMyRuleLine, a measuring line with
// ticks at its ends and a label that shows its length in the canvas's unit.
// The polylines (polyline.h) and the link lines descend from TMyLine.
//
// Every point of a line is a handle, numbered by its index. A line is hit
// within 8 screen pixels of a segment (not scaled by the zoom); a sloped
// segment is hit only inside its own bounding box, so a nearly horizontal
// segment answers only within its thin box.
#pragma once

#include "cad/shapes/shape.h"

namespace faroven {

class TMyLine : public TMyShape {
    Q_OBJECT
    Q_PROPERTY(int ArrowAngle READ ArrowAngle WRITE SetArrowAngle)
    Q_PROPERTY(int ArrowLength READ ArrowLength WRITE SetArrowLength)
    Q_PROPERTY(int ArrowOffset READ ArrowOffset WRITE SetArrowOffset)
    Q_PROPERTY(faroven::TArrowStyle ArrowStyle READ ArrowStyle WRITE SetArrowStyle)

public:
    static constexpr TShapeKind Kind = TShapeKind::Line;
    TShapeKind kind() const override { return Kind; }

    // Takes the arrow defaults of the canvas (without a canvas: angle 10,
    // length 30, offset 0, no arrows); the four attachment numbers start at -1.
    explicit TMyLine(TMyCAD* canvas);

    // ---- Published properties (the setters only store) -------------------------
    // Half the opening angle of an arrow head, in degrees.
    int ArrowAngle() const { return m_arrowAngle; }
    void SetArrowAngle(int v) { m_arrowAngle = v; }
    // Length of an arrow head's sides in drawing units (scaled by the zoom;
    // the scaled length wraps modulo 256).
    uint8_t ArrowLength() const { return m_arrowLength; }
    void SetArrowLength(int v) { m_arrowLength = uint8_t(v); }
    // How far the tip stands back from the end point, in screen pixels.
    uint8_t ArrowOffset() const { return m_arrowOffset; }
    void SetArrowOffset(int v) { m_arrowOffset = uint8_t(v); }
    // ALeft: a head at the last point; ARight: at point 0; ADouble: both.
    TArrowStyle ArrowStyle() const { return m_arrowStyle; }
    void SetArrowStyle(TArrowStyle v) { m_arrowStyle = v; }

    // ---- Attachment of the ends (shape numbers and link point indices; -1: free)
    int StartSpNo() const { return m_startSpNo; }
    void SetStartSpNo(int v) { m_startSpNo = v; }
    int StartSpPtId() const { return m_startSpPtId; }
    void SetStartSpPtId(int v) { m_startSpPtId = v; }
    int EndSpNo() const { return m_endSpNo; }
    void SetEndSpNo(int v) { m_endSpNo = v; }
    int EndSpPtId() const { return m_endSpPtId; }
    void SetEndSpPtId(int v) { m_endSpPtId = v; }

    // ---- Operations ------------------------------------------------------------------
    // Finished with exactly two points.
    bool IsDrawingFinished(TMouseButton button, TPoint point) override;
    // Segments between the zoomed points with the shape's pen, the arrow heads
    // of ArrowStyle (at least two points needed), then the caption.
    void Draw(TCanvas* canvas) override;
    // One filled arrow head: tip and other are zoomed points; the tip is set
    // back by ArrowOffset pixels towards other; the sides are ArrowAngle off
    // the line and round(zoom * ArrowLength) mod 256 pixels long. Uses the
    // canvas's current pen and brush.
    void DrawTriangle(TCanvas* canvas, TMyPoint tip, TMyPoint other);
    // A square at every point.
    void DrawHot(TCanvas* canvas) override;
    // The index of the last point whose hot square holds the pixel, or -1.
    int InWhichHot(TPoint point) override;
    bool IsClickedMe(TCanvas* canvas, TPoint point) override;
    // The same test; index receives the number of the hit segment's second
    // point (where a new point would be inserted), -1 when nothing is hit.
    bool IsClickedMeBeforeWhichPoint(int& index, TPoint point);
    // Rubber bands in the exclusive-or state (set here): the moved line; the
    // segment from the last point to the mouse while drawing; the line with
    // the current handle at the mouse; the line turned by the mouse's angle.
    void Draging(TCanvas* canvas, TPoint from, TPoint to) override;
    void Drawing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Sizing(TCanvas* canvas, TPoint from, TPoint to) override;
    void Rotating(TCanvas* canvas, TPoint from, TPoint to) override;
    // The current handle's point goes to the mouse (to / zoom); the stored
    // centre becomes the middle of the changed points.
    void SizeChangeValue(TPoint from, TPoint to) override;
    // "Line: length 26.46 mm, angle 30.0°": the length along the points and the
    // direction from the first to the last point (degrees clockwise on screen).
    QString GetInfo() override;
    // The length along the points in the canvas's unit.
    double GetLengthByUnit() override;
    using TMyShape::GetLengthByUnit;
    // The base box grown by the arrow heads.
    TRect GetPaintBoundsInZoom() override;
    // The two attached ends are shape numbers too: they follow, and an end
    // whose shape went is detached (number and link point -1).
    void remapShapeNos(const std::vector<int>& oldToNew) override;

    // The record: the parent's, then ArrowAngle, ArrowLength, ArrowOffset and ArrowStyle.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    // Segments and arrow heads (steps 1 to 3 of Draw).
    void drawLineAndArrows(TCanvas* canvas);
    // The three pixel corners of an arrow head.
    TArrPoint arrowHead(TMyPoint tip, TMyPoint other) const;
    // Segments between the pixel points, each with LineDraw.
    void drawSegments(TCanvas* canvas, const TArrPoint& pts);
    // Whether the pixel is on segment i (8-pixel band rule).
    bool segmentHit(int i, TPoint point) const;
    // Length along the points in drawing units (closed: back to point 0 too).
    double pathLength(bool closed) const;
    // The arrow settings; the attachment of the ends only with the relations.
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    int m_arrowAngle = 10;
    uint8_t m_arrowLength = 30;
    uint8_t m_arrowOffset = 0;
    TArrowStyle m_arrowStyle = ANone;
    int m_startSpNo = -1;
    int m_startSpPtId = -1;
    int m_endSpNo = -1;
    int m_endSpPtId = -1;
};

// A measuring line: arrow heads at both ends by default, a tick across each
// end (tsLine), and its length in the canvas's unit written along the line.
// The label is the shape's caption: with ShowUserInfo false the length is
// computed at each paint and stored into Info; with ShowUserInfo true the
// UserInfo text is shown and Info is left alone.
class TMyRuleLine : public TMyLine {
    Q_OBJECT
    Q_PROPERTY(bool ShowUserInfo READ ShowUserInfo WRITE SetShowUserInfo)
    Q_PROPERTY(faroven::TTickStyle TickStyle READ TickStyle WRITE SetTickStyle)
    Q_PROPERTY(QString UserInfo READ UserInfo WRITE SetUserInfo)

public:
    static constexpr TShapeKind Kind = TShapeKind::RuleLine;
    TShapeKind kind() const override { return Kind; }

    // Font size 8, ArrowAngle 10, ArrowLength 20, ArrowStyle ADouble.
    explicit TMyRuleLine(TMyCAD* canvas);

    bool ShowUserInfo() const { return m_showUserInfo; }
    void SetShowUserInfo(bool v) { m_showUserInfo = v; changed(); }
    TTickStyle TickStyle() const { return m_tickStyle; }
    void SetTickStyle(TTickStyle v) { m_tickStyle = v; changed(); }
    QString UserInfo() const { return m_userInfo; }
    void SetUserInfo(const QString& v) { m_userInfo = v; changed(); }

    // The line and its arrow heads, the ticks, and the label along the line
    // (centred on the middle, 2 pixels off the line, never upside down). The
    // label takes the place of the caption: DrawInfo is not called.
    void Draw(TCanvas* canvas) override;
    // The line's box grown by the ticks and the label.
    TRect GetPaintBoundsInZoom() override;

    // The length label as Draw shows it: the measured length ("26.46 mm") or UserInfo.
    QString LabelText();
    // Half the length of an end tick in pixels at the current zoom.
    int TickHalfLength() const;

    // The record: the parent's, then ShowUserInfo, TickStyle and UserInfo.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    // The two pixel ends of the tick across the line at the zoomed end point.
    TArrPoint tickAt(TMyPoint end, TMyPoint other) const;
    bool m_showUserInfo = false;
    TTickStyle m_tickStyle = tsLine;
    QString m_userInfo;
};

}  // namespace faroven
