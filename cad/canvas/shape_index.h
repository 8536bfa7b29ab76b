// TShapeIndex: the canvas's spatial index, a uniform grid of square cells over
// pixel space. Each indexed shape has a slot; each cell lists the slots whose
// pixel box meets it, with the box (clipped to the cell, in 16-bit cell
// coordinates), the shape's position in the canvas's list and two flags
// (a root shape; a connector point), so that a query reads one cell's list
// front to back and touches no shape until it has chosen its candidates.
// Boxes that leave the grid's area are kept whole in an overflow list that
// every query also reads.
//
// Entries are never moved: an update kills the slot and makes a new one, and
// killed slots stay in the cells until the owner rebuilds the index (the
// owner does so when DeadCount() grows large). This keeps every change O(1)
// in the number of shapes. The owner (TMyCAD) keeps the index in step with
// its shapes; the index itself knows nothing of shapes beyond the pointer.
//
// The index also keeps the list of shapes that changed since the owner last
// looked ("dirty" shapes). Both memberships are recorded in the shape itself
// (its slot and its place in the dirty list), so that marking, re-indexing
// and forgetting a destroyed shape cost O(1); an index that goes away first
// clears those records, so a shape that outlives its canvas is left alone.
#pragma once

#include "platform/types.h"

#include <cstdint>
#include <vector>

namespace faroven {

class TMyShape;

class TShapeIndex {
public:
    // What a query reports of an entry.
    struct Hit {
        int slot;
        int listPos;    // the position in the canvas's list when indexed
        bool root;      // the shape had no parent when indexed
        bool linkLine;  // the shape is a connector point (TMyLineLinkLine)
    };

    TShapeIndex() = default;
    ~TShapeIndex();
    TShapeIndex(const TShapeIndex&) = delete;
    TShapeIndex& operator=(const TShapeIndex&) = delete;

    // Forgets every entry (not the dirty list) and lays cells of cellSize
    // pixels (at most 4096) over area.
    void Reset(const TRect& area, int cellSize);
    // Indexes the shape with a box, replacing its previous entry; an empty box
    // is kept but listed nowhere. Returns the slot.
    int Insert(TMyShape* shape, const TRect& box, int listPos, bool root, bool linkLine);
    // Drops the shape's entry, if any; the slot number is not reused before the next Reset.
    void Remove(TMyShape* shape);
    // The shape's slot, or -1 when it is not indexed.
    static int SlotOf(const TMyShape* shape);

    // Records that the shape changed (once until TakeDirty).
    void MarkDirty(TMyShape* shape);
    bool IsDirty(const TMyShape* shape) const;
    // The changed shapes, in the order they were marked; the list starts afresh.
    std::vector<TMyShape*> TakeDirty();
    // A shape is going away: it leaves the index and the dirty list. Returns
    // whether it was indexed.
    bool Forget(TMyShape* shape);

    TMyShape* Shape(int slot) const { return m_slots[size_t(slot)]; }
    int LiveCount() const { return m_live; }
    int DeadCount() const { return int(m_slots.size()) - m_live; }
    int CellSize() const { return m_cell; }
    // Heap bytes held by the index, for memory accounting.
    size_t MemoryBytes() const;

    // Calls f(Hit) for every live entry whose box holds the pixel p (right and
    // bottom edges excluded), each once, in no particular order.
    template <class F>
    void ForEachAt(TPoint p, F&& f) const {
        if (m_cells.empty()) return;
        if (insideArea(p)) {
            const int col = int((int64_t(p.x) - m_area.left) / m_cell), row = int((int64_t(p.y) - m_area.top) / m_cell);
            const int x = p.x - (m_area.left + col * m_cell), y = p.y - (m_area.top + row * m_cell);
            for (const Entry& e : m_cells[size_t(row * m_cols + col)])
                if (e.l <= x && x < e.r && e.t <= y && y < e.b && alive(e.slot)) f(hitOf(e));
        }
        for (const Wide& w : m_overflow)
            if (PtInRect(w.box, p) && alive(w.slot)) f(hitOf(w));
    }

    // Calls f(Hit) for every live entry whose box meets r, each once.
    template <class F>
    void ForEachIn(const TRect& r, F&& f) const {
        if (m_cells.empty() || r.right <= r.left || r.bottom <= r.top) return;
        std::vector<uint64_t> seen((m_slots.size() + 63) / 64);
        auto once = [&](int slot) {
            uint64_t& word = seen[size_t(slot) / 64];
            const uint64_t bit = uint64_t(1) << (slot % 64);
            if (word & bit) return false;
            word |= bit;
            return true;
        };
        const TRect q{std::max(r.left, m_area.left), std::max(r.top, m_area.top), std::min(r.right, m_area.right),
                      std::min(r.bottom, m_area.bottom)};
        if (q.left < q.right && q.top < q.bottom) {
            const int c0 = int((int64_t(q.left) - m_area.left) / m_cell), c1 = int((int64_t(q.right) - 1 - m_area.left) / m_cell);
            const int r0 = int((int64_t(q.top) - m_area.top) / m_cell), r1 = int((int64_t(q.bottom) - 1 - m_area.top) / m_cell);
            for (int row = r0; row <= r1; ++row)
                for (int col = c0; col <= c1; ++col) {
                    const int ox = m_area.left + col * m_cell, oy = m_area.top + row * m_cell;
                    const int l = q.left - ox, t = q.top - oy, rr = q.right - ox, b = q.bottom - oy;
                    for (const Entry& e : m_cells[size_t(row * m_cols + col)])
                        if (e.l < rr && l < e.r && e.t < b && t < e.b && alive(e.slot) && once(e.slot)) f(hitOf(e));
                }
        }
        for (const Wide& w : m_overflow)
            if (w.box.left < r.right && r.left < w.box.right && w.box.top < r.bottom && r.top < w.box.bottom &&
                alive(w.slot) && once(w.slot))
                f(hitOf(w));
    }

private:
    static constexpr uint32_t kRootFlag = 1u << 30;
    static constexpr uint32_t kLinkFlag = 1u << 31;
    static constexpr uint32_t kPosMask = kRootFlag - 1;

    // A box inside one cell, in cell coordinates (0 = the cell's left or top).
    struct Entry {
        int32_t slot;
        uint32_t posFlags;
        int16_t l, t, r, b;
    };
    // A box that leaves the grid's area, kept whole.
    struct Wide {
        int32_t slot;
        uint32_t posFlags;
        TRect box;
    };

    template <class E>
    static Hit hitOf(const E& e) {
        return Hit{e.slot, int(e.posFlags & kPosMask), (e.posFlags & kRootFlag) != 0, (e.posFlags & kLinkFlag) != 0};
    }
    bool alive(int32_t slot) const { return (m_alive[size_t(slot) / 64] >> (slot % 64)) & 1; }
    bool insideArea(TPoint p) const {
        return p.x >= m_area.left && p.x < m_area.right && p.y >= m_area.top && p.y < m_area.bottom;
    }
    void kill(int slot);
    void detachAll();

    std::vector<TMyShape*> m_slots;  // null once killed
    std::vector<uint64_t> m_alive;   // one bit per slot
    std::vector<std::vector<Entry>> m_cells;
    std::vector<Wide> m_overflow;
    std::vector<TMyShape*> m_dirty;
    TRect m_area;
    int m_cell = 64;
    int m_cols = 0;
    int m_rows = 0;
    int m_live = 0;
};

}  // namespace faroven
