// TGraphicControl: a windowless control of the framework realised as a QWidget.
// Qt's mouse and paint events feed the framework's virtuals (MouseDown,
// MouseMove, MouseUp, Click, DblClick, Paint), whose base versions raise the
// On... events. The control's Canvas draws only during Paint.
#pragma once

#include "platform/canvas.h"
#include "platform/component.h"

#include <QWidget>

namespace faroven {

enum TMouseButton { mbLeft, mbRight, mbMiddle };

// Set of shift-state flags, as bits.
enum TShiftFlag : uint16_t { ssShift = 1, ssAlt = 2, ssCtrl = 4, ssLeft = 8, ssRight = 16, ssMiddle = 32, ssDouble = 64 };
using TShiftState = uint16_t;

using TCursor = int;
constexpr TCursor crDefault = 0, crNone = -1, crArrow = -2, crCross = -3, crIBeam = -4, crSizeNESW = -6,
                  crSizeNS = -7, crSizeNWSE = -8, crSizeWE = -9, crUpArrow = -10, crHourGlass = -11, crDrag = -12,
                  crNoDrop = -13, crHSplit = -14, crVSplit = -15, crMultiDrag = -16, crSQLWait = -17, crNo = -18,
                  crAppStart = -19, crHelp = -20, crHandPoint = -21, crSizeAll = -22, crSize = -22;
// Applications may register their own cursors under positive numbers.
void RegisterCursor(TCursor id, const QCursor& cursor);
QCursor ToQCursor(TCursor cursor);

enum TControlStyleFlag : uint32_t {
    csAcceptsControls = 1u << 0, csCaptureMouse = 1u << 1, csDesignInteractive = 1u << 2, csClickEvents = 1u << 3,
    csFramed = 1u << 4, csSetCaption = 1u << 5, csOpaque = 1u << 6, csDoubleClicks = 1u << 7,
    csFixedWidth = 1u << 8, csFixedHeight = 1u << 9, csNoDesignVisible = 1u << 10, csReplicatable = 1u << 11,
    csNoStdEvents = 1u << 12, csDisplayDragImage = 1u << 13, csReflector = 1u << 14, csActionClient = 1u << 15,
    csMenuEvents = 1u << 16,
};
using TControlStyle = uint32_t;

using TMouseEvent = std::function<void(TObject* Sender, TMouseButton Button, TShiftState Shift, int X, int Y)>;
using TMouseMoveEvent = std::function<void(TObject* Sender, TShiftState Shift, int X, int Y)>;

class TGraphicControl : public TComponentBase<QWidget> {
    Q_OBJECT
public:
    explicit TGraphicControl(QWidget* parent = nullptr);
    ~TGraphicControl() override;

    int Left() const { return x(); }
    int Top() const { return y(); }
    int Width() const { return width(); }
    int Height() const { return height(); }
    void SetLeft(int v) { move(v, y()); }
    void SetTop(int v) { move(x(), v); }
    void SetWidth(int v) { resize(std::max(v, 0), height()); }
    void SetHeight(int v) { resize(width(), std::max(v, 0)); }
    void SetBounds(int left, int top, int width, int height);
    TRect ClientRect() const { return TRect{0, 0, width(), height()}; }

    bool Enabled() const { return isEnabled(); }
    void SetEnabled(bool v) { setEnabled(v); }
    bool Visible() const { return !isHidden(); }
    void SetVisible(bool v) { setVisible(v); }
    bool ShowHint() const { return m_showHint; }
    void SetShowHint(bool v);
    QString Hint() const { return m_hint; }
    void SetHint(const QString& v);
    TCursor Cursor() const { return m_cursor; }
    void SetCursor(TCursor cursor);
    TControlStyle ControlStyle() const { return m_controlStyle; }
    void SetControlStyle(TControlStyle style) { m_controlStyle = style; }

    // The drawing surface; valid during Paint.
    TCanvas* Canvas() { return &m_canvas; }
    // Schedules a repaint of the whole control.
    void Invalidate() { update(); }
    // Schedules a repaint of part of the control.
    void InvalidateRect(const TRect& r) { update(QRect(r.left, r.top, r.Width(), r.Height())); }
    // Paints the control into an image at once, as a paint request would.
    QImage PaintToImage();
    // Paints the given area of the control into canvas (used by PaintToImage and printing).
    void PaintTo(QPainter* painter, const TRect& area);

    TMouseEvent OnMouseDown;
    TMouseMoveEvent OnMouseMove;
    TMouseEvent OnMouseUp;
    TNotifyEvent OnClick;
    TNotifyEvent OnDblClick;
    TNotifyEvent OnPaint;
    TNotifyEvent OnMouseEnter;
    TNotifyEvent OnMouseLeave;

    // The framework's virtuals. Base versions raise the matching events.
    virtual void Paint() {}
    virtual void MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y);
    virtual void MouseMove(TShiftState Shift, int X, int Y);
    virtual void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y);
    virtual void Click();
    virtual void DblClick();
    virtual void MouseEnter();
    virtual void MouseLeave();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    TCanvas m_canvas;
    TCursor m_cursor = crDefault;
    TControlStyle m_controlStyle = csCaptureMouse | csClickEvents | csSetCaption | csDoubleClicks;
    bool m_showHint = false;
    QString m_hint;
    bool m_clickArmed = false;
};

TShiftState ShiftStateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons);

}  // namespace faroven
