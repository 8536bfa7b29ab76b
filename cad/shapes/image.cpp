#include "cad/shapes/image.h"

namespace faroven {

TMyImage::TMyImage(TMyCAD* canvas) : TMyRectangle(canvas) {}

}  // namespace faroven
