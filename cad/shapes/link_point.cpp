#include "cad/shapes/link_point.h"

namespace faroven {

TMyLinkPoint::TMyLinkPoint(TMyCAD* canvas) : TMyRectangle(canvas) {}

TMyLineLinkLine::TMyLineLinkLine(TMyCAD* canvas) : TMyRectangle(canvas) {}

}  // namespace faroven
