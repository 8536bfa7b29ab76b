// Connections: link lines joining link points of two shapes, and keeping both
// sides of every connection in step.
#include "cad/canvas/mycad.h"
#include "cad/shapes/link.h"

namespace faroven {

void TMyCAD::ClearAllLinkHot() {
    m_linkHotShapeNo = -1;
    m_linkHotPointIndex = 0;
}

void TMyCAD::ChangeLinkShapes(TMyShape* shape) { (void)shape; }

}  // namespace faroven
