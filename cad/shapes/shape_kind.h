// TShapeKind: which shape class an object is, known at compile time (in the
// spirit of QGraphicsItem::Type). Code that must tell shape classes apart
// compares kinds, so a misspelt class is a compile error instead of a test
// that silently never matches.
//
// Every shape class of the library has a kind here. A class states its own
// kind as `static constexpr TShapeKind Kind` and returns it from `kind()`; a subclass
// without a kind of its own (a test double, an application's shape) reports
// its base class's kind. Kinds are not stored in files: the file formats keep
// the class names.
#pragma once

#include <cstdint>

namespace faroven {

enum class TShapeKind : uint8_t {
    Shape,         // TMyShape itself
    Rectangle,     // TMyRectangle
    Ellipse,       // TMyEllipse
    Group,         // TMyGroup
    Combine,       // TMyCombine
    Line,          // TMyLine
    RuleLine,      // TMyRuleLine
    PolyLine,      // TMyPolyLine
    Polygon,       // TMyPolygon
    FreeLine,      // TMyFreeLine
    PolyBezier,    // TMyPolyBezier
    BLine,         // TMyBLine
    ElliArc,       // TMyElliArc
    Text,          // TMyText
    Image,         // TMyImage
    LinkPoint,     // TMyLinkPoint
    LineLinkLine,  // TMyLineLinkLine: the connector point
    LinkLine,      // TMyLinkLine
};

}  // namespace faroven
