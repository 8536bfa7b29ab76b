// The editor's DXF commands in the File menu: importing a DXF file into the
// drawing (as one undo step, placed in the view) and exporting the drawing as
// DXF.
#pragma once

#include "cad/canvas/mycad.h"

#include <QObject>

class QMenu;
class QWidget;

class DxfActions : public QObject {
    Q_OBJECT
public:
    DxfActions(faroven::TMyCAD* cad, QWidget* window, QMenu* menu);

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
};
