// The demo editor's main window: a canvas on its page in a scroll area with
// rulers, the tool palette, zoom controls, the File, Edit, Arrange and Options
// menus, the canvas's context menu, the layer panel and a status bar with
// the canvas's position and measurement labels.
#pragma once

#include "cad/canvas/mycad.h"

#include <QMainWindow>

class ArrangeActions;
class EditActions;
class FileActions;
class InspectorPanel;
class LayerPanel;
class LibraryPanel;
class RulerFrame;
class ToolPalette;
class ViewControls;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // With empty, the page starts blank instead of showing the sample drawing.
    explicit MainWindow(bool empty = false, QWidget* parent = nullptr);
    faroven::TMyCAD* Cad() const { return m_cad; }
    LibraryPanel* Library() const { return m_library; }
    InspectorPanel* Inspector() const { return m_inspector; }
    // Reads a drawing file in place of the drawing shown (without asking);
    // a failure is shown in a message box and keeps the drawing.
    bool openFile(const QString& fileName);
    // The zoom the editor starts at, applied again whenever a drawing is
    // opened or started.
    void setStartZoom(double zoom);

public slots:
    // Brings the File, Edit and Arrange actions (enabled states, undo texts)
    // and the window title up to date; called after anything the editor does
    // to the drawing, the selection or the layers.
    void updateActions();
    // Zooms the canvas, kept between 0.1 and 8.
    void setZoom(double zoom);

protected:
    // Asks about unsaved changes first.
    void closeEvent(QCloseEvent* event) override;
    // Mouse releases and key presses on the canvas may edit the drawing.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layersChanged();
    // After another drawing replaced the shown one: the start zoom, the
    // page's top-left corner in view, fresh layers, rulers and page controls.
    void drawingReplaced();
    void updateTitle();
    void addOptionsMenu(ViewControls* view);
    void addStatusLabels();
    // Runs updateActions after the canvas's mouse edits.
    void hookCanvasEvents();
    // Runs updateActions once, when control returns to the event loop: the
    // canvas raises its events in the middle of its own work.
    void scheduleUpdate();

    RulerFrame* m_frame = nullptr;
    FileActions* m_file = nullptr;
    LayerPanel* m_layers = nullptr;
    LibraryPanel* m_library = nullptr;
    InspectorPanel* m_inspector = nullptr;
    ViewControls* m_viewControls = nullptr;
    double m_startZoom = 1.0;
    faroven::TMyCAD* m_cad = nullptr;
    EditActions* m_edit = nullptr;
    ArrangeActions* m_arrange = nullptr;
    ToolPalette* m_palette = nullptr;
    bool m_updateScheduled = false;
};
