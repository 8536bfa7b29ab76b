#include "cad/shapes/shape_markers.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/geometry.h"
#include "cad/shapes/shape.h"
#include "platform/system.h"

namespace faroven {

namespace {
// Grey of a colour's three low bytes as they stand (system colours are not resolved).
TColor greyOf(TColor color) {
    const int g = (GetRValue(color) + GetGValue(color) + GetBValue(color)) / 3;
    return RGB(g, g, g);
}
}  // namespace

void SetDrawTriangleMode(TMyShape* shape, TCanvas* canvas) {
    TPen* pen = canvas->Pen();
    pen->SetColor(shape->Pen()->Color());
    pen->SetStyle(shape->Pen()->Style());
    pen->SetWidth(shape->Pen()->Width());
    pen->SetMode(pmCopy);
    canvas->Font()->Assign(*shape->Font());
    canvas->Brush()->SetColor(shape->Pen()->Color());
    canvas->Brush()->SetStyle(bsSolid);
}

void SetDrawShapeMode(TMyShape* shape, TCanvas* canvas) {
    TPen* pen = canvas->Pen();
    TBrush* brush = canvas->Brush();
    if (!Printer()->IsPrinterCanvas(canvas)) {
        pen->SetColor(shape->Pen()->Color());
        pen->SetStyle(shape->Pen()->Style());
        pen->SetWidth(shape->Pen()->Width());
        pen->SetMode(pmCopy);
        brush->SetColor(shape->Brush()->Color());
        brush->SetStyle(shape->Brush()->Style());
        return;
    }
    brush->SetStyle(shape->Brush()->Style());
    if (!IsBlackWhitePrinter()) {
        pen->SetColor(shape->Pen()->Color());
        brush->SetColor(shape->Brush()->Color());
    } else {
        pen->SetColor(greyOf(shape->Pen()->Color()));
        brush->SetColor(greyOf(shape->Brush()->Color()));
    }
    // Setting a colour makes a clear brush solid, so a clear brush is set again.
    if (shape->Brush()->Style() == bsClear) brush->SetStyle(bsClear);
    pen->SetStyle(shape->Pen()->Style());
    pen->SetWidth(shape->Pen()->Width());
    pen->SetMode(pmCopy);
}

// Nothing unless the shape shows hot marks. A member of a group gets half-size
// squares. A locked shape's squares are grey. While the canvas rotates, the
// marks of a shape that may rotate become circles (members keep half squares)
// and a shape that may not rotate shows none: round marks tell the user that
// the handles now turn the shape.
void DrawSquare(TMyShape* shape, TCanvas* canvas, TMyPoint p) {
    if (!shape->HotShow()) return;
    TMyCAD* cad = shape->Canvas();
    int h = cad ? cad->HotSize() : 4;
    if (shape->HasParentShape()) h /= 2;
    const TRect square{Round(p.x - h), Round(p.y - h), Round(p.x + h), Round(p.y + h)};
    if (shape->Locked()) {
        SetDrawLockedHotMode(canvas);
        canvas->Rectangle(square);
        return;
    }
    SetDrawHotMode(canvas);
    const bool rotating = cad && (cad->Action() == dtRotateSelecting || cad->Action() == dtRotating);
    if (!rotating) {
        canvas->Rectangle(square);
        return;
    }
    if (!shape->RotateEnable()) return;
    if (shape->HasParentShape())
        canvas->Rectangle(square);
    else
        canvas->Ellipse(square);
}

void DrawLinkHot(TMyShape* shape, TCanvas* canvas) {
    TMyCAD* cad = shape->Canvas();
    if (!cad || !cad->HotShow() || !cad->ShowHotLink()) return;
    for (int i = 0; i < shape->GetLinkPointsCount(); ++i) DrawLinkSquare(canvas, shape->GetLinkPointInZoom(i));
}

void DrawDiamond(TMyShape* shape, TCanvas* canvas, TMyPoint p, TColor) {
    if (shape->kind() == TShapeKind::Text) return;
    if (shape->Info().isEmpty() && shape->MultiInfoCount() == 0) return;
    TMyCAD* cad = shape->Canvas();
    const int h = cad ? cad->HotSize() : 4;
    const TArrPoint diamond = {{Round(p.x - h), Round(p.y)}, {Round(p.x), Round(p.y - h)},
                               {Round(p.x + h), Round(p.y)}, {Round(p.x), Round(p.y + h)}};
    canvas->Polygon(diamond);
}

void LineDraw(TMyShape*, TCanvas* canvas, TMyPoint p1, TMyPoint p2) {
    canvas->MoveTo(Round(p1.x), Round(p1.y));
    canvas->LineTo(Round(p2.x), Round(p2.y));
}

}  // namespace faroven
