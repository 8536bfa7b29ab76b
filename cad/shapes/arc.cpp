#include "cad/shapes/arc.h"

#include "cad/canvas/mycad.h"

namespace faroven {

TMyElliArc::TMyElliArc(TMyCAD* canvas) : TMyShape(canvas) {
    if (canvas) m_arcMode = canvas->ArcMode();
}

bool ArcRadiusAndAngles(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2) {
    (void)p1, (void)p2, (void)p3, (void)r, (void)a1, (void)a2;
    return false;
}

}  // namespace faroven
