// In-place text input: a committed change is exactly one "ACT_CHANGE" step
// that Undo takes back, an unchanged text or Escape records nothing, a text
// shape takes several lines, and a shape or canvas that goes while the editor
// is open leaves nothing dangling.
#include "cad/canvas/mycad.h"
#include "cad/canvas/text_input_box.h"
#include "cad/shapes/text.h"
#include "support/shapes.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>
#include <numeric>

using namespace faroven;
using namespace faroven::test;

namespace {

class TextInput : public ::testing::Test {
protected:
    void SetUp() override {
        cad.show();
        cad.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&cad));
        rect = AddRect(cad, 100, 100, 200, 150);
        rect->SetInfo(QStringLiteral("old"));
        rect->SetTextPoint({150, 160});
    }
    // The open editor (closed ones may wait for their deferred deletion).
    TTextInputBox* Box() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return cad.findChild<TTextInputBox*>();
    }
    TMyCAD cad;
    TMyRectangle* rect = nullptr;
};

TEST_F(TextInput, CommitIsOneUndoStepThatRestoresTheOldCaption) {
    cad.SetZoom(2);
    cad.BeginTextInput(rect);
    TTextInputBox* box = Box();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(cad.TextInputShape(), rect);
    EXPECT_EQ(box->Text(), "old");
    EXPECT_TRUE(box->hasFocus());
    // One line, centred on the caption point at the zoom.
    EXPECT_GE(box->width(), 80);
    EXPECT_NEAR(box->geometry().center().x(), 300, 1);
    EXPECT_NEAR(box->geometry().center().y(), 320, 1);

    QTest::keyClicks(box, "new");  // replaces the selected old text
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(rect->Info(), "new");
    ASSERT_EQ(cad.UndoRecords().size(), 1u);
    EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE");

    const int id = rect->GetShapeId();
    cad.Undo();
    EXPECT_EQ(cad.GetShapeByID(id)->Info(), "old");
}

TEST_F(TextInput, UnchangedTextOrEscapeRecordsNothingAndLeavingCommits) {
    cad.BeginTextInput(rect);
    QTest::keyClick(Box(), Qt::Key_Enter);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_TRUE(cad.UndoRecords().empty());

    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "zzz");
    QTest::keyClick(Box(), Qt::Key_Escape);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(rect->Info(), "old");
    EXPECT_TRUE(cad.UndoRecords().empty());

    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "pressed");
    QTest::mouseClick(&cad, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(rect->Info(), "pressed");
    EXPECT_EQ(cad.UndoRecords().size(), 1u);

    // Another widget taking the focus commits too.
    QLineEdit elsewhere(&cad);
    elsewhere.show();
    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "focus");
    elsewhere.setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(rect->Info(), "focus");
}

TEST_F(TextInput, TextShapeTakesLinesAndACaptionStaysOneLine) {
    auto* text = AddRect<TMyText>(cad, 10, 20, 110, 70);
    cad.BeginTextInput(text);
    TTextInputBox* box = Box();
    EXPECT_EQ(box->geometry(), QRect(10, 20, 100, 50));  // over the frame
    QTest::keyClicks(box, "ab");
    QTest::keyClick(box, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(box, "cd");
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(text->Lines()->Lines(), (QStringList{"ab", "cd"}));
    EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE");

    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "a");
    QTest::keyClick(Box(), Qt::Key_Return, Qt::ShiftModifier);  // commits
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(rect->Info(), "a");
}

TEST_F(TextInput, ASecondInputCommitsTheFirst) {
    auto* other = AddRect(cad, 300, 100, 400, 150);
    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "first");
    cad.BeginTextInput(other);
    EXPECT_EQ(rect->Info(), "first");
    EXPECT_EQ(cad.TextInputShape(), other);
    Box();
    EXPECT_EQ(cad.findChildren<TTextInputBox*>().size(), 1);
}

TEST_F(TextInput, ShapeOrCanvasGoingWhileOpenLeavesNothingDangling) {
    cad.BeginTextInput(rect);
    QTest::keyClicks(Box(), "lost");
    ASSERT_TRUE(cad.DeleteShapeById(rect->GetShapeId()));
    EXPECT_EQ(cad.TextInputShape(), nullptr);
    QTest::keyClick(Box(), Qt::Key_Return);
    EXPECT_FALSE(cad.TextInputActive());
    EXPECT_EQ(cad.UndoActionName(), "ACT_DELETE");
    EXPECT_EQ(cad.UndoRecords().size(), 1u);

    // Taken out of the list but not freed: no text either.
    auto* kept = AddRect(cad, 0, 0, 10, 10);
    cad.BeginTextInput(kept);
    QTest::keyClicks(Box(), "x");
    std::vector<int> drop(size_t(cad.GetShapesCount()));
    std::iota(drop.begin(), drop.end(), 0);
    drop.back() = -1;
    std::unique_ptr<TMyShape> taken(cad.remapShapeNumbers(drop).front());
    cad.EndTextInput(true);
    EXPECT_EQ(taken->Info(), "");

    auto canvas = std::make_unique<TMyCAD>();
    canvas->show();
    canvas->BeginTextInput(AddRect(*canvas, 0, 0, 10, 10));
    canvas.reset();  // closes the editor with it
}

}  // namespace
