// The enumerations of the drawing unit. Their ordinals are stored in drawing
// and library files, so the order of the values must never change; the
// static_asserts pin the ones that are easiest to disturb.
#pragma once

#include <QObject>
#include <cstdint>

namespace faroven {
inline namespace cad_enums {
Q_NAMESPACE

enum TGradientStyle : uint8_t {
    gsRadialC, gsRadialT, gsRadialB, gsRadialL, gsRadialR, gsRadialTL, gsRadialTR, gsRadialBL, gsRadialBR,
    gsLinearH, gsLinearV, gsReflectedH, gsReflectedV, gsDiagonalLF, gsDiagonalLB, gsDiagonalRF, gsDiagonalRB,
    gsArrowL, gsArrowR, gsArrowU, gsArrowD, gsDiamond, gsButterfly, gsNone
};
Q_ENUM_NS(TGradientStyle)
enum TLinkLineDrawStyle : uint8_t { lldsHV, lldsFree };
Q_ENUM_NS(TLinkLineDrawStyle)
enum TTickStyle : uint8_t { tsLine, tsNone };
Q_ENUM_NS(TTickStyle)
enum TArcMode : uint8_t { amCircle, amEllipse };
Q_ENUM_NS(TArcMode)
enum TArcStyle : uint8_t { asArc, asChord, asSector };
Q_ENUM_NS(TArcStyle)
enum TMyAction : uint8_t { atRotating, atSizing };
Q_ENUM_NS(TMyAction)
enum TLinkLineStyle : uint8_t { llsFree, llsHorz, llsVert };
Q_ENUM_NS(TLinkLineStyle)
enum TLinkLineEndPoint : uint8_t { llStart, llEnd };
Q_ENUM_NS(TLinkLineEndPoint)
enum TPageStyle : uint8_t { A0, A1, A2, A3, A4, A5, B3, B4, B5, CustomerPage };
Q_ENUM_NS(TPageStyle)
enum TPenStyleJoinType : uint8_t { psjtROUND, psjtBEVEL, psjtMITER, psjtMASK };
Q_ENUM_NS(TPenStyleJoinType)
enum TPenStyleEndCapType : uint8_t { psectROUND, psectSQUARE, psectFLAT, psectMASK };
Q_ENUM_NS(TPenStyleEndCapType)
enum TDragMode : uint8_t { dgHorz, dgVert, dgBoth };
Q_ENUM_NS(TDragMode)
enum TXYMode : uint8_t { Mode0, Mode1, Mode2, Mode3 };
Q_ENUM_NS(TXYMode)
enum TGridType : uint8_t { gPixel, gLine, gNone };
Q_ENUM_NS(TGridType)
enum TUnits : uint8_t { pixel, mm, cm, dm, m, inch };
Q_ENUM_NS(TUnits)
enum TBkBitmapMode : uint8_t { Tiled, Stretch, Center, LeftTop };
Q_ENUM_NS(TBkBitmapMode)
enum TArrowStyle : uint8_t { ANone, ALeft, ARight, ADouble };
Q_ENUM_NS(TArrowStyle)
enum TBlockLayerMode : uint8_t { Merge, Import };
Q_ENUM_NS(TBlockLayerMode)
enum THJustification : uint8_t { jhLeft, jhRight, jhCenter };
Q_ENUM_NS(THJustification)
enum TVJustification : uint8_t { jvTop, jvBottom, jvCenter };
Q_ENUM_NS(TVJustification)
enum TDrawTool : uint8_t {
    SpLinkLine, SpSelecting, SpRotateSelecting, SpLine, SpRuleLine, SpPolyLine, SpRectangle, SpLinkPoint,
    SpLineLinkLine, SpEllipse, SpText, SpImage, SpPolygon, SpPolyBezier, SpElliArc, SpClose,
    SpPolylinePolygonPointRemoving, SpPolylinePolygonPointAdding, SpDragWhole, SpBrowse, SpFreeLine, SpBLine
};
Q_ENUM_NS(TDrawTool)
enum TActionTools : uint8_t {
    dtClose, dtDrawing, dtSelecting, dtRotateSelecting, dtResizing, dtDragging, dtDraggingTextoutPoint,
    dtRotating, dtPolylinePolygonPointRemoving, dtPolylinePolygonPointAdding, dtDragWhole, dtBrowse
};
Q_ENUM_NS(TActionTools)
// The framework's text alignment (captions, page header and footer).
enum TAlignment : uint8_t { taLeftJustify, taRightJustify, taCenter };
Q_ENUM_NS(TAlignment)
// The page orientation of the printer settings.
enum TPrinterOrientation : uint8_t { poPortrait, poLandscape };
Q_ENUM_NS(TPrinterOrientation)
// Directions of the legs of an orthogonal route (lower-case b kept as named).
enum Tdirections : uint8_t { dLeft, dbottom, dRight, dTop, dNone };
Q_ENUM_NS(Tdirections)

}  // namespace cad_enums

static_assert(gsNone == 23, "24 gradient styles");
static_assert(SpSelecting == 1 && SpBLine == 21, "22 drawing tools");
static_assert(dtBrowse == 11, "12 action states");
static_assert(CustomerPage == 9 && inch == 5 && ADouble == 3 && gNone == 2);
static_assert(dNone == 4);

}  // namespace faroven
