// Geometry helpers of the drawing unit: conversions between float drawing
// points and integer pixels, angles, rotation, intersections, arrow-head wings,
// orthogonal elbow routes and the editing of point arrays.
//
// Conventions, stated once for every function here:
//  - TMyPoint is in drawing units (single precision), TPoint/TRect in pixels;
//  - the y axis points down the screen: "top" means the smaller y;
//  - angles are radians, and a positive angle turns clockwise on the screen;
//    only RecaclinDeg works in whole degrees;
//  - float to integer conversions round to the nearest integer, halves to the
//    even neighbour (faroven::Round);
//  - "extended" arithmetic is long double; results named single are float.
// The functions hold no state.
#pragma once

#include "cad/types.h"
#include "platform/types.h"

#include <QString>

namespace faroven {

// ---- Conversions and construction ----------------------------------------

TMyPoint MyPoint(float x, float y);
// Each coordinate rounded half to even: (2.5, 3.5) -> (2, 4).
TPoint MyPtToPt(const TMyPoint& p);
TMyPoint PtToMyPt(const TPoint& p);
// Each of the four values rounded as MyPtToPt does.
TRect myRecttoRect(const TMyRect& r);
// The normalised rectangle spanned by two corners (min x, min y, max x, max y).
TRect PtToARect(const TPoint& p1, const TPoint& p2);
// The rectangle grown by n on every side; unchanged when that would overflow.
TRect ExpandRect(const TRect& r, int n);
// Moves left and right by dx, top and bottom by dy.
void OffsetMyRect(TMyRect& r, long double dx, long double dy);
// Bounding box (min x, min y, max x, max y) of the points. An empty array gives
// the empty rectangle (0, 0, 0, 0).
TMyRect GetPointsLTRB(const TArrMyPoint& points);
// Pads s with blanks to n + 1 characters when s has at most n characters (one
// more than n, on purpose); a longer s comes back unchanged.
QString AppendSpace(const QString& s, int n);
// dx = b.x - a.x, dy = b.y - a.y.
void GetMyPointDelta(const TMyPoint& a, const TMyPoint& b, float& dx, float& dy);
void GetPointDeltaF(const TPoint& a, const TPoint& b, float& dx, float& dy);
void GetPointDelta(const TPoint& a, const TPoint& b, int& dx, int& dy);

// ---- Distances and angles --------------------------------------------------

// Euclidean distance, computed in extended precision.
float GetLengthinPixel(const TMyPoint& p1, const TMyPoint& p2);
// Direction of the vector p1 - p2 in [0, 2*pi): p2 left of p1 gives 0, above
// pi/2, right pi, below 3*pi/2; two equal points give pi/2.
long double GetSlopeAngle(const TMyPoint& p1, const TMyPoint& p2);
// +1 when p2 lies right of (below) p1, otherwise -1 (equal gives -1).
int PointInQuadrantX(const TMyPoint& p1, const TMyPoint& p2);
int PointInQuadrantY(const TMyPoint& p1, const TMyPoint& p2);
// Brings a radian angle into [-2*pi, 2*pi] by whole turns: above 2*pi it lands
// in [0, 2*pi), below -2*pi in (-2*pi, 0]. The float nearest to +-2*pi counts as
// exactly +-2*pi and is left alone. Infinite and NaN angles are left alone.
void RecaclinRad(float& a);
// Degrees: above 360 the result lands in [0, 360); below -360 it lands in
// (360, 720] (-361 becomes 719), a quirk kept on purpose. [-360, 360] is kept.
void RecaclinDeg(int& a);
// Rotation of p about centre by angle radians (clockwise on the screen).
TMyPoint RotateAPoint(const TMyPoint& p, const TMyPoint& centre, float angle);

// ---- Relative position of p2 against the reference p1 (bounds inclusive) ---

bool IsAtLeftTop(const TMyPoint& p1, const TMyPoint& p2);
bool IsAtRightTop(const TMyPoint& p1, const TMyPoint& p2);
bool IsAtRightBottom(const TMyPoint& p1, const TMyPoint& p2);
bool IsAtLeftBottom(const TMyPoint& p1, const TMyPoint& p2);

// ---- Constructions ---------------------------------------------------------

// Intersection of line A through p1 and p3 with line B through p2 and p4 (note
// the interleaved order), in extended precision. Two vertical lines give
// (x1, (y3 - y1) / 2) and two horizontal lines ((x3 - x1) / 2, y1): half the
// difference, not the mean, as callers expect. Other parallel lines show the
// message "error" and give a non-finite point.
TMyPoint Getintersection(const TMyPoint& p1, const TMyPoint& p2, const TMyPoint& p3, const TMyPoint& p4);
// The two wing ends of an arrow head at tip, each halfAngle off the direction
// from tip towards the other point and length away from tip, as
// (x1, y1, x2, y2) in the fields (left, top, right, bottom).
TMyRect GetTriangle(const TMyPoint& tip, const TMyPoint& towards, float halfAngle, uint8_t length);
// The point at distance d from p1 in the direction of p2, twice: (x, y, x, y).
TMyRect SplitLine(const TMyPoint& p1, const TMyPoint& p2, int d);
// Orthogonal route of at most two legs from `from` to `to`; route is emptied
// first. start dLeft/dRight runs vertically first, dTop/dbottom/dNone
// horizontally first. Coincident points give an empty route.
void GetElbowRoute(const TMyPoint& from, const TMyPoint& to, TArrDirAndPoints& route, Tdirections start);

// ---- Point arrays (a bad index returns at once and changes nothing) --------

// Appends pt; always true.
bool AppendAPoint(const TMyPoint& pt, TArrMyPoint& arr);
// Inserts pt at index id (0 <= id <= last index) and moves the rest up; false
// for any other id. Appending at the end is AppendAPoint's job.
bool InsertAPointBeforeId(const TMyPoint& pt, int id, TArrMyPoint& arr);
bool InsertAPointBeforeId1(const TPoint& pt, int id, TArrPoint& arr);
// Removes the element at id when 0 <= id <= last index.
void RemovePoint(int id, TArrMyPoint& arr);
// 0 <= id <= last index.
bool IsExistPt(int id, const TArrMyPoint& arr);
bool IsExistPt1(int id, const TArrPoint& arr);

// ---- Platform probes -------------------------------------------------------

// True when the current printer reports exactly two colours.
bool IsBlackWhitePrinter();
// Whether geometric pens with join and end-cap styles are available. Always
// true here: every Qt paint device draws them.
bool IsWinNT();

}  // namespace faroven
