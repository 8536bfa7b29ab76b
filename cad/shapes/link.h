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

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    TLinkLineDrawStyle m_linkLineDrawStyle = lldsHV;
};

}  // namespace faroven
