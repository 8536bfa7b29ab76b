#include "recent_files.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>

namespace {
const char kSettingsKey[] = "recentFiles";
}

RecentFiles::RecentFiles(QMenu* menu, QWidget* dialogParent)
    : QObject(menu), m_menu(menu), m_dialogParent(dialogParent) {
    m_files = QSettings().value(kSettingsKey).toStringList().mid(0, kMaxFiles);
    rebuildMenu();
}

void RecentFiles::add(const QString& fileName) {
    // The same file reached by another path is still one entry.
    const QString path = QFileInfo(fileName).absoluteFilePath();
    m_files.removeAll(path);
    m_files.prepend(path);
    while (m_files.size() > kMaxFiles) m_files.removeLast();
    store();
}

void RecentFiles::choose(const QString& fileName) {
    if (QFileInfo::exists(fileName)) {
        emit openRequested(fileName);
        return;
    }
    m_files.removeAll(fileName);
    store();
    QMessageBox::information(m_dialogParent, tr("Recent files"),
                             tr("\"%1\" no longer exists; it has been taken off the list of recent files.")
                                 .arg(QDir::toNativeSeparators(fileName)));
}

void RecentFiles::store() {
    QSettings().setValue(kSettingsKey, m_files);
    rebuildMenu();
}

void RecentFiles::rebuildMenu() {
    m_menu->clear();
    for (int i = 0; i < m_files.size(); ++i) {
        const QString file = m_files[i];
        // "&1 name.fvd", with the whole path as the tip.
        QAction* action = m_menu->addAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(file).fileName().replace('&', QLatin1String("&&"))));
        action->setToolTip(QDir::toNativeSeparators(file));
        action->setStatusTip(QDir::toNativeSeparators(file));
        // Queued: choosing rebuilds this menu, which deletes the action.
        connect(action, &QAction::triggered, this, [this, file] { choose(file); }, Qt::QueuedConnection);
    }
    m_menu->setToolTipsVisible(true);
    m_menu->setEnabled(!m_files.isEmpty());
}
