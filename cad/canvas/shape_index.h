// TShapeIndex: the canvas's spatial index, a uniform grid of square cells over
// pixel space. Each entry (a slot) holds a shape, the pixel box in which the
// shape may draw or answer a hit test at the canvas's zoom, and the shape's
// position in the canvas's list when the entry was made. A cell lists the
// slots whose box meets it; boxes beyond the grid's area land in the border
// cells, so nothing is ever lost, only slower to find.
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
    TShapeIndex() = default;
    ~TShapeIndex();
    TShapeIndex(const TShapeIndex&) = delete;
    TShapeIndex& operator=(const TShapeIndex&) = delete;

    // Forgets every entry (not the dirty list) and lays cells of cellSize pixels over area.
    void Reset(const TRect& area, int cellSize);
    // Indexes the shape with a box, replacing its previous entry; an empty box
    // is kept but listed in no cell. Returns the slot.
    int Insert(TMyShape* shape, const TRect& box, int listPos);
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

    TMyShape* Shape(int slot) const { return m_slots[size_t(slot)].shape; }
    const TRect& Box(int slot) const { return m_slots[size_t(slot)].box; }
    int ListPos(int slot) const { return m_slots[size_t(slot)].listPos; }
    int LiveCount() const { return m_live; }
    int DeadCount() const { return int(m_slots.size()) - m_live; }
    int CellSize() const { return m_cell; }
    // Heap bytes held by the index (slots and cells), for memory accounting.
    size_t MemoryBytes() const;

    // Calls f(slot) for every live slot whose box holds the pixel p (right and
    // bottom edges excluded), in no particular order, each once.
    template <class F>
    void ForEachAt(TPoint p, F&& f) const {
        if (m_cells.empty()) return;
        for (int32_t slot : m_cells[size_t(cellIndex(colOf(p.x), rowOf(p.y)))]) {
            const Slot& s = m_slots[size_t(slot)];
            if (s.shape && PtInRect(s.box, p)) f(int(slot));
        }
    }

    // Calls f(slot) for every live slot whose box meets r, each once.
    template <class F>
    void ForEachIn(const TRect& r, F&& f) {
        if (m_cells.empty() || r.right <= r.left || r.bottom <= r.top) return;
        const uint32_t stamp = nextStamp();
        const int c0 = colOf(r.left), c1 = colOf(r.right - 1), r0 = rowOf(r.top), r1 = rowOf(r.bottom - 1);
        for (int row = r0; row <= r1; ++row)
            for (int col = c0; col <= c1; ++col)
                for (int32_t slot : m_cells[size_t(cellIndex(col, row))]) {
                    Slot& s = m_slots[size_t(slot)];
                    if (!s.shape || s.stamp == stamp) continue;
                    s.stamp = stamp;
                    if (s.box.left < r.right && r.left < s.box.right && s.box.top < r.bottom && r.top < s.box.bottom)
                        f(int(slot));
                }
    }

private:
    struct Slot {
        TMyShape* shape = nullptr;  // null once killed
        TRect box;
        int32_t listPos = -1;
        uint32_t stamp = 0;  // last ForEachIn that reported the slot
    };

    int colOf(int x) const;
    int rowOf(int y) const;
    int cellIndex(int col, int row) const { return row * m_cols + col; }
    uint32_t nextStamp();
    void kill(int slot);
    void detachAll();

    std::vector<Slot> m_slots;
    std::vector<TMyShape*> m_dirty;
    std::vector<std::vector<int32_t>> m_cells;
    TRect m_area;
    int m_cell = 64;
    int m_cols = 0;
    int m_rows = 0;
    int m_live = 0;
    uint32_t m_stamp = 0;
};

}  // namespace faroven
