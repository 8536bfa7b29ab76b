#include "ruler_frame.h"

#include <QEvent>
#include <QGridLayout>
#include <QScrollBar>
#include <QTimer>

using namespace faroven;

namespace {
constexpr int kRulerThickness = 24;

TRulerUnit rulerUnitOf(TUnits unit) {
    switch (unit) {
    case pixel: return ruPixel;
    case mm: return ruMilli;
    case cm:
    case dm: return ruCenti;
    case m: return ruMeter;
    case inch: return ruInch;
    }
    return ruMilli;
}

}  // namespace

RulerFrame::RulerFrame(TMyCAD* cad, QWidget* parent) : QWidget(parent), m_cad(cad), m_unit(cad->TheUNIT()) {
    m_scroll = new QScrollArea(this);
    m_scroll->setBackgroundRole(QPalette::Dark);
    m_scroll->setAlignment(Qt::AlignCenter);
    m_scroll->setWidget(cad);
    m_corner = new TRsRulerCorner(this);
    // Each ruler lies in a strip that clips it; the ruler itself is as long
    // as the page and moves with it, so its origin is the page's edge and its
    // labels are whole page coordinates.
    auto topStrip = new QWidget(this);
    auto leftStrip = new QWidget(this);
    m_top = new TRsRuler(topStrip);
    m_left = new TRsRuler(leftStrip);
    m_left->SetDirection(rdLeft);
    for (TRsRuler* r : {m_top, m_left}) r->SetHairLine(true);
    m_corner->setFixedSize(kRulerThickness, kRulerThickness);
    topStrip->setFixedHeight(kRulerThickness);
    leftStrip->setFixedWidth(kRulerThickness);
    for (QWidget* strip : {topStrip, leftStrip}) {
        strip->setAutoFillBackground(true);
        strip->setBackgroundRole(QPalette::Dark);
    }

    auto grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addWidget(m_corner, 0, 0);
    grid->addWidget(topStrip, 0, 1);
    grid->addWidget(leftStrip, 1, 0);
    grid->addWidget(m_scroll, 1, 1);

    connect(m_scroll->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { UpdateRulers(); });
    connect(m_scroll->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { UpdateRulers(); });
    auto previous = cad->OnMouseMove;
    cad->OnMouseMove = [this, previous](TObject* sender, TShiftState shift, int x, int y) {
        showMouse(x, y);
        if (previous) previous(sender, shift, x, y);
    };
    auto previousLeave = cad->OnMouseLeave;
    cad->OnMouseLeave = [this, previousLeave](TObject* sender) {
        m_top->SetHairLinePos(-1);
        m_left->SetHairLinePos(-1);
        if (previousLeave) previousLeave(sender);
    };
    // A unit change shows in the canvas's next paint.
    auto previousPaint = cad->OnPaint;
    cad->OnPaint = [this, previousPaint](TObject* sender) {
        if (m_cad->TheUNIT() != m_unit) UpdateRulers();
        if (previousPaint) previousPaint(sender);
    };
    cad->installEventFilter(this);
    QTimer::singleShot(0, this, [this] { UpdateRulers(); });
}

bool RulerFrame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_cad && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        QTimer::singleShot(0, this, [this] { UpdateRulers(); });
    return QWidget::eventFilter(watched, event);
}

// Where the page's top-left corner lies in the viewport, in pixels.
QPoint RulerFrame::pageOrigin() const { return m_cad->mapTo(m_scroll->viewport(), QPoint(0, 0)); }

void RulerFrame::UpdateRulers() {
    m_unit = m_cad->TheUNIT();
    const TRulerUnit unit = rulerUnitOf(m_unit);
    // The viewport sits one frame width inside the scroll area, beside the rulers.
    const QPoint origin = pageOrigin() + QPoint(m_scroll->frameWidth(), m_scroll->frameWidth());
    for (TRsRuler* r : {m_top, m_left}) {
        r->SetUnit(unit);
        r->SetScale(std::max(1, Round(m_cad->Zoom() * 100)));
        r->SetOffset(0);
    }
    m_corner->SetUnit(unit);
    m_top->setGeometry(origin.x(), 0, m_cad->Width(), kRulerThickness);
    m_left->setGeometry(0, origin.y(), kRulerThickness, m_cad->Height());
}

void RulerFrame::showMouse(int x, int y) {
    m_top->SetHairLinePos(x);
    m_left->SetHairLinePos(y);
}

void RulerFrame::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    QTimer::singleShot(0, this, [this] { UpdateRulers(); });
}
