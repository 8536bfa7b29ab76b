#include "cad/canvas/shape_id_index.h"

#include "cad/shapes/shape.h"

namespace faroven {

int TShapeIdIndex::NumberOf(int id, const std::vector<TMyShape*>& shapes) {
    if (id < 0) return -1;
    auto current = [&](const TMyShape* shape) {
        const int no = shape->ShapeNo();
        return shape->GetShapeId() == id && no >= 0 && size_t(no) < shapes.size() && shapes[size_t(no)] == shape;
    };
    if (m_valid) {
        const auto it = m_shapes.find(id);
        if (it == m_shapes.end()) return -1;
        if (current(it->second)) return it->second->ShapeNo();
    }
    rebuild(shapes);
    const auto it = m_shapes.find(id);
    return it != m_shapes.end() && current(it->second) ? it->second->ShapeNo() : -1;
}

void TShapeIdIndex::Appended(TMyShape* shape) {
    if (!m_valid || shape->GetShapeId() < 0) return;
    // A later shape with the same id wins, as it does in a scan.
    TMyShape*& entry = m_shapes[shape->GetShapeId()];
    if (entry) m_sharedIds = true;
    entry = shape;
}

void TShapeIdIndex::Removed(const TMyShape* shape) {
    if (!m_valid) return;
    if (m_sharedIds) {
        m_valid = false;
        return;
    }
    const auto it = m_shapes.find(shape->GetShapeId());
    if (it != m_shapes.end() && it->second == shape) m_shapes.erase(it);
}

void TShapeIdIndex::rebuild(const std::vector<TMyShape*>& shapes) {
    m_shapes.clear();
    m_sharedIds = false;
    for (TMyShape* shape : shapes) {
        if (!shape || shape->GetShapeId() < 0) continue;
        TMyShape*& entry = m_shapes[shape->GetShapeId()];
        if (entry) m_sharedIds = true;
        entry = shape;
    }
    m_valid = true;
}

}  // namespace faroven
