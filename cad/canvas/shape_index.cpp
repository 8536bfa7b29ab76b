#include "cad/canvas/shape_index.h"

#include "cad/shapes/shape.h"

#include <algorithm>

namespace faroven {

TShapeIndex::~TShapeIndex() {
    detachAll();
    for (TMyShape* shape : m_dirty) shape->m_dirtyPos = -1;
}

void TShapeIndex::detachAll() {
    for (const Slot& s : m_slots)
        if (s.shape) s.shape->m_indexSlot = -1;
}

int TShapeIndex::SlotOf(const TMyShape* shape) { return shape->m_indexSlot; }

void TShapeIndex::Reset(const TRect& area, int cellSize) {
    detachAll();
    m_slots.clear();
    m_slots.shrink_to_fit();
    m_cells.clear();
    m_live = 0;
    m_stamp = 0;
    m_area = area;
    m_cell = std::max(cellSize, 1);
    m_cols = std::max(1, (area.Width() + m_cell - 1) / m_cell);
    m_rows = std::max(1, (area.Height() + m_cell - 1) / m_cell);
    m_cells.resize(size_t(m_cols) * size_t(m_rows));
}

int TShapeIndex::colOf(int x) const {
    const int64_t c = (int64_t(x) - m_area.left) / m_cell;
    return int(std::clamp<int64_t>(x < m_area.left ? -1 : c, 0, m_cols - 1));
}

int TShapeIndex::rowOf(int y) const {
    const int64_t r = (int64_t(y) - m_area.top) / m_cell;
    return int(std::clamp<int64_t>(y < m_area.top ? -1 : r, 0, m_rows - 1));
}

uint32_t TShapeIndex::nextStamp() {
    if (++m_stamp == 0) {
        // After four billion queries the stamps start over from a clean slate.
        for (Slot& s : m_slots) s.stamp = 0;
        m_stamp = 1;
    }
    return m_stamp;
}

int TShapeIndex::Insert(TMyShape* shape, const TRect& box, int listPos) {
    if (m_cells.empty()) Reset(TRect{0, 0, 1, 1}, m_cell);
    kill(shape->m_indexSlot);
    const int slot = int(m_slots.size());
    m_slots.push_back(Slot{shape, box, listPos, 0});
    shape->m_indexSlot = slot;
    ++m_live;
    if (box.right > box.left && box.bottom > box.top) {
        const int c0 = colOf(box.left), c1 = colOf(box.right - 1), r0 = rowOf(box.top), r1 = rowOf(box.bottom - 1);
        for (int row = r0; row <= r1; ++row)
            for (int col = c0; col <= c1; ++col) m_cells[size_t(cellIndex(col, row))].push_back(slot);
    }
    return slot;
}

void TShapeIndex::kill(int slot) {
    if (slot < 0 || size_t(slot) >= m_slots.size() || !m_slots[size_t(slot)].shape) return;
    m_slots[size_t(slot)].shape->m_indexSlot = -1;
    m_slots[size_t(slot)].shape = nullptr;
    --m_live;
}

void TShapeIndex::Remove(TMyShape* shape) { kill(shape->m_indexSlot); }

void TShapeIndex::MarkDirty(TMyShape* shape) {
    if (shape->m_dirtyPos >= 0) return;
    shape->m_dirtyPos = int32_t(m_dirty.size());
    m_dirty.push_back(shape);
}

bool TShapeIndex::IsDirty(const TMyShape* shape) const { return shape->m_dirtyPos >= 0; }

std::vector<TMyShape*> TShapeIndex::TakeDirty() {
    std::vector<TMyShape*> out;
    out.swap(m_dirty);
    for (TMyShape* shape : out) shape->m_dirtyPos = -1;
    return out;
}

bool TShapeIndex::Forget(TMyShape* shape) {
    if (const int pos = shape->m_dirtyPos; pos >= 0) {
        // Swap-remove: the last dirty shape takes the place.
        TMyShape* last = m_dirty.back();
        m_dirty[size_t(pos)] = last;
        last->m_dirtyPos = pos;
        m_dirty.pop_back();
        shape->m_dirtyPos = -1;
    }
    const bool indexed = shape->m_indexSlot >= 0;
    kill(shape->m_indexSlot);
    return indexed;
}

size_t TShapeIndex::MemoryBytes() const {
    size_t bytes = m_slots.capacity() * sizeof(Slot) + m_cells.capacity() * sizeof(std::vector<int32_t>);
    for (const auto& cell : m_cells) bytes += cell.capacity() * sizeof(int32_t);
    return bytes;
}

}  // namespace faroven
