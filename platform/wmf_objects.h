// Qt's drawing attributes as metafile objects and modes: a QPen as a logical
// pen, a QBrush as a logical or pattern brush, a QFont as a logical font, and
// composition modes as the raster operations of lines and of bitmaps.
#pragma once

#include "platform/wmf_dc.h"

#include <QBrush>
#include <QFont>
#include <QPainter>
#include <QPen>
#include <QTransform>

namespace faroven::wmf {

// COLORREF of a colour; a translucent colour is mixed with white, because the
// metafile has no alpha.
uint32_t ColorRefOf(const QColor& color);

// The pen's width in device units: a cosmetic pen keeps its width (0 stays 0,
// the thinnest line), any other is scaled by the transform.
qreal PenWidthOnDevice(const QPen& pen, const QTransform& transform);

// META_CREATEPENINDIRECT: dash style, end cap and join, width on the device
// (at least 1 for a pen that is not 0 wide) and colour.
TGdiObject PenObject(const QPen& pen, const QTransform& transform);

// META_CREATEBRUSHINDIRECT for solid, empty and Qt's six hatch patterns;
// META_DIBCREATEPATTERNBRUSH for a texture. Other patterns and gradients
// become solid in the brush's main colour.
TGdiObject BrushObject(const QBrush& brush);

// META_CREATEFONTINDIRECT of an em height and a baseline angle on the device
// in tenths of a degree counter-clockwise, ANSI character set.
TGdiObject FontObject(const QFont& font, int emHeight, int escapement);

// R2_* of a composition mode; R2_COPYPEN for every mode that is not a raster
// operation.
int Rop2For(QPainter::CompositionMode mode);
// The ternary raster operation that draws a bitmap the way the mode combines
// source and destination; SRCCOPY for every mode that is not a raster operation.
uint32_t Rop3For(QPainter::CompositionMode mode);

}  // namespace faroven::wmf
