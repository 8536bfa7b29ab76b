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
    // A later shape with the same id wins, as it does in a scan.
    if (m_valid && shape->GetShapeId() >= 0) m_shapes[shape->GetShapeId()] = shape;
}

void TShapeIdIndex::rebuild(const std::vector<TMyShape*>& shapes) {
    m_shapes.clear();
    for (TMyShape* shape : shapes)
        if (shape && shape->GetShapeId() >= 0) m_shapes[shape->GetShapeId()] = shape;
    m_valid = true;
}

}  // namespace faroven
