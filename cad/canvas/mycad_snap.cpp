// TMyCAD: snapping mouse points to the grid and to other shapes' edges, and
// keeping points and moved rectangles on the page. Everything here works in
// control pixels (zoomed).
#include "cad/canvas/mycad.h"

#include <cmath>

namespace faroven {

namespace {

// One coordinate against grid lines at the multiples of the spacing. The
// second branch can only fire when the snap distance exceeds half the
// spacing; it is kept as the rule has it.
bool snapToGrid(int& v, double spacing, int snapPixels) {
    if (!(spacing > 0) || !std::isfinite(spacing)) return false;
    const double k = std::nearbyint(v / spacing);
    const double d = std::fabs(v - k * spacing);
    if (d < snapPixels) {
        v = Round(k * spacing);
        return true;
    }
    const double r = v - k * spacing;
    if (r > spacing - snapPixels) {
        v = Round(std::nearbyint(v / spacing + 1) * spacing);
        return true;
    }
    return false;
}

// The search for the nearest edge starts from this offset.
constexpr double kNoOffset = 10000;

}  // namespace

// An edge attracts a coordinate within [edge - S, edge + S) when the other
// coordinate lies in the band (0.8 x near side, 1.2 x far side] of the shape's
// zoomed bounds. Of all candidates the one with the smallest distance wins
// (the first found on a tie).
void TMyCAD::shapeSnapOffsets(double x, double y, bool skipSelection, double& offX, bool& hasX, double& offY,
                              bool& hasY) {
    const double s = m_snapPixels;
    offX = offY = kNoOffset;
    hasX = hasY = false;
    for (TMyShape* shape : m_myShapes) {
        if (!shape || shape->HasParentShape() || shape == m_currentShape || shape->GetPointsCount() == 0) continue;
        if (skipSelection && IsInWorkingShape(shape) >= 0) continue;
        const TMyRect b = zoomedBounds(shape);
        for (const double e : {double(b.left), double(b.right)}) {
            if (e - s <= x && x < e + s && 0.8 * b.top < y && y <= 1.2 * b.bottom && std::fabs(x - e) < std::fabs(offX)) {
                offX = x - e;
                hasX = true;
            }
        }
        for (const double f : {double(b.top), double(b.bottom)}) {
            if (f - s <= y && y < f + s && 0.8 * b.left < x && x <= 1.2 * b.right && std::fabs(y - f) < std::fabs(offY)) {
                offY = y - f;
                hasY = true;
            }
        }
    }
}

bool TMyCAD::SnapXY(int& x, int& y) {
    bool snapped = false;
    if (m_snap) {
        const bool sx = snapToGrid(x, m_grid.GridWidth(), m_snapPixels);
        const bool sy = snapToGrid(y, m_grid.GridHeight(), m_snapPixels);
        snapped = sx || sy;
    }
    if (!snapped && m_snapShape) {
        double offX, offY;
        bool hasX, hasY;
        shapeSnapOffsets(x, y, false, offX, hasX, offY, hasY);
        if (hasX) x = Round(x - offX);
        if (hasY) y = Round(y - offY);
        snapped = hasX || hasY;
    }
    return snapped;
}

bool TMyCAD::SnapRect(const TRect& rect, int& x, int& y) {
    int dx = 0, dy = 0;
    bool snapped = false;
    if (m_snap) {
        auto axis = [&](int nearEdge, int farEdge, double spacing, int& delta) {
            int v = nearEdge;
            if (snapToGrid(v, spacing, m_snapPixels)) {
                delta = v - nearEdge;
                return true;
            }
            v = farEdge;
            if (snapToGrid(v, spacing, m_snapPixels)) {
                delta = v - farEdge;
                return true;
            }
            return false;
        };
        const bool sx = axis(rect.left, rect.right, m_grid.GridWidth(), dx);
        const bool sy = axis(rect.top, rect.bottom, m_grid.GridHeight(), dy);
        snapped = sx || sy;
    }
    if (!snapped && m_snapShape) {
        // Both corners are tried; per axis the nearer edge wins.
        double ox1, oy1, ox2, oy2;
        bool hx1, hy1, hx2, hy2;
        shapeSnapOffsets(rect.left, rect.top, true, ox1, hx1, oy1, hy1);
        shapeSnapOffsets(rect.right, rect.bottom, true, ox2, hx2, oy2, hy2);
        if (hx1 || hx2) dx = -Round(hx1 && (!hx2 || std::fabs(ox1) <= std::fabs(ox2)) ? ox1 : ox2);
        if (hy1 || hy2) dy = -Round(hy1 && (!hy2 || std::fabs(oy1) <= std::fabs(oy2)) ? oy1 : oy2);
        snapped = hx1 || hx2 || hy1 || hy2;
    }
    x += dx;
    y += dy;
    return snapped;
}

TPoint TMyCAD::ClampToPage(TPoint p) const {
    const int w = std::max(Width(), 1), h = std::max(Height(), 1);
    return TPoint{std::clamp(p.x, 0, w - 1), std::clamp(p.y, 0, h - 1)};
}

TPoint TMyCAD::ClampOffsetToPage(const TRect& bounds, TPoint offset) const {
    auto axis = [](int low, int high, int limit, int delta) {
        // The moved range [low + delta, high + delta] within [0, limit - 1];
        // a range longer than the page keeps its low end on the page.
        const int64_t maxDelta = int64_t(limit) - 1 - high;
        const int64_t minDelta = -int64_t(low);
        int64_t d = delta;
        if (d > maxDelta) d = maxDelta;
        if (d < minDelta) d = minDelta;
        return int(std::clamp<int64_t>(d, INT32_MIN, INT32_MAX));
    };
    return TPoint{axis(bounds.left, bounds.right, Width(), offset.x), axis(bounds.top, bounds.bottom, Height(), offset.y)};
}

}  // namespace faroven
