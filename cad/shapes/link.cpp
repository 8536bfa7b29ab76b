#include "cad/shapes/link.h"

#include "cad/canvas/mycad.h"

namespace faroven {

TMyLinkLine::TMyLinkLine(TMyCAD* canvas) : TMyLine(canvas) {
    if (canvas) m_linkLineDrawStyle = canvas->LinkLineDrawStyle();
}

void TMyLinkLine::assignOwnFields(const TMyShape* source, bool withRelations) {
    TMyLine::assignOwnFields(source, withRelations);
    if (const auto* s = shape_cast<TMyLinkLine>(source)) m_linkLineDrawStyle = s->m_linkLineDrawStyle;
}

}  // namespace faroven
