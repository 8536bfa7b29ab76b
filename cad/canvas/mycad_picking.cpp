// TMyCAD: picking and the spatial index that painting and picking share.
//
// Every shape of MyShapes has an entry in a grid of pixel boxes (TShapeIndex):
// the box in which it may draw or answer a hit test at the current zoom. A
// shape that changes reports it (TMyShape::changed -> ShapeChanged) and is
// re-indexed before the next paint or pick; a shape that is destroyed leaves
// the index at once. Changes the index cannot see shape by shape (zoom, hot
// size, shapes stored into or taken out of MyShapes without a change of their
// own, reorders that leave ShapeNo stale) are caught by cheap checks and answered
// with a rebuild, so the index never decides differently from a scan of
// MyShapes: it only skips shapes whose boxes cannot matter.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include <algorithm>
#include <bit>

namespace faroven {

namespace {

using canvas_detail::isConnectorPoint;
using canvas_detail::unite;

bool sameFont(const TFont& a, const TFont& b) {
    return a.Name() == b.Name() && a.Size() == b.Size() && a.Color() == b.Color() && a.Style() == b.Style() &&
           a.Charset() == b.Charset() && a.Pitch() == b.Pitch();
}

}  // namespace

std::shared_ptr<const TFont> TMyCAD::SharedShapeFont() {
    if (!m_sharedShapeFont || !sameFont(*m_sharedShapeFont, m_font)) {
        auto font = std::make_shared<TFont>();
        font->Assign(m_font);
        m_sharedShapeFont = std::move(font);
    }
    return m_sharedShapeFont;
}

void TMyCAD::markShapeDirty(TMyShape* shape) {
    if (shape != m_drawnShape.get()) dropSceneCache();
    m_shapeIndex.MarkDirty(shape);
}

void TMyCAD::shapeDestroyed(TMyShape* shape) {
    // The destroyed shape is expected to leave MyShapes as well.
    if (m_shapeIndex.Forget(shape) && m_indexListSize > 0) --m_indexListSize;
}

TRect TMyCAD::indexBoxOf(TMyShape* shape) { return unite(shape->GetPaintBoundsInZoom(), shape->GetHitBoundsInZoom()); }

void TMyCAD::indexShape(TMyShape* shape, const TRect& box, int pos) {
    m_shapeIndex.Insert(shape, box, pos, !shape->HasParentShape(), isConnectorPoint(shape));
}

void TMyCAD::rebuildShapeIndex() {
    m_shapeIndex.TakeDirty();
    const size_t n = m_myShapes.size();
    std::vector<TRect> boxes(n);
    const TRect client = ClientRect();
    TRect all = client;
    double sumSide = 0;
    int sized = 0;
    for (size_t i = 0; i < n; ++i) {
        if (!m_myShapes[i]) continue;
        boxes[i] = indexBoxOf(m_myShapes[i]);
        if (canvas_detail::isEmptyRect(boxes[i])) continue;
        all = unite(all, boxes[i]);
        // In 64 bits: a box may span more than the int range.
        sumSide += double(std::max(int64_t(boxes[i].right) - boxes[i].left, int64_t(boxes[i].bottom) - boxes[i].top));
        ++sized;
    }
    // The grid spans the control and the shapes around it, up to a few
    // controls' sizes away; shapes beyond go to the overflow list.
    const int64_t reach = std::max({client.Width(), client.Height(), 256}) * 4;
    auto clampTo = [](int64_t v, int64_t lo, int64_t hi) {
        return int(std::clamp<int64_t>(std::clamp(v, lo, hi), INT32_MIN, INT32_MAX));
    };
    const TRect area{clampTo(all.left, client.left - reach, client.left), clampTo(all.top, client.top - reach, client.top),
                     clampTo(all.right, client.right, client.right + reach),
                     clampTo(all.bottom, client.bottom, client.bottom + reach)};
    // Cells about as large as a typical shape: a shape then touches about four
    // cells, and a cell lists few shapes. Never more than 65536 cells.
    int cell = sized ? int(std::clamp(sumSide / sized, 16.0, 4096.0)) : 64;
    const double areaPixels = double(int64_t(area.right) - area.left) * double(int64_t(area.bottom) - area.top);
    cell = std::max(cell, int(std::min(std::ceil(std::sqrt(areaPixels / 65536.0)), double(1 << 24))));
    m_shapeIndex.Reset(area, cell);
    for (size_t i = 0; i < n; ++i)
        if (m_myShapes[i]) indexShape(m_myShapes[i], boxes[i], int(i));
    m_indexListSize = n;
    m_indexZoom = m_zoom;
    m_indexHotSize = m_hotSize;
    m_indexBuilt = true;
}

void TMyCAD::syncShapeIndex() {
    const bool stale = !m_indexBuilt || m_indexZoom != m_zoom || m_indexHotSize != m_hotSize ||
                       m_shapeIndex.DeadCount() > std::max(4096, 2 * m_shapeIndex.LiveCount());
    if (stale) {
        rebuildShapeIndex();
        return;
    }
    const std::vector<TMyShape*> dirty = m_shapeIndex.TakeDirty();
    for (TMyShape* shape : dirty) {
        const int no = shape->ShapeNo();
        const bool member = no >= 0 && size_t(no) < m_myShapes.size() && m_myShapes[size_t(no)] == shape;
        const bool indexed = TShapeIndex::SlotOf(shape) >= 0;
        if (member) {
            indexShape(shape, indexBoxOf(shape), no);
            if (!indexed) ++m_indexListSize;
        } else if (indexed) {
            // An indexed shape is no longer where its number says: the list
            // was changed without the index seeing it.
            rebuildShapeIndex();
            return;
        }
        // Otherwise a shape that is not (yet) on the canvas: nothing to index.
    }
    if (m_indexListSize != m_myShapes.size()) rebuildShapeIndex();
}

namespace {
// The position of the root above the shape at pos, following parent numbers
// as GetRootParentShape does (a broken chain stops at the last good shape).
int rootPos(const std::vector<TMyShape*>& shapes, int pos) {
    for (size_t steps = 0; steps <= shapes.size(); ++steps) {
        const TMyShape* s = shapes[size_t(pos)];
        if (!s->HasParentShape()) break;
        const int parent = s->ParentShapeNo();
        if (parent < 0 || size_t(parent) >= shapes.size() || !shapes[size_t(parent)]) break;
        pos = parent;
    }
    return pos;
}
}  // namespace

int TMyCAD::indexedListPos(int slot, int storedPos) const {
    TMyShape* shape = m_shapeIndex.Shape(slot);
    if (storedPos >= 0 && size_t(storedPos) < m_myShapes.size() && m_myShapes[size_t(storedPos)] == shape) return storedPos;
    const int no = shape->ShapeNo();
    if (no >= 0 && size_t(no) < m_myShapes.size() && m_myShapes[size_t(no)] == shape) return no;
    return -1;
}

std::vector<int> TMyCAD::rootsMeetingNow(const TRect& rect) {
    std::vector<int> roots;
    syncShapeIndex();
    if (!rootsMeeting(rect, roots)) {
        rebuildShapeIndex();
        rootsMeeting(rect, roots);
    }
    return roots;
}

bool TMyCAD::rootsMeeting(const TRect& rect, std::vector<int>& roots) {
    roots.clear();
    std::vector<uint64_t> marks((m_myShapes.size() + 63) / 64);
    bool broken = false;
    m_shapeIndex.ForEachIn(rect, [&](const TShapeIndex::Hit& hit) {
        const int pos = indexedListPos(hit.slot, hit.listPos);
        if (pos < 0) {
            broken = true;
            return;
        }
        const int root = hit.root ? pos : rootPos(m_myShapes, pos);
        marks[size_t(root) / 64] |= uint64_t(1) << (root % 64);
    });
    if (broken) return false;
    // Reading the marks word by word gives the roots in list order.
    for (size_t w = 0; w < marks.size(); ++w)
        for (uint64_t bits = marks[w]; bits; bits &= bits - 1) roots.push_back(int(w * 64 + size_t(std::countr_zero(bits))));
    return true;
}

// The winner rule over the candidates, top-most first: the first connector
// point that is hit wins outright; otherwise the first other shape that is hit.
// Candidates below a winner are looked at only while they may be connector
// points, so a press usually touches the top one or two shapes only.
TMyShape* TMyCAD::GetShapeAtPoint(TPoint point) {
    struct Candidate {
        int pos;  // the root's position in MyShapes
        int slot;
        bool linkLine;
        bool viaChild;
    };
    std::vector<Candidate> candidates;
    TCanvas* canvas = Canvas();
    for (int attempt = 0; attempt < 2; ++attempt) {
        syncShapeIndex();
        candidates.clear();
        bool broken = false;
        m_shapeIndex.ForEachAt(point, [&](const TShapeIndex::Hit& hit) {
            if (hit.root) {
                candidates.push_back(Candidate{hit.listPos, hit.slot, hit.linkLine, false});
                return;
            }
            const int pos = indexedListPos(hit.slot, hit.listPos);
            if (pos < 0) {
                broken = true;
                return;
            }
            const int root = rootPos(m_myShapes, pos);
            candidates.push_back(Candidate{root, -1, isConnectorPoint(m_myShapes[size_t(root)]), true});
        });
        std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
            return a.pos != b.pos ? a.pos > b.pos : a.viaChild < b.viaChild;
        });
        candidates.erase(std::unique(candidates.begin(), candidates.end(),
                                     [](const Candidate& a, const Candidate& b) { return a.pos == b.pos; }),
                         candidates.end());
        TMyShape* firstOther = nullptr;
        for (const Candidate& c : candidates) {
            if (broken) break;
            if (firstOther && !c.linkLine) continue;
            TMyShape* shape = size_t(c.pos) < m_myShapes.size() ? m_myShapes[size_t(c.pos)] : nullptr;
            // An entry made for a root must still be that root at that place.
            if (!c.viaChild && (shape != m_shapeIndex.Shape(c.slot) || !shape || shape->HasParentShape())) {
                broken = true;
                break;
            }
            // Only roots are picked: a parent chain that breaks off leads to none.
            if (!shape || shape->HasParentShape() || !IsShapePickable(shape) || !IsClickedMeforShape(canvas, shape, point))
                continue;
            if (c.linkLine) return shape;
            firstOther = shape;
        }
        if (!broken) return firstOther;
        rebuildShapeIndex();
    }
    return pickByScan(point);
}

// The same rule over the whole list, for a list the index cannot make sense of.
TMyShape* TMyCAD::pickByScan(TPoint point) {
    TMyShape* firstOther = nullptr;
    for (int i = int(m_myShapes.size()) - 1; i >= 0; --i) {
        TMyShape* shape = m_myShapes[size_t(i)];
        if (!shape || shape->HasParentShape() || !IsShapePickable(shape)) continue;
        const bool linkLine = isConnectorPoint(shape);
        if (firstOther && !linkLine) continue;
        if (!IsClickedMeforShape(Canvas(), shape, point)) continue;
        if (linkLine) return shape;
        firstOther = shape;
    }
    return firstOther;
}

}  // namespace faroven
