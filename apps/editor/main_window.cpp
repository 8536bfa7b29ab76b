#include "main_window.h"

#include "arrange_actions.h"
#include "canvas_menu.h"
#include "edit_actions.h"
#include "layer_panel.h"
#include "ruler_frame.h"
#include "sample_drawing.h"
#include "tool_palette.h"
#include "view_controls.h"

#include <QAction>
#include <algorithm>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

using namespace faroven;

namespace {
// Makes handler call after() once it has run the handler set before.
template <typename Handler>
void chain(Handler& handler, const std::function<void()>& after) {
    handler = [previous = handler, after](auto&&... args) {
        if (previous) previous(args...);
        after();
    };
}
}  // namespace

MainWindow::MainWindow(bool empty, QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(tr("Faroven editor"));
    m_cad = new TMyCAD();
    // Undoing an ungrouping brings the group back as it was, caption and all.
    m_cad->SetUndoRestoresWholeGroup(true);
    // Rectangles, ellipses and lines are drawn by dragging too, as people expect.
    m_cad->SetDrawByDragging(true);
    m_frame = new RulerFrame(m_cad, this);
    setCentralWidget(m_frame);

    // The Edit menu comes first in the menu bar.
    m_edit = new EditActions(m_cad, this);
    QToolBar* view = addToolBar(tr("View"));
    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    auto zoomIn = new QAction(tr("Zoom &in"), this);
    zoomIn->setShortcut(QKeySequence::ZoomIn);
    connect(zoomIn, &QAction::triggered, this, [this] { setZoom(m_cad->Zoom() * 1.25); });
    auto zoomOut = new QAction(tr("Zoom &out"), this);
    zoomOut->setShortcut(QKeySequence::ZoomOut);
    connect(zoomOut, &QAction::triggered, this, [this] { setZoom(m_cad->Zoom() / 1.25); });
    auto zoomReset = new QAction(tr("&Actual size"), this);
    connect(zoomReset, &QAction::triggered, this, [this] { setZoom(1.0); });
    for (QAction* a : {zoomIn, zoomOut, zoomReset}) {
        view->addAction(a);
        viewMenu->addAction(a);
    }
    if (!empty) AddSampleDrawing(m_cad);
    auto layers = new LayerPanel(m_cad, this);
    addDockWidget(Qt::RightDockWidgetArea, layers);
    auto viewControls = new ViewControls(m_cad, this);
    m_arrange = new ArrangeActions(m_cad, this);
    addOptionsMenu(viewControls);
    m_palette = new ToolPalette(m_cad, this);
    addToolBar(Qt::LeftToolBarArea, m_palette);
    addStatusLabels();
    // The canvas sets the hint of the shape under the mouse.
    m_cad->SetShowHint(true);
    auto canvasMenu = new CanvasMenu(m_cad, m_edit, m_arrange, this);
    connect(m_edit, &EditActions::changed, this, &MainWindow::updateActions);
    connect(m_arrange, &ArrangeActions::changed, this, &MainWindow::updateActions);
    connect(canvasMenu, &CanvasMenu::selectionChanged, this, &MainWindow::updateActions);
    hookCanvasEvents();
    connect(layers, &LayerPanel::layersChanged, this, &MainWindow::layersChanged);
    updateActions();
    setZoom(1.0);
    // Tall enough for the whole tool palette beside the canvas.
    resize(1000, 920);
}

void MainWindow::updateActions() {
    m_edit->update();
    m_arrange->update();
}

// A shape on a layer just hidden (or, unless OperateAllLayer, no longer the
// current one) cannot be picked: it leaves the selection, so that Delete and
// the Arrange actions never act on shapes the user cannot see.
void MainWindow::layersChanged() {
    const std::vector<TMyShape*> selected = m_cad->WorkingShapes();
    for (TMyShape* shape : selected)
        if (!m_cad->IsShapePickable(shape)) m_cad->RemoveWorkingShape(shape);
    updateActions();
}

void MainWindow::addOptionsMenu(ViewControls* view) {
    QMenu* menu = menuBar()->addMenu(tr("&Options"));
    // The same toggles as in the Page menu, so both stay in step.
    menu->addAction(view->snapAction());
    menu->addAction(view->snapShapeAction());
    menu->addSeparator();
    const auto addToggle = [this, menu](const QString& text, bool checked, const std::function<void(bool)>& apply) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(checked);
        connect(action, &QAction::toggled, this, apply);
    };
    addToggle(tr("&Return to Select after drawing"), m_cad->ReturnToSelecting(),
              [this](bool on) { m_cad->SetReturnToSelecting(on); });
    addToggle(tr("&Disable text input"), m_cad->DisableTextInput(),
              [this](bool on) { m_cad->SetDisableTextInput(on); });
    addToggle(tr("Smart &guides"), m_cad->SmartGuides(), [this](bool on) { m_cad->SetSmartGuides(on); });
    addToggle(tr("Draw by &dragging"), m_cad->DrawByDragging(), [this](bool on) { m_cad->SetDrawByDragging(on); });
    // Which shapes can be picked depends on it: the selection follows.
    addToggle(tr("Edit shapes on &all layers"), m_cad->OperateAllLayer(), [this](bool on) {
        m_cad->SetOperateAllLayer(on);
        layersChanged();
    });
}

// The canvas writes the mouse position and the value it measures (a length
// while drawing, for one) into these.
void MainWindow::addStatusLabels() {
    auto value = new QLabel(this);
    value->setMinimumWidth(160);
    value->setToolTip(tr("Measured value"));
    auto xy = new QLabel(this);
    xy->setMinimumWidth(120);
    xy->setToolTip(tr("Mouse position"));
    statusBar()->addPermanentWidget(value);
    statusBar()->addPermanentWidget(xy);
    m_cad->SetLabelValue(value);
    m_cad->SetLabelXY(xy);
}

void MainWindow::hookCanvasEvents() {
    const std::function<void()> update = [this] { scheduleUpdate(); };
    chain(m_cad->OnShapeSelected, update);
    chain(m_cad->OnShapeAdded, update);
    chain(m_cad->OnShapeDeleted, update);
    chain(m_cad->OnShapeMouseDragged, update);
    chain(m_cad->OnShapeMouseResizeFinished, update);
    chain(m_cad->OnShapeMouseRotated, update);
}

void MainWindow::scheduleUpdate() {
    if (m_updateScheduled) return;
    m_updateScheduled = true;
    QTimer::singleShot(0, this, [this] {
        m_updateScheduled = false;
        updateActions();
    });
}

void MainWindow::setZoom(double zoom) { m_cad->SetZoom(std::clamp(zoom, 0.1, 8.0)); }
