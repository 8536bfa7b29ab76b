#include "dxf/dxf_primitives.h"

namespace faroven {

TDxfValueType DxfValueType(int code) {
    if ((code >= 0 && code <= 9) || (code >= 999 && code <= 1009)) return TDxfValueType::Text;
    if ((code >= 10 && code <= 59) || (code >= 140 && code <= 147) || (code >= 210 && code <= 239) ||
        (code >= 1010 && code <= 1059))
        return TDxfValueType::Real;
    if ((code >= 60 && code <= 79) || (code >= 170 && code <= 175) || (code >= 1060 && code <= 1079))
        return TDxfValueType::Integer;
    return TDxfValueType::Untyped;
}

const TVariant& TGroupTable::Value(int code) const {
    static const TVariant empty;
    const int slot = SlotOf(code);
    return slot < 0 ? empty : (*this)[size_t(slot)];
}

void TGroupTable::SetValue(int code, const TVariant& value) {
    const int slot = SlotOf(code);
    if (slot >= 0) (*this)[size_t(slot)] = value;
}

void TGroupTable::Clear() {
    for (TVariant& v : *this) v.Clear();
}

TPoint2D CartesianPoint2D(const TPoint2D& point) {
    if (point.w != 1 && point.w != 0) return TPoint2D{point.x / point.w, point.y / point.w, 1};
    return point;
}

TRect2D CartesianRect2D(const TRect2D& rect) {
    return TRect2D{CartesianPoint2D(rect.first), CartesianPoint2D(rect.second)};
}

TRect2D ReorderRect2D(const TRect2D& rect) {
    TRect2D result = CartesianRect2D(rect);
    if (rect.first.x > rect.second.x) {
        result.first.x = rect.second.x;
        result.second.x = rect.first.x;
    }
    if (rect.first.y > rect.second.y) {
        result.first.y = rect.second.y;
        result.second.y = rect.first.y;
    }
    return result;
}

TMyPoint pixel2mm(const TMyPoint& point) {
    return TMyPoint{float(double(point.x) * 25.4 / 96), float(double(point.y) * 25.4 / 96)};
}

TMyPoint ModeChange(const TMyPoint& point, int /*mode*/) { return point; }

}  // namespace faroven
