// TShapeIdIndex: finds a canvas's shape by id without scanning the list. It
// follows appends as they happen; anything else that changes the list, or a
// listed shape's id, marks it stale and it is rebuilt at the next lookup. An
// entry is trusted only while the shape still carries the id at its number.
#pragma once

#include <unordered_map>
#include <vector>

namespace faroven {

class TMyShape;

class TShapeIdIndex {
public:
    // The number of the last shape in the list that carries the id, or -1.
    int NumberOf(int id, const std::vector<TMyShape*>& shapes);
    void Appended(TMyShape* shape);
    void Invalidate() { m_valid = false; }

private:
    void rebuild(const std::vector<TMyShape*>& shapes);

    std::unordered_map<int, TMyShape*> m_shapes;
    bool m_valid = false;
};

}  // namespace faroven
