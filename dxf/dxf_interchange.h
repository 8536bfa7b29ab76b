// The interchange DXF export: a complete AutoCAD R2000 ("AC1015") drawing
// for exchange with CAD programs, beside the canvas's plain ENTITIES-only
// export. It writes the HEADER, CLASSES, TABLES (line types for the pen
// styles, one layer per canvas layer, text styles per font face), BLOCKS,
// ENTITIES and OBJECTS sections with unique handles and owner references.
//
// Coordinates are millimetres with y up: with k = 96 / 25.4 pixels per
// millimetre and H the control's height in pixels, a point (x, y) of the
// drawing becomes (x / k, (H - y) / k); the zoom is not applied. Numbers are
// always written with a point, whatever DecimalSeparator() is. The lines are
// meant to be saved in Windows-1252, as the header says; characters beyond
// it are written as \U+XXXX escapes.
//
// Each shape becomes entities on the layer of its LayerId, with the pen's
// colour (62 and true colour 420), line type and line weight:
//   TMyLine, TMyRuleLine               LINE
//   TMyLinkLine                        LINE per leg of its route
//   TMyPolyLine, TMyFreeLine           open LWPOLYLINE
//   TMyRectangle, TMyPolygon           closed LWPOLYLINE
//   TMyEllipse                         CIRCLE when round, else ELLIPSE
//   TMyElliArc                         ARC (circular) or ELLIPSE with start and
//                                      end parameters (elliptic); LINEs close a
//                                      chord or sector
//   TMyPolyBezier, TMyBLine            SPLINE of the curve the shape draws
//   TMyText                            TEXT (one row) or MTEXT (several rows);
//                                      closed LWPOLYLINEs of the glyph outlines
//                                      with glyphOutlines; the frame as a closed
//                                      LWPOLYLINE when IsBorder
//   TMyLineLinkLine                    two CIRCLEs (the ring and its dot)
// Groups and combines draw nothing of their own (their members are exported
// where they stand in MyShapes); images and link points are left out. A
// shape that is not Visible is written with the invisible flag.
#pragma once

#include <QStringList>

namespace faroven {

class TMyCAD;

// The drawing as an interchange DXF file, as text lines (one per group code
// and one per value, no line ends). glyphOutlines: texts as closed outline
// polylines of their glyphs instead of TEXT/MTEXT. The canvas is not changed.
QStringList InterchangeDxfLines(TMyCAD& canvas, bool glyphOutlines = false);

}  // namespace faroven
