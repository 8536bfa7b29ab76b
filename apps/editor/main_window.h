// The demo editor's main window: a canvas on its page in a scroll area with
// rulers, the tool palette, zoom controls, the Edit, Arrange and Options
// menus, the canvas's context menu, the layer panel and a status bar with
// the canvas's position and measurement labels.
#pragma once

#include "cad/canvas/mycad.h"

#include <QMainWindow>

class ArrangeActions;
class EditActions;
class RulerFrame;
class ToolPalette;
class ViewControls;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // With empty, the page starts blank instead of showing the sample drawing.
    explicit MainWindow(bool empty = false, QWidget* parent = nullptr);
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
    void addOptionsMenu(ViewControls* view);
    void addStatusLabels();
    // Runs updateActions after the canvas's mouse edits.
    void hookCanvasEvents();
    // Runs updateActions once, when control returns to the event loop: the
    // canvas raises its events in the middle of its own work.
    void scheduleUpdate();

    RulerFrame* m_frame = nullptr;
    faroven::TMyCAD* m_cad = nullptr;
    EditActions* m_edit = nullptr;
    ArrangeActions* m_arrange = nullptr;
    ToolPalette* m_palette = nullptr;
    bool m_updateScheduled = false;
};
