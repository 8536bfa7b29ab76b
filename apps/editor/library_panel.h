// The editor's shape library: a dock with the entries of one library file
// as thumbnails. Entries are dragged onto the canvas (or double-clicked) to
// insert them; the selection can be added as a new entry; entries are
// renamed, deleted and reordered by dragging. Older libraries are upgraded
// on opening, after asking, with the original kept as NAME.bak. The
// thumbnails render a few at a time while the editor goes on.
#pragma once

#include "cad/canvas/mycad.h"
#include "cad/persistence/lib_manager.h"

#include <QDockWidget>
#include <QHash>
#include <QIcon>
#include <memory>

class LibraryList;
class QLabel;
class QListWidgetItem;
class QTimer;

// The library file the editor opens at start: next to the program, else in
// the installed share folder; empty when there is none.
QString DefaultLibraryFile();

class LibraryPanel : public QDockWidget {
    Q_OBJECT
public:
    LibraryPanel(faroven::TMyCAD* cad, QWidget* parent = nullptr);
    ~LibraryPanel() override;
    // Opens a library file (upgrading an older one after asking). A failure
    // is shown and keeps the library that was open.
    bool openLibrary(const QString& fileName);
    // Renders the thumbnails still waiting, at once.
    void finishThumbnails();
    faroven::TLibManager* library() const { return m_library.get(); }
    // Inserts the entry with its centre at a point in drawing units.
    faroven::TMyShape* insertEntry(const QString& name, faroven::TMyPoint centre);
    // Before the library goes (another opened, a new one, the editor closed):
    // true when it has no unsaved changes or the user saved or discarded
    // them; false when they cancelled or the save failed.
    bool maySaveOrDiscard();

signals:
    // An entry was inserted into the drawing.
    void drawingEdited();

protected:
    // Entries dropped on the canvas.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void newLibrary();
    void chooseAndOpen();
    bool save();
    bool saveAs();
    void addSelection();
    void renameEntry();
    void deleteEntry();
    void moveEntry(const QString& name, const QString& beforeName);
    void insertAtViewCentre(QListWidgetItem* item);
    void showEntryMenu(const QPoint& at);
    // Takes another library in place of the shown one; its thumbnails are
    // rendered afresh.
    void replaceLibrary(std::unique_ptr<faroven::TLibManager> library, const QString& fileName);
    // Rebuilds the grid from the library and starts rendering thumbnails.
    // The entry named select (else the one that was current) is made current.
    void refresh(const QString& select = QString());
    void renderSomeThumbnails();
    void setModified(bool modified);
    void updateTitle();
    // Runs f; a library error is shown in a message box. False then.
    template <class F>
    bool guarded(F&& f);

    faroven::TMyCAD* m_cad;
    std::unique_ptr<faroven::TLibManager> m_library;
    QString m_fileName;
    bool m_modified = false;
    LibraryList* m_list = nullptr;
    QLabel* m_status = nullptr;
    QTimer* m_renderTimer = nullptr;
    int m_nextThumbnail = 0;
    // Rendered thumbnails by entry name, so that renaming, deleting and
    // reordering do not render the whole library again.
    QHash<QString, QIcon> m_thumbnails;
};
