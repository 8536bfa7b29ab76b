#include "cad/geometry/guides.h"

#include <algorithm>
#include <cmath>

namespace faroven {

namespace {

// Coordinates closer than this count as equal when lines are chosen: the
// offsets are computed in double from float boxes, so only the caller's
// rounding of the moved box can leave a difference.
constexpr double kSame = 1e-3;

bool near(double a, double b) { return std::abs(a - b) <= kSame; }

// A box seen along one axis: its extent along it (lo, hi) and across it.
// Both axes run through the same code with the roles swapped.
struct Span {
    double lo = 0, hi = 0, crossLo = 0, crossHi = 0;
    double mid() const { return (lo + hi) / 2; }
};

Span spanOf(const TMyRect& r, bool yAxis) {
    return yAxis ? Span{r.top, r.bottom, r.left, r.right} : Span{r.left, r.right, r.top, r.bottom};
}

TMyPoint pointAt(double along, double across, bool yAxis) {
    return yAxis ? TMyPoint{float(across), float(along)} : TMyPoint{float(along), float(across)};
}

// The moving edges on one axis.
struct AxisEdges {
    bool lo, hi, centre;
};

AxisEdges axisEdges(unsigned edges, bool yAxis) {
    return yAxis ? AxisEdges{(edges & geTop) != 0, (edges & geBottom) != 0, (edges & geCentreY) != 0}
                 : AxisEdges{(edges & geLeft) != 0, (edges & geRight) != 0, (edges & geCentreX) != 0};
}

// The extent after the offset: a box pulled by exactly one edge moves that
// edge, any other shifts whole.
void shift(double& lo, double& hi, AxisEdges e, double offset) {
    const bool whole = e.lo == e.hi;
    if (whole || e.lo) lo += offset;
    if (whole || e.hi) hi += offset;
}

// Where the mark of the gap between two boxes goes across the axis: the
// middle of their common extent (or of the space between them).
double markAcross(const Span& a, const Span& b) {
    return (std::max(a.crossLo, b.crossLo) + std::min(a.crossHi, b.crossHi)) / 2;
}

// An empty stretch along the axis between two boxes, marked at `across`.
struct Gap {
    double lo, hi, across;
    double width() const { return hi - lo; }
};

// The boxes sharing the moving box's row (overlapping it across the axis):
// its nearest neighbour on each side and the gaps between the others.
struct Row {
    const Span* before = nullptr;
    const Span* after = nullptr;
    std::vector<Gap> gaps;
};

// `slack` lets a neighbour reach into the box by that much (a snap may still
// move the box clear of it).
Row rowOf(const Span& box, const std::vector<Span>& others, double slack) {
    Row row;
    std::vector<const Span*> members;
    for (const Span& o : others)
        if (o.crossLo < box.crossHi && box.crossLo < o.crossHi) members.push_back(&o);
    for (const Span* o : members) {
        if (o->lo < box.lo && o->hi <= box.lo + slack && (!row.before || o->hi > row.before->hi)) row.before = o;
        if (o->hi > box.hi && o->lo >= box.hi - slack && (!row.after || o->lo < row.after->lo)) row.after = o;
    }
    // Each member's gap back to the member that ends nearest before it; a
    // gap with the moving box inside is no gap of the row.
    std::vector<const Span*> byHi = members;
    std::stable_sort(byHi.begin(), byHi.end(), [](const Span* a, const Span* b) { return a->hi < b->hi; });
    for (const Span* b : members) {
        auto it = std::upper_bound(byHi.begin(), byHi.end(), b->lo, [](double v, const Span* s) { return v < s->hi; });
        if (it == byHi.begin()) continue;
        const Span* a = *(it - 1);
        if (b->lo - a->hi <= kSame) continue;
        if (a->hi < box.hi && b->lo > box.lo) continue;
        row.gaps.push_back({a->hi, b->lo, markAcross(*a, *b)});
    }
    return row;
}

// The nearest candidate offset seen so far; ties go to the lower coordinate.
struct Best {
    double tolerance;
    bool found = false;
    double offset = 0, coordinate = 0;
    void offer(double off, double coord) {
        const double d = std::abs(off);
        if (d > tolerance) return;
        if (found && (d > std::abs(offset) || (d == std::abs(offset) && coord >= coordinate))) return;
        found = true;
        offset = off;
        coordinate = coord;
    }
};

Best snapAxis(const Span& box, const std::vector<Span>& others, AxisEdges e, double tolerance) {
    Best best{tolerance};
    for (const Span& o : others)
        for (double target : {o.lo, o.mid(), o.hi}) {
            if (e.lo) best.offer(target - box.lo, target);
            if (e.centre) best.offer(target - box.mid(), target);
            if (e.hi) best.offer(target - box.hi, target);
        }

    const Row row = rowOf(box, others, tolerance);
    auto offerLo = [&](double gap) {
        if (gap <= kSame) return;
        const double target = row.before->hi + gap;
        best.offer(target - box.lo, target);
    };
    auto offerHi = [&](double gap) {
        if (gap <= kSame) return;
        const double target = row.after->lo - gap;
        best.offer(target - box.hi, target);
    };
    if (e.lo && row.before) {
        for (const Gap& g : row.gaps) offerLo(g.width());
        if (!e.hi && row.after) offerLo(row.after->lo - box.hi);
    }
    if (e.hi && row.after) {
        for (const Gap& g : row.gaps) offerHi(g.width());
        if (!e.lo && row.before) offerHi(box.lo - row.before->hi);
    }
    if (e.lo && e.hi && row.before && row.after) offerLo((row.after->lo - row.before->hi - (box.hi - box.lo)) / 2);
    return best;
}

void addSegment(const Gap& g, bool yAxis, std::vector<TGuideLine>& lines) {
    lines.push_back({pointAt(g.lo, g.across, yAxis), pointAt(g.hi, g.across, yAxis)});
}

// The lines for the moved box on one axis.
void addLines(const Span& box, const std::vector<Span>& others, AxisEdges e, bool yAxis,
              std::vector<TGuideLine>& lines) {
    std::vector<double> edges;
    if (e.lo) edges.push_back(box.lo);
    if (e.centre) edges.push_back(box.mid());
    if (e.hi) edges.push_back(box.hi);
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end(), near), edges.end());
    for (double at : edges) {
        bool aligned = false;
        double from = box.crossLo, to = box.crossHi;
        for (const Span& o : others)
            if (near(o.lo, at) || near(o.mid(), at) || near(o.hi, at)) {
                aligned = true;
                from = std::min(from, o.crossLo);
                to = std::max(to, o.crossHi);
            }
        if (aligned) lines.push_back({pointAt(at, from, yAxis), pointAt(at, to, yAxis)});
    }

    const Row row = rowOf(box, others, kSame);
    const bool hasBefore = row.before && box.lo - row.before->hi > kSame;
    const bool hasAfter = row.after && row.after->lo - box.hi > kSame;
    const Gap before = hasBefore ? Gap{row.before->hi, box.lo, markAcross(*row.before, box)} : Gap{};
    const Gap after = hasAfter ? Gap{box.hi, row.after->lo, markAcross(box, *row.after)} : Gap{};
    bool markBefore = false, markAfter = false;
    std::vector<bool> markRow(row.gaps.size(), false);
    // A gap on a side that moved is marked when another gap equals it.
    auto match = [&](double width) {
        bool any = false;
        for (size_t i = 0; i < row.gaps.size(); ++i)
            if (near(row.gaps[i].width(), width)) markRow[i] = any = true;
        return any;
    };
    if (hasBefore && hasAfter && near(before.width(), after.width()) && (e.lo || e.hi)) markBefore = markAfter = true;
    if (hasBefore && e.lo && match(before.width())) markBefore = true;
    if (hasAfter && e.hi && match(after.width())) markAfter = true;
    if (markBefore) addSegment(before, yAxis, lines);
    if (markAfter) addSegment(after, yAxis, lines);
    for (size_t i = 0; i < row.gaps.size(); ++i)
        if (markRow[i]) addSegment(row.gaps[i], yAxis, lines);
}

}  // namespace

TGuideResult FindGuides(const TMyRect& moving, const std::vector<TMyRect>& others, unsigned edges, double tolerance) {
    TGuideResult result;
    if (!(tolerance >= 0)) return result;
    Span spans[2];
    std::vector<Span> otherSpans[2];
    for (int axis = 0; axis < 2; ++axis) {
        const bool yAxis = axis == 1;
        otherSpans[axis].reserve(others.size());
        for (const TMyRect& r : others) otherSpans[axis].push_back(spanOf(r, yAxis));
        spans[axis] = spanOf(moving, yAxis);
        const Best best = snapAxis(spans[axis], otherSpans[axis], axisEdges(edges, yAxis), tolerance);
        (yAxis ? result.dy : result.dx) = best.offset;
        (yAxis ? result.snappedY : result.snappedX) = best.found;
    }
    // The moved box, kept in double so that the lines see exact alignments.
    shift(spans[0].lo, spans[0].hi, axisEdges(edges, false), result.dx);
    shift(spans[1].lo, spans[1].hi, axisEdges(edges, true), result.dy);
    for (int axis = 0; axis < 2; ++axis) {
        const bool yAxis = axis == 1;
        const Span& other = spans[1 - axis];
        const Span box{spans[axis].lo, spans[axis].hi, other.lo, other.hi};
        addLines(box, otherSpans[axis], axisEdges(edges, yAxis), yAxis, result.lines);
    }
    return result;
}

}  // namespace faroven
