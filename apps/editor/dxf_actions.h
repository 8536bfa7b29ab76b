// The editor's DXF commands: importing a DXF file into the drawing (as one
// undo step, placed in the view) from the File menu, and exporting the
// drawing as DXF from the action the File menu's "Export as" submenu shows.
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

class DxfActions : public QObject {
    Q_OBJECT
public:
    // Adds the import item to menu.
    DxfActions(faroven::TMyCAD* cad, QWidget* window, QMenu* menu);
    // Asks for a file and a DXF kind and exports; placed by the File menu.
    QAction* exportAction() const { return m_exportAction; }

    // Imports the file with the extended reader; a failure is shown and
    // leaves the drawing as it was. True when shapes were added.
    bool importFile(const QString& fileName);

signals:
    void changed();

private:
    void importDxf();
    void exportDxf();

    faroven::TMyCAD* m_cad;
    QWidget* m_window;
    QAction* m_exportAction = nullptr;
};
