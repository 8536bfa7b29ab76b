// Smart guides: while a box is dragged or resized, its edges and centre snap
// to the edges and centres of nearby boxes, or to the spacing that makes its
// gap to a neighbour equal to another gap in its row or column, and lines show
// what it is aligned with.
//
// Pure geometry on boxes in one unit (drawing units or pixels, y down). The
// caller passes only the boxes near the moving one; a few hundred are fine.
#pragma once

#include "cad/types.h"

#include <vector>

namespace faroven {

// A guide line to show, in the units of the boxes.
struct TGuideLine {
    TMyPoint from, to;
    friend bool operator==(const TGuideLine&, const TGuideLine&) = default;
};

// The edges of the moving box that may snap: a drag moves them all (geAll), a
// resize only the ones being pulled.
enum TGuideEdge : unsigned {
    geLeft = 1,
    geRight = 2,
    geTop = 4,
    geBottom = 8,
    geCentreX = 16,
    geCentreY = 32,
    geAll = 63
};

struct TGuideResult {
    // The offset to add to the moving edges.
    double dx = 0, dy = 0;
    bool snappedX = false, snappedY = false;
    // Alignment lines first (vertical ones for x, then horizontal ones for y),
    // each spacing mark after the alignments of its axis.
    std::vector<TGuideLine> lines;
};

// Per axis, the smallest offset within `tolerance` that makes one of the
// moving `edges`
//   - meet a left, right or centre (top, bottom or centre) of another box, or
//   - make the gap to the nearest box of its row (column) equal to a gap
//     between two other boxes of that row, to its gap on the other side, or
//     (when the whole box moves) to the gap on the other side after the move;
// ties go to the candidate with the lower coordinate. The axes are
// independent. The lines are those of the box moved by the offsets: for each
// aligned coordinate a line across the moved box and every box aligned there,
// for equal spacing one segment across each of the equal gaps, in the middle
// of the two boxes it separates. A box that moves by both edges of an axis
// (or by none of them) shifts whole; one pulled by one edge moves that edge.
TGuideResult FindGuides(const TMyRect& moving, const std::vector<TMyRect>& others, unsigned edges, double tolerance);

}  // namespace faroven
