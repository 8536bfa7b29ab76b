// Checks the relations between shapes read from a stream (a drawing, a
// block, a library entry) before they join a canvas.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace faroven {

class TMyShape;

// The relations must be those of a drawing: numbers in list order,
// references to shapes that exist, every member listed by the group that is
// its parent, and no group inside itself. Painting and editing rely on all
// of that, so shapes that break it are refused with EFileFormatError naming
// the first shape at fault and where its record starts (starts[i]).
void CheckShapeRelations(const std::vector<std::unique_ptr<TMyShape>>& shapes, const std::vector<int64_t>& starts);

}  // namespace faroven
