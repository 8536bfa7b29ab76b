// Basic value types of the host framework: integer points and rectangles, the
// root object, notify events, the exception hierarchy and the one rounding rule.
#pragma once

#include <QString>
#include <cmath>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <vector>

namespace faroven {

struct TPoint {
    int x = 0;
    int y = 0;
    friend bool operator==(const TPoint&, const TPoint&) = default;
};

struct TRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    friend bool operator==(const TRect&, const TRect&) = default;
};

using TArrPoint = std::vector<TPoint>;

inline TPoint Point(int x, int y) { return TPoint{x, y}; }
inline TRect Rect(int left, int top, int right, int bottom) { return TRect{left, top, right, bottom}; }
inline TRect Bounds(int left, int top, int width, int height) { return TRect{left, top, left + width, top + height}; }

// True when the point lies in the rectangle, right and bottom edges excluded.
inline bool PtInRect(const TRect& r, const TPoint& p) {
    return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
}
bool IntersectRect(TRect& out, const TRect& a, const TRect& b);
// Grows the rectangle by dx, dy on each side; false (rectangle unchanged) on overflow.
bool InflateRect(TRect& r, int dx, int dy);

// Rounds to the nearest integer, halves to the even neighbour. Every conversion
// from floating point to pixels goes through this one function.
inline int Round(double v) {
    double r = std::nearbyint(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) return r > 0 ? INT32_MAX : INT32_MIN;
    return static_cast<int>(r);
}
inline int Trunc(double v) {
    if (!(v >= -2147483648.0 && v <= 2147483647.0)) return v > 0 ? INT32_MAX : INT32_MIN;
    return static_cast<int>(v);
}

// Root of the framework's class tree; gives every notifying object a common sender type.
class TObject {
public:
    virtual ~TObject() = default;
};

// A class that can copy its state from another of its kind.
class TPersistent : public TObject {
public:
    virtual void Assign(const TPersistent* source);
};

using TNotifyEvent = std::function<void(TObject* Sender)>;

// Errors carry a message that says what went wrong and where.
class Exception : public std::runtime_error {
public:
    explicit Exception(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    const QString& Message() const { return m_message; }
private:
    QString m_message;
};
class EStreamError : public Exception { using Exception::Exception; };
class EReadError : public EStreamError { using EStreamError::EStreamError; };
class EWriteError : public EStreamError { using EStreamError::EStreamError; };
class EFOpenError : public EStreamError { using EStreamError::EStreamError; };
class EFCreateError : public EStreamError { using EStreamError::EStreamError; };
class EConvertError : public Exception { using Exception::Exception; };
class EInOutError : public Exception { using Exception::Exception; };
class EInvalidGraphic : public Exception { using Exception::Exception; };
class EInvalidOperation : public Exception { using Exception::Exception; };

}  // namespace faroven
