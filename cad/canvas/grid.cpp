#include "cad/canvas/grid.h"

namespace faroven {

void TGridObject::Assign(const TPersistent* source) {
    if (auto other = dynamic_cast<const TGridObject*>(source)) {
        m_gridColor = other->m_gridColor;
        m_gridHeight = other->m_gridHeight;
        m_gridPenSize = other->m_gridPenSize;
        m_gridInZoom = other->m_gridInZoom;
        m_gridShow = other->m_gridShow;
        m_gridType = other->m_gridType;
        m_gridWidth = other->m_gridWidth;
        changed();
        return;
    }
    TPersistent::Assign(source);
}

}  // namespace faroven
