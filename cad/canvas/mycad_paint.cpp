// TMyCAD: the paint pipeline. Paint draws the invalid rectangle into an
// off-screen buffer of that size (background, background picture, grid, page
// texts, shapes), copies it onto the control and draws the selection's hot
// marks and the mouse feedback (cross-hair, hover frame) on top.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/geometry/geometry.h"
#include "cad/shapes/shape_markers.h"
#include "platform/system.h"

#include <utility>

namespace faroven {

namespace {
// The largest picture of the drawing kept during an edit (16 MB at 32 bits a pixel).
constexpr int64_t kMaxSceneCachePixels = 4 * 1024 * 1024;
}  // namespace

void TMyCAD::Paint() {
    if (m_painting) return;
    m_painting = true;
    TCanvas* canvas = Canvas();
    const TRect clip = canvas->ClipRect();
    if (sceneFrozen()) {
        drawFrozenScene(canvas, clip);
    } else {
        DrawAll(clip);
        canvas->Draw(clip.left, clip.top, &m_paintBuffer);
    }
    if (Designing()) {
        // In a form designer a dashed frame shows where the control lies.
        canvas->Pen()->SetStyle(psDash);
        canvas->Pen()->SetColor(clBlack);
        canvas->Pen()->SetMode(pmCopy);
        canvas->Brush()->SetStyle(bsClear);
        canvas->Rectangle(ClientRect());
    }
    SelectAllWorkingShapes();
    drawEditFeedback(canvas);
    drawMouseFeedback(canvas);
    if (!Designing() && OnPaint) OnPaint(this);
    m_painting = false;
}

// While an edit of the mouse runs the drawing stands still: the shapes move
// only at the release. The paints of the edit copy the drawing from a picture
// of the visible part taken at its first paint instead of drawing every shape
// again; a change of any shape drops the picture.
void TMyCAD::drawFrozenScene(TCanvas* canvas, const TRect& area) {
    TRect clip;
    if (!IntersectRect(clip, area, ClientRect())) return;
    const bool covered = m_sceneValid && clip.left >= m_sceneRect.left && clip.top >= m_sceneRect.top &&
                         clip.right <= m_sceneRect.right && clip.bottom <= m_sceneRect.bottom;
    if (!covered) {
        // The part of the control on screen; a control that is not shown
        // (printing, tests) is taken whole when that is not too big.
        const QRect visible = visibleRegion().boundingRect();
        TRect area = clip;
        if (!visible.isEmpty())
            area = canvas_detail::unite(area, TRect{visible.left(), visible.top(), visible.right() + 1,
                                                    visible.bottom() + 1});
        else if (int64_t(Width()) * Height() <= kMaxSceneCachePixels)
            area = ClientRect();
        DrawAll(area);
        m_sceneCache.Assign(m_paintBuffer);
        m_sceneRect = area;
        m_sceneValid = !m_sceneCache.Empty();
    }
    if (!m_sceneValid) return;
    canvas->CopyRect(clip, m_sceneCache.Canvas(),
                     canvas_detail::offsetRect(clip, -m_sceneRect.left, -m_sceneRect.top));
}

void TMyCAD::DrawAll(const TRect& rect) {
    m_paintBuffer.SetSize(rect.Width(), rect.Height());
    if (m_paintBuffer.Empty()) return;
    TCanvas* canvas = m_paintBuffer.Canvas();
    renderArea(canvas, rect, ClientRect(), ClientRect(), ScreenRenderOptions());
    drawLinkMarks(canvas, rect);
}

void TMyCAD::FillBackground(TBitmap* bitmap) {
    TCanvas* canvas = bitmap->Canvas();
    canvas->Brush()->SetColor(m_colorOfBackGround);
    canvas->Brush()->SetStyle(bsSolid);
    canvas->FillRect(TRect{0, 0, bitmap->Width(), bitmap->Height()});
}

void TMyCAD::DrawBackground(TCanvas* canvas, const TRect& rect) {
    canvas->Brush()->SetColor(m_colorOfBackGround);
    canvas->Brush()->SetStyle(bsSolid);
    canvas->FillRect(rect);
}

// Root shapes of visible layers whose painted pixels can reach the rectangle
// are drawn in MyShapes order, each after its children, so a later shape
// covers an earlier one. A root is listed when its own box or the box of one
// of its descendants meets the rectangle (which covers a root whose bounds
// contain the rectangle and a root with a point inside it); the spatial index
// finds them without visiting the others. The buffer's origin is the
// rectangle's corner: the canvas is given that window origin, which shifts
// whole pixels and leaves the shapes' coordinates untouched.
void TMyCAD::DrawAllShape(TCanvas* canvas, const TRect& rect) {
    TRenderOptions shapesOnly{false, false, false, false};
    renderArea(canvas, rect, ClientRect(), ClientRect(), shapesOnly);
    drawLinkMarks(canvas, rect);
}

void TMyCAD::collectPaintedRoots(const TRect& rect) {
    m_paintedShapes.clear();
    const std::vector<int> roots = rootsMeetingNow(rect);
    for (int no : roots) {
        TMyShape* shape = m_myShapes[size_t(no)];
        if (!shape || shape->HasParentShape() || !m_layers.IsVisible(shape->LayerId())) continue;
        m_paintedShapes.push_back(no);
    }
}

// The link points of the shapes the last rendering drew (shown on screen only).
void TMyCAD::drawLinkMarks(TCanvas* canvas, const TRect& rect) {
    const TPoint origin = canvas->WindowOrg();
    canvas->SetWindowOrg(origin.x + rect.left, origin.y + rect.top);
    for (int no : m_paintedShapes) drawLinkHotTree(canvas, m_myShapes[size_t(no)]);
    canvas->SetWindowOrg(origin.x, origin.y);
}

void TMyCAD::DrawShapes(TCanvas* canvas, const std::vector<TMyShape*>& roots) {
    for (TMyShape* root : roots) drawShapeTree(canvas, root);
}

void TMyCAD::drawShapeTree(TCanvas* canvas, TMyShape* shape) {
    if (!shape || !shape->Visible()) return;
    for (int child : std::as_const(*shape).ChildShapeNos())
        if (TMyShape* c = GetShapeByNo(child); c && c != shape) drawShapeTree(canvas, c);
    shape->Draw(canvas);
}

void TMyCAD::drawLinkHotTree(TCanvas* canvas, TMyShape* shape) {
    if (!shape) return;
    DrawLinkHot(shape, canvas);
    for (int child : std::as_const(*shape).ChildShapeNos())
        if (TMyShape* c = GetShapeByNo(child); c && c != shape) drawLinkHotTree(canvas, c);
}

void TMyCAD::SelectAllWorkingShapes() {
    TCanvas* canvas = Canvas();
    if (!canvas->HasDevice()) {
        // Outside a paint the marks appear with the next one.
        Invalidate();
        return;
    }
    for (TMyShape* shape : m_workingShapes) shape->DrawHot(canvas);
}

void TMyCAD::DrawBorder(TCanvas* canvas) { drawBorderOn(canvas, ClientRect()); }

void TMyCAD::DrawHeadFoot(TCanvas* canvas) { drawHeadFootOn(canvas, ClientRect()); }

}  // namespace faroven
