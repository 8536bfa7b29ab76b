// Internals shared by the canvas's source files. Not part of the API: the
// names live in faroven::canvas_detail and may change without notice.
#pragma once

#include <vector>

namespace faroven {

class TMyCAD;
class TMyShape;

namespace canvas_detail {

// The shape and its members, recursively: depth first, each shape before its
// members, every shape once (a damaged member list cannot loop).
std::vector<TMyShape*> shapeTree(const TMyCAD& cad, TMyShape* shape);

}  // namespace canvas_detail
}  // namespace faroven
