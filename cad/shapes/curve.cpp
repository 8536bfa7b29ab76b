#include "cad/shapes/curve.h"

namespace faroven {

TMyPolyBezier::TMyPolyBezier(TMyCAD* canvas) : TMyPolyLine(canvas) {}

TMyBLine::TMyBLine(TMyCAD* canvas) : TMyPolyLine(canvas) {}

}  // namespace faroven
