// Tools and shapes made by code: the class each drawing tool creates, and
// shapes that code adds without the mouse.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/image.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/text.h"

namespace faroven {

TMyShape* TMyCAD::CreateShapeBySpTool(TDrawTool tool, TMyCAD* owner) {
    TMyCAD* c = owner ? owner : this;
    switch (tool) {
    case SpLinkLine: {
        auto* line = new TMyLinkLine(c);
        line->SetLinkLineDrawStyle(m_linkLineDrawStyle);
        return line;
    }
    case SpLine: return new TMyLine(c);
    case SpRuleLine: return new TMyRuleLine(c);
    case SpPolyLine: return new TMyPolyLine(c);
    case SpRectangle: return new TMyRectangle(c);
    case SpLinkPoint: return new TMyLinkPoint(c);
    case SpLineLinkLine: return new TMyLineLinkLine(c);
    case SpEllipse: return new TMyEllipse(c);
    case SpText: return new TMyText(c);
    case SpImage: return new TMyImage(c);
    case SpPolygon: return new TMyPolygon(c);
    case SpPolyBezier: return new TMyPolyBezier(c);
    case SpElliArc: return new TMyElliArc(c);
    case SpFreeLine: return new TMyFreeLine(c);
    case SpBLine: return new TMyBLine(c);
    case SpSelecting:
    case SpRotateSelecting:
    case SpClose:
    case SpPolylinePolygonPointRemoving:
    case SpPolylinePolygonPointAdding:
    case SpDragWhole:
    case SpBrowse: return nullptr;
    }
    return nullptr;
}

TMyShape* TMyCAD::AddImageShapeByCode(const QString& name, TPoint point, const TBitmap& bitmap) {
    if (bitmap.Empty()) return nullptr;
    auto* image = new TMyImage(this);
    image->SetBitmap(bitmap);
    const float x = float(point.x / m_zoom), y = float(point.y / m_zoom);
    const float w = float(bitmap.Width()), h = float(bitmap.Height());
    image->SetPoints({{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}});
    // Centre and caption point as for a shape drawn with the mouse.
    image->Drawed(point, point);
    if (!AddNewShape(image)) {
        delete image;
        return nullptr;
    }
    if (!name.isEmpty()) image->SetName(name);
    PushtoUndoRedoShapeList({image}, QStringLiteral("ACT_ADD"));
    Invalidate();
    return image;
}

bool TMyCAD::GetRA1A2By3Points(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2) const {
    return ArcRadiusAndAngles(p1, p2, p3, r, a1, a2);
}

}  // namespace faroven
