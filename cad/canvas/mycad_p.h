// Internals shared by the canvas's source files. Not part of the API: the
// names live in faroven::canvas_detail and may change without notice.
#pragma once

#include "cad/canvas/undo_history.h"

#include "cad/shapes/shape.h"
#include "platform/types.h"

#include <QPointer>

#include <algorithm>
#include <vector>

namespace faroven {

class TMyCAD;
class TMyShape;

namespace canvas_detail {

// The shape and its members, recursively: depth first, each shape before its
// members, every shape once (a damaged member list cannot loop).
std::vector<TMyShape*> shapeTree(const TMyCAD& cad, TMyShape* shape);

// The connections the shape takes part in, by ids: its own two ends when it
// is a line, and the ends of the link lines attached to it.
std::vector<TUndoLink> linksOf(const TMyCAD& cad, const TMyShape* shape);

// The points of the link lines attached to the shape (and of the shape
// itself when it is a link line), by line id.
std::vector<std::pair<int, TArrMyPoint>> routesOf(const TMyCAD& cad, const TMyShape* shape);

// Puts recorded routes back on the link lines that are still there.
void restoreRoutes(TMyCAD& cad, const std::vector<std::pair<int, TArrMyPoint>>& routes);

// Puts the link line's two ends back as the links recorded for it say
// (attached to the recorded shape and link point, or free), both sides.
void setEnds(TMyCAD& cad, TMyShape* line, const std::vector<TUndoLink>& links);

// Attaches the line's end to the shape's link point again, both sides, when
// both are on the canvas, the link point exists and that end is free.
void rejoin(TMyCAD& cad, const TUndoLink& link);

inline bool isEmptyRect(const TRect& r) { return r.right <= r.left || r.bottom <= r.top; }

// The smallest rectangle holding both; an empty one adds nothing.
inline TRect unite(const TRect& a, const TRect& b) {
    if (isEmptyRect(a)) return b;
    if (isEmptyRect(b)) return a;
    return TRect{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                 std::max(a.bottom, b.bottom)};
}

inline TRect offsetRect(const TRect& r, int dx, int dy) {
    return TRect{r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}

// The shape's OnClick with the canvas as sender, unless a handler that ran
// before has deleted the shape.
inline void clickIfAlive(const QPointer<TMyShape>& shape, TObject* canvas) {
    if (shape && shape->OnClick) shape->OnClick(canvas);
}

// Connector points (TMyLineLinkLine) win a press over every other shape.
bool isConnectorPoint(const TMyShape* shape);

}  // namespace canvas_detail
}  // namespace faroven
