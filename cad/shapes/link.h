// TMyLinkLine, the connector between link points of two shapes (the shapes
// that only offer link points are in link_point.h).
//
// A link line keeps the shape numbers and link point indices of its two ends
// (StartSpNo, StartSpPtId, EndSpNo, EndSpPtId, inherited from TMyLine; -1 for
// a free end), and each joined shape keeps the link line's number in its
// LinkShapeNos. The canvas keeps both sides in step (mycad_connections.cpp).
#pragma once

#include "cad/shapes/line.h"
#include "cad/shapes/link_point.h"

namespace faroven {

// A connector between link points of two shapes, with the line's arrow heads.
// Its points are the route: in the lldsHV style orthogonal legs that leave
// and enter the shapes perpendicular to their sides and go round other shapes
// of the layer (when the canvas's LinklineAroundShape is on); in the lldsFree
// style one straight segment clipped at the two shapes' outlines. Only the
// two ends are handles: the bends belong to the route and are computed anew
// whenever a joined shape changes.
class TMyLinkLine : public TMyLine {
    Q_OBJECT
    Q_PROPERTY(faroven::TLinkLineDrawStyle LinkLineDrawStyle READ LinkLineDrawStyle WRITE SetLinkLineDrawStyle)
public:
    static constexpr TShapeKind Kind = TShapeKind::LinkLine;
    TShapeKind kind() const override { return Kind; }
    // LinkLineDrawStyle from the canvas's.
    explicit TMyLinkLine(TMyCAD* canvas);

    // lldsHV: orthogonal legs; lldsFree: straight.
    TLinkLineDrawStyle LinkLineDrawStyle() const { return m_linkLineDrawStyle; }
    void SetLinkLineDrawStyle(TLinkLineDrawStyle v) { m_linkLineDrawStyle = v; changed(); }

    // Computes the route from link point startPtId of startShape to link
    // point endPtId of endShape and makes it the line's points. A missing
    // shape or index leaves that end where the line's point is (a free end).
    // The former points steer the new route so that a small move of a shape
    // changes it only a little.
    void GetPath(TMyShape* startShape, int startPtId, TMyShape* endShape, int endPtId);
    // GetPath with the line's own attachments (StartSpNo ... on its canvas).
    void ReRoute();

    // Squares at the two ends only.
    void DrawHot(TCanvas* canvas) override;
    // 0 for the start, the last index for the end, or -1.
    int InWhichHot(TPoint point) override;

    // The record: the parent's, then the two ends' shape and link-point numbers and, from "XP.5"
    // on, LinkLineDrawStyle.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    TLinkLineDrawStyle m_linkLineDrawStyle = lldsHV;
};

}  // namespace faroven
