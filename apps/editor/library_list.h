// The library panel's grid of entries: thumbnails with names. Dragging an
// entry out carries its name under LibraryEntryMimeType (the canvas takes
// it); dropping one of its own entries on another moves it before that one,
// on empty space to the end. F2 and Delete ask to rename and delete the
// current entry (before the window's own Delete, which removes shapes).
#pragma once

#include <QListWidget>

inline constexpr char LibraryEntryMimeType[] = "application/x-faroven-library-entry";

class LibraryList : public QListWidget {
    Q_OBJECT
public:
    explicit LibraryList(QWidget* parent = nullptr);

signals:
    // An entry was dropped before another (beforeName empty: at the end).
    void entryMoved(const QString& name, const QString& beforeName);
    void renameRequested();
    void deleteRequested();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
};
