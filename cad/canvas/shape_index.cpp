#include "cad/canvas/shape_index.h"

#include "cad/shapes/shape.h"

#include <algorithm>

namespace faroven {

TShapeIndex::~TShapeIndex() {
    detachAll();
    for (TMyShape* shape : m_dirty) shape->m_dirtyPos = -1;
}

void TShapeIndex::detachAll() {
    for (TMyShape* shape : m_slots)
        if (shape) shape->m_indexSlot = -1;
}

int TShapeIndex::SlotOf(const TMyShape* shape) { return shape->m_indexSlot; }

void TShapeIndex::Reset(const TRect& area, int cellSize) {
    detachAll();
    m_slots.clear();
    m_slots.shrink_to_fit();
    m_alive.clear();
    m_alive.shrink_to_fit();
    m_cells.clear();
    m_overflow.clear();
    m_overflow.shrink_to_fit();
    m_live = 0;
    m_cell = std::clamp(cellSize, 1, 4096);
    // The grid covers at most 2^30 pixels a side (boxes beyond go to the
    // overflow list), and an area far larger than any page gets larger cells
    // rather than more of them.
    constexpr int64_t kMaxSide = int64_t(1) << 30, kMaxCells = int64_t(1) << 20;
    const int64_t w = std::clamp<int64_t>(int64_t(area.right) - area.left, 1, kMaxSide);
    const int64_t h = std::clamp<int64_t>(int64_t(area.bottom) - area.top, 1, kMaxSide);
    while (((w + m_cell - 1) / m_cell) * ((h + m_cell - 1) / m_cell) > kMaxCells) m_cell *= 2;
    m_cols = int((w + m_cell - 1) / m_cell);
    m_rows = int((h + m_cell - 1) / m_cell);
    m_area = TRect{area.left, area.top, int(std::min<int64_t>(int64_t(area.left) + int64_t(m_cols) * m_cell, INT32_MAX)),
                   int(std::min<int64_t>(int64_t(area.top) + int64_t(m_rows) * m_cell, INT32_MAX))};
    m_cells.resize(size_t(m_cols) * size_t(m_rows));
}

int TShapeIndex::Insert(TMyShape* shape, const TRect& box, int listPos, bool root, bool linkLine) {
    if (m_cells.empty()) Reset(TRect{0, 0, 1, 1}, m_cell);
    kill(shape->m_indexSlot);
    const int slot = int(m_slots.size());
    m_slots.push_back(shape);
    if (m_alive.size() * 64 < m_slots.size()) m_alive.push_back(0);
    m_alive[size_t(slot) / 64] |= uint64_t(1) << (slot % 64);
    shape->m_indexSlot = slot;
    ++m_live;
    if (box.right <= box.left || box.bottom <= box.top) return slot;
    const uint32_t posFlags =
        (uint32_t(std::clamp(listPos, 0, int(kPosMask))) & kPosMask) | (root ? kRootFlag : 0) | (linkLine ? kLinkFlag : 0);
    const bool inside = box.left >= m_area.left && box.top >= m_area.top && box.right <= m_area.right &&
                        box.bottom <= m_area.bottom;
    if (!inside) {
        m_overflow.push_back(Wide{slot, posFlags, box});
        return slot;
    }
    const int c0 = (box.left - m_area.left) / m_cell, c1 = (box.right - 1 - m_area.left) / m_cell;
    const int r0 = (box.top - m_area.top) / m_cell, r1 = (box.bottom - 1 - m_area.top) / m_cell;
    for (int row = r0; row <= r1; ++row)
        for (int col = c0; col <= c1; ++col) {
            const int ox = m_area.left + col * m_cell, oy = m_area.top + row * m_cell;
            // Clipped to the cell (one pixel of slack each side keeps the
            // edges' meaning: inside the cell the comparisons are unchanged).
            auto clip = [&](int v, int origin) { return int16_t(std::clamp(v - origin, -1, m_cell + 1)); };
            std::vector<Entry>& cell = m_cells[size_t(row * m_cols + col)];
            // About to grow: drop the entries of dead slots first, so that a
            // cell that a often changed shape (a connector routed again and
            // again) passes through keeps to about its live entries.
            if (cell.size() == cell.capacity() && cell.size() >= 8)
                std::erase_if(cell, [&](const Entry& e) { return !alive(e.slot); });
            cell.push_back(
                Entry{slot, posFlags, clip(box.left, ox), clip(box.top, oy), clip(box.right, ox), clip(box.bottom, oy)});
        }
    return slot;
}

void TShapeIndex::kill(int slot) {
    if (slot < 0 || size_t(slot) >= m_slots.size() || !m_slots[size_t(slot)]) return;
    m_slots[size_t(slot)]->m_indexSlot = -1;
    m_slots[size_t(slot)] = nullptr;
    m_alive[size_t(slot) / 64] &= ~(uint64_t(1) << (slot % 64));
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
    size_t bytes = m_slots.capacity() * sizeof(TMyShape*) + m_alive.capacity() * sizeof(uint64_t) +
                   m_cells.capacity() * sizeof(std::vector<Entry>) + m_overflow.capacity() * sizeof(Wide) +
                   m_dirty.capacity() * sizeof(TMyShape*);
    for (const auto& cell : m_cells) bytes += cell.capacity() * sizeof(Entry);
    return bytes;
}

}  // namespace faroven
