// The demo editor's main window: a canvas on its page in a scroll area with
// rulers, zoom controls, the Edit and Arrange actions and the layer panel.
#pragma once

#include "cad/canvas/mycad.h"

#include <QMainWindow>

class ArrangeActions;
class EditActions;
class RulerFrame;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    faroven::TMyCAD* Cad() const { return m_cad; }

public slots:
    // Brings the Edit and Arrange actions (enabled states, undo texts) up to
    // date; called after anything the editor does to the drawing, the
    // selection or the layers.
    void updateActions();
    // Zooms the canvas, kept between 0.1 and 8.
    void setZoom(double zoom);

private:
    void layersChanged();

    RulerFrame* m_frame = nullptr;
    faroven::TMyCAD* m_cad = nullptr;
    EditActions* m_edit = nullptr;
    ArrangeActions* m_arrange = nullptr;
};
