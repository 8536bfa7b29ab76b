// TMyCAD: the drawing canvas. A windowless control that owns every shape of
// one drawing (MyShapes, in painting order), its layers, selection, page
// settings, grid and undo history, and paints through an off-screen buffer of
// the invalid rectangle.
//
// The header is in sections, one per source file: mycad_core.cpp
// (construction, properties, the shape registry), mycad_delete.cpp (deletion
// and renumbering), mycad_undo.cpp (undo and redo), mycad_arrange.cpp
// (grouping, z-order, alignment, flips), mycad_selection.cpp (selection and
// region tests), mycad_layers.cpp, mycad_page.cpp (page, zoom, grid,
// background), mycad_snap.cpp (snapping and page bounds), mycad_units.cpp
// (lengths in the user's unit), mycad_paint.cpp (the paint pipeline),
// the mouse (mycad_mouse_down.cpp, mycad_mouse.cpp, mycad_mouse_up.cpp,
// mycad_edit_points.cpp, mycad_nodes.cpp), mycad_keys.cpp (keyboard and
// wheel), mycad_text_input.cpp (the in-place caption editor), mycad_tools.cpp
// (tools and shapes made by code), mycad_connections.cpp and
// mycad_picking.cpp (picking and the spatial index). State that stands alone lives in small
// classes the canvas owns: TLayerTable, TGridObject, TShapeIndex,
// TShapeIdIndex and TUndoHistory; internals shared by the source files are
// in mycad_p.h.
//
// Numbers and ids: a shape's number is its index in MyShapes; references
// between shapes (parent, children, link lines) are numbers. A shape's id is
// unique for the canvas's life and never reused.
#pragma once

#include "cad/canvas/grid.h"
#include "cad/canvas/layers.h"
#include "cad/canvas/mycad_events.h"
#include "cad/canvas/render_options.h"
#include "cad/canvas/shape_id_index.h"
#include "cad/canvas/shape_index.h"
#include "cad/canvas/undo_history.h"
#include "cad/canvas/undo_scope.h"
#include "cad/canvas/units.h"
#include "cad/enums.h"
#include "cad/persistence/file_version.h"
#include "cad/persistence/userdata.h"
#include "cad/shapes/shape.h"
#include "cad/types.h"
#include "platform/bitmap.h"
#include "platform/control.h"
#include "platform/graphics.h"

#include <QLabel>
#include <QSizeF>
#include <QStringList>
#include <QPointer>
#include <functional>
#include <memory>
#include <vector>

class QPagedPaintDevice;

namespace faroven {

class TLibManager;
struct TDxfExportOptions;
class TMyLine;
class TTextInputBox;

class TMyCAD : public TGraphicControl {
    Q_OBJECT
    Q_PROPERTY(faroven::TArcMode ArcMode READ ArcMode WRITE SetArcMode)
    Q_PROPERTY(int ArrowAngle READ ArrowAngle WRITE SetArrowAngle)
    Q_PROPERTY(int ArrowLength READ ArrowLength WRITE SetArrowLength)
    Q_PROPERTY(int ArrowOffset READ ArrowOffset WRITE SetArrowOffset)
    Q_PROPERTY(faroven::TArrowStyle ArrowStyle READ ArrowStyle WRITE SetArrowStyle)
    Q_PROPERTY(faroven::TBitmap* BkBitmap READ BkBitmap)
    Q_PROPERTY(faroven::TBkBitmapMode BkBitmapMode READ BkBitmapMode WRITE SetBkBitmapMode)
    Q_PROPERTY(faroven::TBrush* Brush READ Brush)
    Q_PROPERTY(int ColorOfBackGround READ ColorOfBackGround WRITE SetColorOfBackGround)
    Q_PROPERTY(int ColorOfHot READ ColorOfHot WRITE SetColorOfHot)
    Q_PROPERTY(bool CrossLine READ CrossLine WRITE SetCrossLine)
    Q_PROPERTY(bool DragEnable READ DragEnable WRITE SetDragEnable)
    Q_PROPERTY(faroven::TDragMode DragMode READ DragMode WRITE SetDragShapeMode)
    Q_PROPERTY(bool DragTrace READ DragTrace WRITE SetDragTrace)
    Q_PROPERTY(bool DisableTextInput READ DisableTextInput WRITE SetDisableTextInput)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(faroven::TFont* Font READ Font)
    Q_PROPERTY(faroven::TGridObject* GridOperation READ GridOperation)
    Q_PROPERTY(bool HotShow READ HotShow WRITE SetHotShow)
    Q_PROPERTY(int HotSize READ HotSize WRITE SetHotSize)
    Q_PROPERTY(const faroven::TLayerTable* Layers READ LayerTable)
    Q_PROPERTY(bool LinklineAroundShape READ LinklineAroundShape WRITE SetLinklineAroundShape)
    Q_PROPERTY(faroven::TLinkLineDrawStyle LinkLineDrawStyle READ LinkLineDrawStyle WRITE SetLinkLineDrawStyle)
    Q_PROPERTY(bool LockBound READ LockBound WRITE SetLockBound)
    Q_PROPERTY(bool MouseEffect READ MouseEffect WRITE SetMouseEffect)
    Q_PROPERTY(bool OperateAllLayer READ OperateAllLayer WRITE SetOperateAllLayer)
    Q_PROPERTY(QString PageFoot READ PageFoot WRITE SetPageFoot)
    Q_PROPERTY(faroven::TFont* PageFootFont READ PageFootFont)
    Q_PROPERTY(faroven::TAlignment PageFootAlignment READ PageFootAlignment WRITE SetPageFootAlignment)
    Q_PROPERTY(int PageFootToBottom READ PageFootToBottom WRITE SetPageFootToBottom)
    Q_PROPERTY(QString PageHead READ PageHead WRITE SetPageHead)
    Q_PROPERTY(faroven::TFont* PageHeadFont READ PageHeadFont)
    Q_PROPERTY(faroven::TAlignment PageHeadAlignment READ PageHeadAlignment WRITE SetPageHeadAlignment)
    Q_PROPERTY(int PageHeadToTop READ PageHeadToTop WRITE SetPageHeadToTop)
    Q_PROPERTY(uint PageHeight READ PageHeight WRITE SetPageHeight)
    Q_PROPERTY(faroven::TPrinterOrientation PageOrientation READ PageOrientation WRITE SetPageOrientation)
    Q_PROPERTY(faroven::TPageStyle PageStyle READ PageStyle WRITE SetPageStyle)
    Q_PROPERTY(uint PageWidth READ PageWidth WRITE SetPageWidth)
    Q_PROPERTY(faroven::TPen* Pen READ Pen)
    Q_PROPERTY(faroven::TPenStyleJoinType PenStyleJoinType READ PenStyleJoinType WRITE SetPenStyleJoinType)
    Q_PROPERTY(faroven::TPenStyleEndCapType PenStyleEndCapType READ PenStyleEndCapType WRITE SetPenStyleEndCapType)
    Q_PROPERTY(bool PrintABorder READ PrintABorder WRITE SetPrintABorder)
    Q_PROPERTY(int PrintABordertoBottom READ PrintABordertoBottom WRITE SetPrintABordertoBottom)
    Q_PROPERTY(int PrintABordertoLeft READ PrintABordertoLeft WRITE SetPrintABordertoLeft)
    Q_PROPERTY(int PrintABordertoRight READ PrintABordertoRight WRITE SetPrintABordertoRight)
    Q_PROPERTY(int PrintABordertoTop READ PrintABordertoTop WRITE SetPrintABordertoTop)
    Q_PROPERTY(bool PrintBackground READ PrintBackground WRITE SetPrintBackground)
    Q_PROPERTY(double Ratio READ Ratio WRITE SetRatio)
    Q_PROPERTY(bool ResizeEnable READ ResizeEnable WRITE SetResizeEnable)
    Q_PROPERTY(bool ReturnToSelecting READ ReturnToSelecting WRITE SetReturnToSelecting)
    Q_PROPERTY(int RotateConstraintDegree READ RotateConstraintDegree WRITE SetRotateConstraintDegree)
    Q_PROPERTY(bool RotateEnable READ RotateEnable WRITE SetRotateEnable)
    Q_PROPERTY(faroven::TDrawTool ShapeTool READ ShapeTool WRITE SetShapeTool)
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE SetShowHint)
    Q_PROPERTY(bool ShowHotLink READ ShowHotLink WRITE SetShowHotLink)
    Q_PROPERTY(bool Snap READ Snap WRITE SetSnap)
    Q_PROPERTY(int SnapPixels READ SnapPixels WRITE SetFSnapPixels)
    Q_PROPERTY(bool SnapShape READ SnapShape WRITE SetSnapShape)
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(faroven::TUnits TheUNIT READ TheUNIT WRITE SetUnit)
    Q_PROPERTY(int UndoRedoSize READ UndoRedoSize WRITE SetUndoRedoSize)
    Q_PROPERTY(faroven::TUserData* UserData READ UserData)
    Q_PROPERTY(QStringList UserDataPairs READ userDataPairs WRITE setUserDataPairs)
    Q_PROPERTY(QString Version READ Version)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(faroven::TXYMode XYMode READ XYMode WRITE SetXYMode)
    Q_PROPERTY(double Zoom READ Zoom WRITE SetZoom)

public:
    explicit TMyCAD(QWidget* owner = nullptr);
    ~TMyCAD() override;

    // ==== Published properties (setters in mycad_core.cpp and by concern) ============================
    TArcMode ArcMode() const { return m_arcMode; }
    void SetArcMode(TArcMode v) { m_arcMode = v; }
    int ArrowAngle() const { return m_arrowAngle; }
    void SetArrowAngle(int v) { m_arrowAngle = v; }
    uint8_t ArrowLength() const { return m_arrowLength; }
    void SetArrowLength(int v) { m_arrowLength = uint8_t(v); }
    uint8_t ArrowOffset() const { return m_arrowOffset; }
    void SetArrowOffset(int v) { m_arrowOffset = uint8_t(v); }
    TArrowStyle ArrowStyle() const { return m_arrowStyle; }
    void SetArrowStyle(TArrowStyle v) { m_arrowStyle = v; }
    TBitmap* BkBitmap() { return &m_bkBitmap; }
    void SetBkBitmap(const TBitmap& v);
    TBkBitmapMode BkBitmapMode() const { return m_bkBitmapMode; }
    void SetBkBitmapMode(TBkBitmapMode v);
    TBrush* Brush() { return &m_brush; }
    void SetBrush(const TBrush& v) { m_brush.Assign(v); }
    TColor ColorOfBackGround() const { return m_colorOfBackGround; }
    void SetColorOfBackGround(TColor v);
    TColor ColorOfHot() const { return m_colorOfHot; }
    // Stores the colour and makes it the process-wide hot colour of every canvas.
    void SetColorOfHot(TColor v);
    bool CrossLine() const { return m_crossLine; }
    void SetCrossLine(bool v);
    bool DragEnable() const { return m_dragEnable; }
    void SetDragEnable(bool v) { m_dragEnable = v; }
    TDragMode DragMode() const { return m_dragMode; }
    void SetDragShapeMode(TDragMode v) { m_dragMode = v; }
    bool DragTrace() const { return m_dragTrace; }
    void SetDragTrace(bool v) { m_dragTrace = v; }
    bool DisableTextInput() const { return m_disableTextInput; }
    void SetDisableTextInput(bool v) { m_disableTextInput = v; }
    TFont* Font() { return &m_font; }
    void SetFont(const TFont& v) { m_font.Assign(v); }
    TGridObject* GridOperation() { return &m_grid; }
    void SetGridOperation(const TGridObject& v) { m_grid.Assign(v); }
    bool HotShow() const { return m_hotShow; }
    void SetHotShow(bool v);
    uint8_t HotSize() const { return m_hotSize; }
    void SetHotSize(int v);
    QLabel* LabelValue() const { return m_labelValue; }
    void SetLabelValue(QLabel* v);
    QLabel* LabelXY() const { return m_labelXY; }
    void SetLabelXY(QLabel* v);
    bool LinklineAroundShape() const { return m_linklineAroundShape; }
    void SetLinklineAroundShape(bool v) { m_linklineAroundShape = v; }
    TLinkLineDrawStyle LinkLineDrawStyle() const { return m_linkLineDrawStyle; }
    void SetLinkLineDrawStyle(TLinkLineDrawStyle v) { m_linkLineDrawStyle = v; }
    bool LockBound() const { return m_lockBound; }
    void SetLockBound(bool v) { m_lockBound = v; }
    bool MouseEffect() const { return m_mouseEffect; }
    void SetMouseEffect(bool v);
    bool OperateAllLayer() const { return m_operateAllLayer; }
    void SetOperateAllLayer(bool v) { m_operateAllLayer = v; }
    QString PageFoot() const { return m_pageFoot; }
    void SetPageFoot(const QString& v);
    TAlignment PageFootAlignment() const { return m_pageFootAlignment; }
    void SetPageFootAlignment(TAlignment v);
    TFont* PageFootFont() { return &m_pageFootFont; }
    void SetPageFootFont(const TFont& v) { m_pageFootFont.Assign(v); }
    uint8_t PageFootToBottom() const { return m_pageFootToBottom; }
    void SetPageFootToBottom(int v);
    QString PageHead() const { return m_pageHead; }
    void SetPageHead(const QString& v);
    TAlignment PageHeadAlignment() const { return m_pageHeadAlignment; }
    void SetPageHeadAlignment(TAlignment v);
    TFont* PageHeadFont() { return &m_pageHeadFont; }
    void SetPageHeadFont(const TFont& v) { m_pageHeadFont.Assign(v); }
    uint8_t PageHeadToTop() const { return m_pageHeadToTop; }
    void SetPageHeadToTop(int v);
    uint32_t PageHeight() const { return m_pageHeight; }
    void SetPageHeight(uint32_t mm);
    TPrinterOrientation PageOrientation() const { return m_pageOrientation; }
    void SetPageOrientation(TPrinterOrientation v) { m_pageOrientation = v; }
    TPageStyle PageStyle() const { return m_pageStyle; }
    void SetPageStyle(TPageStyle style);
    uint32_t PageWidth() const { return m_pageWidth; }
    void SetPageWidth(uint32_t mm);
    TPen* Pen() { return &m_pen; }
    void SetPen(const TPen& v) { m_pen.Assign(v); }
    TPenStyleJoinType PenStyleJoinType() const { return m_penStyleJoinType; }
    void SetPenStyleJoinType(TPenStyleJoinType v) { m_penStyleJoinType = v; }
    TPenStyleEndCapType PenStyleEndCapType() const { return m_penStyleEndCapType; }
    void SetPenStyleEndCapType(TPenStyleEndCapType v) { m_penStyleEndCapType = v; }
    bool PrintABorder() const { return m_printABorder; }
    void SetPrintABorder(bool v) { m_printABorder = v; }
    uint8_t PrintABordertoBottom() const { return m_printABordertoBottom; }
    void SetPrintABordertoBottom(int v) { m_printABordertoBottom = uint8_t(v); }
    uint8_t PrintABordertoLeft() const { return m_printABordertoLeft; }
    void SetPrintABordertoLeft(int v) { m_printABordertoLeft = uint8_t(v); }
    uint8_t PrintABordertoRight() const { return m_printABordertoRight; }
    void SetPrintABordertoRight(int v) { m_printABordertoRight = uint8_t(v); }
    uint8_t PrintABordertoTop() const { return m_printABordertoTop; }
    void SetPrintABordertoTop(int v) { m_printABordertoTop = uint8_t(v); }
    bool PrintBackground() const { return m_printBackground; }
    void SetPrintBackground(bool v) { m_printBackground = v; }
    double Ratio() const { return m_ratio; }
    void SetRatio(double v) { m_ratio = v; }
    bool ResizeEnable() const { return m_resizeEnable; }
    void SetResizeEnable(bool v) { m_resizeEnable = v; }
    bool ReturnToSelecting() const { return m_returnToSelecting; }
    void SetReturnToSelecting(bool v) { m_returnToSelecting = v; }
    int RotateConstraintDegree() const { return m_rotateConstraintDegree; }
    void SetRotateConstraintDegree(int v) { m_rotateConstraintDegree = v; }
    bool RotateEnable() const { return m_rotateEnable; }
    void SetRotateEnable(bool v) { m_rotateEnable = v; }
    TDrawTool ShapeTool() const { return m_shapeTool; }
    // Stores the tool and sets the action it starts; a drawing tool also clears the current shape.
    void SetShapeTool(TDrawTool tool);
    bool ShowHotLink() const { return m_showHotLink; }
    void SetShowHotLink(bool v);
    bool Snap() const { return m_snap; }
    void SetSnap(bool v) { m_snap = v; }
    uint8_t SnapPixels() const { return m_snapPixels; }
    void SetFSnapPixels(int v) { m_snapPixels = uint8_t(v); }
    bool SnapShape() const { return m_snapShape; }
    void SetSnapShape(bool v) { m_snapShape = v; }
    TUnits TheUNIT() const { return m_theUnit; }
    void SetUnit(TUnits v);
    // The most undo steps kept (0 to 255); 0 switches the history off and empties it.
    uint8_t UndoRedoSize() const { return uint8_t(m_undo.Limit()); }
    void SetUndoRedoSize(int v);
    TUserData* UserData() { return &m_userData; }
    // The user data flattened to key, value, key, value… so that a form
    // designer can store it and uic can set it again (mycad_userdata.cpp).
    // Spelt in lower camel case because uic calls set<Property>() for a
    // property it writes. The setter replaces the pairs through
    // AddKeyandValue: a repeated key is dropped, a trailing key without its
    // value gets an empty one.
    QStringList userDataPairs() const;
    void setUserDataPairs(const QStringList& pairs);
    // uic sets a property a form gives a value as set<Property>(value): these
    // forward to the setters above, so forms made in Qt Designer compile.
    void setArrowAngle(int v) { SetArrowAngle(v); }
    void setArrowLength(int v) { SetArrowLength(v); }
    void setArrowOffset(int v) { SetArrowOffset(v); }
    void setColorOfBackGround(int v) { SetColorOfBackGround(v); }
    void setColorOfHot(int v) { SetColorOfHot(v); }
    void setCrossLine(bool v) { SetCrossLine(v); }
    void setDragEnable(bool v) { SetDragEnable(v); }
    void setDragTrace(bool v) { SetDragTrace(v); }
    void setDisableTextInput(bool v) { SetDisableTextInput(v); }
    void setHotShow(bool v) { SetHotShow(v); }
    void setHotSize(int v) { SetHotSize(v); }
    void setLinklineAroundShape(bool v) { SetLinklineAroundShape(v); }
    void setLockBound(bool v) { SetLockBound(v); }
    void setMouseEffect(bool v) { SetMouseEffect(v); }
    void setOperateAllLayer(bool v) { SetOperateAllLayer(v); }
    void setPageFoot(const QString& v) { SetPageFoot(v); }
    void setPageFootToBottom(int v) { SetPageFootToBottom(v); }
    void setPageHead(const QString& v) { SetPageHead(v); }
    void setPageHeadToTop(int v) { SetPageHeadToTop(v); }
    void setPageHeight(uint32_t v) { SetPageHeight(v); }
    void setPageWidth(uint32_t v) { SetPageWidth(v); }
    void setPrintABorder(bool v) { SetPrintABorder(v); }
    void setPrintABordertoBottom(int v) { SetPrintABordertoBottom(v); }
    void setPrintABordertoLeft(int v) { SetPrintABordertoLeft(v); }
    void setPrintABordertoRight(int v) { SetPrintABordertoRight(v); }
    void setPrintABordertoTop(int v) { SetPrintABordertoTop(v); }
    void setPrintBackground(bool v) { SetPrintBackground(v); }
    void setRatio(double v) { SetRatio(v); }
    void setResizeEnable(bool v) { SetResizeEnable(v); }
    void setReturnToSelecting(bool v) { SetReturnToSelecting(v); }
    void setRotateConstraintDegree(int v) { SetRotateConstraintDegree(v); }
    void setRotateEnable(bool v) { SetRotateEnable(v); }
    void setShowHint(bool v) { SetShowHint(v); }
    void setShowHotLink(bool v) { SetShowHotLink(v); }
    void setSnap(bool v) { SetSnap(v); }
    void setSnapPixels(int v) { SetFSnapPixels(v); }
    void setSnapShape(bool v) { SetSnapShape(v); }
    void setTag(int v) { SetTag(v); }
    void setUndoRedoSize(int v) { SetUndoRedoSize(v); }
    void setZoom(double v) { SetZoom(v); }
    QString Version() const { return QStringLiteral("2013"); }
    TXYMode XYMode() const { return m_xyMode; }
    void SetXYMode(TXYMode v) { m_xyMode = v; }
    double Zoom() const { return m_zoom; }
    // The control's size follows: the page in millimetres at the screen's
    // resolution times the zoom. Setting the current value changes nothing.
    void SetZoom(double zoom);

signals:
    // The selection changed: shapes were added to it or left it. Raised in the
    // middle of the canvas's work, so a view that rebuilds itself should queue.
    void selectionChanged();

public:
    // ==== Published events =======================================================================
    TActionToolToSelecting OnActionToolToSelecting;
    TChildhapeSelected OnChildShapeSelected;
    TLayerOp OnDeleteLayer;
    TLayerOp OnNewLayer;
    TEnterLeaveShape OnMouseEnterShape;
    TEnterLeaveShape OnMouseLeaveShape;
    TNodeAdded OnNodeAdded;
    TNodeDeleted OnNodeDeleted;
    TShapeAdded OnShapeAdded;
    TShapeCodeDraggingSizing OnShapeCodeDragging;
    TShapeCodeRotating OnShapeCodeRotating;
    TShapeDeleted OnShapeDeleted;
    TShapeMouseDraggingSizingRotating OnShapeMouseDragged;
    TShapeMouseDraggingSizingRotating OnShapeMouseDragging;
    TShapeMouseDraggingSizingRotating OnShapeMouseResized;
    TShapeMouseDraggingSizingRotating OnShapeMouseResizeFinished;
    TShapeMouseDraggingSizingRotating OnShapeMouseResizing;
    TShapeMouseDraggingSizingRotating OnShapeMouseRotated;
    TShapeMouseDraggingSizingRotating OnShapeMouseRotating;
    TShapeSelected OnShapeSelected;
    TWholeDragOperation OnWholeDragged;

    // ==== Unpublished state ======================================================================
    // The version of the stream being read, which every shape reader consults.
    QString DiskFileVersion() const { return m_diskFileVersion; }
    void SetDiskFileVersion(const QString& v);
    TFileVersion DiskFileVersionCode() const { return m_fileVersion; }
    // The layout the shapes write their records in: "XP.j" unless a library
    // upgrade writes an older one (XP.6 and later only; others are ignored).
    TFileVersion RecordWriteVersion() const { return m_writeVersion; }
    void SetRecordWriteVersion(TFileVersion v);
    double PreZoom() const { return m_preZoom; }
    TActionTools Action() const { return m_action; }
    void SetAction(TActionTools v) { m_action = v; }
    TMyShape* CurrentShape() const { return m_currentShape; }
    void SetCurrentShape(TMyShape* shape) { m_currentShape = shape; }
    // The drawing's shapes in z-order (index 0 is painted first); owned.
    const std::vector<TMyShape*>& MyShapes() const { return m_myShapes; }
    // Shapes waiting to be inserted from a block or the clipboard; owned.
    const std::vector<TMyShape*>& MemShapes() const { return m_memShapes; }
    // The selection, in the order shapes were added to it; not owned.
    const std::vector<TMyShape*>& WorkingShapes() const { return m_workingShapes; }
    // The numbers of the selected shapes and of every member of the selected
    // groups, in z-order: what copying or storing the selection takes.
    std::vector<int> SelectionWithMembers() const;
    // The id the next added shape gets.
    int NextShapeId() const { return m_nextShapeId; }
    // Root shapes the last paint drew, by number.
    const std::vector<int>& PaintedShapes() const { return m_paintedShapes; }
    bool Changed() const { return m_changed; }
    // Counts the edits recorded for undo, taken back and redone since the
    // canvas was made: a program compares it with its value at the last save
    // to know whether the drawing has unsaved changes.
    int64_t EditCount() const { return m_editCount; }
    void SetChanged(bool v) { m_changed = v; }
    bool Painting() const { return m_painting; }
    int LinkHotShapeNo() const { return m_linkHotShapeNo; }
    int LinkHotPointIndex() const { return m_linkHotPointIndex; }

    // ==== Shape registry (mycad_core.cpp) ========================================================
    // Appends the shape at the end of MyShapes. Unless keepLayer, the shape goes
    // on the current layer; unless noCount, the id counter counts up. Id, number
    // and name are the caller's to set first (see AddNewShape). Without any
    // layer, the fatal "Error!There is no Layer!" is raised and nothing is added.
    bool AddShape(TMyShape* shape, bool keepLayer = false, bool noCount = false);
    // Stores the shape at an index of MyShapes, which the loader has sized.
    bool AddShapeforLoadfromStream(int index, TMyShape* shape, bool noCount);
    // Sizes MyShapes for a loader (new slots are empty).
    void SetShapesCountForLoad(int count);
    // Numbers the shape, gives it the next id and the name "Shape" + id,
    // stores its centre (ComputeCenterPoint) and adds it on the current layer,
    // as drawing with the mouse does.
    bool AddNewShape(TMyShape* shape);
    int GetShapesCount() const { return int(m_myShapes.size()); }
    int GetMemShapesCount() const { return int(m_memShapes.size()); }
    TMyShape* GetShapeByNo(int no) const;
    TMyShape* GetShapeByID(int id) const;
    TMyShape* GetShapeByName(const QString& name) const;
    int GetShapeNoById(int id) const;
    int GetShapeNoInMyShapes(const TMyShape* shape) const;
    TMyShape* GetRootParentShape(TMyShape* shape) const;
    TMyShape* GetNextSingleorRootShape(int no) const;
    TMyShape* GetPrevSingleorRootShape(int no) const;
    TMyShape* GetSelectedShape() const;
    std::vector<TMyShape*> GetSelectedShapes() const { return m_workingShapes; }
    int GetSelectedShapesCount() const { return int(m_workingShapes.size()); }
    int GetWorkingShapesCount() const { return int(m_workingShapes.size()); }

    // ==== Deletion and renumbering (mycad_delete.cpp) ============================================
    // Deletes the shape with the id (the last one, as GetShapeNoById finds it)
    // together with its members, recursively. A Locked shape or an unknown id:
    // false, nothing changes. The shapes leave the selection and MyShapes, every
    // remaining number reference is rewritten (remapShapeNumbers), then
    // OnShapeDeleted is raised for each (the shape first, then its members) and
    // they are freed. With recordUndo the deletion is recorded as "ACT_DELETE".
    bool DeleteShapeById(int id, bool recordUndo = true);
    // Deletes every selected shape that is not Locked, as one undo step.
    void DeleteSelectedShapes();
    // Frees every shape; the id counter restarts at 0. No events, no undo.
    void DeleteAllShapes();
    // The one place that reorders or shortens MyShapes. oldToNew[n] is the new
    // number of the shape now at n, or -1 to take it out; the new numbers must
    // be exactly 0..k-1 (else std::invalid_argument and nothing changes). Every
    // kept shape gets ShapeNo = its index and its references rewritten
    // (remapShapeNos); the canvas's own numbers follow. Returns the shapes
    // taken out, in their old order, not freed.
    std::vector<TMyShape*> remapShapeNumbers(const std::vector<int>& oldToNew);

    // ==== Undo and redo (mycad_undo.cpp) =========================================================
    // Records one step under the action name: copies of the shapes (with
    // their members, recursively, for "ACT_DELETE" and "ACT_CHANGE"; with the
    // direct members of a root group for "ACT_UNGROUP"; only the first shape
    // for "ACT_GROUP" and the z-order actions). Nothing when UndoRedoSize is
    // 0. Unless it is a redo, the redo steps are dropped.
    void PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, const QString& action);
    // The shapes from index 0 to lastIndex.
    void PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, int lastIndex, const QString& action);
    // Takes the newest step back (with recording off) and keeps it for Redo.
    void PopFromUndoRedoShapeList();
    // Frees every undo and redo step.
    void ClearAllUndoStuff();
    const std::vector<TUndoRecord>& UndoRecords() const { return m_undo.Records(); }
    bool CanUndo() const;
    bool CanRedo() const;
    // The action names of the step Undo and Redo would act on; empty when none.
    QString UndoActionName() const;
    QString RedoActionName() const;
    void Undo();
    // Runs the newest step taken back again, recording it as a new undo step.
    void Redo();
    // A new, empty shape of the named class for the canvas (this canvas when
    // none is given), or nil for a name that is not a shape class.
    TMyShape* CreateShapeByName(const QString& className, TMyCAD* canvas = nullptr) const;

    // ==== Arrangement (mycad_arrange.cpp) ========================================================
    // Groups visible root shapes of one layer under a new TMyGroup (their
    // common box, named "Shape" + id, text point 10 units below), which
    // becomes the only selected and the current shape. The group's id, or -1
    // with nothing changed.
    int GroupShapes(const std::vector<TMyShape*>& shapes, bool recordUndo = true);
    // Takes a root group that is not Locked apart: its members become root
    // shapes and the group shape is deleted. Anything else: nothing.
    void UnGroupShape(TMyShape* group, bool recordUndo = true);
    // Both have a parent, and the same one.
    bool areTheyBrother(const TMyShape* a, const TMyShape* b) const;
    // Z-order among root shapes (members stay where they are in the list).
    // A step swaps with the next (previous) root; with none nothing happens
    // and nothing is recorded. To front (back) passes every root on the way
    // and is always recorded.
    void BringToFront(TMyShape* shape, bool recordUndo = true);
    void SendToBack(TMyShape* shape, bool recordUndo = true);
    void BringToFrontByStep(TMyShape* shape, bool recordUndo = true);
    void SendToBackByStep(TMyShape* shape, bool recordUndo = true);
    // Exchanges the two shapes' places; every reference follows.
    void SwapShape(TMyShape* a, TMyShape* b);
    // With two or more selected shapes: "ACT_CHANGE" for the selection, then
    // each moves (with its members) so that its box's edge or centre meets
    // the selection's common box.
    void AlignLeft();
    void AlignRight();
    void AlignTop();
    void AlignBottom();
    void AlignHorizontalCenter();
    void AlignVerticalCenter();
    // Spreads three or more shapes with equal gaps between their boxes,
    // vertically (AverageHeight) or horizontally (AverageWidth); the first and
    // the last stay. Records nothing (callers wrap it in a step).
    void AverageHeight(const std::vector<TMyShape*>& shapes);
    void AverageWidth(const std::vector<TMyShape*>& shapes);
    // Records "ACT_CHANGE" and mirrors the shape (and its members) about its
    // centre. Nothing for a link line.
    void FlipHoriz(TMyShape* shape);
    void FlipVert(TMyShape* shape);
    // The same for several shapes as one "ACT_CHANGE" step.
    void FlipHoriz(const std::vector<TMyShape*>& shapes);
    void FlipVert(const std::vector<TMyShape*>& shapes);
    // Sets Locked on the shape and its members.
    void LockUnLockforShapes(TMyShape* shape, bool locked);
    // Resizes as if hot point hotIndex were dragged to target (pixels).
    void SizeShape(TMyShape* shape, int hotIndex, TPoint target);
    // The union of the shapes' point boxes, from index 0 to lastIndex (all
    // when negative): in drawing units, and in pixels at the current zoom.
    TMyRect GetShapesLTRB(const std::vector<TMyShape*>& shapes, int lastIndex = -1) const;
    TMyRect GetShapesLTRBinZoom(const std::vector<TMyShape*>& shapes, int lastIndex = -1) const;
    // A committed move (drawing units) or resize (pixels) of a shape, applied
    // to its members too.
    void DragChangeValueDxDyforShapes(TMyShape* shape, double dx, double dy);
    void SizeChangeValueforShapes(TMyShape* shape, TPoint from, TPoint to);
    // True while an ungrouping runs.
    bool Busy() const { return m_busy; }
    // Off by default: taking back an ungrouping makes a plain TMyGroup of the
    // former members and gives it the former group's name and user data
    // only. On: the group comes back whole, of its own class (a TMyCombine
    // stays one) with its caption, pen, brush and every other property.
    bool UndoRestoresWholeGroup() const { return m_undoRestoresWholeGroup; }
    void SetUndoRestoresWholeGroup(bool v) { m_undoRestoresWholeGroup = v; }

    // ==== Tools and shapes made by code (mycad_tools.cpp) ==========================================
    // A new, unnumbered and unnamed shape of the tool's class for the canvas
    // (owner, or this canvas when nil): link lines take LinkLineDrawStyle.
    // Nil for tools that create nothing (selecting, browsing, ...).
    TMyShape* CreateShapeBySpTool(TDrawTool tool, TMyCAD* owner = nullptr);
    // Adds a TMyImage showing a copy of the bitmap, its top-left corner at
    // the pixel point and its frame the bitmap's size in drawing units, named
    // name (or "Shape" + id when empty), its caption point below it as after
    // drawing with the mouse; records "ACT_ADD". The new shape,
    // or nil for an empty bitmap.
    TMyShape* AddImageShapeByCode(const QString& name, TPoint point, const TBitmap& bitmap);
    // Adds a shape of the tool's class on the canvas (this one when nil) from
    // points in drawing units, as if drawn with the mouse, and records
    // "ACT_ADD". name: the shape's name ("Shape" + id when empty); points:
    // a rectangle-like shape takes two opposite corners (or its four corners),
    // an arc its three points, every line its points as given; angle: turns
    // the shape about its centre (radians, clockwise); text: the caption
    // (Info), or a text shape's lines, one per line of the string. Nil, with
    // nothing added, for a tool that draws nothing or too few points.
    TMyShape* AddShapeByCode(TMyCAD* canvas, TDrawTool tool, const QString& name, const TArrMyPoint& points,
                             long double angle, const QString& text);
    // The same from a frame: its top-left corner at point and width by height
    // drawing units; a line goes from the frame's top-left to its
    // bottom-right corner, an arc through its left-middle, top-middle and
    // right-middle points. penWidth > 0 sets the shape's pen width.
    TMyShape* AddShapeByCode2(TMyCAD* canvas, TDrawTool tool, const QString& name, TMyPoint point, int width,
                              int height, int penWidth, long double angle, const QString& text);
    // A new shape of the named class with the looks and geometry of source
    // (when given; relations and ids are not copied), added on the current
    // layer as a new shape: numbered, given the next id and the name "Shape"
    // + id. Not recorded for undo: callers that insert several shapes record
    // them as one step. Nil, with nothing added, for a name that is not a
    // shape class.
    TMyShape* CreateAddShapeByName(const QString& className, TMyShape* source);
    // Finishes the polygon (or polyline) being drawn as a double click would:
    // a polygon of three or more points is closed on its first point, a
    // polyline of two or more ends at its last point; with fewer points
    // nothing happens.
    void ClosePolygon();
    // The circle through three points (drawing units): its radius and the
    // angles, in degrees counter-clockwise with y pointing up (as DXF has
    // them), at which the arc from p1 through p2 to p3 starts and ends when
    // it runs counter-clockwise. False, and nothing set, for points on one line.
    bool GetRA1A2By3Points(TMyPoint p1, TMyPoint p2, TMyPoint p3, double& r, double& a1, double& a2) const;

    // ==== Connections (mycad_connections.cpp) ====================================================
    // Joins link point startPtId of startShape to link point endPtId of
    // endShape with a new TMyLinkLine named name, added on the current layer,
    // recorded as "ACT_ADD" and selected alone. Note the argument order: the
    // third argument is the index on the end shape, the fifth the index on the
    // start shape. The line's id, or -1 with nothing created when a shape is
    // missing or an index is out of range.
    int CreateLink(const QString& name, TMyShape* startShape, int endPtId, TMyShape* endShape, int startPtId);
    // The first shape in MyShapes (bottom-most) with a link point under the
    // pixel point (InWhichLinkHot); with more than one shape selected the
    // selected ones are skipped. False, and both results -1, when none.
    bool InWhichShapeWhichHotLinkId(int& shapeNo, int& ptId, TPoint point);
    // The index of the shape's link point within 5 pixels of the point (far
    // edges excluded; the last wins), or -1.
    int IsinHotLink(const TMyShape* shape, TPoint point) const;
    // The id of the first link line (in shape1's list) that joins both shapes, or -1.
    int IsLinked(const TMyShape* shape1, const TMyShape* shape2) const;
    // Attaches one end of a link line to the shape and link point under the
    // point (detaching it from its former shape); when one is found the point
    // moves onto that link point (pixels).
    void GetMainShape(TMyShape* linkLine, TLinkLineEndPoint end, TPoint& point);
    // Link-hot shape number -1, link-hot point index 0.
    void ClearAllLinkHot();
    // Brings the link lines attached to the shape (and to its members) up to
    // date with its link points: each is routed again in its draw style. A
    // link line given itself is routed again too. Every operation that moves,
    // resizes, turns or mirrors shapes ends here.
    void ChangeLinkShapes(TMyShape* shape);
    // Like GetMainShape for a plain TMyLine that is being drawn: the end
    // remembers the shape and link point under the point (the point moves
    // onto it), but no shape lists the line, which is no connection yet.
    void GetMergeShape(TMyShape* line, TLinkLineEndPoint end, TPoint& point);
    // Turns a plain TMyLine whose two ends rest on link points of two
    // different shapes (GetMergeShape) into a connection: a TMyLinkLine with
    // the line's name, pen and arrows joins the same link points (CreateLink,
    // recorded as "ACT_ADD") and the plain line is deleted unrecorded. The
    // new link line's id, or -1 with the line left as it is.
    int CreateAndDelete(TMyShape* line);
    // Whether a press at the pixel point lies on a segment of the line (a
    // TMyLine or a descendant other than the polygon), away from its points
    // (more than HotSize pixels), where BreakLineByAPoint would split it.
    bool IsBreakLineByAPoint(TMyShape* line, TPoint point);
    // Splits the line at the pixel point (when IsBreakLineByAPoint): the line
    // keeps its points up to the nearest point of the hit segment, and a new
    // line of the same class, with the same looks, takes the rest from there;
    // a link line's end attachment passes to the new part. Recorded as one
    // "ACT_CHANGE" step for the line and one "ACT_ADD" step for the new part.
    // The new part, or nil when nothing was split.
    TMyShape* BreakLineByAPoint(TMyShape* line, TPoint point, bool recordUndo = true);
    // Splits the line at its middle (along its length) in the same way.
    TMyShape* BreakLine(TMyShape* line, bool recordUndo = true);
    // The boxes (drawing units) of the shapes a connector on the layer must go
    // round within the region: visible root shapes that are not lines, other
    // than the ones to skip (the joined shapes' roots).
    std::vector<TMyRect> RouteObstacles(const TMyRect& region, int layerId,
                                        const std::vector<const TMyShape*>& skip);

    // ==== In-place text input (mycad_text_input.cpp) ==============================================
    // Opens an editor over the shape for its caption (Info) or, for a text
    // shape, its lines. Enter (or a press elsewhere on the canvas) commits as one
    // "ACT_CHANGE" undo step when the text changed; Shift+Enter starts a new line in a
    // text shape; Escape cancels. A second call first commits the open one.
    // Callers that open it after drawing check DisableTextInput first.
    void BeginTextInput(TMyShape* shape);
    // Commits (true) or cancels (false) the open input; nothing when none is open.
    // A shape that has left MyShapes (or been freed) meanwhile takes no text.
    void EndTextInput(bool commit);
    bool TextInputActive() const;
    TMyShape* TextInputShape() const;

    // ==== Selection and region tests (mycad_selection.cpp) =======================================
    void AddWorkingShapes(TMyShape* shape);
    void RemoveWorkingShape(TMyShape* shape);
    void RemoveAllWorkingShapes();
    int IsInWorkingShape(const TMyShape* shape) const;
    // Draws the hot marks of every selected shape onto the control canvas.
    void SelectAllWorkingShapes();
    // A zoomed point of the shape (or of a child) lies in the pixel rectangle.
    bool IsPtinRegion(const TRect& rect, TMyShape* shape);
    // The shape's zoomed bounds contain the pixel rectangle.
    bool IsShapeBigthanRegion(const TRect& rect, TMyShape* shape);
    // The root's zoomed bounds lie inside the rectangle spanned by two pixel points, borders included.
    bool IsInRegion(TPoint p1, TPoint p2, TMyShape* shape);
    // Not visible: false; else the shape's or any descendant's IsClickedMe.
    bool IsClickedMeforShape(TCanvas* canvas, TMyShape* shape, TPoint point);

    // ==== Layers (mycad_layers.cpp) ==============================================================
    int NewLayer(const QString& name, bool visible);
    uint8_t GetLayersCount() const { return uint8_t(m_layers.Count()); }
    int GetLayerNoById(int id) const { return m_layers.IndexOfId(id); }
    int GetLayerNoByName(const QString& name) const { return m_layers.IndexOfName(name); }
    int GetLayerIdByName(const QString& name) const;
    int GetLayerIdByNo(int index) const;
    QString GetLayerNameByID(int id) const;
    bool SetLayerNameByID(int id, const QString& name);
    bool SetLayerNameByName(const QString& oldName, const QString& newName);
    int GetMaxLayerId() const;
    int CurrentLayerId() const { return m_layers.CurrentId(); }
    void SetCurrentLayerId(int id);
    void VisibleLayerByID(int id);
    void VisibleLayerByName(const QString& name);
    void InVisibleLayerByID(int id);
    void InVisibleLayerByName(const QString& name);
    bool IsVisibleLayerByID(int id) const;
    void VisibleAllLayer();
    std::vector<TMyShape*> GetShapesByLayerId(int id) const;
    int GetShapesCountInALayer(int id) const;
    void SelectAllShapesByLayerId(int id);
    const TLayerTable& Layers() const { return m_layers; }
    // The same table as a pointer, for the meta-object property an inspector lists.
    const TLayerTable* LayerTable() const { return &m_layers; }

    // ---- Layers: deletion, merging and the layer rules of picking -------------------------------
    // Empties the selection and clears the current shape; false for an unknown
    // id. Otherwise every root shape of the layer is unlocked and deleted with
    // its members (DeleteShapeById); when the last deletion succeeded (or there
    // was none) the record goes, OnDeleteLayer is raised and the first remaining
    // layer becomes current (-1 when none is left). Returns that result.
    bool DeleteLayerByID(int id);
    bool DeleteLayerByName(const QString& name);
    // Deletes every layer in table order; when the last deletion succeeded the
    // current layer becomes -1 and the id counter restarts at 0.
    bool DeleteAllLayers();
    // Moves every shape of the source layer onto the target, makes the target
    // current and deletes the emptied source layer (whose deletion then makes
    // the first remaining layer current). False when the ids are equal or
    // either is not a layer.
    bool MergeLayers(int targetId, int sourceId);
    // The shape's root lies on a visible layer: what painting and picking require.
    bool IsShapeOnVisibleLayer(const TMyShape* shape) const;
    // The mouse may pick the shape: its root is Visible, on a visible layer, and
    // on the current layer unless OperateAllLayer is set. The one pickability
    // rule: picking (which asks it for roots) and hover feedback use it.
    bool IsShapePickable(const TMyShape* shape) const;

    // ==== Page, zoom, grid and background (mycad_page.cpp) =======================================
    TPageStyle GetPageStyleByWH(uint32_t width, uint32_t height) const;
    // A standard style's portrait width and height in millimetres (A4 for CustomerPage).
    static QSize PageStyleSize(TPageStyle style);
    // Control pixel point to the user's coordinates by XYMode.
    TPoint GetPointByMode(TPoint p) const;
    TMyPoint GetMyPointByMode(TMyPoint p) const;
    void GetMousePointbyDragMode(TPoint from, TPoint& to) const;
    void DrawGrid(TBitmap* bitmap, const TRect& rect);
    void DrawBkBitmap(TBitmap* bitmap, int dx, int dy);

    // ---- Snapping and page bounds, in pixels of the control (mycad_snap.cpp) --------------------
    // With Snap, each coordinate within SnapPixels of a grid line moves onto it.
    // When neither did and SnapShape is on, the point moves onto the nearest
    // edge of another root shape within SnapPixels. True when the point moved
    // onto anything.
    bool SnapXY(int& x, int& y);
    // Snaps a rectangle being dragged by the same rules: per axis its near edge
    // (left, top), else its far edge (right, bottom); (x, y) moves by the same
    // offset. Shapes of the selection do not attract it.
    bool SnapRect(const TRect& rect, int& x, int& y);
    // The page as control pixels: (0, 0, Width, Height).
    TRect PageRect() const { return ClientRect(); }
    // The nearest pixel of the page to the point (what LockBound keeps edits to).
    TPoint ClampToPage(TPoint p) const;
    // The offset limited so that the rectangle moved by it stays on the page as
    // far as it fits (a rectangle wider than the page keeps its left edge on it).
    TPoint ClampOffsetToPage(const TRect& bounds, TPoint offset) const;

    // ---- Lengths in the user's unit (mycad_units.cpp) -------------------------------------------
    // A length in drawing units (pixels at zoom 1; divide control pixels by
    // Zoom first) as a value in TheUNIT: through the screen's pixels per inch
    // for the paper units, then divided by Ratio (paper units per real unit;
    // a Ratio that is not a positive number counts as 1). See docs/canvas_units.md.
    double PixelsToUnit(double pixels) const;
    // The inverse: a value in TheUNIT as drawing units.
    double UnitToPixels(double value) const;
    // "px", "mm", "cm", "dm", "m" or "in" for TheUNIT.
    QString UnitAbbreviation() const;

    // ==== Painting (mycad_paint.cpp) =============================================================
    void Paint() override;
    // Draws the shapes and their members onto a device canvas as a paint
    // does, without marks: pictures of shapes (thumbnails, the clipboard).
    void DrawShapes(TCanvas* canvas, const std::vector<TMyShape*>& roots);
    void DrawAll(const TRect& rect);
    void DrawAllShape(TCanvas* canvas, const TRect& rect);
    void FillBackground(TBitmap* bitmap);
    void DrawBorder(TCanvas* canvas);
    void DrawHeadFoot(TCanvas* canvas);
    void DrawBackground(TCanvas* canvas, const TRect& rect);
    // ==== Rendering (mycad_render.cpp) ==========================================================
    // One path draws the drawing for the screen, the printer and every
    // picture; they differ in the device and in these options.
    // The screen's: background, grid, header and footer.
    TRenderOptions ScreenRenderOptions() const;
    // The printer's: the background only with PrintBackground, the border
    // with PrintABorder, header and footer, no grid.
    TRenderOptions PrintRenderOptions() const;
    // Draws the part area of the drawing (control pixels at the current zoom)
    // so that area's top-left corner lands on the canvas's origin. Header,
    // footer and border are placed on the page.
    void RenderPage(TCanvas* canvas, const TRect& area, const TRenderOptions& options);
    // The same onto a Qt paint device, drawn at the given zoom (the control's
    // size and Zoom stay as they are) and scaled by scale device pixels per
    // pixel of that zoom. area is in pixels of that zoom.
    void RenderTo(QPaintDevice* device, const TRect& area, const TRenderOptions& options, double zoom,
                  double scale = 1.0);
    // The same with a painter that is already active (its transform applies).
    void RenderTo(QPainter* painter, const TRect& area, const TRenderOptions& options, double zoom);
    // The page in pixels at a zoom.
    TRect PageRectAt(double zoom) const;
    // The painted bounds of the shapes on visible layers in pixels at a zoom
    // (empty when there are none).
    TRect VisibleShapesBoundsAt(double zoom);

    // ==== Printing (mycad_print.cpp) =============================================================
    // A print shows the drawing at true size (a 50 mm line prints 50 mm long)
    // as the screen shows it at zoom 1, with PrintRenderOptions. The page is
    // one sheet of paper when the paper has the page's size; a drawing that
    // reaches beyond the page, or paper smaller than it, takes more sheets.
    // The sheets of paper paperMm (millimetres) that a print takes: rectangles
    // of the drawing in pixels at zoom 1, row by row from the top and each
    // row from the left. The page's top-left corner is a sheet's corner;
    // shapes on visible layers add sheets where they reach more than about a
    // millimetre beyond the page. EPrinter when more than MaxPrintSheets.
    std::vector<TRect> PrintSheets(QSizeF paperMm);
    static constexpr int MaxPrintSheets = 1000;
    // Gives the device paper of the page's size and orientation; a printer
    // paints from the paper's corner.
    void PreparePrinter(QPagedPaintDevice* device) const;
    // Prints on the device with the paper it has, one sheet per page, and
    // returns the number of pages. On Printer()'s device the shapes draw on
    // the printer's canvas (black-and-white printers get grey). EPrinter when
    // the device cannot print.
    int PrintTo(QPagedPaintDevice* device);
    // Prints on Printer()->Device() on paper of the page's size.
    void Print();
    // Qt's print preview of the same pages on Printer()->Device(); printing
    // from it prints. True when the user printed.
    bool PrintPreview(QWidget* parent = nullptr);
    // The pages of the print as a vector PDF file, through QSaveFile (an
    // existing file is replaced only when the new one is complete).
    // EFCreateError or EWriteError, naming the file, when it cannot be written.
    void SaveToPdf(const QString& fileName);

    // ==== Pictures (mycad_pictures.cpp) ==========================================================
    // Pixel pictures show the page as the canvas paints it at the current
    // zoom (background, grid, header and footer, shapes of visible layers)
    // without any mark: exactly the pixels of the screen's paint.
    // EInvalidGraphic when the page has more than MaxPicturePixels.
    QImage PageImage();
    static constexpr int64_t MaxPicturePixels = int64_t(256) * 1024 * 1024;
    // The files are written through QSaveFile, so an existing file is
    // replaced only by a complete new one; EFCreateError or EWriteError,
    // naming the file, otherwise.
    void SaveToBmp(const QString& fileName);
    // quality: 0 (smallest file) to 100 (best picture).
    void SaveToJpg(const QString& fileName, int quality = 90);
    void SaveToPng(const QString& fileName);
    // Vector pictures show the page as it prints (PrintRenderOptions) at
    // true size: one unit is a pixel at zoom 1, the screen's pixels per inch
    // make an inch. The SVG keeps texts as text.
    QByteArray SvgBytes();
    void SaveToSvg(const QString& fileName);
    // A placeable Windows metafile of the page (see docs/wmf.md).
    // EInvalidGraphic when the page is wider or higher than a metafile holds
    // (32767 units).
    QByteArray WmfBytes();
    void SaveToWmf(const QString& fileName);
    // The page as it prints on the system clipboard: the metafile under
    // "image/x-wmf", beside it the SVG under "image/svg+xml" and a picture at
    // zoom 1 on white in the platform's image formats, so that programs
    // without metafile support paste something.
    void CopyToClipBoardAsWmf();

    // The off-screen buffer the last paint drew into.
    TBitmap* PaintBuffer() { return &m_paintBuffer; }
    // Called by a shape when it changes; schedules a repaint.
    void ShapeChanged(TMyShape* shape);

    // ==== Mouse interaction ========================================================================
    // A left press, the moves and the release edit the drawing according to
    // Action (see docs/mouse.md): drawing a shape with the current tool,
    // picking, rubber-band selection, dragging, resizing and rotating the
    // selection, moving a caption point, picking a member of a group, adding
    // and removing nodes, dragging the whole layer. Every committed edit is one
    // undo step; a press and release in one place records nothing.
    // Press (mycad_mouse_down.cpp): the inherited OnMouseDown first, then the press.
    void MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y) override;
    // Release (mycad_mouse_up.cpp): commits the edit the press began.
    void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y) override;
    // Move (mycad_mouse.cpp): feedback of the edit in progress, drawn by the
    // next paint in exclusive-or on top of the drawing; the label controls,
    // hover events and hint, cursor shape, cross-hair and hover frame.
    void MouseMove(TShiftState Shift, int X, int Y) override;
    void MouseLeave() override;
    // A left press is being held.
    bool MousePressed() const { return m_mousePressed; }
    // Where the press happened (snapped, and moved onto a hot point) and the latest mouse point.
    TPoint DownPoint() const { return m_downPoint; }
    TPoint LastPoint() const { return m_lastPoint; }
    // The action the release returns to.
    TActionTools SavedAction() const { return m_savedAction; }
    // The shape being drawn (owned by the canvas until it is finished and
    // added), or nil.
    TMyShape* DrawnShape() const { return m_drawnShape.get(); }
    // The control pixels the feedback of the edit in progress covers (the
    // last move invalidated them together with the former ones).
    TRect EditFeedbackRect() const { return m_feedbackRect; }
    // Drops the shape being drawn and the edit in progress (Escape): the
    // drawing is as it was before the press.
    void CancelMouseEdit();
    // While an edit runs, mouse points are kept inside this control
    // rectangle. Qt cannot confine the system cursor itself; it delivers the
    // moves of a held button even outside the control, and the canvas clamps
    // the points it is given.
    void SetCursorClipArea(const TRect& rect);
    void ReleaseCursorClipArea();
    // The mouse position in TheUNIT (through GetPointByMode) into LabelXY;
    // the measured value of the edit in progress into LabelValue.
    void UpdateLabelXY(int x, int y);
    void UpdateLabelValue();
    // Raises OnMouseLeaveShape and OnMouseEnterShape as the shape under the
    // mouse changes, and makes the shape's caption or kind the hint.
    void ShowHintEnterLeaveShape(TMyShape* shape);
    // The outline of the selection moved from one pixel point to another,
    // and of the rotated shape turned by the mouse (exclusive-or feedback).
    void DraggingforShapes(TCanvas* canvas, TPoint from, TPoint to);
    void RotatingforShapes(TCanvas* canvas, TPoint from, TPoint to);
    // Applies a committed rotation (radians, clockwise) to the shape and its
    // members about the shape's centre.
    void RotateChangeValueforShapes(TMyShape* shape, double angle);
    // The pen state of selection feedback: the exclusive-or dotted pen.
    void SetSelectShapeMode(TCanvas* canvas);
    // With Shift held: a rectangle-like shape being drawn becomes a square
    // (the larger side wins), a line segment from `from` becomes horizontal
    // or vertical (the nearer one). `to` is moved accordingly.
    void DrawMakeSquareorHV(TMyShape* shape, TShiftState shift, TPoint from, TPoint& to) const;
    // With Shift held: a corner of a rectangle-like shape keeps the shape's
    // proportions, a line end goes horizontal or vertical from its neighbour.
    void ResizeMakeSquareorHV(TMyShape* shape, TShiftState shift, TPoint& to) const;

    // ---- Beyond the press-move-release protocol (off where they change it) ----------------------
    // On: a drawing tool also finishes a rectangle-like shape or a line by
    // dragging from the first corner and releasing at the second (off: each
    // point is a press, as the tools define).
    bool DrawByDragging() const { return m_drawByDragging; }
    void SetDrawByDragging(bool v) { m_drawByDragging = v; }
    // On: dragging and resizing show lines where the selection's edges or
    // centre line up with nearby shapes, or its gaps equal theirs, and snap to them.
    bool SmartGuides() const { return m_smartGuides; }
    void SetSmartGuides(bool v) { m_smartGuides = v; }
    // On (default): arrows nudge the selection by a pixel (Shift: a grid
    // step), Delete deletes it, Escape cancels the edit or the shape being
    // drawn, Ctrl+A selects every shape of the current layer.
    bool KeyboardEditing() const { return m_keyboardEditing; }
    void SetKeyboardEditing(bool v);
    // On (default): Ctrl+wheel zooms about the mouse position.
    bool WheelZoom() const { return m_wheelZoom; }
    void SetWheelZoom(bool v) { m_wheelZoom = v; }
    // Raised after the zoom changed by the wheel.
    TNotifyEvent OnZoomChanged;
    // Handles a key as the keyboard editing does; true when it was used.
    bool HandleKey(int key, Qt::KeyboardModifiers modifiers);
    // The mouse position the cross-hair goes through; false when the mouse is off the control.
    bool MousePoint(TPoint& p) const;
    // The root shape under the mouse that gets hover feedback (MouseEffect), or nil.
    TMyShape* HoverShape() const { return m_hoverShape; }

    // ==== Drawing files and blocks (mycad_file.cpp) ==============================================
    // The drawing as one stream: a fixed header, the canvas's settings, user
    // data and layers, then every shape as its class name and record (see
    // docs/file_format.md). Saving always writes the current version.
    bool SaveToStream(TStream& stream);
    // Reads a whole drawing from the stream's start. The stream is parsed
    // completely before the canvas changes: a stream that cannot be read
    // raises EReadError (EFileFormatError for contents that cannot be right),
    // saying what and at which byte offset, and leaves the drawing as it was.
    // On success the drawing is replaced, the zoom is 1 and the undo history
    // is empty.
    bool LoadFromStream(TStream& stream);
    // Writes the drawing to a file atomically: the old file stays intact
    // until the new one is complete. Clears the changed flag.
    bool SaveToFile(const QString& fileName);
    // Writes the shapes as an ASCII DXF file (dxf/dxf_export.h): texts as
    // TEXT entities. The file is replaced only once the whole text is ready;
    // EFCreateError or EWriteError when it cannot be written. The canvas does
    // not change.
    void SaveToDxf(const QString& fileName);
    // The same with texts as the closed outlines of their glyphs.
    void SaveToDxf1(const QString& fileName);
    void SaveToDxf(const QString& fileName, const TDxfExportOptions& options);
    // False, with the drawing untouched, for a file that is not a drawing
    // (IsZEMAFile); otherwise LoadFromStream through a read buffer.
    bool LoadFromFile(const QString& fileName);
    // The file's first 64 bytes, trimmed, are the product signature.
    static bool IsZEMAFile(const QString& fileName);
    // Reads a drawing stream as a block into MemShapes, ready for
    // PasteforBlock: the block's shapes get ids from the id counter on, no
    // names, and layers by the mode. Existing shapes and layers stay.
    bool LoadFromStreamforBlock(TStream& stream, TBlockLayerMode mode);
    // Moves the shapes waiting in MemShapes into the drawing, on top, named
    // "Shape" + id, selected, as one "ACT_ADD" undo step; raises the changed flag.
    bool PasteforBlock();
    // Inserts a drawing file as a block (LoadFromStreamforBlock, PasteforBlock).
    bool AddBlockfromZEMAFile(const QString& fileName, TBlockLayerMode mode = Merge);
    // Inserts the library entry of that name as one TMyCombine whose frame
    // is width by height drawing units with its top-left corner at topLeft
    // (0 or less: the entry's stored size), on the current layer, selected,
    // as one "ACT_ADD" undo step. The entry's link points become the
    // combined shape's link points, its user data the combined shape's. The
    // new shape, or nil (nothing added) when the library has no such entry
    // or it holds no shapes; a corrupt entry raises EFileFormatError.
    TMyShape* AddUserDefineShapefromLib(TLibManager& library, const QString& name, TMyPoint topLeft,
                                        double width = 0, double height = 0);
    // Told while a stream loads: bytes read so far and the stream's size.
    std::function<void(int64_t done, int64_t total)> OnLoadProgress;
    // Raised while a drawing or a block is being taken over (events and repaints wait).
    bool Loading() const { return m_loading; }
    // The string and bitmap fields of the records, as the free functions write them.
    bool WriteStrBuffer(TStream& stream, const QString& text, uint8_t count);
    bool ReadBitmapBuffer(TStream& stream, std::unique_ptr<TBitmap>& bitmap);
    bool WriteBitmapBuffer(TStream& stream, const TBitmap* bitmap);

    // ==== Clipboard (mycad_clipboard.cpp) ========================================================
    // The selection (with the members of its groups) on the system clipboard
    // as shape records under ShapesMimeType, and as a PNG and an SVG picture.
    bool Copy();
    // Copy, then delete the selection as one undo step.
    bool Cut();
    // Inserts the shapes on the clipboard: new ids, names "Shape" + id, on the
    // current layer, moved aside while they would cover their originals; one
    // undo step. False when the clipboard holds no shapes of ours.
    bool Paste();
    static bool CanPaste();
    static constexpr char ShapesMimeType[] = "application/x-faroven-shapes";

    // ==== Picking and the spatial index (mycad_picking.cpp) ======================================
    // Painting and picking find shapes through a grid of pixel boxes that
    // follows every change the shapes report.
    // The shape that a press at a pixel point picks: from the top-most shape
    // down, shapes on visible layers (and on the current layer unless
    // OperateAllLayer) that IsClickedMeforShape reports hit; of those the
    // top-most parentless TMyLineLinkLine wins, and only when there is none the
    // top-most parentless other shape. Children are never picked by themselves
    // (their root is, through them). nullptr when nothing is hit. Selected
    // shapes are candidates too: a press first tries the selection, so by the
    // time it looks for a new pick no selected shape is under the mouse.
    TMyShape* GetShapeAtPoint(TPoint point);
    // An immutable copy of Font that new shapes share until their own Font()
    // is asked for; renewed when the canvas's font has changed since.
    std::shared_ptr<const TFont> SharedShapeFont();
    // Heap bytes of the spatial index (memory accounting in benchmarks).
    size_t ShapeIndexMemoryBytes() const { return m_shapeIndex.MemoryBytes(); }

protected:
    void Notification(QObject* component, TOperation operation) override;
    // Keyboard editing and wheel zoom (mycad_keys.cpp).
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    // ---- Drawing streams (mycad_file.cpp) ----
    struct DrawingImage;
    // Parses a whole drawing stream without changing the drawing (only the
    // version being read, which is put back when parsing fails).
    DrawingImage readDrawing(TStream& stream);
    // The drawing's settings and layers followed by the given shapes, which
    // must be numbered 0..n-1 among themselves.
    void writeDrawing(TStream& stream, const std::vector<TMyShape*>& shapes);
    // Puts a parsed drawing's shapes into MemShapes (ids from the counter on,
    // no names), on layers by the mode.
    void takeBlockShapes(DrawingImage& image, TBlockLayerMode mode);
    void freeMemShapes();
    // Shapes report changes, ids and their end to the canvas (picking index, id table).
    friend class TMyShape;

    // ---- Core and registry (mycad_core.cpp) -----------------------------------------------------
    void sizeControl();
    // Shapes were placed other than by appending: the id table is rebuilt when next needed.
    void shapeIdsChanged();
    // A shape's id changed; one that is not in the list yet is entered when it is added.
    void shapeIdChanged(TMyShape* shape);
    mutable TShapeIdIndex m_idIndex;

    // ---- Painting (mycad_paint.cpp) -------------------------------------------------------------
    void drawShapeTree(TCanvas* canvas, TMyShape* shape);
    void drawLinkHotTree(TCanvas* canvas, TMyShape* shape);
    // The roots of visible layers that meet the rectangle, in painting order.
    void collectPaintedRoots(const TRect& rect);
    void drawLinkMarks(TCanvas* canvas, const TRect& rect);
    // Draws area of the drawing as RenderPage does, with header, footer and
    // border placed on the sheet (a rectangle of the drawing, in pixels):
    // the page on screen, one sheet of paper when printing.
    // The background picture lies on page.
    void renderArea(TCanvas* canvas, const TRect& area, const TRect& sheet, const TRect& page,
                    const TRenderOptions& options);
    void drawHeadFootOn(TCanvas* canvas, const TRect& sheet);
    void drawBorderOn(TCanvas* canvas, const TRect& sheet);
    // The background picture laid on the page and the grid, for area
    // (pixels), drawn with area's top-left corner at the canvas's origin.
    void drawBkBitmapOn(TCanvas* canvas, const TRect& area, const TRect& page);
    void drawGridOn(TCanvas* canvas, const TRect& area);
    // Draws at another zoom for its life without resizing the control.
    class ZoomScope;
    // One sheet of a print onto a canvas whose painter has the device's scale.
    void printSheet(QPainter* painter, TCanvas* canvas, const TRect& sheet, double scaleX, double scaleY);

    // ---- In-place text input (mycad_text_input.cpp) ---------------------------------------------
    // Sets the shape's caption or lines to the text typed, as one undo step
    // when it differs.
    void applyTextInput(TMyShape* shape, const QString& text);
    QPointer<TTextInputBox> m_textInput;
    QPointer<TMyShape> m_textInputShape;

    // ---- Selection and region tests (mycad_selection.cpp) ---------------------------------------
    bool anyPointIn(const TRect& rect, TMyShape* shape);
    TMyRect zoomedBounds(TMyShape* shape) const;

    // ---- Layers (mycad_layers.cpp) --------------------------------------------------------------
    void setLayerVisible(int index, bool visible);

    // ---- Deletion (mycad_delete.cpp) ------------------------------------------------------------
    void recordDeletion(const std::vector<TMyShape*>& shapes);
    // Deletes shapes of MyShapes with their members in one renumbering, as
    // DeleteShapeById does; Locked ones are skipped unless evenLocked (taking
    // a step back). True when none was skipped.
    bool deleteShapes(const std::vector<TMyShape*>& roots, bool recordUndo, bool evenLocked = false);

    // ---- Undo and redo (mycad_undo.cpp) ---------------------------------------------------------
    std::unique_ptr<TMyShape> snapshotOf(const TMyShape* shape) const;
    TUndoRecord recordOf(const TMyShape* shape, const QString& action, int step) const;
    // Records exactly these shapes as one step (no members added).
    void recordExactly(const std::vector<TMyShape*>& shapes, const QString& action);
    // Adds shapes made from the records' snapshots at the end of the list,
    // their numbers among themselves translated, link lines detached.
    std::vector<TMyShape*> restoreSnapshots(const std::vector<const TUndoRecord*>& records);
    TMyShape* shapeById(int id) const;
    TRedoStep takeBack(std::vector<TUndoRecord>& step);
    void redoStep(const TRedoStep& step);
    TUndoHistory m_undo;
    bool m_redoing = false;
    bool m_undoRestoresWholeGroup = false;

    // ---- Arrangement (mycad_arrange.cpp) --------------------------------------------------------
    bool isRootInList(const TMyShape* shape) const;
    void stepAcrossRoot(TMyShape* shape, bool toFront, bool recordUndo);
    void moveAcrossRoots(TMyShape* shape, bool toFront, bool recordUndo);
    void alignWorkingShapes(TMyPoint (*offset)(const TMyRect& box, const TMyRect& own));
    void spreadEvenly(const std::vector<TMyShape*>& shapes, bool vertical);
    void flipShapes(const std::vector<TMyShape*>& shapes, bool horizontal);
    // GroupShapes with a group of the named class (TMyGroup or a descendant).
    int groupShapes(const std::vector<TMyShape*>& shapes, bool recordUndo, const QString& groupClass);
    bool m_busy = false;

    // ---- Connections (mycad_connections.cpp) ----------------------------------------------------
    // CreateLink, with the pen and arrows of a drawn line when one is given.
    int createLink(const QString& name, TMyShape* startShape, int endPtId, TMyShape* endShape, int startPtId,
                   const TMyLine* looks);
    // Splits the line before point index before at the point at (drawing units).
    TMyShape* splitLine(TMyLine* line, int before, TMyPoint at, bool recordUndo);

    // ---- Snapping (mycad_snap.cpp) --------------------------------------------------------------
    // Best offsets (value - edge) towards other root shapes' edges; false per axis when none.
    void shapeSnapOffsets(double x, double y, bool skipSelection, double& offX, bool& hasX, double& offY,
                          bool& hasY);

    // ---- Mouse interaction (mycad_mouse_down.cpp, mycad_mouse_up.cpp, mycad_nodes.cpp) ----------
    void pressWhileDrawing(TShiftState shift, int x, int y);
    bool pressOnHotMarks();
    bool pressOnSelection(TShiftState shift);
    void pressElsewhere(TShiftState shift);
    void releaseDrawing(TMouseButton button, TShiftState shift);
    void finishDrawnShape();
    void releaseRubberBand();
    void releaseDragging();
    void releaseResizing(TShiftState shift);
    void releaseRotating();
    void releaseDragWhole();
    void releaseNodeEdit(bool adding);
    // The drag offset of the mouse from the press, restricted by DragMode,
    // LockBound and snapping (and smart guides), in control pixels.
    TPoint dragTarget(TPoint to);
    // The resize point after snapping, guides and the Shift constraint.
    TPoint resizeTarget(TPoint to, TShiftState shift);
    // Smart guides: the boxes (pixels) of visible root shapes near a
    // rectangle, the edited ones left out, and the point moved by the guides
    // of the moving box.
    std::vector<TMyRect> guideNeighbours(const TRect& around);
    TPoint applyGuides(const TMyRect& moving, unsigned edges, TPoint t);
    // The rotation point turned onto the nearest RotateConstraintDegree step.
    TPoint rotateTarget(TPoint to);
    void offerEditTarget(const TShapeMouseDraggingSizingRotating& handler, TMyShape* shape);
    // The cursor for the mouse at p over the shape a press would pick.
    TCursor cursorAt(TPoint p, TMyShape* under);
    void selectAlone(TMyShape* shape);
    // Clears the references of the mouse state to shapes that are going.
    void forgetMouseShapes(const std::function<bool(TMyShape*)>& going);
    void startDrawnShape(TMyShape* shape);
    void discardDrawnShape();
    void endPress();
    bool mouseMoved() const { return m_downPoint.x != m_lastPoint.x || m_downPoint.y != m_lastPoint.y; }
    TPoint clipped(TPoint p) const;
    // The shape whose hot mark or text point the press took (resize, rotate).
    TMyShape* m_hotShape = nullptr;
    // The press as the mouse gave it, and the selection's pixel box then.
    TPoint m_pressPoint{};
    // Where the edit in progress would end (drag, resize, rotation), as its feedback shows it.
    TPoint m_editTarget{};
    TRect m_pressBounds{};
    bool m_mousePressed = false;
    TActionTools m_savedAction = dtSelecting;
    TMyShape* m_hitChild = nullptr;
    TMyShape* m_clickThrough = nullptr;
    std::unique_ptr<TMyShape> m_drawnShape;
    TShiftState m_lastShift = 0;
    TRect m_cursorClip{};
    bool m_cursorClipped = false;
    bool m_drawByDragging = false;
    bool m_smartGuides = false;
    bool m_keyboardEditing = true;
    bool m_wheelZoom = true;
    std::vector<std::pair<TMyPoint, TMyPoint>> m_guideLines;  // pixels, drawn by the paint
    TMyShape* m_hintShape = nullptr;

    // ---- Mouse feedback (mycad_mouse.cpp) -------------------------------------------------------
    void drawEditFeedback(TCanvas* canvas);
    void invalidateEditFeedback();
    TRect m_feedbackRect{};
    // The drawing as it stood when the edit began, reused by the paints of
    // the edit (see docs/mouse.md); dropped when any shape changes.
    TBitmap m_sceneCache;
    TRect m_sceneRect{};
    bool m_sceneValid = false;
    void dropSceneCache() { m_sceneValid = false; }
    bool sceneFrozen() const;
    void drawFrozenScene(TCanvas* canvas, const TRect& clip);
    void setHoverShape(TMyShape* shape);
    void invalidateCrossHair();
    TRect hoverFrame(TMyShape* shape);
    void drawMouseFeedback(TCanvas* canvas);
    // Drawn by Paint in exclusive-or on top.
    bool m_mouseInside = false;
    TPoint m_mousePoint;
    TMyShape* m_hoverShape = nullptr;  // not owned

public:

    // ---- Picking and the spatial index (mycad_picking.cpp) --------------------------------------
    // Bookkeeping called by shapes: a changed shape is looked at again before
    // the next paint or pick; a destroyed one leaves the index at once.
    void markShapeDirty(TMyShape* shape);
    void shapeDestroyed(TMyShape* shape);
    // Brings the index up to date with the shapes, the list and the zoom.
    void syncShapeIndex();
    void rebuildShapeIndex();
    TRect indexBoxOf(TMyShape* shape);
    void indexShape(TMyShape* shape, const TRect& box, int pos);
    // The position of an indexed shape in MyShapes (the stored one when it
    // still holds), or -1 when the list has changed behind the index's back
    // (the caller then rebuilds it).
    int indexedListPos(int slot, int storedPos) const;
    TMyShape* pickByScan(TPoint point);
    // Root shapes (by position in MyShapes, ascending) whose subtree has a box
    // meeting the rectangle; false when the index had to be rebuilt first.
    bool rootsMeeting(const TRect& rect, std::vector<int>& roots);
    // The same with the index brought up to date first (rebuilt when needed).
    std::vector<int> rootsMeetingNow(const TRect& rect);

    TShapeIndex m_shapeIndex;
    double m_indexZoom = 0;
    int m_indexHotSize = -1;
    size_t m_indexListSize = 0;
    bool m_indexBuilt = false;
    std::shared_ptr<const TFont> m_sharedShapeFont;

    // ---- Published fields and the canvas's state ------------------------------------------------
    // Published fields, in the order of the property list.
    TArcMode m_arcMode = amCircle;
    int m_arrowAngle = 10;
    uint8_t m_arrowLength = 30;
    uint8_t m_arrowOffset = 0;
    TArrowStyle m_arrowStyle = ANone;
    TBitmap m_bkBitmap;
    TBkBitmapMode m_bkBitmapMode = Center;
    TBrush m_brush;
    TFont m_font;
    TColor m_colorOfBackGround = clWhite;
    TColor m_colorOfHot = clGray;
    bool m_crossLine = true;
    bool m_disableTextInput = false;
    QString m_diskFileVersion = QStringLiteral("XP.j");
    TFileVersion m_fileVersion = TFileVersion::XPj;
    TFileVersion m_writeVersion = TFileVersion::XPj;
    bool m_dragEnable = true;
    TDragMode m_dragMode = dgBoth;
    TGridObject m_grid;
    bool m_hotShow = true;
    uint8_t m_hotSize = 4;
    QLabel* m_labelValue = nullptr;  // not owned; cleared when the label goes
    QLabel* m_labelXY = nullptr;
    bool m_linklineAroundShape = true;
    TLinkLineDrawStyle m_linkLineDrawStyle = lldsHV;
    bool m_lockBound = false;
    bool m_mouseEffect = true;
    bool m_operateAllLayer = true;
    QString m_pageFoot;
    QString m_pageHead;
    TAlignment m_pageFootAlignment = taRightJustify;
    TFont m_pageFootFont;
    TFont m_pageHeadFont;
    uint8_t m_pageFootToBottom = 15;
    TAlignment m_pageHeadAlignment = taCenter;
    uint8_t m_pageHeadToTop = 15;
    uint32_t m_pageHeight = 297;
    uint32_t m_pageWidth = 210;
    TPrinterOrientation m_pageOrientation = poPortrait;
    TPageStyle m_pageStyle = A4;
    TPen m_pen;
    TPenStyleJoinType m_penStyleJoinType = psjtROUND;
    TPenStyleEndCapType m_penStyleEndCapType = psectROUND;
    double m_preZoom = 1.0;
    bool m_printABorder = true;
    uint8_t m_printABordertoBottom = 20;
    uint8_t m_printABordertoLeft = 20;
    uint8_t m_printABordertoRight = 20;
    uint8_t m_printABordertoTop = 20;
    bool m_printBackground = false;
    double m_ratio = 1.0;
    bool m_resizeEnable = true;
    bool m_returnToSelecting = true;
    int m_rotateConstraintDegree = 0;
    bool m_rotateEnable = true;
    TDrawTool m_shapeTool = SpSelecting;
    bool m_showHotLink = true;
    bool m_snap = true;
    uint8_t m_snapPixels = 4;
    bool m_snapShape = false;
    TUnits m_theUnit = mm;
    TUserData m_userData;
    TXYMode m_xyMode = Mode0;
    double m_zoom = 1.0;

    // Unpublished state.
    std::vector<TMyShape*> m_memShapes;
    bool m_loading = false;
    int m_linkHotShapeNo = -1;
    int m_linkHotPointIndex = 0;
    TPoint m_downPoint;
    TPoint m_lastPoint;
    TPoint m_currentPoint;
    TBitmap m_paintBuffer;
    bool m_painting = false;
    std::vector<int> m_paintedShapes;
    TMyShape* m_currentShape = nullptr;
    bool m_dragTrace = true;
    bool m_changed = false;
    int64_t m_editCount = 0;
    std::vector<TMyShape*> m_myShapes;
    int m_nextShapeId = 0;
    std::vector<TMyShape*> m_workingShapes;
    TLayerTable m_layers;
    TActionTools m_action = dtSelecting;
};

}  // namespace faroven
