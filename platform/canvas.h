// TCanvas: the drawing surface of a bitmap or of a control, over QPainter, with
// the classic desktop graphics conventions that hit areas and pixel tests rely on:
//  - Rectangle(l, t, r, b) and Ellipse cover columns l..r-1 and rows t..b-1
//    (with no pen, the fill is one pixel smaller: l..r-2, t..b-2);
//  - LineTo leaves out the end pixel;
//  - Polygon fills with the alternate (odd-even) rule;
//  - no antialiasing, except text drawn through a logical font that asks for it;
//  - the pen mode is a binary raster operation applied to pen and brush alike.
// On devices without pixels of their own (printers, PDF, SVG, metafiles) thin
// outlines are drawn as whole figures and lines to their end point.
#pragma once

#include "platform/bitmap.h"
#include "platform/graphics.h"
#include "platform/types.h"

#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <memory>
#include <optional>

namespace faroven {

struct TSize {
    int cx = 0;
    int cy = 0;
    friend bool operator==(const TSize&, const TSize&) = default;
};

// The logical font that a canvas can be given directly, as the graphics
// interface's LOGFONT: height in pixels (negative: character height),
// escapement and orientation in tenths of a degree counter-clockwise.
struct TLogFont {
    int lfHeight = 0;
    int lfWidth = 0;
    int lfEscapement = 0;
    int lfOrientation = 0;
    int lfWeight = 400;
    bool lfItalic = false;
    bool lfUnderline = false;
    bool lfStrikeOut = false;
    uint8_t lfCharSet = DEFAULT_CHARSET;
    uint8_t lfQuality = 0;  // 4 = antialiased
    QString lfFaceName;
};
constexpr uint8_t ANTIALIASED_QUALITY = 4;

// Geometric pen join and end-cap kinds (ExtCreatePen); Default keeps the plain pen.
enum class TPenJoin { Default, Round, Bevel, Miter };
enum class TPenCap { Default, Round, Square, Flat };

class TCanvas : public TPersistent {
public:
    TCanvas();
    ~TCanvas() override;
    TCanvas(const TCanvas&) = delete;
    TCanvas& operator=(const TCanvas&) = delete;

    TPen* Pen() { return &m_pen; }
    TBrush* Brush() { return &m_brush; }
    TFont* Font() { return &m_font; }
    void SetPen(const TPen& pen) { m_pen.Assign(pen); }
    void SetBrush(const TBrush& brush) { m_brush.Assign(brush); }
    void SetFont(const TFont& font) { m_font.Assign(font); }

    TPoint PenPos() const { return m_penPos; }
    void SetPenPos(TPoint p) { m_penPos = p; }

    void MoveTo(int x, int y);
    void LineTo(int x, int y);
    void Rectangle(int left, int top, int right, int bottom);
    void Rectangle(const TRect& r) { Rectangle(r.left, r.top, r.right, r.bottom); }
    void Ellipse(int left, int top, int right, int bottom);
    void Ellipse(const TRect& r) { Ellipse(r.left, r.top, r.right, r.bottom); }
    void RoundRect(int left, int top, int right, int bottom, int rx, int ry);
    void Polygon(const TPoint* points, int count);
    void Polygon(const TArrPoint& points) { Polygon(points.data(), int(points.size())); }
    void Polyline(const TPoint* points, int count);
    void Polyline(const TArrPoint& points) { Polyline(points.data(), int(points.size())); }
    // Cubic Bézier segments: 1 + 3n points.
    void PolyBezier(const TArrPoint& points);
    // Elliptic arc, chord and pie in the box, from the radial through (x3, y3)
    // counter-clockwise to the radial through (x4, y4).
    void Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    void Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);

    // Text with its top-left corner at (x, y); the background is filled with the
    // brush colour unless the brush is clear or the background mode is transparent.
    void TextOut(int x, int y, const QString& text);
    void TextRect(const TRect& rect, int x, int y, const QString& text);
    TSize TextExtent(const QString& text);
    int TextWidth(const QString& text) { return TextExtent(text).cx; }
    int TextHeight(const QString& text) { return TextExtent(text).cy; }
    // SetBkMode(TRANSPARENT) of the graphics interface; reset when the brush changes.
    void SetBkModeTransparent(bool transparent) { m_bkTransparent = transparent; }
    bool BkModeTransparent() const { return m_bkTransparent; }
    // The logical font in use: the Font's own until SetLogFont gives another,
    // which then stays until the Font changes.
    TLogFont LogFont() const;
    void SetLogFont(const TLogFont& lf);

    void Draw(int x, int y, const TBitmap* bitmap);
    void StretchDraw(const TRect& rect, const TBitmap* bitmap);
    // Fills the rectangle (l..r-1, t..b-1) with the brush, without the pen.
    void FillRect(const TRect& rect);
    // A one-pixel frame in the brush colour.
    void FrameRect(const TRect& rect);
    void CopyRect(const TRect& dest, TCanvas* source, const TRect& sourceRect);
    // Inverts every pixel of the rectangle.
    void InvertRect(const TRect& rect);

    TColor Pixel(int x, int y);
    void SetPixel(int x, int y, TColor color);

    // The logical point that appears at the device's top-left corner (the
    // window origin): drawing at (x, y) lands at (x - ox, y - oy). Integer
    // offsets move whole pixels, so a part drawn with an origin matches the
    // same part of a drawing made without one.
    void SetWindowOrg(int x, int y);
    TPoint WindowOrg() const { return m_origin; }

    // Clipping. ClipRect is the area that drawing can reach, in canvas pixels.
    TRect ClipRect() const;
    void SetClipRect(const TRect& rect);
    void ResetClip();

    // Paths: between BeginPath and EndPath the figure operations record an
    // outline instead of drawing; StrokeAndFillPath then fills it (alternate rule)
    // with the brush and strokes it with the pen.
    void BeginPath();
    void EndPath();
    void StrokeAndFillPath();
    void StrokePath();
    void FillPath();
    bool InPath() const { return m_pathOpen; }

    // Geometric pen kinds for the next figures (shapes with join and end-cap styles).
    void SetPenGeometry(TPenJoin join, TPenCap cap) { m_join = join; m_cap = cap; m_penDirty = true; }

    // Whether the canvas draws onto anything: a bitmap canvas always does; a
    // control canvas only during its paint.
    bool HasDevice() const;
    // The painter, set up with nothing in particular; for drawing the framework lacks.
    QPainter* Painter();

    // Canvas of a bitmap (used by TBitmap) or around the painter of a control's paint.
    explicit TCanvas(TBitmap* bitmap);
    void AttachPainter(QPainter* painter, const TRect& clip);
    void DetachPainter();

private:
    friend class TBitmap;
    void endPainting();
    QPainter* begin();
    void applyPen(QPainter* p);
    void applyBrush(QPainter* p);
    void applyNoPen(QPainter* p);
    void applyNoBrush(QPainter* p);
    void applyMode(QPainter* p);
    static bool onPixels(QPainter* p);
    void drawLineWithoutEnd(QPainter* p, TPoint a, TPoint b);
    QFont currentQFont() const;
    void drawText(QPainter* p, int x, int y, const QString& text, bool opaque);
    bool penVisible() const { return m_pen.Style() != psClear; }
    bool brushVisible() const { return m_brush.Style() != bsClear; }
    void strokeAndFill(const QPainterPath& path, bool fill, bool stroke);
    // Records the figure while a path is open, else fills (optionally) and strokes it.
    void drawFigure(const QPainterPath& path, bool fill);

    TPen m_pen;
    TBrush m_brush;
    TFont m_font;
    TPoint m_penPos;
    bool m_bkTransparent = false;
    std::optional<TLogFont> m_logFont;
    TPenJoin m_join = TPenJoin::Default;
    TPenCap m_cap = TPenCap::Default;
    bool m_penDirty = true;

    TBitmap* m_bitmap = nullptr;
    std::unique_ptr<QPainter> m_ownPainter;
    QPainter* m_external = nullptr;
    TRect m_externalClip;
    std::optional<TRect> m_clip;
    TPoint m_origin;

    bool m_pathOpen = false;
    QPainterPath m_path;
    bool m_pathHasStart = false;
};

// Polygon regions with the alternate fill rule: the left and top edges are
// inside, the right and bottom edges outside, as the fill of Polygon covers.
enum TPolyFillMode { ALTERNATE = 1, WINDING = 2 };
QRegion CreatePolygonRgn(const TPoint* points, int count, TPolyFillMode mode = ALTERNATE);
inline QRegion CreatePolygonRgn(const TArrPoint& points, TPolyFillMode mode = ALTERNATE) {
    return CreatePolygonRgn(points.data(), int(points.size()), mode);
}
inline bool PtInRegion(const QRegion& region, int x, int y) { return region.contains(QPoint(x, y)); }

// Qt raster operation equivalent to a pen mode (pmNop maps to keeping the destination).
QPainter::CompositionMode CompositionModeFor(TPenMode mode);

}  // namespace faroven
