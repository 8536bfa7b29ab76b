// The editor's bookkeeping of unsaved changes and its question before a
// drawing is closed or replaced, over a real canvas and real files.
#include "apps/editor/document_state.h"
#include "cad/canvas/mycad.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace faroven;
using faroven::test::AddRect;

TEST(EditorDocument, UnsavedChangesFollowEditsSavesAndLoads) {
    QTemporaryDir dir;
    const QString file = dir.filePath("plan.fvd");
    TMyCAD cad;
    TMyShape* box = AddRect(cad, 10, 10, 60, 40);
    DocumentState document(&cad);
    document.markSaved(QString());
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(document.displayName(), "Untitled");

    // A recorded edit, and undoing it, both leave unsaved changes.
    cad.AddWorkingShapes(box);
    cad.DeleteSelectedShapes();
    EXPECT_TRUE(document.isModified());
    cad.Undo();
    EXPECT_TRUE(document.isModified());

    ASSERT_TRUE(cad.SaveToFile(file));
    document.markSaved(file);
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(document.displayName(), "plan.fvd");

    // A mouse commit raises the canvas's flag; saving clears it.
    cad.SetChanged(true);
    EXPECT_TRUE(document.isModified());
    ASSERT_TRUE(cad.SaveToFile(file));
    document.markSaved(file);
    EXPECT_FALSE(document.isModified());

    // A layer change the undo does not record, then reading the file back.
    document.markModified();
    cad.SetChanged(true);
    EXPECT_TRUE(document.isModified());
    ASSERT_TRUE(cad.LoadFromFile(file));
    document.markSaved(file);
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(cad.GetShapesCount(), 1);
}

TEST(EditorDocument, CancelOrAFailedSaveKeepsTheDrawing) {
    TMyCAD cad;
    DocumentState document(&cad);
    document.markSaved(QString());
    int asked = 0;
    int saves = 0;
    const auto answer = [&](UnsavedChoice choice) {
        return [&asked, choice] {
            ++asked;
            return choice;
        };
    };
    const auto saveResult = [&](bool ok) {
        return [&saves, ok] {
            ++saves;
            return ok;
        };
    };

    // Nothing to lose: no question.
    EXPECT_TRUE(mayDiscardDrawing(document, answer(UnsavedChoice::Cancel), saveResult(false)));
    EXPECT_EQ(asked, 0);

    document.markModified();
    EXPECT_FALSE(mayDiscardDrawing(document, answer(UnsavedChoice::Cancel), saveResult(true)));
    EXPECT_EQ(saves, 0);
    EXPECT_FALSE(mayDiscardDrawing(document, answer(UnsavedChoice::Save), saveResult(false)));
    EXPECT_TRUE(mayDiscardDrawing(document, answer(UnsavedChoice::Save), saveResult(true)));
    EXPECT_EQ(saves, 2);
    EXPECT_TRUE(mayDiscardDrawing(document, answer(UnsavedChoice::Discard), saveResult(true)));
    EXPECT_EQ(saves, 2);
    EXPECT_EQ(asked, 4);
}
