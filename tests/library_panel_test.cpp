// The starter library the editor ships, and the editor's library panel
// inserting its entries into a drawing.
#include "apps/editor/library_panel.h"
#include "apps/libgen/starter_library.h"
#include "cad/persistence/lib_manager.h"
#include "cad/shapes/shape.h"
#include "platform/bitmap.h"
#include "support/test_support.h"

#include <QListWidget>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

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
    const QString file = dir.filePath("starter.fvl");
    {
        TLibManager lib;
        BuildStarterLibrary(lib);
        lib.SaveToFile(file);
    }
    TMyCAD cad;
    LibraryPanel panel(&cad);
    ASSERT_TRUE(panel.openLibrary(file));
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
