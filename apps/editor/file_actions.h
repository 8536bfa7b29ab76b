// The editor's File menu: new, open, save, save as, revert, inserting a
// drawing as a block, the recent files, DXF import, the "Export as" submenu,
// page setup, print preview, print and quit. It keeps the document state
// (file name, unsaved changes) and asks before unsaved changes are lost.
#pragma once

#include "cad/canvas/mycad.h"
#include "document_state.h"

#include <QObject>

class DxfActions;
class PrintActions;
class QAction;
class QMainWindow;
class RecentFiles;

class FileActions : public QObject {
    Q_OBJECT
public:
    // Drawings are saved with this extension.
    static constexpr char kExtension[] = "fvd";

    FileActions(faroven::TMyCAD* cad, QMainWindow* window);
    const DocumentState& document() const { return m_document; }
    // Reports a change the canvas does not count (layers, page settings).
    void markModified() { m_document.markModified(); }
    // Takes the drawing as it is now as the unchanged, untitled starting point.
    void markSaved() { m_document.markSaved(QString()); }
    // Reads the file in place of the drawing without asking first; a failure
    // is shown in a message box and keeps the drawing.
    bool openFile(const QString& fileName);
    // Before the drawing goes: true when it has no unsaved changes or the
    // user saved or discarded them; false when they cancelled or the save failed.
    bool maySaveOrDiscard();
    DxfActions* dxf() const { return m_dxf; }
    // Enables Revert, which needs a file.
    void update();

signals:
    // Another drawing replaced the one shown (new, open, revert).
    void drawingReplaced();
    // The drawing or its file changed (saved, block inserted).
    void changed();
    // The page setup changed the page (size, orientation, header and the
    // like); the drawing counts as modified already.
    void pageChanged();

private:
    void newDrawing();
    void open();
    bool save();
    bool saveAs();
    void revert();
    void insertBlock();
    // Reads a drawing file in place of the current one, with progress.
    bool load(const QString& fileName);
    bool saveTo(const QString& fileName);
    // Where the file dialogs start: beside the drawing's file if it has one.
    QString dialogFolder() const;

    faroven::TMyCAD* m_cad;
    QMainWindow* m_window;
    DocumentState m_document;
    RecentFiles* m_recent = nullptr;
    QAction* m_revert = nullptr;
    DxfActions* m_dxf = nullptr;
    PrintActions* m_print = nullptr;
};
