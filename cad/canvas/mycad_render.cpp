// TMyCAD: the one rendering of the drawing that the screen, the printer and
// every picture share. A rendering draws a rectangle of the drawing at some
// zoom: the background, the grid, header, footer and border, and the shapes
// of visible layers; the screen's paint adds the editor's marks on top.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_zoom_scope.h"

#include "cad/geometry/geometry.h"
#include "cad/geometry/rotated_text.h"
#include "platform/system.h"

#include <QPainter>
#include <utility>

namespace faroven {

TRenderOptions TMyCAD::ScreenRenderOptions() const { return TRenderOptions{true, true, true, false}; }

TRenderOptions TMyCAD::PrintRenderOptions() const {
    return TRenderOptions{m_printBackground, false, true, m_printABorder};
}

void TMyCAD::RenderPage(TCanvas* canvas, const TRect& area, const TRenderOptions& options) {
    renderArea(canvas, area, ClientRect(), ClientRect(), options);
}

void TMyCAD::RenderTo(QPaintDevice* device, const TRect& area, const TRenderOptions& options, double zoom,
                      double scale) {
    QPainter painter;
    if (!device || !painter.begin(device)) throw EInvalidOperation(QStringLiteral("Cannot paint on the device"));
    painter.scale(scale, scale);
    RenderTo(&painter, area, options, zoom);
}

void TMyCAD::RenderTo(QPainter* painter, const TRect& area, const TRenderOptions& options, double zoom) {
    painter->save();
    TCanvas canvas;
    canvas.AttachPainter(painter, TRect{0, 0, area.Width(), area.Height()});
    {
        ZoomScope scope(*this, zoom);
        const TRect page = PageRectAt(zoom);
        renderArea(&canvas, area, page, page, options);
    }
    canvas.DetachPainter();
    painter->restore();
}

TRect TMyCAD::VisibleShapesBoundsAt(double zoom) {
    ZoomScope scope(*this, zoom);
    TRect box{};
    bool any = false;
    for (TMyShape* shape : m_myShapes) {
        if (!shape || shape->HasParentShape() || !shape->Visible() || !m_layers.IsVisible(shape->LayerId())) continue;
        const TRect b = shape->GetPaintBoundsInZoom();
        box = any ? TRect{std::min(box.left, b.left), std::min(box.top, b.top), std::max(box.right, b.right),
                          std::max(box.bottom, b.bottom)}
                  : b;
        any = true;
    }
    return box;
}

void TMyCAD::renderArea(TCanvas* canvas, const TRect& area, const TRect& sheet, const TRect& page,
                        const TRenderOptions& options) {
    if (options.Background) {
        DrawBackground(canvas, TRect{0, 0, area.Width(), area.Height()});
        drawBkBitmapOn(canvas, area, page);
    }
    if (options.Grid) drawGridOn(canvas, area);
    const TPoint origin = canvas->WindowOrg();
    if (options.HeadFoot || options.Border) {
        canvas->SetWindowOrg(origin.x + area.left, origin.y + area.top);
        if (options.HeadFoot) drawHeadFootOn(canvas, sheet);
        if (options.Border) drawBorderOn(canvas, sheet);
        canvas->SetWindowOrg(origin.x, origin.y);
    }
    collectPaintedRoots(area);
    canvas->SetWindowOrg(origin.x + area.left, origin.y + area.top);
    for (int no : m_paintedShapes) drawShapeTree(canvas, m_myShapes[size_t(no)]);
    canvas->SetWindowOrg(origin.x, origin.y);
}

void TMyCAD::drawBorderOn(TCanvas* canvas, const TRect& sheet) {
    const double mm = ScreenPixelsPerInch() / 25.4 * m_zoom;
    canvas->Pen()->SetColor(clBlack);
    canvas->Pen()->SetStyle(psSolid);
    canvas->Pen()->SetWidth(1);
    canvas->Pen()->SetMode(pmCopy);
    canvas->Brush()->SetStyle(bsClear);
    canvas->Rectangle(sheet.left + Round(m_printABordertoLeft * mm), sheet.top + Round(m_printABordertoTop * mm),
                      sheet.right - Round(m_printABordertoRight * mm), sheet.bottom - Round(m_printABordertoBottom * mm));
}

// Header and footer: their distances from the sheet's top and bottom are in
// millimetres; left and right alignment keep the border's distances; the text
// scales with the zoom like the shapes' captions.
void TMyCAD::drawHeadFootOn(TCanvas* canvas, const TRect& sheet) {
    const double mm = ScreenPixelsPerInch() / 25.4 * m_zoom;
    auto place = [&](const QString& text, TFont* font, TAlignment alignment, bool foot) {
        if (text.isEmpty()) return;
        const TSize size = GetTextWidthHeight(canvas, text, font, 0, m_zoom);
        int x = sheet.left + (sheet.Width() - size.cx) / 2;
        if (alignment == taLeftJustify) x = sheet.left + Round(m_printABordertoLeft * mm);
        if (alignment == taRightJustify) x = sheet.right - Round(m_printABordertoRight * mm) - size.cx;
        const int y = foot ? sheet.bottom - Round(m_pageFootToBottom * mm) - size.cy
                           : sheet.top + Round(m_pageHeadToTop * mm);
        MyLogTextOut(canvas, x, y, text, font, 0, m_zoom);
    };
    place(m_pageHead, &m_pageHeadFont, m_pageHeadAlignment, false);
    place(m_pageFoot, &m_pageFootFont, m_pageFootAlignment, true);
}

}  // namespace faroven
