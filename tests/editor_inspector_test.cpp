// The editor's inspector dock: it follows the canvas's selection, tells the
// window what its edits changed, and edits user data of a shape as one undo
// step or of the drawing without one.
#include "apps/editor/inspector_panel.h"
#include "cad/shapes/rectangle.h"
#include "inspector/component_combo_box.h"
#include "inspector/component_inspector.h"
#include "inspector/editors/userdata_editor.h"
#include "support/shapes.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

void addPairWhenOpen(const QString& key, const QString& value) {
    QTimer::singleShot(0, [key, value] {
        auto* editor = qobject_cast<TUserDataEditor*>(QApplication::activeModalWidget());
        ASSERT_TRUE(editor);
        editor->AddPair(key, value);
        editor->accept();
    });
}

TEST(EditorInspector, FollowsTheSelectionAndReportsWhatItsEditsChanged) {
    TMyCAD cad;
    InspectorPanel panel(&cad);
    TMyRectangle* rect = AddRect(cad, 10, 10, 50, 50);
    QSignalSpy edited(&panel, &InspectorPanel::edited);
    panel.refresh();

    cad.AddWorkingShapes(rect);
    QApplication::processEvents();
    EXPECT_EQ(panel.inspector()->Objects(), std::vector<QObject*>{rect});
    EXPECT_EQ(panel.comboBox()->currentText(), rect->Name() + ": TMyRectangle");

    panel.inspector()->OnError = [](const QString& m) { ADD_FAILURE() << m.toStdString(); };
    ASSERT_TRUE(panel.inspector()->SetPropertyText("Brush.Color", "clLime"));
    ASSERT_EQ(edited.count(), 1);
    EXPECT_FALSE(edited.takeFirst().at(0).toBool());  // a shape: the undo history has it

    addPairWhenOpen("Part", "P-100");
    panel.editUserData();
    EXPECT_EQ(rect->UserData()->GetValueByKey("Part"), "P-100");
    EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE");
    EXPECT_FALSE(edited.takeFirst().at(0).toBool());

    // Nothing selected: the drawing's own pairs, and its own settings.
    cad.RemoveAllWorkingShapes();
    QApplication::processEvents();
    EXPECT_EQ(panel.inspector()->Objects(), std::vector<QObject*>{&cad});
    addPairWhenOpen("Project", "Harbour");
    panel.editUserData();
    EXPECT_EQ(cad.UserData()->GetValueByKey("Project"), "Harbour");
    EXPECT_TRUE(edited.takeFirst().at(0).toBool());
    ASSERT_TRUE(panel.inspector()->SetPropertyText("HotSize", "6"));
    EXPECT_TRUE(edited.takeFirst().at(0).toBool());
}

}  // namespace
