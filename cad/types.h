// The drawing's own value types: float points and rectangles in unzoomed
// drawing units (y down), the arrays built from them, and route legs.
#pragma once

#include "cad/enums.h"
#include "platform/types.h"

#include <cstdint>
#include <vector>

namespace faroven {

struct TMyPoint {
    float x = 0;
    float y = 0;
    friend bool operator==(const TMyPoint&, const TMyPoint&) = default;
};

struct TMyRect {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
    friend bool operator==(const TMyRect&, const TMyRect&) = default;
};

using TArrMyPoint = std::vector<TMyPoint>;
using TMyShapeNo = std::vector<uint32_t>;

// One leg of an orthogonal route: the direction it runs and the point where it ends.
struct TDirAndPoint {
    Tdirections direction = dNone;
    TMyPoint point;
    friend bool operator==(const TDirAndPoint&, const TDirAndPoint&) = default;
};
using TArrDirAndPoints = std::vector<TDirAndPoint>;

}  // namespace faroven
