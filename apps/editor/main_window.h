// The demo editor's main window: a canvas on its page in a scroll area with
// rulers, and zoom controls.
#pragma once

#include "cad/canvas/mycad.h"

#include <QMainWindow>

class RulerFrame;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    faroven::TMyCAD* Cad() const { return m_cad; }

private:
    void addSampleShapes();
    void setZoom(double zoom);

    RulerFrame* m_frame = nullptr;
    faroven::TMyCAD* m_cad = nullptr;
};
