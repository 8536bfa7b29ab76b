#include "main_window.h"

#include "arrange_actions.h"
#include "edit_actions.h"
#include "layer_panel.h"
#include "ruler_frame.h"
#include "selection_clicks.h"
#include "view_controls.h"

#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"

#include <QAction>
#include <cmath>
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
    addSampleShapes();
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

// One shape of each family, captioned, and the rectangle selected so that
// its hot marks show.
void MainWindow::addSampleShapes() {
    auto add = [this](TMyShape* shape, const std::vector<TMyPoint>& points, TColor pen, TColor brush,
                      const QString& info) {
        for (const TMyPoint& p : points) shape->AddPoint(p);
        shape->Pen()->SetColor(pen);
        shape->Pen()->SetWidth(2);
        shape->Brush()->SetColor(brush);
        shape->SetInfo(info);
        shape->Drawed({}, {});
        m_cad->AddNewShape(shape);
        return shape;
    };
    auto box = [](float l, float t, float r, float b) { return std::vector<TMyPoint>{{l, t}, {r, t}, {r, b}, {l, b}}; };
    // Members first, then the group around them.
    auto group = [&](TMyGroup* g, std::initializer_list<TMyShape*> members, const QString& info) {
        TMyRect r{1e9f, 1e9f, -1e9f, -1e9f};
        for (TMyShape* m : members) {
            const TMyRect b = m->GetBounds();
            r = {std::min(r.left, b.left), std::min(r.top, b.top), std::max(r.right, b.right), std::max(r.bottom, b.bottom)};
        }
        add(g, box(r.left, r.top, r.right, r.bottom), clBlack, clWhite, info);
        std::vector<int32_t> children;
        for (TMyShape* m : members) {
            m->SetParentShapeNo(g->ShapeNo());
            children.push_back(m->ShapeNo());
        }
        g->SetChildShapeNos(children);
    };

    TMyShape* rect = add(new TMyRectangle(m_cad), box(40, 40, 220, 150), clNavy, 0xF0E0C0, "Rectangle");
    TMyShape* ellipse = add(new TMyEllipse(m_cad), box(270, 40, 450, 150), clMaroon, clYellow, "Ellipse");
    ellipse->SetGradientStyle(gsRadialC);
    ellipse->SetColorEnd(clYellow);
    ellipse->RotateChangeValueByAngle(0.3);

    TMyShape* a = add(new TMyRectangle(m_cad), box(500, 40, 590, 100), clGreen, 0xC0FFC0, "");
    TMyShape* b = add(new TMyEllipse(m_cad), box(560, 80, 700, 150), clGreen, clLime, "");
    group(new TMyGroup(m_cad), {a, b}, "Group of two");

    TMyShape* c1 = add(new TMyEllipse(m_cad), box(40, 210, 140, 310), clPurple, clFuchsia, "");
    TMyShape* c2 = add(new TMyRectangle(m_cad), box(100, 240, 220, 330), clPurple, 0xFFC0FF, "");
    group(new TMyCombine(m_cad), {c1, c2}, "Combine");

    auto line = static_cast<TMyLine*>(add(new TMyLine(m_cad), {{270, 230}, {450, 320}}, clBlack, clBlack, "Line"));
    line->SetArrowStyle(ALeft);
    line->SetArrowAngle(20);
    line->SetArrowLength(18);
    add(new TMyRuleLine(m_cad), {{500, 280}, {700, 280}}, clBlue, clBlue, "");

    auto poly = static_cast<TMyLine*>(
        add(new TMyPolyLine(m_cad), {{40, 420}, {100, 480}, {160, 410}, {220, 490}}, clTeal, clWhite, "Polyline"));
    poly->SetArrowStyle(ADouble);
    poly->SetArrowLength(12);
    TMyShape* polygon = add(new TMyPolygon(m_cad), {{360, 390}, {450, 440}, {420, 520}, {300, 520}, {270, 440}, {360, 390}},
                            clOlive, clAqua, "Polygon");
    polygon->SetGradientStyle(gsLinearV);
    polygon->SetColorEnd(clAqua);

    auto freeLine = new TMyFreeLine(m_cad);
    for (int i = 0; i <= 60; ++i) {
        const float x = 500 + i * 3.5f;
        freeLine->AddPoint({x, 450 + 35 * std::sin(i / 6.0f) * std::cos(i / 23.0f)});
    }
    add(freeLine, {}, clRed, clWhite, "Free line");

    m_cad->AddWorkingShapes(rect);
}
