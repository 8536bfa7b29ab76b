// TMyCAD: page sizes and the control's size, zoom, coordinate modes, the grid
// and the background picture.
#include "cad/canvas/mycad.h"

#include "platform/system.h"

#include <QBrush>
#include <QPainter>
#include <array>
#include <cmath>

namespace faroven {

namespace {
struct PageSize { uint32_t width, height; };
// Portrait sizes in millimetres of the standard page styles, in TPageStyle order.
constexpr std::array<PageSize, 9> kPageSizes = {{
    {841, 1189}, {594, 841}, {420, 594}, {297, 420}, {210, 297}, {148, 210}, {353, 500}, {257, 364}, {182, 257},
}};
}  // namespace

namespace {
// Millimetres at a zoom as control pixels: round(mm x zoom x ppi / 25.4), in
// that order of operations, so that halves land where the formula puts them.
int pagePixels(uint32_t mm, double zoom) { return Round(double(mm) * zoom * ScreenPixelsPerInch() / 25.4); }
}  // namespace

QSize TMyCAD::PageStyleSize(TPageStyle style) {
    const PageSize size = kPageSizes[style < CustomerPage ? size_t(style) : size_t(A4)];
    return QSize(int(size.width), int(size.height));
}

TRect TMyCAD::PageRectAt(double zoom) const {
    return TRect{0, 0, pagePixels(m_pageWidth, zoom), pagePixels(m_pageHeight, zoom)};
}

void TMyCAD::sizeControl() { resize(pagePixels(m_pageWidth, m_zoom), pagePixels(m_pageHeight, m_zoom)); }

void TMyCAD::SetZoom(double zoom) {
    if (zoom == m_zoom) return;
    m_painting = true;
    dropSceneCache();
    m_preZoom = m_zoom;
    m_zoom = zoom;
    SetHeight(pagePixels(m_pageHeight, m_zoom));
    SetWidth(pagePixels(m_pageWidth, m_zoom));
    m_painting = false;
    Invalidate();
}

void TMyCAD::SetPageStyle(TPageStyle style) {
    m_painting = true;
    m_pageStyle = style;
    if (style != CustomerPage) {
        m_pageWidth = kPageSizes[style].width;
        m_pageHeight = kPageSizes[style].height;
        if (m_pageOrientation == poLandscape) std::swap(m_pageWidth, m_pageHeight);
        sizeControl();
    }
    m_painting = false;
    Invalidate();
}

void TMyCAD::SetPageWidth(uint32_t mm) {
    m_painting = true;
    m_pageWidth = mm;
    m_pageStyle = GetPageStyleByWH(m_pageWidth, m_pageHeight);
    if (m_pageStyle != CustomerPage) sizeControl();
    m_painting = false;
    Invalidate();
}

void TMyCAD::SetPageHeight(uint32_t mm) {
    m_painting = true;
    m_pageHeight = mm;
    m_pageStyle = GetPageStyleByWH(m_pageWidth, m_pageHeight);
    if (m_pageStyle != CustomerPage) sizeControl();
    m_painting = false;
    Invalidate();
}

TPageStyle TMyCAD::GetPageStyleByWH(uint32_t width, uint32_t height) const {
    for (size_t i = 0; i < kPageSizes.size(); ++i) {
        PageSize s = kPageSizes[i];
        if (m_pageOrientation == poLandscape) std::swap(s.width, s.height);
        if (s.width == width && s.height == height) return TPageStyle(i);
    }
    return CustomerPage;
}

TPoint TMyCAD::GetPointByMode(TPoint p) const {
    const int w = Width(), h = Height();
    switch (m_xyMode) {
    case Mode1: return TPoint{p.x, h - p.y};
    case Mode2: return TPoint{w - p.x, h - p.y};
    case Mode3: return TPoint{w - p.x, p.y};
    default: return p;
    }
}

TMyPoint TMyCAD::GetMyPointByMode(TMyPoint p) const {
    const float w = float(Width()), h = float(Height());
    switch (m_xyMode) {
    case Mode1: return TMyPoint{p.x, h - p.y};
    case Mode2: return TMyPoint{w - p.x, h - p.y};
    case Mode3: return TMyPoint{w - p.x, p.y};
    default: return p;
    }
}

void TMyCAD::GetMousePointbyDragMode(TPoint from, TPoint& to) const {
    if (m_dragMode == dgHorz) to.y = from.y;
    if (m_dragMode == dgVert) to.x = from.x;
}

// Grid lines and dots sit at the rounded multiples of the spacing in control
// pixels, whatever part of the control is being drawn, so that a partial
// repaint matches the same area of a full one. A dot is a square of
// GridPenSize pixels centred on its crossing (its top-left pixel on the
// crossing for even sizes). A spacing under one pixel would only fill the page
// and is not drawn.
void TMyCAD::DrawGrid(TBitmap* bitmap, const TRect& rect) {
    if (bitmap->Empty()) return;
    drawGridOn(bitmap->Canvas(), TRect{rect.left, rect.top, rect.left + bitmap->Width(), rect.top + bitmap->Height()});
}

void TMyCAD::drawGridOn(TCanvas* canvas, const TRect& rect) {
    if (m_grid.GridType() == gNone || !m_grid.GridShow()) return;
    double gw = m_grid.GridWidth(), gh = m_grid.GridHeight();
    if (m_grid.GridInZoom()) {
        gw *= m_zoom;
        gh *= m_zoom;
    }
    if (!(gw >= 1) || !(gh >= 1) || !std::isfinite(gw) || !std::isfinite(gh)) return;
    const int size = std::max<int>(m_grid.GridPenSize(), 1);
    const int w = rect.Width(), h = rect.Height();
    // Wide pens and dots reach beyond their crossing, so the lines just
    // outside the rectangle are tried as well.
    const int reach = size / 2 + 1;
    const int64_t kx0 = int64_t(std::nearbyint(rect.left / gw)) - 1 - int64_t(reach / gw);
    const int64_t ky0 = int64_t(std::nearbyint(rect.top / gh)) - 1 - int64_t(reach / gh);
    canvas->Pen()->SetMode(pmCopy);
    canvas->Pen()->SetStyle(psSolid);
    canvas->Pen()->SetColor(m_grid.GridColor());
    canvas->Pen()->SetWidth(m_grid.GridPenSize());
    if (m_grid.GridType() == gLine) {
        for (int64_t k = kx0;; ++k) {
            const int x = Round(double(k) * gw) - rect.left;
            if (x - reach > w) break;
            canvas->MoveTo(x, 0);
            canvas->LineTo(x, h);
        }
        for (int64_t k = ky0;; ++k) {
            const int y = Round(double(k) * gh) - rect.top;
            if (y - reach > h) break;
            canvas->MoveTo(0, y);
            canvas->LineTo(w, y);
        }
        return;
    }
    canvas->Brush()->SetColor(m_grid.GridColor());
    canvas->Brush()->SetStyle(bsSolid);
    const int before = (size - 1) / 2;
    for (int64_t j = ky0;; ++j) {
        const int y = Round(double(j) * gh) - rect.top - before;
        if (y > h) break;
        for (int64_t k = kx0;; ++k) {
            const int x = Round(double(k) * gw) - rect.left - before;
            if (x > w) break;
            canvas->FillRect(TRect{x, y, x + size, y + size});
        }
    }
}

// The background picture is fixed to the page: Tiled repeats it from the
// page's top-left corner over the page, Stretch fits it to the page, Center
// centres it on the page (an odd surplus leaves the extra pixel right and
// below), LeftTop puts it at the page's top-left corner. (dx, dy) is where the
// page's origin lies in the bitmap being drawn.
void TMyCAD::DrawBkBitmap(TBitmap* bitmap, int dx, int dy) {
    if (bitmap->Empty()) return;
    drawBkBitmapOn(bitmap->Canvas(), TRect{-dx, -dy, -dx + bitmap->Width(), -dy + bitmap->Height()}, ClientRect());
}

void TMyCAD::drawBkBitmapOn(TCanvas* canvas, const TRect& rect, const TRect& page) {
    if (m_bkBitmap.Empty()) return;
    const int dx = page.left - rect.left, dy = page.top - rect.top;
    const int bw = m_bkBitmap.Width(), bh = m_bkBitmap.Height();
    const int pw = page.Width(), ph = page.Height();
    switch (m_bkBitmapMode) {
    case Tiled: {
        // The part of the page that lies in the bitmap, in the bitmap's pixels.
        TRect area;
        if (!IntersectRect(area, TRect{dx, dy, dx + pw, dy + ph}, TRect{0, 0, rect.Width(), rect.Height()}))
            break;
        if (!m_bkBitmap.Transparent()) {
            // One textured fill; the texture's origin is the page's.
            QPainter* painter = canvas->Painter();
            if (!painter) break;
            QBrush texture(m_bkBitmap.Image());
            texture.setTransform(QTransform::fromTranslate(dx, dy));
            painter->fillRect(QRect(area.left, area.top, area.Width(), area.Height()), texture);
            break;
        }
        // Transparent tiles go one by one through Draw, which knows the
        // transparent colour; only the tiles that reach the area are drawn.
        canvas->SetClipRect(area);
        const int firstX = (area.left - dx) / bw, firstY = (area.top - dy) / bh;
        for (int ty = dy + firstY * bh; ty < area.bottom; ty += bh)
            for (int tx = dx + firstX * bw; tx < area.right; tx += bw) canvas->Draw(tx, ty, &m_bkBitmap);
        canvas->ResetClip();
        break;
    }
    case Stretch: canvas->StretchDraw(TRect{dx, dy, dx + pw, dy + ph}, &m_bkBitmap); break;
    case Center: {
        const int x = int(std::floor((pw - bw) / 2.0)), y = int(std::floor((ph - bh) / 2.0));
        canvas->Draw(x + dx, y + dy, &m_bkBitmap);
        break;
    }
    case LeftTop: canvas->Draw(dx, dy, &m_bkBitmap); break;
    }
}

}  // namespace faroven
