#include "sample_drawing.h"

#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/image.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"

#include <cmath>

using namespace faroven;

void AddSampleDrawing(TMyCAD* cad) {
    auto add = [cad](TMyShape* shape, const std::vector<TMyPoint>& points, TColor pen, TColor brush,
                      const QString& info) {
        for (const TMyPoint& p : points) shape->AddPoint(p);
        shape->Pen()->SetColor(pen);
        shape->Pen()->SetWidth(2);
        shape->Brush()->SetColor(brush);
        shape->SetInfo(info);
        shape->Drawed({}, {});
        cad->AddNewShape(shape);
        return shape;
    };
    auto box = [](float l, float t, float r, float b) { return std::vector<TMyPoint>{{l, t}, {r, t}, {r, b}, {l, b}}; };
    // Members first, then the group around them.
    auto group = [&](TMyGroup* g, std::initializer_list<TMyShape*> members, const QString& info) {
        TMyRect r{1e9f, 1e9f, -1e9f, -1e9f};
        for (TMyShape* m : members) {
            const TMyRect b = m->GetBounds();
            r = {std::min(r.left, b.left), std::min(r.top, b.top), std::max(r.right, b.right), std::max(r.bottom, b.bottom)};
        }
        add(g, box(r.left, r.top, r.right, r.bottom), clBlack, clWhite, info);
        std::vector<int32_t> children;
        for (TMyShape* m : members) {
            m->SetParentShapeNo(g->ShapeNo());
            children.push_back(m->ShapeNo());
        }
        g->SetChildShapeNos(children);
    };

    TMyShape* rect = add(new TMyRectangle(cad), box(40, 40, 220, 150), clNavy, 0xF0E0C0, "Rectangle");
    TMyShape* ellipse = add(new TMyEllipse(cad), box(270, 40, 450, 150), clMaroon, clYellow, "Ellipse");
    ellipse->SetGradientStyle(gsRadialC);
    ellipse->SetColorEnd(clYellow);
    ellipse->RotateChangeValueByAngle(0.3);

    TMyShape* a = add(new TMyRectangle(cad), box(500, 40, 590, 100), clGreen, 0xC0FFC0, "");
    TMyShape* b = add(new TMyEllipse(cad), box(560, 80, 700, 150), clGreen, clLime, "");
    group(new TMyGroup(cad), {a, b}, "Group of two");

    TMyShape* c1 = add(new TMyEllipse(cad), box(40, 210, 140, 310), clPurple, clFuchsia, "");
    TMyShape* c2 = add(new TMyRectangle(cad), box(100, 240, 220, 330), clPurple, 0xFFC0FF, "");
    group(new TMyCombine(cad), {c1, c2}, "Combine");

    auto line = static_cast<TMyLine*>(add(new TMyLine(cad), {{270, 230}, {450, 320}}, clBlack, clBlack, "Line"));
    line->SetArrowStyle(ALeft);
    line->SetArrowAngle(20);
    line->SetArrowLength(18);
    add(new TMyRuleLine(cad), {{500, 280}, {700, 280}}, clBlue, clBlue, "");

    auto poly = static_cast<TMyLine*>(
        add(new TMyPolyLine(cad), {{40, 420}, {100, 480}, {160, 410}, {220, 490}}, clTeal, clWhite, "Polyline"));
    poly->SetArrowStyle(ADouble);
    poly->SetArrowLength(12);
    TMyShape* polygon = add(new TMyPolygon(cad), {{360, 390}, {450, 440}, {420, 520}, {300, 520}, {270, 440}, {360, 390}},
                            clOlive, clAqua, "Polygon");
    polygon->SetGradientStyle(gsLinearV);
    polygon->SetColorEnd(clAqua);

    auto freeLine = new TMyFreeLine(cad);
    for (int i = 0; i <= 60; ++i) {
        const float x = 500 + i * 3.5f;
        freeLine->AddPoint({x, 450 + 35 * std::sin(i / 6.0f) * std::cos(i / 23.0f)});
    }
    add(freeLine, {}, clRed, clWhite, "Free line");

    // The curves, the arc, the text box and the picture.
    auto bezier = static_cast<TMyLine*>(add(new TMyPolyBezier(cad),
                                             {{40, 600}, {80, 540}, {150, 660}, {200, 590}, {230, 550}, {240, 620}, {220, 660}},
                                             clNavy, clWhite, "PolyBezier"));
    bezier->SetArrowStyle(ALeft);
    bezier->SetArrowLength(12);
    add(new TMyBLine(cad), {{270, 650}, {300, 560}, {350, 640}, {400, 560}, {450, 650}}, clGreen, clWhite, "B-line");
    auto arc = static_cast<TMyElliArc*>(add(new TMyElliArc(cad), {{500, 640}, {560, 560}, {640, 620}}, clMaroon, 0xC0C0FF, ""));
    arc->SetArcStyle(asSector);
    auto text = new TMyText(cad);
    text->Lines()->Add("A text box");
    text->Lines()->Add("centred, with a border");
    text->SetIsBorder(true);
    text->SetIsSolid(true);
    text->SetHAlignment(jhCenter);
    text->SetVAlignment(jvCenter);
    text->Font()->SetSize(14);
    add(text, box(560, 680, 740, 740), clBlack, 0xE0FFFF, "");
    TBitmap picture;
    picture.SetPixelFormat(pf24bit);
    picture.SetSize(96, 64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 96; ++x) picture.Image().setPixelColor(x, y, QColor(x * 255 / 95, y * 255 / 63, 160));
    cad->AddImageShapeByCode("Picture", {40, 680}, picture);

    // Connectors: a routed connector from A to B goes round C; a junction
    // gathers two more; a straight connector ends at a link point marker.
    auto linked = [&](float l, float t, const QString& info) {
        TMyShape* s = add(new TMyRectangle(cad), box(l, t, l + 110, t + 60), clNavy, 0xFFF0D0, info);
        s->AddLinkPoint({l, t + 30});
        s->AddLinkPoint({l + 55, t});
        s->AddLinkPoint({l + 110, t + 30});
        s->AddLinkPoint({l + 55, t + 60});
        return s;
    };
    TMyShape* from = linked(40, 820, "A");
    TMyShape* obstacle = add(new TMyEllipse(cad), box(290, 780, 420, 900), clGray, 0xE0E0E0, "C");
    TMyShape* to = linked(560, 840, "B");
    cad->CreateLink("A to B", from, 0, to, 2);
    auto junction = new TMyLineLinkLine(cad);
    junction->AddPointByMouse({360, 1000});
    cad->AddNewShape(junction);
    TMyShape* below = linked(40, 970, "D");
    linked(560, 970, "E");
    auto marker = new TMyLinkPoint(cad);
    marker->AddPointByMouse({615, 1000});
    cad->AddNewShape(marker);
    cad->CreateLink("D to junction", below, 3, junction, 2);
    cad->CreateLink("junction to B", junction, 3, to, 1);
    cad->SetLinkLineDrawStyle(lldsFree);
    cad->CreateLink("straight", junction, 0, marker, 1);
    cad->SetLinkLineDrawStyle(lldsHV);
    (void)obstacle;

    cad->RemoveAllWorkingShapes();
    cad->AddWorkingShapes(rect);
}
