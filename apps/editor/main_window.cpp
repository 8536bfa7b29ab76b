#include "main_window.h"

#include "arrange_actions.h"
#include "edit_actions.h"
#include "layer_panel.h"
#include "ruler_frame.h"
#include "sample_drawing.h"
#include "selection_clicks.h"
#include "view_controls.h"

#include <QAction>
#include <algorithm>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

using namespace faroven;

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(tr("Faroven editor"));
    m_cad = new TMyCAD();
    // Undoing an ungrouping brings the group back as it was, caption and all.
    m_cad->SetUndoRestoresWholeGroup(true);
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
    AddSampleDrawing(m_cad);
    auto layers = new LayerPanel(m_cad, this);
    addDockWidget(Qt::RightDockWidgetArea, layers);
    new ViewControls(m_cad, this);
    m_arrange = new ArrangeActions(m_cad, this);
    auto clicks = new SelectionClicks(m_cad, this);
    connect(m_edit, &EditActions::changed, this, &MainWindow::updateActions);
    connect(m_arrange, &ArrangeActions::changed, this, &MainWindow::updateActions);
    connect(clicks, &SelectionClicks::selectionChanged, this, &MainWindow::updateActions);
    connect(layers, &LayerPanel::layersChanged, this, &MainWindow::layersChanged);
    updateActions();
    setZoom(1.0);
    resize(980, 760);
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

void MainWindow::setZoom(double zoom) { m_cad->SetZoom(std::clamp(zoom, 0.1, 8.0)); }
