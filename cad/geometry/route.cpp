#include "cad/geometry/route.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace faroven {

namespace {

// Directions of travel; opposite = (d + 2) & 3, perpendicular = odd difference.
enum Dir : int { kRight = 0, kDown = 1, kLeft = 2, kUp = 3 };
constexpr int kNoDir = -1;
constexpr int kStepX[4] = {1, 0, -1, 0};
constexpr int kStepY[4] = {0, 1, 0, -1};

int opposite(int d) { return (d + 2) & 3; }

int outwardOf(Tdirections side) {
    switch (side) {
    case dLeft: return kLeft;
    case dTop: return kUp;
    case dRight: return kRight;
    case dbottom: return kDown;
    default: return kNoDir;
    }
}

// Travel direction of a non-degenerate axis-parallel step from p to q.
int dirOf(TMyPoint p, TMyPoint q) {
    if (p.y == q.y) return q.x > p.x ? kRight : kLeft;
    return q.y > p.y ? kDown : kUp;
}

// Crossing one grid edge inside an obstacle (grown by margin / 2) costs at
// least this, and a thousand times the size of the scene: far above any route
// length, so that a way round always wins and the fallback through boxes takes
// as few of them as it can. An end box costs a hundred times more.
constexpr double kMinObstaclePenalty = 1e6;
constexpr double kEndBoxFactor = 100;
// Grids above this many nodes drop the obstacles farthest from the ends.
constexpr size_t kMaxNodes = 250000;
// With a previous route, grid edges away from it cost this fraction of their
// length extra: among routes of (nearly) the same cost the one that keeps the
// previous route's course wins.
constexpr float kDrift = 0.05f;

bool finite(TMyPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

TMyRect normalised(const TMyRect& r) {
    return {std::min(r.left, r.right), std::min(r.top, r.bottom), std::max(r.left, r.right),
            std::max(r.top, r.bottom)};
}

bool isFiniteBox(const TMyRect& r) {
    return std::isfinite(r.left) && std::isfinite(r.top) && std::isfinite(r.right) && std::isfinite(r.bottom);
}

// An end box with no extent at all (the free end's TMyRect{}) is no box.
bool hasExtent(const TMyRect& r) { return isFiniteBox(r) && (r.right > r.left || r.bottom > r.top); }

// A box the route must not enter: the open rectangle, the penalty per grid edge
// inside it, how far outside it the grid lines run, and which ends own it
// (bit 1: from, bit 2: to).
struct Region {
    float l, t, r, b;
    double penalty;
    float lineGap;
    int owner = 0;
    bool strictlyContains(TMyPoint p) const { return p.x > l && p.x < r && p.y > t && p.y < b; }
    // Whether the axis-parallel segment p-q passes through the open rectangle.
    bool meets(TMyPoint p, TMyPoint q) const {
        if (p.y == q.y) return p.y > t && p.y < b && std::min(p.x, q.x) < r && std::max(p.x, q.x) > l;
        return p.x > l && p.x < r && std::min(p.y, q.y) < b && std::max(p.y, q.y) > t;
    }
};

// A ray from a box's centre in direction dir. A vertical ray lies at x = cx - e
// and a horizontal one at y = cy - e (e infinitely small), so that a route
// through a grid node on the ray's line counts one crossing, not zero or two.
struct Ray {
    float cx, cy;
    int dir;
    bool crossedBy(TMyPoint p, TMyPoint q) const {
        if (dir == kUp || dir == kDown) {
            if (!(std::min(p.x, q.x) < cx && cx <= std::max(p.x, q.x))) return false;
            const double y = p.x == q.x ? p.y : p.y + (double(q.y) - p.y) * (double(cx) - p.x) / (double(q.x) - p.x);
            return dir == kUp ? y < cy : y > cy;
        }
        if (!(std::min(p.y, q.y) < cy && cy <= std::max(p.y, q.y))) return false;
        const double x = p.y == q.y ? p.x : p.x + (double(q.x) - p.x) * (double(cy) - p.y) / (double(q.y) - p.y);
        return dir == kLeft ? x < cx : x > cx;
    }
    int crossings(const TArrMyPoint& route) const {
        int n = 0;
        for (size_t i = 1; i < route.size(); ++i) n += crossedBy(route[i - 1], route[i]);
        return n;
    }
    // Whether p lies within tol of the ray's line, on the ray's side.
    bool near(TMyPoint p, float tol) const {
        switch (dir) {
        case kUp: return std::abs(p.x - cx) < tol && p.y < cy + tol;
        case kDown: return std::abs(p.x - cx) < tol && p.y > cy - tol;
        case kLeft: return std::abs(p.y - cy) < tol && p.x < cx + tol;
        default: return std::abs(p.y - cy) < tol && p.x > cx - tol;
        }
    }
};

// One end as the search sees it: the travel direction out of its side (kNoDir
// for a free end) and the node where the search starts or ends, margin beyond
// the side of its box (the point itself for a free end).
struct End {
    TMyPoint point;
    int out = kNoDir;
    TMyPoint node;
};

End makeEnd(const TRouteEnd& e, float margin) {
    End end{e.point, outwardOf(e.side), e.point};
    if (end.out == kNoDir) return end;
    const bool box = hasExtent(e.box);
    const TMyRect r = normalised(e.box);
    switch (end.out) {
    case kRight: end.node.x = (box ? std::max(e.point.x, r.right) : e.point.x) + margin; break;
    case kLeft: end.node.x = (box ? std::min(e.point.x, r.left) : e.point.x) - margin; break;
    case kDown: end.node.y = (box ? std::max(e.point.y, r.bottom) : e.point.y) + margin; break;
    default: end.node.y = (box ? std::min(e.point.y, r.top) : e.point.y) - margin; break;
    }
    return end;
}

// Bends needed at least to reach a target (dx, dy) away, travelling in d now
// and arriving in a.
int bendsToArrive(int d, double dx, double dy, int a) {
    const double ahead = dx * kStepX[d] + dy * kStepY[d];
    const double side = dx * kStepY[d] - dy * kStepX[d];
    if (a == d) return side == 0 && ahead >= 0 ? 0 : ahead > 0 ? 2 : 4;
    if (a == opposite(d)) return side != 0 ? 2 : 4;
    const double along = dx * kStepX[a] + dy * kStepY[a];
    return ahead >= 0 && along > 0 ? 1 : 3;
}

struct HeapEntry {
    double f, g;
    int state;
};
// Lowest f first; among equals the deeper state, then the lower index.
struct LaterThan {
    bool operator()(const HeapEntry& a, const HeapEntry& b) const {
        if (a.f != b.f) return a.f > b.f;
        if (a.g != b.g) return a.g < b.g;
        return a.state > b.state;
    }
};

// Search record of one (node, direction) state; valid while stamp is the
// current search's generation.
struct StateRecord {
    double g;
    int parent;
    uint32_t stamp;
};

// Buffers kept between calls so that a route allocates nothing once warm.
struct Scratch {
    std::vector<float> xs, ys, lows;
    std::vector<float> hExtra, vExtra;
    std::vector<StateRecord> states;
    uint32_t generation = 0;
    std::vector<HeapEntry> heap;
};

// Appends p unless it repeats the last point or extends the last segment in
// the same direction.
void appendSimplified(TArrMyPoint& route, TMyPoint p) {
    if (!route.empty() && route.back() == p) return;
    const size_t n = route.size();
    if (n >= 2) {
        const TMyPoint a = route[n - 2], b = route[n - 1];
        const bool straight = (a.x == b.x && b.x == p.x) || (a.y == b.y && b.y == p.y);
        if (straight && dirOf(a, b) == dirOf(b, p)) route.back() = p;
        else route.push_back(p);
        return;
    }
    route.push_back(p);
}

TArrMyPoint simplified(const TArrMyPoint& points) {
    TArrMyPoint out;
    out.reserve(points.size());
    for (const TMyPoint& p : points) appendSimplified(out, p);
    return out;
}

class Router {
public:
    Router(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>& obstacles,
           const TRouteOptions& options, Scratch& s)
        : m_s(s) {
        m_margin = std::isfinite(options.margin) ? std::max(options.margin, 1.0f) : 10.0f;
        m_bendCost = std::isfinite(options.bendCost) ? std::max(options.bendCost, 0.0f) : 0.0f;
        m_switchCost = std::isfinite(options.switchCost) ? std::max(options.switchCost, 0.0f) : 0.0f;
        m_from = makeEnd(from, m_margin);
        m_to = makeEnd(to, m_margin);
        m_goalDir = m_to.out == kNoDir ? kNoDir : opposite(m_to.out);
        collectRegions(from, to, obstacles, options.avoidObstacles);
        if (options.previous && options.previous->size() >= 2) {
            m_previous = options.previous;
            collectTolls(*m_previous);
        }
    }

    TArrMyPoint route() {
        TArrMyPoint best = search();
        if (best.empty()) best = fallbackElbow();
        else centreSteps(best);
        double bestCost = cost(best);
        for (const TArrMyPoint& c : directCandidates()) {
            const double cc = cost(c);
            if (cc < bestCost) best = c, bestCost = cc;
        }
        return best;
    }

private:
    void collectRegions(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>& obstacles,
                        bool avoid) {
        TMyRect ownBoxes[2];
        int owners[2] = {0, 0};
        int owned = 0;
        const TRouteEnd* ends[2] = {&from, &to};
        for (int k = 0; k < 2; ++k) {
            if (!hasExtent(ends[k]->box)) continue;
            const TMyRect r = normalised(ends[k]->box);
            if (owned == 1 && r == ownBoxes[0]) {  // a route from a shape to itself
                owners[0] |= 1 << k;
                continue;
            }
            ownBoxes[owned] = r;
            owners[owned++] = 1 << k;
        }
        for (int k = 0; k < owned; ++k) {
            const TMyRect& r = ownBoxes[k];
            const Region region{r.left, r.top, r.right, r.bottom, 0, m_margin, owners[k]};
            // A box holding a link point strictly inside cannot be kept out of;
            // a sided end's own box can, since its first leg leaves the box.
            const bool holdsFrom = region.strictlyContains(from.point) && !((owners[k] & 1) && m_from.out != kNoDir);
            const bool holdsTo = region.strictlyContains(to.point) && !((owners[k] & 2) && m_to.out != kNoDir);
            if (!holdsFrom && !holdsTo) m_regions.push_back(region);
        }
        const float grow = m_margin / 2;
        std::vector<Region> kept;
        if (avoid)
            for (const TMyRect& box : obstacles) {
                if (!isFiniteBox(box)) continue;
                const TMyRect r = normalised(box);
                if (std::find(ownBoxes, ownBoxes + owned, r) != ownBoxes + owned) continue;
                const Region region{r.left - grow, r.top - grow, r.right + grow, r.bottom + grow, 0, grow};
                // Containers of an end (a lane, a frame) cannot be avoided.
                if (region.strictlyContains(from.point) || region.strictlyContains(to.point)) continue;
                kept.push_back(region);
            }
        // Each region adds up to three lines per axis; beyond the cap the
        // obstacles nearest to the ends' box are kept.
        const size_t cap = size_t(std::sqrt(double(kMaxNodes))) / 3;
        if (kept.size() > cap) {
            const float l = std::min(from.point.x, to.point.x), r = std::max(from.point.x, to.point.x);
            const float t = std::min(from.point.y, to.point.y), b = std::max(from.point.y, to.point.y);
            auto distance = [&](const Region& g) {
                return std::max({0.0f, g.l - r, l - g.r}) + std::max({0.0f, g.t - b, t - g.b});
            };
            std::stable_sort(kept.begin(), kept.end(),
                             [&](const Region& a, const Region& b) { return distance(a) < distance(b); });
            kept.resize(cap);
        }
        m_regions.insert(m_regions.end(), kept.begin(), kept.end());

        TMyRect scene{std::min(from.point.x, to.point.x), std::min(from.point.y, to.point.y),
                      std::max(from.point.x, to.point.x), std::max(from.point.y, to.point.y)};
        for (const Region& g : m_regions)
            scene = {std::min(scene.left, g.l), std::min(scene.top, g.t), std::max(scene.right, g.r),
                     std::max(scene.bottom, g.b)};
        const double size = double(scene.right) - scene.left + double(scene.bottom) - scene.top;
        const double penalty = std::max(kMinObstaclePenalty, 1000 * size);
        for (Region& g : m_regions) g.penalty = g.owner ? penalty * kEndBoxFactor : penalty;
    }

    // Rays from the centre of every box that the previous route did not cross:
    // a route that crosses one passes that box on the other side. Rays that run
    // close to an end are left out, since a small move of that end may carry
    // it across the ray without changing the side.
    void collectTolls(const TArrMyPoint& previous) {
        if (m_switchCost <= 0) return;
        const TMyPoint ends[6] = {m_from.point, m_to.point, m_from.node, m_to.node, previous.front(), previous.back()};
        for (const Region& r : m_regions) {
            const float cx = (r.l + r.r) / 2, cy = (r.t + r.b) / 2;
            for (int d = 0; d < 4; ++d) {
                const Ray ray{cx, cy, d};
                if (std::any_of(std::begin(ends), std::end(ends), [&](TMyPoint p) { return ray.near(p, m_margin); }))
                    continue;
                if (ray.crossings(previous) == 0) m_tolls.push_back(ray);
            }
        }
    }

    // length + bends * bendCost + penalties of the boxes passed through + tolls.
    double cost(const TArrMyPoint& route) const {
        double c = 0;
        for (size_t i = 1; i < route.size(); ++i) {
            const TMyPoint p = route[i - 1], q = route[i];
            c += std::abs(double(q.x) - p.x) + std::abs(double(q.y) - p.y);
            if (i >= 2 && dirOf(route[i - 2], p) != dirOf(p, q)) c += m_bendCost;
            // The first and last legs may start inside their own box.
            const int exempt = (i == 1 ? 1 : 0) | (i + 1 == route.size() ? 2 : 0);
            for (const Region& r : m_regions)
                if (!(r.owner & exempt) && r.meets(p, q)) c += r.penalty;
            for (const Ray& ray : m_tolls)
                if (ray.crossedBy(p, q)) c += m_switchCost;
        }
        return c;
    }

    void buildGrid() {
        auto& xs = m_s.xs;
        auto& ys = m_s.ys;
        xs.assign({m_from.node.x, m_to.node.x});
        ys.assign({m_from.node.y, m_to.node.y});
        for (const Region& r : m_regions) {
            xs.push_back(r.l - r.lineGap);
            xs.push_back(r.r + r.lineGap);
            ys.push_back(r.t - r.lineGap);
            ys.push_back(r.b + r.lineGap);
        }
        // Channels between neighbouring boxes too narrow for the lines above
        // (they would meet or cross): the midline to the nearest box beyond
        // each far edge.
        addMidlines(xs, [](const Region& r) { return r.l; }, [](const Region& r) { return r.r; });
        addMidlines(ys, [](const Region& r) { return r.t; }, [](const Region& r) { return r.b; });
        for (auto* v : {&xs, &ys}) {
            std::sort(v->begin(), v->end());
            v->erase(std::unique(v->begin(), v->end()), v->end());
        }
        m_nx = int(xs.size());
        m_ny = int(ys.size());
    }

    template <class Low, class High>
    void addMidlines(std::vector<float>& coords, Low low, High high) {
        auto& lows = m_s.lows;
        lows.clear();
        for (const Region& r : m_regions) lows.push_back(low(r));
        std::sort(lows.begin(), lows.end());
        for (const Region& r : m_regions) {
            const auto next = std::upper_bound(lows.begin(), lows.end(), high(r));
            if (next != lows.end() && *next - high(r) < 2 * m_margin) coords.push_back((high(r) + *next) / 2);
        }
    }

    int column(float x) const { return int(std::lower_bound(m_s.xs.begin(), m_s.xs.end(), x) - m_s.xs.begin()); }
    int columnAfter(float x) const {
        return int(std::upper_bound(m_s.xs.begin(), m_s.xs.end(), x) - m_s.xs.begin());
    }
    int row(float y) const { return int(std::lower_bound(m_s.ys.begin(), m_s.ys.end(), y) - m_s.ys.begin()); }
    int rowAfter(float y) const { return int(std::upper_bound(m_s.ys.begin(), m_s.ys.end(), y) - m_s.ys.begin()); }
    float& hEdge(int i, int j) { return m_s.hExtra[size_t(j) * (m_nx - 1) + i]; }
    float& vEdge(int i, int j) { return m_s.vExtra[size_t(j) * m_nx + i]; }

    // Extra cost of every grid edge: penalties inside boxes, tolls on rays.
    void rasterise() {
        m_s.hExtra.assign(size_t(std::max(m_nx - 1, 0)) * m_ny, 0.0f);
        m_s.vExtra.assign(size_t(m_nx) * std::max(m_ny - 1, 0), 0.0f);
        if (m_previous) rasteriseDrift(*m_previous);
        for (const Region& r : m_regions) {
            const float p = float(r.penalty);
            const int i0 = std::max(columnAfter(r.l) - 1, 0), i1 = std::min(column(r.r), m_nx - 1);
            for (int j = rowAfter(r.t), j1 = row(r.b); j < j1; ++j)
                for (int i = i0; i < i1; ++i) hEdge(i, j) += p;
            const int j0 = std::max(rowAfter(r.t) - 1, 0), jEnd = std::min(row(r.b), m_ny - 1);
            for (int i = columnAfter(r.l), iEnd = column(r.r); i < iEnd; ++i)
                for (int j = j0; j < jEnd; ++j) vEdge(i, j) += p;
        }
        const float toll = m_switchCost;
        for (const Ray& ray : m_tolls) {
            if (ray.dir == kUp || ray.dir == kDown) {
                const int i = column(ray.cx) - 1;
                if (i < 0 || i + 1 >= m_nx) continue;
                const int j0 = ray.dir == kUp ? 0 : rowAfter(ray.cy), j1 = ray.dir == kUp ? row(ray.cy) : m_ny;
                for (int j = j0; j < j1; ++j) hEdge(i, j) += toll;
            } else {
                const int j = row(ray.cy) - 1;
                if (j < 0 || j + 1 >= m_ny) continue;
                const int i0 = ray.dir == kLeft ? 0 : columnAfter(ray.cx);
                const int i1 = ray.dir == kLeft ? column(ray.cx) : m_nx;
                for (int i = i0; i < i1; ++i) vEdge(i, j) += toll;
            }
        }
    }

    // The fewest bends to the goal depend only on the travel direction and on
    // the signs of the offset to the goal: 4 x 3 x 3 cases, costed once.
    void tabulateBends() {
        for (int d = 0; d < 4; ++d)
            for (int sx = -1; sx <= 1; ++sx)
                for (int sy = -1; sy <= 1; ++sy) {
                    int bends;
                    if (m_goalDir == kNoDir) {
                        bends = 4;
                        for (int a = 0; a < 4; ++a) bends = std::min(bends, bendsToArrive(d, sx, sy, a));
                    } else {
                        bends = bendsToArrive(d, sx, sy, m_goalDir);
                        bends = std::min(bends, 1 + bendsToArrive(d, sx, sy, (m_goalDir + 1) & 3));
                        bends = std::min(bends, 1 + bendsToArrive(d, sx, sy, (m_goalDir + 3) & 3));
                    }
                    m_bendTable[d][sx + 1][sy + 1] = double(m_bendCost) * bends;
                }
    }

    // kDrift x length on every edge except those running along the previous
    // route (within margin of one of its segments).
    void rasteriseDrift(const TArrMyPoint& previous) {
        const auto& xs = m_s.xs;
        const auto& ys = m_s.ys;
        for (int j = 0; j < m_ny; ++j)
            for (int i = 0; i + 1 < m_nx; ++i) hEdge(i, j) = kDrift * (xs[i + 1] - xs[i]);
        for (int j = 0; j + 1 < m_ny; ++j)
            for (int i = 0; i < m_nx; ++i) vEdge(i, j) = kDrift * (ys[j + 1] - ys[j]);
        const float tol = m_margin;
        for (size_t k = 1; k < previous.size(); ++k) {
            const TMyPoint p = previous[k - 1], q = previous[k];
            if (p.y == q.y) {
                const int i0 = column(std::min(p.x, q.x) - tol), i1 = columnAfter(std::max(p.x, q.x) + tol) - 1;
                for (int j = row(p.y - tol), j1 = rowAfter(p.y + tol); j < j1; ++j)
                    for (int i = i0; i < i1; ++i) hEdge(i, j) = 0;
            } else if (p.x == q.x) {
                const int j0 = row(std::min(p.y, q.y) - tol), j1 = rowAfter(std::max(p.y, q.y) + tol) - 1;
                for (int i = column(p.x - tol), i1 = columnAfter(p.x + tol); i < i1; ++i)
                    for (int j = j0; j < j1; ++j) vEdge(i, j) = 0;
            }
        }
    }

    double heuristic(int i, int j, int d) const {
        const double dx = double(m_s.xs[m_goalI]) - m_s.xs[i], dy = double(m_s.ys[m_goalJ]) - m_s.ys[j];
        return std::abs(dx) + std::abs(dy) + m_bendTable[d][(dx > 0) - (dx < 0) + 1][(dy > 0) - (dy < 0) + 1];
    }

    // A* over (grid node, travel direction); cost = length + bends * bendCost +
    // edge extras. Returns the route through the nodes, or nothing on failure.
    TArrMyPoint search() {
        buildGrid();
        if (size_t(m_nx) * m_ny > kMaxNodes * 4) return {};
        rasterise();
        auto& xs = m_s.xs;
        auto& ys = m_s.ys;
        const int startI = column(m_from.node.x), startJ = row(m_from.node.y);
        m_goalI = column(m_to.node.x);
        m_goalJ = row(m_to.node.y);
        const int nStates = m_nx * m_ny * 4;
        const int goalState = nStates;
        tabulateBends();
        auto& states = m_s.states;
        if (states.size() < size_t(nStates) + 1) states.resize(nStates + 1, StateRecord{0, -1, 0});
        if (++m_s.generation == 0) {
            for (StateRecord& r : states) r.stamp = 0;
            m_s.generation = 1;
        }
        const uint32_t gen = m_s.generation;
        auto& heap = m_s.heap;
        heap.clear();
        auto relax = [&](int state, double g, int parent, double h) {
            StateRecord& r = states[state];
            if (r.stamp == gen && r.g <= g) return;
            r = {g, parent, gen};
            heap.push_back({g + h, g, state});
            std::push_heap(heap.begin(), heap.end(), LaterThan());
        };
        for (int d = 0; d < 4; ++d)
            if (m_from.out == kNoDir || d == m_from.out)
                relax((startJ * m_nx + startI) * 4 + d, 0, -1, heuristic(startI, startJ, d));

        const long long maxPops = 16LL * nStates + 1024;
        long long pops = 0;
        bool found = false;
        while (!heap.empty() && ++pops < maxPops) {
            std::pop_heap(heap.begin(), heap.end(), LaterThan());
            const HeapEntry e = heap.back();
            heap.pop_back();
            if (e.g > states[e.state].g) continue;  // a stale entry
            if (e.state == goalState) {
                found = true;
                break;
            }
            const int d = e.state & 3, node = e.state >> 2;
            const int i = node % m_nx, j = node / m_nx;
            if (i == m_goalI && j == m_goalJ && (m_goalDir == kNoDir || d != opposite(m_goalDir))) {
                const double bend = m_goalDir == kNoDir || d == m_goalDir ? 0 : m_bendCost;
                relax(goalState, e.g + bend, e.state, 0);
            }
            for (int nd = 0; nd < 4; ++nd) {
                if (nd == opposite(d)) continue;
                const int ni = i + kStepX[nd], nj = j + kStepY[nd];
                if (ni < 0 || nj < 0 || ni >= m_nx || nj >= m_ny) continue;
                const int li = std::min(i, ni), lj = std::min(j, nj);
                double step = nd == kRight || nd == kLeft ? double(xs[li + 1]) - xs[li] + hEdge(li, j)
                                                          : double(ys[lj + 1]) - ys[lj] + vEdge(i, lj);
                if (nd != d) step += m_bendCost;
                relax((nj * m_nx + ni) * 4 + nd, e.g + step, e.state, heuristic(ni, nj, nd));
            }
        }
        if (!found) return {};

        TArrMyPoint nodes;
        for (int s = states[goalState].parent; s >= 0; s = states[s].parent) {
            const int node = s >> 2;
            nodes.push_back({xs[node % m_nx], ys[node / m_nx]});
        }
        TArrMyPoint route;
        appendSimplified(route, m_from.point);
        for (auto it = nodes.rbegin(); it != nodes.rend(); ++it) appendSimplified(route, *it);
        appendSimplified(route, m_to.point);
        return route;
    }

    // Slides the middle segment of every Z step (both neighbours run the same
    // way) to the middle of its free channel: between the neighbours' far ends
    // (the first and last legs counted from their stub ends) and the nearest
    // boxes on either side along its length. Length and bends stay the same;
    // the move is kept only where it enters no box and crosses no toll.
    void centreSteps(TArrMyPoint& route) const {
        const size_t n = route.size();
        for (size_t k = 1; k + 2 < n; ++k) {
            const int way = dirOf(route[k - 1], route[k]);
            if (way != dirOf(route[k + 1], route[k + 2])) continue;
            const bool horizontal = route[k].y == route[k + 1].y;
            auto coord = [&](TMyPoint p) { return horizontal ? p.y : p.x; };
            auto across = [&](TMyPoint p) { return horizontal ? p.x : p.y; };
            float lo = coord(route[k - 1]), hi = coord(route[k + 2]);
            if (k == 1 && m_from.out != kNoDir) lo = coord(m_from.node);
            if (k + 3 == n && m_to.out != kNoDir) hi = coord(m_to.node);
            if (way == kLeft || way == kUp) std::swap(lo, hi);
            const float here = coord(route[k]);
            if (!(lo <= here && here <= hi)) continue;
            const float s0 = std::min(across(route[k]), across(route[k + 1]));
            const float s1 = std::max(across(route[k]), across(route[k + 1]));
            for (const Region& r : m_regions) {
                const float low = horizontal ? r.t : r.l, high = horizontal ? r.b : r.r;
                const float from = horizontal ? r.l : r.t, to = horizontal ? r.r : r.b;
                if (!(from < s1 && to > s0)) continue;
                if (high <= here) lo = std::max(lo, high);
                else if (low >= here) hi = std::min(hi, low);
            }
            float mid = lo + (hi - lo) / 2;
            if (m_previous) mid = previousCourse(horizontal, s0, s1, lo, hi, mid);
            if (mid == here) continue;
            TArrMyPoint trial = route;
            if (horizontal) trial[k].y = trial[k + 1].y = mid;
            else trial[k].x = trial[k + 1].x = mid;
            if (cost(trial) <= cost(route)) route = std::move(trial);
        }
    }

    // A channel changes by jumps when a box starts or stops flanking the
    // segment; the previous route's parallel segment over the same stretch
    // stays where it was then, as long as it is still inside the channel.
    float previousCourse(bool horizontal, float s0, float s1, float lo, float hi, float mid) const {
        const TArrMyPoint& prev = *m_previous;
        float best = mid, bestGap = INFINITY;
        for (size_t k = 1; k < prev.size(); ++k) {
            const TMyPoint p = prev[k - 1], q = prev[k];
            if (horizontal ? p.y != q.y : p.x != q.x) continue;
            const float a = horizontal ? std::min(p.x, q.x) : std::min(p.y, q.y);
            const float b = horizontal ? std::max(p.x, q.x) : std::max(p.y, q.y);
            const float c = horizontal ? p.y : p.x;
            if (a < s1 && b > s0 && lo < c && c < hi && std::abs(c - mid) < bestGap) {
                best = c;
                bestGap = std::abs(c - mid);
            }
        }
        return bestGap > m_margin ? best : mid;
    }

    bool leavesAndEntersRight(const TArrMyPoint& r) const {
        if (r.size() < 2) return false;
        if (m_from.out != kNoDir && dirOf(r[0], r[1]) != m_from.out) return false;
        return m_goalDir == kNoDir || dirOf(r[r.size() - 2], r.back()) == m_goalDir;
    }

    // The plain elbow shapes straight between the two points, without the
    // margin legs: they win only where they are cheaper, which happens when
    // the ends are closer than the margins allow.
    std::vector<TArrMyPoint> directCandidates() const {
        const TMyPoint a = m_from.point, b = m_to.point;
        const float mx = a.x + (b.x - a.x) / 2, my = a.y + (b.y - a.y) / 2;
        const TArrMyPoint shapes[4] = {
            {a, {b.x, a.y}, b}, {a, {a.x, b.y}, b}, {a, {mx, a.y}, {mx, b.y}, b}, {a, {a.x, my}, {b.x, my}, b}};
        std::vector<TArrMyPoint> out;
        for (const TArrMyPoint& s : shapes) {
            TArrMyPoint r = simplified(s);
            if (leavesAndEntersRight(r)) out.push_back(std::move(r));
        }
        return out;
    }

    // Used only when the search cannot run: stub, one elbow, stub.
    TArrMyPoint fallbackElbow() const {
        const TMyPoint a = m_from.node, b = m_to.node;
        const bool verticalFirst = m_from.out == kLeft || m_from.out == kRight;
        const TMyPoint corner = verticalFirst ? TMyPoint{a.x, b.y} : TMyPoint{b.x, a.y};
        return simplified({m_from.point, a, corner, b, m_to.point});
    }

    Scratch& m_s;
    float m_margin, m_bendCost, m_switchCost;
    End m_from, m_to;
    int m_goalDir = kNoDir;
    std::vector<Region> m_regions;
    std::vector<Ray> m_tolls;
    const TArrMyPoint* m_previous = nullptr;
    int m_nx = 0, m_ny = 0, m_goalI = 0, m_goalJ = 0;
    double m_bendTable[4][3][3] = {};
};

// Parameter along p -> q of the last point where the segment crosses the
// closed outline, or -1 when it does not.
double lastCrossing(TMyPoint p, TMyPoint q, const TArrMyPoint& outline) {
    const size_t n = outline.size();
    if (n < 2) return -1;
    const double dx = double(q.x) - p.x, dy = double(q.y) - p.y;
    double best = -1;
    for (size_t i = 0; i < n; ++i) {
        const TMyPoint v = outline[i], w = outline[(i + 1) % n];
        const double ex = double(w.x) - v.x, ey = double(w.y) - v.y;
        const double denom = dx * ey - dy * ex;
        if (denom == 0) continue;
        const double ox = double(v.x) - p.x, oy = double(v.y) - p.y;
        const double t = (ox * ey - oy * ex) / denom, u = (ox * dy - oy * dx) / denom;
        if (t >= 0 && t <= 1 && u >= 0 && u <= 1) best = std::max(best, t);
    }
    return best;
}

}  // namespace

Tdirections SideOfBox(const TMyRect& box, TMyPoint p) {
    if (!hasExtent(box)) return dNone;
    const TMyRect r = normalised(box);
    // Squared distance from p to each side as a segment.
    auto along = [](float v, float lo, float hi) { return v < lo ? lo - v : v > hi ? v - hi : 0.0f; };
    auto sq = [](double a, double b) { return a * a + b * b; };
    const double dist[4] = {sq(p.x - r.left, along(p.y, r.top, r.bottom)), sq(p.y - r.top, along(p.x, r.left, r.right)),
                            sq(p.x - r.right, along(p.y, r.top, r.bottom)),
                            sq(p.y - r.bottom, along(p.x, r.left, r.right))};
    const Tdirections sides[4] = {dLeft, dTop, dRight, dbottom};
    return sides[std::min_element(dist, dist + 4) - dist];
}

TArrMyPoint RouteOrthogonal(const TRouteEnd& from, const TRouteEnd& to, const std::vector<TMyRect>& obstacles,
                            const TRouteOptions& options) {
    if (from.point == to.point) return {from.point};
    if (!finite(from.point) || !finite(to.point)) return {from.point, to.point};
    thread_local Scratch scratch;
    return Router(from, to, obstacles, options, scratch).route();
}

std::pair<TMyPoint, TMyPoint> ClipStraightLink(TMyPoint a, const TArrMyPoint& outlineA, TMyPoint b,
                                               const TArrMyPoint& outlineB) {
    if (a == b) return {a, b};
    const double ta = std::max(lastCrossing(a, b, outlineA), 0.0);
    const double tb = std::max(lastCrossing(b, a, outlineB), 0.0);
    if (ta + tb >= 1) return {a, b};
    auto at = [](TMyPoint p, TMyPoint q, double t) {
        return TMyPoint{float(p.x + (double(q.x) - p.x) * t), float(p.y + (double(q.y) - p.y) * t)};
    };
    return {ta > 0 ? at(a, b, ta) : a, tb > 0 ? at(b, a, tb) : b};
}

}  // namespace faroven
