// Tools and shapes made by code: the class each drawing tool creates, and
// shapes that code adds without the mouse.
#include "cad/canvas/mycad.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/image.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/text.h"

#include <memory>

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

TMyShape* TMyCAD::AddShapeByCode(TMyCAD* canvas, TDrawTool tool, const QString& name, const TArrMyPoint& points,
                                 long double angle, const QString& text) {
    TMyCAD* c = canvas ? canvas : this;
    std::unique_ptr<TMyShape> shape(c->CreateShapeBySpTool(tool, c));
    if (!shape) return nullptr;
    TArrMyPoint pts = points;
    if (dynamic_cast<TMyRectangle*>(shape.get())) {
        if (pts.size() < 2) return nullptr;
        if (pts.size() < 4) {
            const TMyPoint a = pts[0], b = pts[1];
            if (a.x == b.x || a.y == b.y) return nullptr;
            pts = {a, TMyPoint{b.x, a.y}, b, TMyPoint{a.x, b.y}};
        }
        pts.resize(4);
    } else if (shape->kind() == TShapeKind::ElliArc) {
        if (pts.size() < 3) return nullptr;
        pts.resize(3);
    } else if (pts.size() < (shape->kind() == TShapeKind::Polygon ? 3u : 2u)) {
        return nullptr;
    }
    shape->SetPoints(pts);
    if (auto* textShape = shape_cast<TMyText>(shape.get()))
        textShape->Lines()->SetLines(text.split(QLatin1Char('\n')));
    else
        shape->SetInfo(text);
    // Centre and caption point as for a shape drawn with the mouse.
    const TPoint first{Round(pts[0].x * c->Zoom()), Round(pts[0].y * c->Zoom())};
    shape->Drawed(first, first);
    TMyShape* added = shape.get();
    if (!c->AddNewShape(added)) return nullptr;
    shape.release();
    if (angle != 0) added->RotateChangeValueByAngle(double(angle));
    if (!name.isEmpty()) added->SetName(name);
    c->PushtoUndoRedoShapeList({added}, QStringLiteral("ACT_ADD"));
    c->Invalidate();
    return added;
}

TMyShape* TMyCAD::AddShapeByCode2(TMyCAD* canvas, TDrawTool tool, const QString& name, TMyPoint point, int width,
                                  int height, int penWidth, long double angle, const QString& text) {
    const float l = point.x, t = point.y, r = point.x + float(width), b = point.y + float(height);
    const float mx = (l + r) / 2, my = (t + b) / 2;
    TArrMyPoint pts{{l, t}, {r, b}};
    switch (tool) {
    case SpElliArc: pts = {{l, my}, {mx, t}, {r, my}}; break;
    case SpPolygon: pts = {{l, t}, {r, t}, {r, b}, {l, b}, {l, t}}; break;
    case SpPolyBezier: pts = {{l, t}, {r, t}, {l, b}, {r, b}}; break;
    default: break;
    }
    TMyShape* shape = AddShapeByCode(canvas, tool, name, pts, angle, text);
    if (shape && penWidth > 0) shape->Pen()->SetWidth(penWidth);
    return shape;
}

TMyShape* TMyCAD::CreateAddShapeByName(const QString& className, TMyShape* source) {
    std::unique_ptr<TMyShape> shape(CreateShapeByName(className));
    if (!shape) return nullptr;
    if (source) shape->AssignWithoutRelation(source);
    if (!AddNewShape(shape.get())) return nullptr;
    // The copy turns and mirrors about the same centre as its source.
    if (source) shape->SetCenterPoint(source->CenterPoint());
    return shape.release();
}

bool TMyCAD::GetRA1A2By3Points(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2) const {
    return ArcRadiusAndAngles(p1, p2, p3, r, a1, a2);
}

}  // namespace faroven
