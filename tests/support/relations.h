// Shape relations by identity: parent, members and attached link lines as
// shape pointers instead of numbers, so that a test can check that deleting
// or reordering shapes left every reference pointing at the same shape.
#pragma once

#include "cad/canvas/mycad.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace faroven::test {

struct Relations {
    const TMyShape* parent = nullptr;
    std::vector<const TMyShape*> children;
    std::vector<const TMyShape*> links;
    bool operator==(const Relations&) const = default;
};
using RelationMap = std::map<const TMyShape*, Relations>;

inline RelationMap CaptureRelations(const TMyCAD& cad) {
    RelationMap out;
    for (const TMyShape* shape : cad.MyShapes()) {
        Relations r;
        r.parent = cad.GetShapeByNo(shape->ParentShapeNo());
        for (int no : shape->ChildShapeNos()) r.children.push_back(cad.GetShapeByNo(no));
        for (uint32_t no : shape->LinkShapeNos()) r.links.push_back(cad.GetShapeByNo(int(no)));
        out[shape] = r;
    }
    return out;
}

// What the relations must become once the given shapes are gone: their
// entries and every reference to them disappear (a parent becomes nil).
inline RelationMap WithoutShapes(RelationMap map, const std::set<const TMyShape*>& removed) {
    for (const TMyShape* s : removed) map.erase(s);
    for (auto& [shape, r] : map) {
        if (removed.count(r.parent)) r.parent = nullptr;
        std::erase_if(r.children, [&](const TMyShape* c) { return removed.count(c) > 0; });
        std::erase_if(r.links, [&](const TMyShape* c) { return removed.count(c) > 0; });
    }
    return map;
}

// The shape and its members, recursively, by the current numbers.
inline std::set<const TMyShape*> TreeOf(const TMyCAD& cad, const TMyShape* shape) {
    std::set<const TMyShape*> out;
    std::vector<const TMyShape*> stack{shape};
    while (!stack.empty()) {
        const TMyShape* s = stack.back();
        stack.pop_back();
        if (!s || !out.insert(s).second) continue;
        for (int no : s->ChildShapeNos()) stack.push_back(cad.GetShapeByNo(no));
    }
    return out;
}

inline std::string Describe(const RelationMap& map) {
    std::ostringstream os;
    auto name = [](const TMyShape* s) { return s ? s->Name().toStdString() : std::string("nil"); };
    for (const auto& [shape, r] : map) {
        os << name(shape) << ": parent " << name(r.parent) << ", children [";
        for (auto c : r.children) os << name(c) << ' ';
        os << "], links [";
        for (auto c : r.links) os << name(c) << ' ';
        os << "]\n";
    }
    return os.str();
}

// Every stored number is the shape's index, and the relations are the expected ones.
inline void ExpectConsistent(const TMyCAD& cad, const RelationMap& expected) {
    for (int i = 0; i < cad.GetShapesCount(); ++i) EXPECT_EQ(cad.GetShapeByNo(i)->ShapeNo(), i) << "shape at " << i;
    const RelationMap now = CaptureRelations(cad);
    EXPECT_TRUE(now == expected) << "now:\n" << Describe(now) << "expected:\n" << Describe(expected);
}

}  // namespace faroven::test
