#include "platform/control.h"

#include <QCursor>
#include <QHash>
#include <QMouseEvent>
#include <QPaintEvent>

namespace faroven {

namespace {
QHash<int, QCursor>& customCursors() {
    static QHash<int, QCursor> cursors;
    return cursors;
}

TMouseButton buttonOf(Qt::MouseButton b) {
    return b == Qt::RightButton ? mbRight : b == Qt::MiddleButton ? mbMiddle : mbLeft;
}
}  // namespace

void RegisterCursor(TCursor id, const QCursor& cursor) { customCursors().insert(id, cursor); }

QCursor ToQCursor(TCursor cursor) {
    switch (cursor) {
    case crNone: return QCursor(Qt::BlankCursor);
    case crCross: return QCursor(Qt::CrossCursor);
    case crIBeam: return QCursor(Qt::IBeamCursor);
    case crSizeNESW: return QCursor(Qt::SizeBDiagCursor);
    case crSizeNS: return QCursor(Qt::SizeVerCursor);
    case crSizeNWSE: return QCursor(Qt::SizeFDiagCursor);
    case crSizeWE: return QCursor(Qt::SizeHorCursor);
    case crUpArrow: return QCursor(Qt::UpArrowCursor);
    case crHourGlass:
    case crSQLWait: return QCursor(Qt::WaitCursor);
    case crDrag:
    case crMultiDrag: return QCursor(Qt::DragMoveCursor);
    case crNoDrop:
    case crNo: return QCursor(Qt::ForbiddenCursor);
    case crHSplit: return QCursor(Qt::SplitHCursor);
    case crVSplit: return QCursor(Qt::SplitVCursor);
    case crAppStart: return QCursor(Qt::BusyCursor);
    case crHelp: return QCursor(Qt::WhatsThisCursor);
    case crHandPoint: return QCursor(Qt::PointingHandCursor);
    case crSizeAll: return QCursor(Qt::SizeAllCursor);
    default: break;
    }
    if (cursor > 0 && customCursors().contains(cursor)) return customCursors().value(cursor);
    return QCursor(Qt::ArrowCursor);
}

TShiftState ShiftStateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons) {
    TShiftState s = 0;
    if (modifiers & Qt::ShiftModifier) s |= ssShift;
    if (modifiers & Qt::AltModifier) s |= ssAlt;
    if (modifiers & Qt::ControlModifier) s |= ssCtrl;
    if (buttons & Qt::LeftButton) s |= ssLeft;
    if (buttons & Qt::RightButton) s |= ssRight;
    if (buttons & Qt::MiddleButton) s |= ssMiddle;
    return s;
}

TGraphicControl::TGraphicControl(QWidget* parent) : TComponentBase<QWidget>(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent, true);
}

TGraphicControl::~TGraphicControl() = default;

void TGraphicControl::SetBounds(int left, int top, int w, int h) {
    setGeometry(left, top, std::max(w, 0), std::max(h, 0));
}

void TGraphicControl::SetShowHint(bool v) {
    m_showHint = v;
    setToolTip(v ? m_hint : QString());
}

void TGraphicControl::SetHint(const QString& v) {
    m_hint = v;
    if (m_showHint) setToolTip(v);
}

void TGraphicControl::SetCursor(TCursor cursor) {
    m_cursor = cursor;
    setCursor(ToQCursor(cursor));
}

void TGraphicControl::PaintTo(QPainter* painter, const TRect& area) {
    painter->setClipRect(QRect(area.left, area.top, area.Width(), area.Height()));
    m_canvas.AttachPainter(painter, area);
    Paint();
    m_canvas.DetachPainter();
}

QImage TGraphicControl::PaintToImage() {
    QImage image(std::max(width(), 1), std::max(height(), 1), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PaintTo(&painter, ClientRect());
    return image;
}

// A few separate strips (a cross-hair's row and column, two rubber bands) are
// painted one by one; anything else as its bounding rectangle.
void TGraphicControl::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRegion& region = event->region();
    const QRect bounds = region.boundingRect();
    int64_t area = 0;
    for (const QRect& r : region) area += int64_t(r.width()) * r.height();
    const bool separately = region.rectCount() > 1 && region.rectCount() <= 8 &&
                            area * 2 < int64_t(bounds.width()) * bounds.height();
    if (!separately) {
        PaintTo(&painter, TRect{bounds.left(), bounds.top(), bounds.right() + 1, bounds.bottom() + 1});
        return;
    }
    for (const QRect& r : region) PaintTo(&painter, TRect{r.left(), r.top(), r.right() + 1, r.bottom() + 1});
}

void TGraphicControl::MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y) {
    if (OnMouseDown) OnMouseDown(this, Button, Shift, X, Y);
}

void TGraphicControl::MouseMove(TShiftState Shift, int X, int Y) {
    if (OnMouseMove) OnMouseMove(this, Shift, X, Y);
}

void TGraphicControl::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y) {
    if (OnMouseUp) OnMouseUp(this, Button, Shift, X, Y);
}

void TGraphicControl::Click() {
    if (OnClick) OnClick(this);
}

void TGraphicControl::DblClick() {
    if (OnDblClick) OnDblClick(this);
}

void TGraphicControl::MouseEnter() {
    if (OnMouseEnter) OnMouseEnter(this);
}

void TGraphicControl::MouseLeave() {
    if (OnMouseLeave) OnMouseLeave(this);
}

void TGraphicControl::mousePressEvent(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    m_clickArmed = event->button() == Qt::LeftButton;
    MouseDown(buttonOf(event->button()), ShiftStateOf(event->modifiers(), event->buttons()), p.x(), p.y());
}

void TGraphicControl::mouseMoveEvent(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    MouseMove(ShiftStateOf(event->modifiers(), event->buttons()), p.x(), p.y());
}

void TGraphicControl::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    const bool click = m_clickArmed && event->button() == Qt::LeftButton && rect().contains(p);
    m_clickArmed = false;
    if (click) Click();
    MouseUp(buttonOf(event->button()), ShiftStateOf(event->modifiers(), event->buttons() | event->button()) &
                                           ~TShiftState(ssLeft | ssRight | ssMiddle),
            p.x(), p.y());
}

void TGraphicControl::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    m_clickArmed = false;
    if (event->button() == Qt::LeftButton) DblClick();
    MouseDown(buttonOf(event->button()), ShiftStateOf(event->modifiers(), event->buttons()) | ssDouble, p.x(), p.y());
}

void TGraphicControl::enterEvent(QEnterEvent*) { MouseEnter(); }
void TGraphicControl::leaveEvent(QEvent*) { MouseLeave(); }

}  // namespace faroven
