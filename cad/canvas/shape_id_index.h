// TShapeIdIndex: finds a canvas's shape by id without scanning the list. It
// follows appends and removals as they happen, and reorders need nothing (an
// entry is trusted only while the shape still carries the id at its number,
// wherever that is). A listed shape's id changing, or shapes placed by other
// means, mark it stale, and it is rebuilt at the next lookup.
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
    // The shape has left the list (it may be freed next).
    void Removed(const TMyShape* shape);
    void Invalidate() { m_valid = false; }

private:
    void rebuild(const std::vector<TMyShape*>& shapes);

    std::unordered_map<int, TMyShape*> m_shapes;
    bool m_valid = false;
    // Some id is carried by more than one shape: a removal cannot tell
    // which of them the entry should name next, so it rebuilds.
    bool m_sharedIds = false;
};

}  // namespace faroven
