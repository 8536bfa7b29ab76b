// TMyShape: the base of every drawable object on a TMyCAD canvas.
//
// A shape keeps its geometry as a list of points in unzoomed drawing units
// (y down), link points where link lines attach, its place in the canvas's
// hierarchy (layer, parent, children, id, number), its caption and its fill.
// The canvas reaches every kind of shape through the virtual operations below;
// the concrete families override them. Angles are radians, clockwise on screen.
//
// Ownership: the canvas owns its shapes; a shape owns its pen, brush, font,
// caption lines, user data and work bitmap, and refers to its canvas and to
// other shapes (by number, the index in the canvas's MyShapes) without owning them.
//
// Memory: drawings hold tens of thousands of shapes, so the parts that most
// shapes never use are created on first access: the caption, the multi-line
// caption, the user data, the work bitmap and the lists of children and
// attached link lines live in a side record, and the
// font is shared with the canvas (an immutable snapshot of the canvas's font
// when the shape was created) until Font() is asked for a changeable one. The
// accessors behave as if every part had been created with the shape.
#pragma once

#include "cad/enums.h"
#include "cad/persistence/userdata.h"
#include "cad/shapes/shape_kind.h"
#include "cad/types.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/component.h"
#include "platform/control.h"
#include "platform/graphics.h"
#include "platform/strings.h"

#include <memory>
#include <type_traits>

namespace faroven {

class TMyCAD;
class TStream;

class TMyShape : public TComponent {
    Q_OBJECT
    Q_PROPERTY(float Angle READ Angle WRITE SetAngle)
    Q_PROPERTY(faroven::TBrush* Brush READ Brush)
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool CaptionShow READ CaptionShow WRITE SetCaptionShow)
    Q_PROPERTY(int ColorBegin READ ColorBegin WRITE SetColorBegin)
    Q_PROPERTY(int ColorEnd READ ColorEnd WRITE SetColorEnd)
    Q_PROPERTY(bool DragEnable READ DragEnable WRITE SetDragEnable)
    Q_PROPERTY(faroven::TFont* Font READ Font)
    Q_PROPERTY(faroven::TGradientStyle GradientStyle READ GradientStyle WRITE SetGradientStyle)
    Q_PROPERTY(bool HotShow READ HotShow WRITE SetHotShow)
    Q_PROPERTY(QString Info READ Info WRITE SetInfo)
    Q_PROPERTY(bool IsFlipHorz READ IsFlipHorz WRITE SetIsFlipHorz)
    Q_PROPERTY(bool IsFlipVert READ IsFlipVert WRITE SetIsFlipVert)
    Q_PROPERTY(bool Locked READ Locked WRITE SetLocked)
    Q_PROPERTY(int LogHeight READ LogHeight WRITE SetLogHeight)
    Q_PROPERTY(bool LogUse READ LogUse WRITE SetLogUse)
    Q_PROPERTY(int LogWidth READ LogWidth WRITE SetLogWidth)
    Q_PROPERTY(QStringList MultiInfo READ multiInfoLines WRITE setMultiInfoLines)
    Q_PROPERTY(faroven::TAlignment MultiInfoAlignment READ MultiInfoAlignment WRITE SetMultiInfoAlignment)
    Q_PROPERTY(faroven::TPen* Pen READ Pen)
    Q_PROPERTY(faroven::TPenStyleJoinType PenStyleJoinType READ PenStyleJoinType WRITE SetPenStyleJoinType)
    Q_PROPERTY(faroven::TPenStyleEndCapType PenStyleEndCapType READ PenStyleEndCapType WRITE SetPenStyleEndCapType)
    Q_PROPERTY(bool ResizeEnable READ ResizeEnable WRITE SetResizeEnable)
    Q_PROPERTY(bool RotateEnable READ RotateEnable WRITE SetRotateEnable)
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(faroven::TUserData* UserData READ UserData)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)

public:
    explicit TMyShape(TMyCAD* canvas);
    ~TMyShape() override;
    TMyShape(const TMyShape&) = delete;
    TMyShape& operator=(const TMyShape&) = delete;

    // The class of the shape (see shape_kind.h). Every shape class overrides
    // kind() to return its own Kind.
    static constexpr TShapeKind Kind = TShapeKind::Shape;
    virtual TShapeKind kind() const { return Kind; }

    // ---- Published properties -------------------------------------------------
    float Angle() const { return m_angle; }
    void SetAngle(float v) { m_angle = v; changed(); }
    TBrush* Brush() { return &m_brush; }
    void SetBrush(const TBrush& v) { m_brush.Assign(v); }
    QString Caption() const { return m_extras ? m_extras->caption : QString(); }
    void SetCaption(const QString& v) { extras().caption = v; changed(); }
    bool CaptionShow() const { return m_captionShow; }
    void SetCaptionShow(bool v) { m_captionShow = v; changed(); }
    TColor ColorBegin() const { return m_colorBegin; }
    void SetColorBegin(TColor v) { m_colorBegin = v; changed(); }
    TColor ColorEnd() const { return m_colorEnd; }
    void SetColorEnd(TColor v) { m_colorEnd = v; changed(); }
    bool DragEnable() const { return m_dragEnable; }
    void SetDragEnable(bool v) { m_dragEnable = v; }
    // The shape's own, changeable font (created from the shared one on first use).
    TFont* Font();
    void SetFont(const TFont& v) { Font()->Assign(v); }
    // The font as it stands, without making the shape a copy of its own.
    const TFont& FontRef() const { return m_font ? *m_font : *m_sharedFont; }
    TGradientStyle GradientStyle() const { return m_gradientStyle; }
    void SetGradientStyle(TGradientStyle v) { m_gradientStyle = v; changed(); }
    bool HotShow() const { return m_hotShow; }
    void SetHotShow(bool v) { m_hotShow = v; changed(); }
    QString Info() const { return m_info; }
    void SetInfo(const QString& v) { m_info = v; changed(); }
    bool IsFlipHorz() const { return m_isFlipHorz; }
    void SetIsFlipHorz(bool v) { m_isFlipHorz = v; }
    bool IsFlipVert() const { return m_isFlipVert; }
    void SetIsFlipVert(bool v) { m_isFlipVert = v; }
    bool Locked() const { return m_locked; }
    void SetLocked(bool v) { m_locked = v; changed(); }
    int LogHeight() const { return m_logHeight; }
    void SetLogHeight(int v) { m_logHeight = v; changed(); }
    bool LogUse() const { return m_logUse; }
    void SetLogUse(bool v) { m_logUse = v; changed(); }
    int LogWidth() const { return m_logWidth; }
    void SetLogWidth(int v) { m_logWidth = v; changed(); }
    TStrings* MultiInfo() { return &extras().multiInfo; }
    void SetMultiInfo(const TStrings& v) { extras().multiInfo.Assign(v); }
    // Lines of the multi-line caption (0 without creating the list).
    int MultiInfoCount() const { return m_extras ? m_extras->multiInfo.Count() : 0; }
    TAlignment MultiInfoAlignment() const { return m_multiInfoAlignment; }
    void SetMultiInfoAlignment(TAlignment v) { m_multiInfoAlignment = v; changed(); }
    TPen* Pen() { return &m_pen; }
    const TPen* Pen() const { return &m_pen; }
    void SetPen(const TPen& v) { m_pen.Assign(v); }
    TPenStyleJoinType PenStyleJoinType() const { return m_penStyleJoinType; }
    void SetPenStyleJoinType(TPenStyleJoinType v) { m_penStyleJoinType = v; changed(); }
    TPenStyleEndCapType PenStyleEndCapType() const { return m_penStyleEndCapType; }
    void SetPenStyleEndCapType(TPenStyleEndCapType v) { m_penStyleEndCapType = v; changed(); }
    bool ResizeEnable() const { return m_resizeEnable; }
    void SetResizeEnable(bool v) { m_resizeEnable = v; }
    bool RotateEnable() const { return m_rotateEnable; }
    void SetRotateEnable(bool v) { m_rotateEnable = v; }
    TUserData* UserData() { return &extras().userData; }
    void SetUserData(const TUserData& v) { extras().userData.Assign(v); }
    bool Visible() const { return m_visible; }
    void SetVisible(bool v) { m_visible = v; changed(); }
    // Raised by the canvas when the shape is picked; the sender is the canvas.
    TNotifyEvent OnClick;

    // ---- Stored state that is not published -------------------------------------
    TMyCAD* Canvas() const { return m_canvas; }
    int ShapeNo() const { return m_shapeNo; }
    // Numbers and the parent reference count as changes: the canvas's index
    // keeps each shape's place in the list and whether it is a root.
    void SetShapeNo(int v) {
        if (v == m_shapeNo) return;
        m_shapeNo = v;
        changed();
    }
    int GetShapeId() const { return m_shapeId; }
    int ShapeId() const { return m_shapeId; }
    void SetShapeId(int v);
    int ParentShapeNo() const { return m_parentShapeNo; }
    void SetParentShapeNo(int v) {
        if (v == m_parentShapeNo) return;
        m_parentShapeNo = v;
        changed();
    }
    // The child and link-line lists live in the side record: reading them
    // through a const shape creates nothing.
    std::vector<int32_t>& ChildShapeNos() { return extras().childShapeNos; }
    const std::vector<int32_t>& ChildShapeNos() const;
    void SetChildShapeNos(const std::vector<int32_t>& v);
    TMyShapeNo& LinkShapeNos() { return extras().linkShapeNos; }
    const TMyShapeNo& LinkShapeNos() const;
    void SetLinkShapeNos(const TMyShapeNo& v);
    int LayerId() const { return m_layerId; }
    void SetLayerId(int v) { m_layerId = v; }
    int HotIndex() const { return m_hotIndex; }
    void SetHotIndex(int v) { m_hotIndex = v; }
    TMyPoint TextPoint() const { return m_textPoint; }
    void SetTextPoint(TMyPoint v) { m_textPoint = v; changed(); }
    TMyPoint CenterPoint() const { return m_centerPoint; }
    void SetCenterPoint(TMyPoint v) { m_centerPoint = v; }
    // Mutable access counts as a change: the revision is bumped and the canvas
    // told, so that its caches (bounding boxes, spatial index) look again.
    TArrMyPoint& Points() { changed(); return m_points; }
    const TArrMyPoint& Points() const { return m_points; }
    void SetPoints(const TArrMyPoint& v) { m_points = v; changed(); }
    TArrMyPoint& LinkPoints() { changed(); return m_linkPoints; }
    const TArrMyPoint& LinkPoints() const { return m_linkPoints; }
    void SetLinkPoints(const TArrMyPoint& v) { m_linkPoints = v; changed(); }
    TBitmap* WorkBitmap();

    // ---- Virtual operations -------------------------------------------------------
    // Converts two pixel points to a drawing-unit offset and calls DragChangeValuedxdy.
    virtual void DragChangeValue(TPoint from, TPoint to);
    // Moves the shape by (dx, dy) drawing units: points, link points, text point and centre.
    virtual void DragChangeValuedxdy(double dx, double dy);
    // Draws the moving outline during a drag; the base draws nothing.
    virtual void Draging(TCanvas* canvas, TPoint from, TPoint to);
    // Called once when the mouse has drawn the shape: stores the centre and puts
    // the text point 10 units below the bottom edge, on the centre's x.
    virtual void Drawed(TPoint from, TPoint to);
    // Draws the hot marks of a selected shape: a square on every point, the
    // link crosses, and the information diamond at the text point.
    virtual void DrawHot(TCanvas* canvas);
    // Rubber band while the shape is being drawn: the base joins its points and the mouse.
    virtual void Drawing(TCanvas* canvas, TPoint from, TPoint to);
    // A length of the shape in the canvas's unit; the base has no length (0).
    virtual double GetLengthByUnit();
    // The distance between two zoomed points, in the canvas's unit (TheUNIT,
    // Ratio): the pixels are first brought back to zoom 1.
    double GetLengthByUnit(TMyPoint zoomed1, TMyPoint zoomed2) const;
    // Cursor for the mouse at a pixel point; the base gives the cross-hair.
    virtual TCursor GetMouseCursor(int x, int y);
    // Whether the mouse has finished drawing the shape; the base needs two points.
    virtual bool IsDrawingFinished(TMouseButton button, TPoint point);
    // Rotates points, link points and text point about the centre
    // (GetCenterPoint, which stays); adds to Angle.
    virtual void RotateChangeValueByAngle(double angle);
    // Rotation feedback: the outline of the points turned by the mouse's angle.
    virtual void Rotating(TCanvas* canvas, TPoint from, TPoint to);
    // Applies a resize; the base does nothing.
    virtual void SizeChangeValue(TPoint from, TPoint to);
    // Resize feedback; the base draws nothing.
    virtual void Sizing(TCanvas* canvas, TPoint from, TPoint to);
    // Converts the pixel point to drawing units and calls AddPoint.
    virtual void AddPointByMouse(TPoint point);
    // Copies another shape's properties and geometry, its relations included:
    // ShapeId, ShapeNo, ParentShapeNo, ChildShapeNos, LinkShapeNos (and the
    // shape numbers a subclass keeps). An undo snapshot is such a full copy,
    // and the live shape is found again by the snapshot's id. The component
    // Name is not copied.
    virtual void Assign(const TMyShape* source);
    // The same without the relations and ids: the shape keeps its own.
    virtual void AssignWithoutRelation(const TMyShape* source);
    // Paints the shape; the base paints only the caption.
    virtual void Draw(TCanvas* canvas);
    // Mirror the points about the vertical or horizontal line through the
    // centre (GetCenterPoint), which stays where it is.
    virtual void FlipHoriz();
    virtual void FlipVert();
    // The centre of rotation and mirroring, in drawing units: the stored
    // centre (CenterPoint), not recomputed from the points. It is stored when
    // the mouse finishes drawing the shape (Drawed), when the canvas adds a
    // shape made by code (TMyCAD::AddNewShape), by loading and by the
    // families' resizes; moving and scaling carry it along, rotating and
    // mirroring keep it. Code that changes points by other means stores it
    // itself (SetCenterPoint(ComputeCenterPoint())) when the shape is to turn
    // about its new middle.
    virtual TMyPoint GetCenterPoint();
    virtual TMyPoint GetCenterPointInZoom();
    // The caption text: Info, or when that is empty the first line of MultiInfo.
    virtual QString GetInfo();
    // The point at the index; (0, 0) when the index is out of range.
    virtual TMyPoint GetPoint(int index) const;
    // Index of the hot mark under a pixel point, stored in the hot index; the base has none (-1).
    virtual int InWhichHot(TPoint point);
    // Hit test at a pixel point; the base is never hit.
    virtual bool IsClickedMe(TCanvas* canvas, TPoint point);
    // The shape's binary record (shape_records.cpp has the layout). Saving
    // always writes the newest layout, "XP.j"; loading reads the layout of
    // the canvas's DiskFileVersion ("XP.j" without a canvas), leaves the
    // fields that version lacks as they are, and does not compute the centre
    // point (the caller does, once the record is read). A short stream raises
    // EReadError, a count or value that cannot be right EFileFormatError; the
    // shape is then partly loaded. Subclasses with fields of their own call
    // the parent's first, then read or write their tail.
    virtual void LoadFromStream(TStream& stream);
    virtual void SaveToStream(TStream& stream);

    // ---- Points -------------------------------------------------------------------
    void AddPoint(TMyPoint p);
    int GetPointsCount() const { return int(m_points.size()); }
    void SetPoint(int index, TMyPoint p);
    void SetPointX(int index, float x);
    void SetPointY(int index, float y);
    void PointAddX(int index, float dx);
    void PointAddY(int index, float dy);
    void PointAddXY(int index, float dx, float dy);
    TMyPoint GetPointInZoom(int index) const;
    void SetPointInZoom(int index, TMyPoint p);
    void SetPointXInZoom(int index, float x);
    void SetPointYInZoom(int index, float y);
    // Zoomed and converted by the canvas's XYMode (the coordinates shown to the user).
    TMyPoint GetPointInZoomWithMode(int index) const;
    TMyPoint ZoomedValuePt(TMyPoint p) const;

    // ---- Link points ----------------------------------------------------------------
    void AddLinkPoint(TMyPoint p);
    TMyPoint GetLinkPoint(int index) const;
    TMyPoint GetLinkPointInZoom(int index) const;
    int GetLinkPointsCount() const { return int(m_linkPoints.size()); }
    void SetLinkPoint(int index, TMyPoint p);
    void SetLinkPointX(int index, float x);
    void SetLinkPointY(int index, float y);
    void LinkPointAddXY(int index, float dx, float dy);
    // Index of the link point whose hot square holds the pixel point (last wins), or -1.
    int InWhichLinkHot(TPoint point) const;

    // ---- Bounds (drawing units unless "in pixels") -----------------------------------
    TMyPoint GetLeftTop() const;
    TMyPoint GetRightTop() const;
    TMyPoint GetLeftBottom() const;
    TMyPoint GetRightBottom() const;
    // Width and height of the points' extent, in pixels at the canvas's zoom.
    int GetWidth() const;
    int GetHeight() const;
    float GetMyWidth() const;
    float GetMyHeight() const;
    // Bounding box of the points in drawing units (empty rectangle without points).
    TMyRect GetBounds() const;
    // The pixels that Draw may touch at the current zoom: the points, link points
    // and caption, grown by the pen. Painting and picking use it to skip shapes.
    virtual TRect GetPaintBoundsInZoom();
    // The pixels where IsClickedMe may answer true at the current zoom. The
    // canvas looks only at shapes whose box holds the mouse, so an override of
    // IsClickedMe that reaches further must widen this box. The base covers the
    // points and link points and the 8-pixel band of line segments around them.
    virtual TRect GetHitBoundsInZoom();

    // ---- Relations ----------------------------------------------------------------
    bool HasParentShape() const { return m_parentShapeNo > -1; }
    bool HasChildShapes() const { return m_extras && !m_extras->childShapeNos.empty(); }
    bool HasLinkShapes() const { return m_extras && !m_extras->linkShapeNos.empty(); }
    // Rewrites every shape number the shape holds after the canvas reordered or
    // shortened MyShapes: oldToNew[n] is the new number of the shape that had
    // number n, -1 when it was removed. The base maps ParentShapeNo (-1 when the
    // parent went) and drops removed entries of ChildShapeNos and LinkShapeNos.
    // A shape that holds more numbers (a link line's two ends) overrides this,
    // rewrites them too (-1 for a removed end) and calls the base. The shape's
    // own ShapeNo is the canvas's to set.
    virtual void remapShapeNos(const std::vector<int>& oldToNew);

    // ---- Drawing helpers --------------------------------------------------------------
    // The caption (Info) and the multi-line caption centred on the text point,
    // turned with the shape's angle, in the shape's font scaled by the zoom.
    void DrawInfo(TCanvas* canvas);
    // Fills a closed outline (pixels) with the shape's gradient.
    void DrawGradient(TCanvas* canvas, const TArrPoint& outline);
    void DrawHotLinkSquare(TCanvas* canvas);
    // The normal drawing of a figure given by its outline in pixels: the
    // shape's pen and brush, the gradient inside a closed outline when one is
    // set, the geometric pen kinds when the pen is wider than one pixel.
    void PowerDrawShape(TCanvas* canvas, const TArrPoint& outline, bool closed);
    // The press is on the text point (its hot square).
    bool InTextPointHot(TPoint point) const;
    // The angle, in radians clockwise, that turning from one pixel point to
    // another makes about the shape's centre.
    double GetRotatedAngle(TPoint from, TPoint to);
    // Scales every point, link point, the text point and the stored centre about an origin.
    void SizeChangeValueByScale(double scaleX, double scaleY, TMyPoint origin);
    // The centre of the points' bounding box.
    TMyPoint ComputeCenterPoint() const;
    // The centre of the bounding box of the first count points (all when
    // fewer); the stored centre when there are none.
    TMyPoint ComputeCenterPoint(int count) const;
    // Text output through the shape's font, angle and the canvas's zoom; with
    // LogUse the text box is LogWidth x LogHeight instead of the measured one.
    void MyLogTextOut(TCanvas* canvas, int x, int y, const QString& text);
    TSize GetTextWidthHeight(TCanvas* canvas, const QString& text);

    // ---- Change hooks -----------------------------------------------------------------
    void DoPenBrushChange(TObject* sender);
    void DoFontChange(TObject* sender);

    // The canvas's zoom (1 without a canvas).
    double Zoom() const;
    // Bumped on every change that may alter how the shape looks; caches compare it.
    uint64_t Revision() const { return m_revision; }

protected:
    // Records a change: bumps the revision and tells the canvas.
    void changed();
    int hotSize() const;
    // The square hot area of a point in pixels: the rounded zoomed point, HotSize
    // to each side, far edges excluded.
    bool inHotSquare(TMyPoint zoomed, TPoint point) const;
    // The points converted to pixels at the current zoom.
    TArrPoint pointsInZoom() const;
    // The points in pixels turned about the zoomed centre by the angle that the
    // mouse makes from `from` to `to` (rotation feedback).
    TArrPoint rotatedPointsInZoom(TPoint from, TPoint to);
    // The pixel box of the zoomed points and link points, grown by margin on
    // every side (one more on the far sides); empty without points.
    TRect zoomedPointBox(int margin) const;
    // The pen set-up shared by the drawings: join and end-cap kinds for pens
    // wider than one pixel. Callers reset the canvas's pen geometry afterwards.
    void SetPS(TCanvas* canvas);
    // Copies the fields a subclass adds, for Assign (withRelations true) and
    // AssignWithoutRelation (false). An override calls the base first and
    // copies its own fields when the source is of its class; fields that
    // refer to other shapes are copied only with the relations. The base has none.
    virtual void assignOwnFields(const TMyShape* source, bool withRelations);


private:
    friend class TShapeIndex;  // keeps the spatial-index bookkeeping below

    // The parts that most shapes never use, created on first access.
    struct Extras {
        QString caption;
        TStrings multiInfo;
        TUserData userData;
        std::unique_ptr<TBitmap> workBitmap;
        std::vector<int32_t> childShapeNos;
        TMyShapeNo linkShapeNos;
    };
    Extras& extras();
    QStringList multiInfoLines() const { return m_extras ? m_extras->multiInfo.Lines() : QStringList(); }
    void setMultiInfoLines(const QStringList& v) { extras().multiInfo.SetLines(v); }
    void copyProperties(const TMyShape* source);

    TMyCAD* m_canvas = nullptr;
    float m_angle = 0;
    TBrush m_brush;
    bool m_captionShow = true;
    TColor m_colorBegin = clWhite;
    TColor m_colorEnd = clBlack;
    bool m_dragEnable = true;
    std::unique_ptr<TFont> m_font;               // the shape's own font, once asked for
    std::shared_ptr<const TFont> m_sharedFont;   // the shared font until then
    TGradientStyle m_gradientStyle = gsNone;
    bool m_hotShow = true;
    QString m_info;
    bool m_isFlipHorz = false;
    bool m_isFlipVert = false;
    bool m_locked = false;
    int m_logHeight = 10;
    bool m_logUse = false;
    int m_logWidth = 10;
    TAlignment m_multiInfoAlignment = taCenter;
    TPen m_pen;
    TPenStyleJoinType m_penStyleJoinType = psjtROUND;
    TPenStyleEndCapType m_penStyleEndCapType = psectROUND;
    bool m_resizeEnable = true;
    bool m_rotateEnable = true;
    bool m_visible = true;
    std::unique_ptr<Extras> m_extras;
    TMyPoint m_centerPoint;
    int m_layerId = 0;
    int m_parentShapeNo = -1;
    int m_hotIndex = -1;
    int m_shapeId = -1;
    int m_shapeNo = -1;
    TMyPoint m_textPoint;
    TArrMyPoint m_points;
    TArrMyPoint m_linkPoints;
    uint64_t m_revision = 0;
    // Canvas bookkeeping: the shape's slot in the canvas's spatial index and
    // its place in the canvas's list of shapes to re-index (-1: none).
    int32_t m_indexSlot = -1;
    int32_t m_dirtyPos = -1;
};

// The shape as a T when it is exactly of T's kind (not of a subclass with a
// kind of its own: shape_cast<TMyGroup> refuses a TMyCombine); nullptr
// otherwise or for nullptr.
template <class T>
T* shape_cast(TMyShape* shape) {
    static_assert(std::is_base_of_v<TMyShape, T>, "shape_cast needs a shape class");
    return shape && shape->kind() == T::Kind ? static_cast<T*>(shape) : nullptr;
}
template <class T>
const T* shape_cast(const TMyShape* shape) {
    static_assert(std::is_base_of_v<TMyShape, T>, "shape_cast needs a shape class");
    return shape && shape->kind() == T::Kind ? static_cast<const T*>(shape) : nullptr;
}

// Shape-level point helpers used by the canvas and the families.
// Adds (dx, dy) to every point, every link point and the text point; the stored
// centre is not touched.
void OffsetAllPoints(TMyShape* shape, double dx, double dy);
// Empties the point list; link points are kept.
void RemoveAllPoints(TMyShape* shape);
// Appends a link-line number unless it is already attached.
void AddLinklineShape(TMyShape* shape, uint32_t no);
// Removes the last occurrence of a link-line number, if any.
void RemoveLinklineShape(TMyShape* shape, uint32_t no);
// A shape number through an old-to-new map: -1 for a number outside the map
// (a dangling reference) or for a removed shape.
inline int MapShapeNo(const std::vector<int>& oldToNew, int64_t no) {
    return no >= 0 && no < int64_t(oldToNew.size()) ? oldToNew[size_t(no)] : -1;
}

}  // namespace faroven
