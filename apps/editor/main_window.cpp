#include "main_window.h"

#include "demo_shapes.h"
#include "layer_panel.h"
#include "ruler_frame.h"
#include "view_controls.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

using namespace faroven;

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(tr("Faroven editor"));
    m_cad = new TMyCAD();
    m_frame = new RulerFrame(m_cad, this);
    setCentralWidget(m_frame);

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
    addDockWidget(Qt::RightDockWidgetArea, new LayerPanel(m_cad, this));
    new ViewControls(m_cad, this);
    setZoom(1.0);
    resize(980, 760);
}

void MainWindow::setZoom(double zoom) { m_cad->SetZoom(std::clamp(zoom, 0.1, 8.0)); }

void MainWindow::addSampleShapes() {
    struct Sample {
        std::vector<TMyPoint> points;
        TColor pen, brush;
        TGradientStyle gradient;
        QString info;
    };
    const Sample samples[] = {
        {{{60, 60}, {300, 60}, {300, 200}, {60, 200}}, clNavy, 0xF0E0C0, gsNone, "Rectangle"},
        {{{380, 80}, {520, 60}, {620, 180}, {450, 260}}, clMaroon, clYellow, gsLinearH, "Quadrilateral"},
        {{{120, 320}, {220, 420}, {120, 520}, {20, 420}}, clGreen, 0xC0FFC0, gsNone, "Diamond"},
        {{{330, 340}, {700, 340}, {700, 600}, {330, 600}}, clBlack, clAqua, gsRadialC, "Gradient"},
    };
    for (const Sample& s : samples) {
        auto shape = new DemoFigure(m_cad);
        for (const TMyPoint& p : s.points) shape->AddPoint(p);
        shape->Pen()->SetColor(s.pen);
        shape->Pen()->SetWidth(2);
        shape->Brush()->SetColor(s.brush);
        shape->SetGradientStyle(s.gradient);
        shape->SetColorBegin(clWhite);
        shape->SetColorEnd(s.brush);
        shape->SetInfo(s.info);
        shape->Drawed({}, {});
        m_cad->AddNewShape(shape);
    }
    m_cad->AddWorkingShapes(m_cad->GetShapeByNo(1));
}
