// The File menu's "Recent files": the last drawings opened or saved, newest
// first, kept in the user's settings between runs.
#pragma once

#include <QObject>
#include <QStringList>

class QMenu;
class QWidget;

class RecentFiles : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxFiles = 8;

    // Fills the submenu from the settings, and again whenever the list changes.
    RecentFiles(QMenu* menu, QWidget* dialogParent);
    // Puts the file at the top of the list (once) and saves the list.
    void add(const QString& fileName);
    QStringList files() const { return m_files; }

signals:
    // An entry of the menu whose file still exists was chosen.
    void openRequested(const QString& fileName);

private:
    void choose(const QString& fileName);
    void store();
    void rebuildMenu();

    QMenu* m_menu;
    QWidget* m_dialogParent;
    QStringList m_files;
};
