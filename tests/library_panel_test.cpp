// The starter library the editor ships, and the editor's library panel
// inserting its entries into a drawing.
#include "apps/editor/library_list.h"
#include "apps/editor/library_panel.h"
#include "apps/libgen/starter_library.h"
#include "cad/persistence/lib_manager.h"
#include "cad/shapes/shape.h"
#include "platform/bitmap.h"
#include "support/library.h"
#include "support/test_support.h"

#include <QApplication>
#include <QFile>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {
// The starter library as a file, after an optional change.
QString writeStarter(const QString& file, const std::function<void(TLibManager&)>& change = {}) {
    TLibManager lib;
    BuildStarterLibrary(lib);
    if (change) change(lib);
    lib.SaveToFile(file);
    return file;
}
}  // namespace

TEST(StarterLibrary, EveryEntryHasItsLinkPointsAndAPicture) {
    TLibManager lib;
    BuildStarterLibrary(lib);
    ASSERT_EQ(lib.GetCmbShapesNames(), StarterEntryNames());
    for (const QString& name : StarterEntryNames()) {
        SCOPED_TRACE(name.toStdString());
        TArrMyPoint linkPoints;
        TLibShapes shapes;
        ASSERT_TRUE(lib.GetCmbShape(name, linkPoints, nullptr, shapes, 0, 0, true));
        EXPECT_FALSE(shapes.empty());
        const size_t expected = name == "Text" ? 0 : name == "Arrow" ? 2 : 4;
        EXPECT_EQ(linkPoints.size(), expected);
        TBitmap picture;
        ASSERT_TRUE(lib.GetCmbShapeImage(name, 0.5, picture, clWhite));
        EXPECT_GT(CountPixels(picture.Image(), clBlack), 10);
    }
}

TEST(LibraryPanel, InsertsAnEntryCentredOnThePointAsOneStep) {
    QTemporaryDir dir;
    TMyCAD cad;
    LibraryPanel panel(&cad);
    ASSERT_TRUE(panel.openLibrary(writeStarter(dir.filePath("starter.fvl"))));
    panel.finishThumbnails();
    const auto* grid = panel.findChild<QListWidget*>();
    ASSERT_EQ(grid->count(), StarterEntryNames().size());
    EXPECT_FALSE(grid->item(0)->icon().isNull());

    TMyShape* decision = panel.insertEntry("Decision", {300, 200});
    ASSERT_NE(decision, nullptr);
    EXPECT_EQ(decision->kind(), TShapeKind::Combine);
    const TMyRect box = decision->GetBounds();
    EXPECT_EQ(box.left + box.right, 600);
    EXPECT_EQ(box.top + box.bottom, 400);
    EXPECT_EQ(decision->GetLinkPointsCount(), 4);
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 0);
}

TEST(LibraryPanel, UpgradesAnOlderLibraryAfterAskingAndKeepsTheOriginal) {
    QTemporaryDir dir;
    const QString file = dir.filePath("old.fvl");
    writeStarter(file, [](TLibManager& lib) { RewriteInOlderLayout(lib, TFileVersion::XPh, "ZEMALIBX.h"); });
    TMyCAD cad;
    LibraryPanel panel(&cad);
    QString asked;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        asked = box->text();
        box->button(QMessageBox::Yes)->click();
    });
    ASSERT_TRUE(panel.openLibrary(file));
    EXPECT_TRUE(asked.contains("old.fvl.bak")) << asked.toStdString();
    EXPECT_EQ(ReadLibFileTag(file), QString::fromLatin1(CurrentLibTag));
    EXPECT_EQ(ReadLibFileTag(file + ".bak"), QStringLiteral("ZEMALIBX.h"));
    EXPECT_EQ(panel.library()->GetCmbShapesNames(), StarterEntryNames());
    EXPECT_NE(panel.insertEntry("Process", {100, 100}), nullptr);
}

TEST(LibraryPanel, MovesAnEntryToTheEndKeepingTheThumbnails) {
    QTemporaryDir dir;
    TMyCAD cad;
    LibraryPanel panel(&cad);
    ASSERT_TRUE(panel.openLibrary(writeStarter(dir.filePath("starter.fvl"))));
    panel.finishThumbnails();
    auto* grid = panel.findChild<LibraryList*>();
    const QImage rectangle = grid->item(0)->icon().pixmap(64).toImage();
    EXPECT_FALSE(panel.windowTitle().endsWith('*'));

    emit grid->entryMoved("Rectangle", QString());
    QStringList expected = StarterEntryNames();
    expected.move(0, expected.size() - 1);
    EXPECT_EQ(panel.library()->GetCmbShapesNames(), expected);
    EXPECT_TRUE(panel.windowTitle().endsWith('*'));
    // Shown at once, without waiting for the previews to render again.
    EXPECT_EQ(grid->item(grid->count() - 1)->icon().pixmap(64).toImage(), rectangle);
}
