// Temporary subset; replaced by the full geometry helpers.
#pragma once
#include "cad/types.h"
#include "platform/types.h"
namespace faroven {
inline TMyPoint MyPoint(float x, float y) { return TMyPoint{x, y}; }
inline TPoint MyPtToPt(const TMyPoint& p) { return TPoint{Round(p.x), Round(p.y)}; }
inline TMyPoint PtToMyPt(const TPoint& p) { return TMyPoint{float(p.x), float(p.y)}; }
inline TRect myRecttoRect(const TMyRect& r) { return TRect{Round(r.left), Round(r.top), Round(r.right), Round(r.bottom)}; }
TMyRect GetPointsLTRB(const TArrMyPoint& points);
TMyPoint RotateAPoint(TMyPoint p, TMyPoint centre, float angle);
long double GetSlopeAngle(TMyPoint p1, TMyPoint p2);
bool IsBlackWhitePrinter();
inline bool IsWinNT() { return true; }
}
