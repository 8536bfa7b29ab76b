// The object inspector: what the grid lists for shapes and the canvas, each
// kind of value edited through the grid as one undo step with a repaint,
// refused values, shared properties of a multi-selection, and the combo box
// and tree kept in step with the canvas's selection.
#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "inspector/component_combo_box.h"
#include "inspector/component_inspector.h"
#include "inspector/component_tree.h"
#include "inspector/editors/property_editors.h"
#include "inspector/property_delegate.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

// Counts the paint events a widget receives.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() == QEvent::Paint) ++paints;
        return false;
    }
};

// Runs work on the dialog of type D once it is open, then presses OK.
template <class D>
void whenOpen(const std::function<void(D*)>& work) {
    QTimer::singleShot(0, [work] {
        auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        work(dialog);
        dialog->accept();
    });
}

class Inspector : public ::testing::Test {
protected:
    void SetUp() override {
        cad.resize(300, 200);
        rect = AddRect(cad, 10, 10, 60, 60);
        ellipse = AddRect<TMyEllipse>(cad, 100, 10, 150, 60);
        line = AddShape<TMyLine>(cad, {{10, 100}, {150, 100}});
        inspector.OnError = [this](const QString& m) { errors << m; };
    }
    // The number of undo steps recorded.
    int steps() const { return cad.UndoRecords().empty() ? 0 : cad.UndoRecords().back().Step + 1; }
    // Commits a value through the grid's own editor for the row.
    void editInGrid(const QString& path, const std::function<void(QWidget*)>& type) {
        QTreeWidget* grid = inspector.Grid();
        QTreeWidgetItem* item = inspector.ItemOf(path);
        ASSERT_TRUE(item) << path.toStdString();
        const QModelIndex index = grid->model()->index(grid->indexFromItem(item).row(), 1, grid->indexFromItem(item).parent());
        auto* delegate = static_cast<TPropertyDelegate*>(grid->itemDelegate());
        std::unique_ptr<QWidget> editor(delegate->createEditor(grid->viewport(), QStyleOptionViewItem(), index));
        ASSERT_TRUE(editor) << path.toStdString();
        delegate->setEditorData(editor.get(), index);
        type(editor.get());
        delegate->setModelData(editor.get(), grid->model(), index);
    }

    TMyCAD cad;
    TComponentInspector inspector;
    TMyRectangle* rect = nullptr;
    TMyEllipse* ellipse = nullptr;
    TMyLine* line = nullptr;
    QStringList errors;
};

TEST_F(Inspector, ListsTheLibrarysPropertiesWithSubPropertiesAndGreysReadOnlyOnes) {
    inspector.SetObject(rect);
    const QStringList paths = inspector.PropertyPaths();
    for (const char* p : {"Name", "Caption", "Angle", "Locked", "GradientStyle", "Pen", "Pen.Color", "Pen.Width",
                          "Brush.Style", "Font.Name", "Font.Style", "UserData", "ShowSideHot"})
        EXPECT_TRUE(paths.contains(QLatin1String(p))) << p;
    EXPECT_FALSE(paths.contains(QLatin1String("objectName")));
    // Categories head the grid; a set's members are check rows below it.
    EXPECT_EQ(inspector.Grid()->topLevelItem(0)->text(0), "Appearance");
    QTreeWidgetItem* style = inspector.ItemOf("Font.Style");
    ASSERT_EQ(style->childCount(), 4);
    EXPECT_EQ(style->child(0)->text(0), "fsBold");

    inspector.SetObject(&cad);
    EXPECT_TRUE(inspector.HasProperty("GridOperation.GridShow"));
    EXPECT_TRUE(inspector.HasProperty("Layers"));
    EXPECT_FALSE(inspector.HasProperty("geometry"));  // the widget's own properties are not the canvas's
    EXPECT_TRUE(inspector.IsReadOnly("Version"));
    EXPECT_FALSE(inspector.ItemOf("Version")->flags() & Qt::ItemIsEditable);
    EXPECT_NE(inspector.ItemOf("Version")->foreground(1), inspector.ItemOf("Zoom")->foreground(1));
    EXPECT_EQ(inspector.PropertyText("Version"), "2013");

    inspector.SetSortByCategory(false);
    QStringList top;
    for (int i = 0; i < inspector.Grid()->topLevelItemCount(); ++i) top << inspector.Grid()->topLevelItem(i)->text(0);
    QStringList sorted = top;
    sorted.sort();
    EXPECT_EQ(top, sorted);
    EXPECT_TRUE(top.contains("Zoom"));
}

TEST_F(Inspector, EachKindEditedThroughTheGridIsOneUndoStepAndRepaints) {
    cad.show();
    PaintCounter counter;
    cad.installEventFilter(&counter);
    inspector.SetObject(rect);
    auto expectStep = [&](const char* what, int before) {
        EXPECT_EQ(steps(), before + 1) << what;
        EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE") << what;
        const int paints = counter.paints;
        QApplication::processEvents();
        EXPECT_GT(counter.paints, paints) << what;
    };
    int before = steps();

    // Boolean: the value column's check box.
    inspector.ItemOf("Locked")->setCheckState(1, Qt::Checked);
    EXPECT_TRUE(rect->Locked());
    expectStep("bool", before++);

    // Enumerations: a drop-down of names, for the shape's own and its brush's.
    editInGrid("GradientStyle", [](QWidget* e) { static_cast<QComboBox*>(e)->setCurrentText("gsLinearV"); });
    EXPECT_EQ(rect->GradientStyle(), gsLinearV);
    expectStep("shape enum", before++);
    editInGrid("Brush.Style", [](QWidget* e) { static_cast<QComboBox*>(e)->setCurrentText("bsCross"); });
    EXPECT_EQ(rect->Brush()->Style(), bsCross);
    expectStep("enum", before++);

    // Colour: typed as a name into the colour list; the swatch follows and the canvas shows it.
    editInGrid("Brush.Color", [](QWidget* e) { e->findChild<QComboBox*>()->setEditText("clRed"); });
    EXPECT_EQ(rect->Brush()->Color(), clRed);
    EXPECT_EQ(inspector.PropertyText("Brush.Color"), "clRed");
    EXPECT_EQ(inspector.ItemOf("Brush.Color")->icon(1).pixmap(12, 12).toImage().pixelColor(5, 5), QColor(Qt::red));
    expectStep("colour", before++);

    // Integer and real numbers, and a string.
    editInGrid("Pen.Width", [](QWidget* e) { static_cast<QLineEdit*>(e)->setText("3"); });
    EXPECT_EQ(rect->Pen()->Width(), 3);
    expectStep("integer", before++);
    editInGrid("Angle", [](QWidget* e) { static_cast<QLineEdit*>(e)->setText("0.5"); });
    EXPECT_FLOAT_EQ(rect->Angle(), 0.5f);
    expectStep("float", before++);
    editInGrid("Caption", [](QWidget* e) { e->findChild<QLineEdit*>()->setText("Pump"); });
    EXPECT_EQ(rect->Caption(), "Pump");
    expectStep("string", before++);

    // Set: a member's check row, and typed as a set.
    inspector.ItemOf("Font.Style.fsItalic")->setCheckState(1, Qt::Checked);
    EXPECT_TRUE(rect->Font()->Style().Contains(fsItalic));
    expectStep("set member", before++);
    editInGrid("Font.Style", [](QWidget* e) { static_cast<QLineEdit*>(e)->setText("[fsBold,fsUnderline]"); });
    EXPECT_EQ(rect->Font()->Style(), TFontStyles({fsBold, fsUnderline}));
    EXPECT_EQ(inspector.ItemOf("Font.Style.fsItalic")->checkState(1), Qt::Unchecked);
    expectStep("set", before++);

    // Leaving an editor unchanged is no edit.
    editInGrid("Pen.Width", [](QWidget*) {});
    EXPECT_EQ(steps(), before);

    // Undo takes the last edit back.
    cad.Undo();
    EXPECT_TRUE(static_cast<TMyShape*>(cad.GetShapeByNo(0))->Font()->Style().Contains(fsItalic));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(Inspector, DialogsOpenedFromTheGridChangeTheValueAsOneStep) {
    inspector.SetObjects({rect, ellipse});
    int before = steps();
    auto expectStep = [&](const char* what) {
        EXPECT_EQ(steps(), ++before) << what;
        EXPECT_EQ(cad.UndoActionName(), "ACT_CHANGE") << what;
    };
    whenOpen<TStringListEditor>([](TStringListEditor* e) { e->SetLines({"first", "second"}); });
    ASSERT_TRUE(inspector.OpenEditor("MultiInfo"));
    EXPECT_EQ(ellipse->MultiInfo()->Lines(), QStringList({"first", "second"}));
    EXPECT_EQ(inspector.PropertyText("MultiInfo"), "(2 lines)");
    expectStep("strings");

    whenOpen<TColorEditor>([](TColorEditor* e) { e->SetColor(clBtnFace); });
    ASSERT_TRUE(inspector.OpenEditor("Pen.Color"));
    EXPECT_EQ(rect->Pen()->Color(), clBtnFace);  // a system colour stays one
    expectStep("colour");

    whenOpen<TFontEditor>([](TFontEditor* e) {
        TFont f;
        e->GetFont(f);
        f.SetSize(20);
        f.SetStyle({fsBold});
        e->SetFont(f);
    });
    ASSERT_TRUE(inspector.OpenEditor("Font"));
    EXPECT_EQ(ellipse->Font()->Size(), 20);
    EXPECT_TRUE(rect->Font()->Style().Contains(fsBold));
    expectStep("font");

    rect->UserData()->AddKeyandValue("Owner", "Ana");
    inspector.RefreshValues();
    whenOpen<TUserDataEditor>([](TUserDataEditor* e) { e->AddPair("Tag", "7"); });
    ASSERT_TRUE(inspector.OpenEditor("UserData"));
    for (TMyShape* s : std::vector<TMyShape*>{rect, ellipse}) {
        ASSERT_EQ(s->UserData()->GetCount(), 2);  // the first shape's pairs, edited, on both
        EXPECT_EQ(s->UserData()->GetKeyByNo(1), "Tag");
    }
    expectStep("user data");
    cad.Undo();
    EXPECT_EQ(cad.GetShapeByNo(1)->UserData()->GetCount(), 0);

    // Cancel changes nothing.
    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_FALSE(inspector.OpenEditor("Caption"));
    EXPECT_EQ(steps(), before - 1);

    // The canvas's picture and its layer collection.
    inspector.SetObject(&cad);
    whenOpen<TPictureEditor>([](TPictureEditor* e) {
        TBitmap b;
        b.SetSize(40, 30);
        e->SetPicture(b);
    });
    ASSERT_TRUE(inspector.OpenEditor("BkBitmap"));
    EXPECT_EQ(cad.BkBitmap()->Width(), 40);
    EXPECT_EQ(inspector.PropertyText("BkBitmap"), "(40 × 30)");
    QTimer::singleShot(0, [] {
        auto* e = qobject_cast<TLayerCollectionEditor*>(QApplication::activeModalWidget());
        ASSERT_TRUE(e);
        e->AddLayer("Notes");
        e->close();
    });
    ASSERT_TRUE(inspector.OpenEditor("Layers"));
    EXPECT_EQ(cad.GetLayerNameByID(cad.GetLayerIdByNo(cad.GetLayersCount() - 1)), "Notes");
    EXPECT_EQ(inspector.PropertyText("Layers"), QStringLiteral("(%1 layers)").arg(cad.GetLayersCount()));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(Inspector, RefusedAndInvalidValuesKeepTheOldValueAndLeaveNoStep) {
    inspector.SetObject(rect);
    rect->Pen()->SetWidth(2);
    const int before = steps();
    struct Case { const char* path; QVariant value; const char* says; };
    for (const Case& c : {Case{"Pen.Width", -1, "refused"},           // the pen ignores negative widths
                          Case{"Pen.Width", "wide", "whole number"},
                          Case{"Brush.Style", 99, "not one of its values"},
                          Case{"Brush.Color", "clPink", "colour"},
                          Case{"Font.Charset", 300, "out of range"},
                          Case{"Font.Style", "[fsBold,fsShadow]", "fsShadow"}}) {
        errors.clear();
        EXPECT_FALSE(inspector.SetPropertyValue(c.path, c.value)) << c.path;
        ASSERT_EQ(errors.size(), 1) << c.path;
        EXPECT_TRUE(errors.front().contains(QLatin1String(c.path))) << errors.front().toStdString();
        EXPECT_TRUE(errors.front().contains(QLatin1String(c.says))) << errors.front().toStdString();
    }
    EXPECT_EQ(rect->Pen()->Width(), 2);
    EXPECT_EQ(inspector.PropertyText("Pen.Width"), "2");
    EXPECT_EQ(rect->Brush()->Style(), bsSolid);
    EXPECT_EQ(steps(), before);
    inspector.SetObject(&cad);
    EXPECT_FALSE(inspector.SetPropertyValue("Version", "2024"));
}

TEST_F(Inspector, ASelectionShowsSharedPropertiesAndSetsThemOnAllAsOneStep) {
    inspector.SetObjects({rect, ellipse, line});
    EXPECT_TRUE(inspector.HasProperty("Pen.Color"));
    EXPECT_FALSE(inspector.HasProperty("ArrowStyle"));   // lines only
    EXPECT_FALSE(inspector.HasProperty("ShowSideHot"));  // rectangles only
    rect->SetCaption("a");
    ellipse->SetCaption("b");
    inspector.RefreshValues();
    EXPECT_EQ(inspector.PropertyText("Caption"), "");  // values that differ show blank
    rect->SetLocked(true);
    inspector.RefreshValues();
    EXPECT_EQ(inspector.ItemOf("Locked")->checkState(1), Qt::PartiallyChecked);

    const int before = steps();
    ASSERT_TRUE(inspector.SetPropertyText("Pen.Color", "clBlue"));
    for (TMyShape* s : std::vector<TMyShape*>{rect, ellipse, line}) EXPECT_EQ(s->Pen()->Color(), clBlue);
    EXPECT_EQ(steps(), before + 1);
    EXPECT_EQ(cad.UndoRecords().size() - size_t(std::count_if(cad.UndoRecords().begin(), cad.UndoRecords().end(),
                                                   [&](const TUndoRecord& r) { return r.Step < before; })), 3u);

    // A refusal on one object keeps the old values on all of them.
    line->Pen()->SetWidth(4);
    EXPECT_TRUE(inspector.SetPropertyValue("Pen.Width", 2));
    EXPECT_FALSE(inspector.SetPropertyValue("Pen.Width", -5));
    for (TMyShape* s : std::vector<TMyShape*>{rect, ellipse, line}) EXPECT_EQ(s->Pen()->Width(), 2);

    cad.Undo();  // the width step
    cad.Undo();  // the colour step
    for (int i = 0; i < 3; ++i) EXPECT_EQ(cad.GetShapeByNo(i)->Pen()->Color(), clBlack);
}

TEST_F(Inspector, CanvasPropertiesChangeWithoutUndoAndTheGridFollowsTheSelection) {
    inspector.SetCanvas(&cad);
    EXPECT_EQ(inspector.Objects(), std::vector<QObject*>{&cad});
    const int before = steps();
    ASSERT_TRUE(inspector.SetPropertyText("GridOperation.GridShow", "True"));
    EXPECT_TRUE(cad.GridOperation()->GridShow());
    ASSERT_TRUE(inspector.SetPropertyText("ColorOfBackGround", "clYellow"));
    EXPECT_EQ(cad.ColorOfBackGround(), clYellow);
    EXPECT_EQ(steps(), before);

    cad.AddWorkingShapes(rect);
    cad.AddWorkingShapes(line);
    EXPECT_EQ(inspector.Objects().size(), 1u);  // updated once, when the event loop runs
    QApplication::processEvents();
    EXPECT_EQ(inspector.Objects(), (std::vector<QObject*>{rect, line}));

    // The shown shape is deleted: the grid falls back to the canvas.
    cad.DeleteSelectedShapes();
    QApplication::processEvents();
    EXPECT_EQ(inspector.Objects(), std::vector<QObject*>{&cad});
}

TEST_F(Inspector, ComboBoxAndTreeStayInStepWithTheCanvasSelection) {
    cad.setObjectName("Canvas1");
    const int group = cad.GroupShapes({rect, ellipse});
    TMyShape* groupShape = cad.GetShapeByNo(group);
    cad.RemoveAllWorkingShapes();
    TComponentComboBox combo;
    TComponentTree tree;
    combo.SetCanvas(&cad);
    combo.SetInspector(&inspector);
    tree.SetCanvas(&cad);
    inspector.SetCanvas(&cad);

    ASSERT_EQ(combo.count(), 1 + cad.GetShapesCount());
    EXPECT_EQ(combo.itemText(0), "Canvas1: TMyCAD");
    EXPECT_EQ(combo.itemText(1), rect->Name() + ": TMyRectangle");
    EXPECT_EQ(combo.currentIndex(), 0);

    // Choosing in the list selects on the canvas and shows the shape at once.
    const int lineRow = combo.findText(line->Name() + ": TMyLine");
    combo.setCurrentIndex(lineRow);
    emit combo.activated(lineRow);
    EXPECT_EQ(cad.WorkingShapes(), std::vector<TMyShape*>{line});
    EXPECT_EQ(inspector.Objects(), std::vector<QObject*>{line});

    // A selection made on the canvas shows in the list and the tree.
    cad.RemoveAllWorkingShapes();
    cad.AddWorkingShapes(groupShape);
    QApplication::processEvents();
    EXPECT_EQ(combo.currentText(), TComponentComboBox::EntryText(groupShape));
    EXPECT_TRUE(tree.ItemOf(groupShape)->isSelected());
    EXPECT_FALSE(tree.ItemOf(line)->isSelected());
    // Several shapes: the list shows none.
    cad.AddWorkingShapes(line);
    QApplication::processEvents();
    EXPECT_EQ(combo.currentIndex(), -1);

    // Members hang below their group; choosing one in the tree selects it alone.
    QTreeWidgetItem* member = tree.ItemOf(ellipse);
    ASSERT_TRUE(member);
    EXPECT_EQ(member->parent(), tree.ItemOf(groupShape));
    EXPECT_EQ(tree.ItemOf(groupShape)->parent(), tree.ItemOf(&cad));
    tree.clearSelection();
    member->setSelected(true);
    EXPECT_EQ(cad.WorkingShapes(), std::vector<TMyShape*>{ellipse});
    QApplication::processEvents();
    EXPECT_EQ(inspector.Objects(), std::vector<QObject*>{ellipse});
    EXPECT_EQ(combo.currentText(), TComponentComboBox::EntryText(ellipse));

    // Renaming through the inspector shows in the list when it is next built.
    ASSERT_TRUE(inspector.SetPropertyValue("Name", "Valve"));
    combo.Refresh();
    EXPECT_EQ(combo.currentText(), "Valve: TMyEllipse");
}

}  // namespace
