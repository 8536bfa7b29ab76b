// The editor's tool palette: a tool bar with one checkable button per mouse
// tool of the canvas (selecting, rotating, each kind of shape to draw, node
// editing, dragging the whole drawing, browsing, the mouse switched off).
// Exactly one is checked: the canvas's current tool. The icons are drawn in
// code, so the editor needs no image files.
#pragma once

#include "cad/canvas/mycad.h"

#include <QToolBar>

#include <array>

class QActionGroup;

class ToolPalette : public QToolBar {
    Q_OBJECT
public:
    // Hooks the canvas's OnActionToolToSelecting; a handler set before keeps
    // running first.
    explicit ToolPalette(faroven::TMyCAD* cad, QWidget* parent = nullptr);
    // The button of a tool.
    QAction* toolAction(faroven::TDrawTool tool) const { return m_actions[tool]; }
    // Checks the button of the canvas's current tool.
    void sync();

    // The tool's name as its tooltip shows it ("Rectangle", "Add node").
    static QString toolName(faroven::TDrawTool tool);
    // The tool's 24 x 24 pictogram.
    static QIcon toolIcon(faroven::TDrawTool tool);

signals:
    // The user picked a tool; the canvas has it already.
    void toolChosen(faroven::TDrawTool tool);

private:
    faroven::TMyCAD* m_cad;
    QActionGroup* m_group;
    std::array<QAction*, faroven::SpBLine + 1> m_actions{};
};
