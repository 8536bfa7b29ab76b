#include "main_window.h"

#include "arrange_actions.h"
#include "canvas_menu.h"
#include "dxf_actions.h"
#include "edit_actions.h"
#include "file_actions.h"
#include "inspector_panel.h"
#include "layer_panel.h"
#include "library_panel.h"
#include "ruler_frame.h"
#include "sample_drawing.h"
#include "tool_palette.h"
#include "view_controls.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QScrollBar>
#include <QTimer>
#include <QToolBar>
#include <algorithm>

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
    m_cad = new TMyCAD();
    // Undoing an ungrouping brings the group back as it was, caption and all.
    m_cad->SetUndoRestoresWholeGroup(true);
    // Rectangles, ellipses and lines are drawn by dragging too, as people expect.
    m_cad->SetDrawByDragging(true);
    m_frame = new RulerFrame(m_cad, this);
    setCentralWidget(m_frame);

    // The File and Edit menus come first in the menu bar.
    m_file = new FileActions(m_cad, this);
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
    if (!empty) {
        AddSampleDrawing(m_cad);
        // The sample is where the editor starts, not a change to save.
        m_file->markSaved();
    }
    m_layers = new LayerPanel(m_cad, this);
    addDockWidget(Qt::RightDockWidgetArea, m_layers);
    m_library = new LibraryPanel(m_cad, this);
    addDockWidget(Qt::RightDockWidgetArea, m_library);
    connect(m_library, &LibraryPanel::drawingEdited, this, &MainWindow::updateActions);
    // The inspector shares the side bar with the library and starts in front.
    m_inspector = new InspectorPanel(m_cad, this);
    tabifyDockWidget(m_library, m_inspector);
    m_inspector->raise();
    viewMenu->addSeparator();
    viewMenu->addAction(m_inspector->toggleViewAction());
    m_edit->menu()->addSeparator();
    m_edit->menu()->addAction(m_inspector->userDataAction());
    connect(m_inspector, &InspectorPanel::edited, this, [this](bool canvasOnly) {
        if (canvasOnly) m_file->markModified();
        updateActions();
    });
    connect(m_inspector, &InspectorPanel::layersEdited, this, [this] { m_layers->refresh(); });
    m_viewControls = new ViewControls(m_cad, this);
    m_arrange = new ArrangeActions(m_cad, this);
    addOptionsMenu(m_viewControls);
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
    connect(m_layers, &LayerPanel::layersChanged, this, &MainWindow::layersChanged);
    // Layer and page changes are not undo steps, but they are unsaved changes.
    connect(m_layers, &LayerPanel::edited, this, [this] {
        m_file->markModified();
        updateActions();
    });
    connect(m_viewControls, &ViewControls::drawingEdited, this, [this] {
        m_file->markModified();
        updateActions();
    });
    connect(m_file, &FileActions::changed, this, &MainWindow::updateActions);
    // The page tool bar and the rulers show the new paper.
    connect(m_file, &FileActions::pageChanged, this, [this] {
        m_viewControls->sync();
        m_frame->UpdateRulers();
        updateActions();
    });
    connect(m_file, &FileActions::drawingReplaced, this, &MainWindow::drawingReplaced);
    m_cad->installEventFilter(this);
    updateActions();
    setZoom(1.0);
    // Tall enough for the whole tool palette beside the canvas.
    resize(1080, 920);
    // The library grid gets most of the side bar: layers are few.
    resizeDocks({m_layers, m_library}, {150, 700}, Qt::Vertical);
    resizeDocks({m_library}, {340}, Qt::Horizontal);
}

void MainWindow::updateActions() {
    m_file->update();
    m_edit->update();
    m_arrange->update();
    m_inspector->refresh();
    updateTitle();
}

void MainWindow::updateTitle() {
    // Qt shows "*" in place of "[*]" while the window is modified.
    setWindowTitle(tr("%1[*] — Faroven editor").arg(m_file->document().displayName()));
    setWindowModified(m_file->document().isModified());
}

// A DXF file is imported into the page; anything else is opened as a drawing.
bool MainWindow::openFile(const QString& fileName) {
    if (QFileInfo(fileName).suffix().compare(QStringLiteral("dxf"), Qt::CaseInsensitive) == 0)
        return m_file->dxf()->importFile(fileName);
    return m_file->openFile(fileName);
}

void MainWindow::setStartZoom(double zoom) {
    m_startZoom = zoom;
    setZoom(zoom);
}

void MainWindow::drawingReplaced() {
    setZoom(m_startZoom);
    m_frame->ScrollArea()->horizontalScrollBar()->setValue(0);
    m_frame->ScrollArea()->verticalScrollBar()->setValue(0);
    m_layers->refresh();
    m_viewControls->sync();
    m_frame->UpdateRulers();
    updateActions();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // The drawing and the library are separate files: each asks for itself.
    if (m_file->maySaveOrDiscard() && m_library->maySaveOrDiscard())
        event->accept();
    else
        event->ignore();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    // The canvas handles the event after this filter: look once it is done.
    if (watched == m_cad && (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyPress))
        scheduleUpdate();
    return QMainWindow::eventFilter(watched, event);
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
