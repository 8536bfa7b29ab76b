// TMyCAD::ZoomScope, shared by the canvas's rendering and printing.
#pragma once

#include "cad/canvas/mycad.h"

namespace faroven {

// Shapes read the zoom from their canvas, so a rendering at another zoom sets
// it for the time of the drawing only. The control keeps its size and no
// paint may run meanwhile.
class TMyCAD::ZoomScope {
public:
    ZoomScope(TMyCAD& cad, double zoom) : m_cad(cad), m_zoom(cad.m_zoom), m_painting(cad.m_painting) {
        cad.m_painting = true;
        cad.m_zoom = zoom;
    }
    ~ZoomScope() {
        m_cad.m_zoom = m_zoom;
        m_cad.m_painting = m_painting;
    }
    ZoomScope(const ZoomScope&) = delete;
    ZoomScope& operator=(const ZoomScope&) = delete;

private:
    TMyCAD& m_cad;
    double m_zoom;
    bool m_painting;
};

}  // namespace faroven
