#include "view_controls.h"

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

using namespace faroven;

namespace {
const char* const kPageNames[] = {"A0", "A1", "A2", "A3", "A4", "A5", "B3", "B4", "B5", "Custom"};
const char* const kUnitNames[] = {"pixel", "mm", "cm", "dm", "m", "inch"};
const int kZoomSteps[] = {25, 50, 75, 100, 125, 150, 200, 300, 400};
}  // namespace

ViewControls::ViewControls(TMyCAD* cad, QMainWindow* window) : QObject(window), m_cad(cad), m_window(window) {
    window->addToolBarBreak();
    QToolBar* bar = window->addToolBar(tr("Page and grid"));
    bar->setObjectName("PageAndGrid");
    QMenu* pageMenu = window->menuBar()->addMenu(tr("&Page"));

    // Page style and orientation.
    m_page = new QComboBox(bar);
    for (const char* name : kPageNames) m_page->addItem(name);
    m_page->setToolTip(tr("Page size"));
    connect(m_page, &QComboBox::activated, this, [this](int index) {
        if (index < int(CustomerPage) && index != int(m_cad->PageStyle())) {
            m_cad->SetPageStyle(TPageStyle(index));
            emit drawingEdited();
        }
        sync();
    });
    m_orientation = new QComboBox(bar);
    m_orientation->addItems({tr("Portrait"), tr("Landscape")});
    connect(m_orientation, &QComboBox::activated, this, [this](int index) {
        const TPrinterOrientation orientation = index == 1 ? poLandscape : poPortrait;
        if (orientation == m_cad->PageOrientation()) return;
        // The orientation is applied by setting the page style again.
        m_cad->SetPageOrientation(orientation);
        m_cad->SetPageStyle(m_cad->PageStyle());
        emit drawingEdited();
        sync();
    });
    bar->addWidget(new QLabel(tr(" Page "), bar));
    bar->addWidget(m_page);
    bar->addWidget(m_orientation);

    // Zoom.
    m_zoom = new QComboBox(bar);
    m_zoom->setEditable(true);
    for (int step : kZoomSteps) m_zoom->addItem(QStringLiteral("%1 %").arg(step));
    m_zoom->setToolTip(tr("Zoom"));
    connect(m_zoom, &QComboBox::textActivated, this, &ViewControls::setZoomText);
    bar->addSeparator();
    bar->addWidget(new QLabel(tr(" Zoom "), bar));
    bar->addWidget(m_zoom);

    // Grid.
    m_gridType = new QComboBox(bar);
    m_gridType->addItems({tr("Dots"), tr("Lines"), tr("No grid")});
    connect(m_gridType, &QComboBox::activated, this,
            [this](int index) { m_cad->GridOperation()->SetGridType(TGridType(index)); });
    m_gridSpacing = new QDoubleSpinBox(bar);
    m_gridSpacing->setRange(2, 500);
    m_gridSpacing->setDecimals(1);
    m_gridSpacing->setSuffix(tr(" px"));
    m_gridSpacing->setToolTip(tr("Grid spacing at zoom 1"));
    connect(m_gridSpacing, &QDoubleSpinBox::valueChanged, this, [this](double v) {
        if (m_syncing) return;
        m_cad->GridOperation()->SetGridWidth(v);
        m_cad->GridOperation()->SetGridHeight(v);
    });
    bar->addSeparator();
    bar->addWidget(new QLabel(tr(" Grid "), bar));
    bar->addWidget(m_gridType);
    bar->addWidget(m_gridSpacing);

    // Unit of the lengths and positions shown in the status bar.
    m_unit = new QComboBox(bar);
    for (const char* name : kUnitNames) m_unit->addItem(name);
    m_unit->setToolTip(tr("Unit of measure"));
    connect(m_unit, &QComboBox::activated, this, [this](int index) {
        if (TUnits(index) == m_cad->TheUNIT()) return;
        m_cad->SetUnit(TUnits(index));
        emit drawingEdited();
    });
    bar->addSeparator();
    bar->addWidget(m_unit);

    // Toggles, in the menu and the tool bar.
    QMenu* gridMenu = pageMenu->addMenu(tr("&Grid"));
    addToggle(gridMenu, tr("Show &grid"), m_cad->GridOperation()->GridShow(),
              [this](bool on) { m_cad->GridOperation()->SetGridShow(on); });
    addToggle(gridMenu, tr("Grid follows &zoom"), m_cad->GridOperation()->GridInZoom(),
              [this](bool on) { m_cad->GridOperation()->SetGridInZoom(on); });
    bar->addSeparator();
    m_snap = addToggle(pageMenu, tr("&Snap to grid"), m_cad->Snap(), [this](bool on) { m_cad->SetSnap(on); });
    m_snapShape =
        addToggle(pageMenu, tr("Snap to s&hapes"), m_cad->SnapShape(), [this](bool on) { m_cad->SetSnapShape(on); });
    bar->addAction(m_snap);
    bar->addAction(m_snapShape);
    pageMenu->addSeparator();
    bar->addAction(addToggle(pageMenu, tr("&Cross-hair"), m_cad->CrossLine(),
                             [this](bool on) { m_cad->SetCrossLine(on); }));
    addToggle(pageMenu, tr("&Hover highlight"), m_cad->MouseEffect(), [this](bool on) { m_cad->SetMouseEffect(on); });
    addToggle(pageMenu, tr("Keep edits on the &page"), m_cad->LockBound(),
              [this](bool on) { m_cad->SetLockBound(on); });

    // The control resizes whenever the page or the zoom changes.
    m_cad->installEventFilter(this);
    sync();
}

QAction* ViewControls::addToggle(QMenu* menu, const QString& text, bool checked,
                                 const std::function<void(bool)>& apply) {
    auto action = menu->addAction(text);
    action->setCheckable(true);
    action->setChecked(checked);
    connect(action, &QAction::toggled, this, [apply](bool on) { apply(on); });
    return action;
}

void ViewControls::setZoomText(const QString& text) {
    QString digits = text;
    digits.remove('%');
    bool ok = false;
    const double percent = digits.trimmed().toDouble(&ok);
    if (ok && percent >= 5 && percent <= 1000) m_cad->SetZoom(percent / 100.0);
    sync();
}

bool ViewControls::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_cad && event->type() == QEvent::Resize) sync();
    return QObject::eventFilter(watched, event);
}

void ViewControls::sync() {
    m_syncing = true;
    m_page->setCurrentIndex(int(m_cad->PageStyle()));
    m_orientation->setCurrentIndex(m_cad->PageOrientation() == poLandscape ? 1 : 0);
    m_zoom->setEditText(QStringLiteral("%1 %").arg(qRound(m_cad->Zoom() * 100)));
    m_gridType->setCurrentIndex(int(m_cad->GridOperation()->GridType()));
    m_gridSpacing->setValue(m_cad->GridOperation()->GridWidth());
    m_unit->setCurrentIndex(int(m_cad->TheUNIT()));
    m_syncing = false;
    m_window->statusBar()->showMessage(tr("Page %1 x %2 mm, zoom %3 %")
                                           .arg(m_cad->PageWidth())
                                           .arg(m_cad->PageHeight())
                                           .arg(qRound(m_cad->Zoom() * 100)));
}
