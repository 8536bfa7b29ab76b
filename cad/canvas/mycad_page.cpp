// TMyCAD: page sizes and the control's size, zoom, coordinate modes, the grid
// and the background picture.
#include "cad/canvas/mycad.h"

#include "platform/system.h"

#include <array>

namespace faroven {

namespace {
struct PageSize { uint32_t width, height; };
// Portrait sizes in millimetres of the standard page styles, in TPageStyle order.
constexpr std::array<PageSize, 9> kPageSizes = {{
    {841, 1189}, {594, 841}, {420, 594}, {297, 420}, {210, 297}, {148, 210}, {353, 500}, {257, 364}, {182, 257},
}};
}  // namespace

void TMyCAD::sizeControl() {
    const double scale = m_zoom * ScreenPixelsPerInch() / 25.4;
    resize(Round(m_pageWidth * scale), Round(m_pageHeight * scale));
}

void TMyCAD::SetZoom(double zoom) {
    if (zoom == m_zoom) return;
    m_painting = true;
    m_preZoom = m_zoom;
    m_zoom = zoom;
    const double scale = m_zoom * ScreenPixelsPerInch() / 25.4;
    SetHeight(Round(m_pageHeight * scale));
    SetWidth(Round(m_pageWidth * scale));
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
// repaint matches the same area of a full one.
void TMyCAD::DrawGrid(TBitmap* bitmap, const TRect& rect) {
    if (m_grid.GridType() == gNone || !m_grid.GridShow()) return;
    double gw = m_grid.GridWidth(), gh = m_grid.GridHeight();
    if (m_grid.GridInZoom()) {
        gw *= m_zoom;
        gh *= m_zoom;
    }
    if (!(gw > 0) || !(gh > 0)) return;
    const int size = std::max<int>(m_grid.GridPenSize(), 1);
    const int w = bitmap->Width(), h = bitmap->Height();
    // Wide pens reach a little beyond their line, so one more line on each side is tried.
    const int64_t kx0 = Round(rect.left / gw) - 1, ky0 = Round(rect.top / gh) - 1;
    TCanvas* canvas = bitmap->Canvas();
    canvas->Pen()->SetMode(pmCopy);
    canvas->Pen()->SetStyle(psSolid);
    canvas->Pen()->SetColor(m_grid.GridColor());
    canvas->Pen()->SetWidth(m_grid.GridPenSize());
    if (m_grid.GridType() == gLine) {
        for (int64_t k = kx0;; ++k) {
            const int x = Round(k * gw) - rect.left;
            if (x - size > w) break;
            canvas->MoveTo(x, 0);
            canvas->LineTo(x, h);
        }
        for (int64_t k = ky0;; ++k) {
            const int y = Round(k * gh) - rect.top;
            if (y - size > h) break;
            canvas->MoveTo(0, y);
            canvas->LineTo(w, y);
        }
        return;
    }
    canvas->Brush()->SetColor(m_grid.GridColor());
    canvas->Brush()->SetStyle(bsSolid);
    for (int64_t j = ky0;; ++j) {
        const int y = Round(j * gh) - rect.top;
        if (y > h) break;
        for (int64_t k = kx0;; ++k) {
            const int x = Round(k * gw) - rect.left;
            if (x > w) break;
            canvas->FillRect(TRect{x, y, x + size, y + size});
        }
    }
}

// The background picture is fixed to the page: Tiled repeats it from the
// page's top-left corner, Stretch fits it to the page, Center centres it on
// the page, LeftTop puts it at the page's top-left corner. (dx, dy) is where
// the page's origin lies in the bitmap being drawn.
void TMyCAD::DrawBkBitmap(TBitmap* bitmap, int dx, int dy) {
    if (m_bkBitmap.Empty()) return;
    TCanvas* canvas = bitmap->Canvas();
    const int bw = m_bkBitmap.Width(), bh = m_bkBitmap.Height();
    switch (m_bkBitmapMode) {
    case Tiled: {
        // Only the tiles that reach the bitmap are drawn.
        const int firstX = std::max(0, (-dx) / bw), firstY = std::max(0, (-dy) / bh);
        for (int ty = firstY * bh; ty < Height() && ty + dy < bitmap->Height(); ty += bh)
            for (int tx = firstX * bw; tx < Width() && tx + dx < bitmap->Width(); tx += bw)
                canvas->Draw(tx + dx, ty + dy, &m_bkBitmap);
        break;
    }
    case Stretch: canvas->StretchDraw(TRect{dx, dy, dx + Width(), dy + Height()}, &m_bkBitmap); break;
    case Center: canvas->Draw((Width() - bw) / 2 + dx, (Height() - bh) / 2 + dy, &m_bkBitmap); break;
    case LeftTop: canvas->Draw(dx, dy, &m_bkBitmap); break;
    }
}

}  // namespace faroven
