#include "platform/types.h"

#include <limits>

namespace faroven {

bool IntersectRect(TRect& out, const TRect& a, const TRect& b) {
    out.left = std::max(a.left, b.left);
    out.top = std::max(a.top, b.top);
    out.right = std::min(a.right, b.right);
    out.bottom = std::min(a.bottom, b.bottom);
    if (out.left >= out.right || out.top >= out.bottom) {
        out = TRect{};
        return false;
    }
    return true;
}

bool InflateRect(TRect& r, int dx, int dy) {
    const int64_t l = int64_t(r.left) - dx, t = int64_t(r.top) - dy;
    const int64_t rr = int64_t(r.right) + dx, b = int64_t(r.bottom) + dy;
    constexpr int64_t lo = std::numeric_limits<int>::min(), hi = std::numeric_limits<int>::max();
    for (int64_t v : {l, t, rr, b})
        if (v < lo || v > hi) return false;
    r = TRect{int(l), int(t), int(rr), int(b)};
    return true;
}

void TPersistent::Assign(const TPersistent* source) {
    if (source == this) return;
    throw EInvalidOperation(QStringLiteral("Cannot assign a %1 to a %2")
                                .arg(source ? typeid(*source).name() : "nil", typeid(*this).name()));
}

}  // namespace faroven
