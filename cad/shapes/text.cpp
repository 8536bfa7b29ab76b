#include "cad/shapes/text.h"

namespace faroven {

TMyText::TMyText(TMyCAD* canvas) : TMyRectangle(canvas) {}

}  // namespace faroven
