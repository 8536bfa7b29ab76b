// The inspector's modal property editors, driven through their public API
// without a modal loop (or with one closed by a timer): values round trip,
// refusals keep the old value and say why, and the layer editor reaches the
// canvas.
#include "cad/canvas/mycad.h"
#include "inspector/editors/property_editors.h"
#include "support/test_support.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {
template <class W>
W* child(QWidget& dialog, const char* name) {
    W* widget = dialog.findChild<W*>(name);
    if (!widget) ADD_FAILURE() << "no child " << name;
    return widget;
}

// Runs action on the modal dialog of type D that the next event loop shows.
template <class D, class F>
void onModal(F action) {
    QTimer::singleShot(0, [action] {
        if (auto dialog = qobject_cast<D*>(QApplication::activeModalWidget())) action(dialog);
        else ADD_FAILURE() << "no modal dialog";
    });
}

QStringList column(const QTableWidget* grid, int col) {
    QStringList texts;
    for (int row = 0; row < grid->rowCount(); ++row) texts << grid->item(row, col)->text();
    return texts;
}

QStringList keys(const TUserData& data) {
    QStringList out;
    for (const TUserDataRecord& r : data.Records()) out << r.Key;
    return out;
}
}  // namespace

TEST(StringListEditor, LinesRoundTripAndAFinalNewlineEndsTheLastLine) {
    TStringListEditor editor;
    auto* count = child<QLabel>(editor, "lineCount");
    for (const QStringList& lines : {QStringList{"a", "", "b"}, QStringList{"x", ""}, QStringList{""}, QStringList{}})
    {
        editor.SetLines(lines);
        EXPECT_EQ(editor.Lines(), lines);
    }
    EXPECT_EQ(count->text(), "0 lines");

    editor.TextEdit()->setPlainText("one\ntwo\n");
    EXPECT_EQ(editor.Lines(), (QStringList{"one", "two"}));
    EXPECT_EQ(count->text(), "2 lines");
    editor.TextEdit()->setPlainText("one\ntwo\n\n");
    EXPECT_EQ(editor.Lines(), (QStringList{"one", "two", ""}));

    QStringList lines{"kept"};
    onModal<TStringListEditor>([](TStringListEditor* d) {
        d->TextEdit()->setPlainText("new\n");
        d->accept();
    });
    EXPECT_TRUE(TStringListEditor::Edit(lines));
    EXPECT_EQ(lines, QStringList{"new"});
    onModal<TStringListEditor>([](TStringListEditor* d) { d->accept(); });
    EXPECT_FALSE(TStringListEditor::Edit(lines)) << "OK without a change takes nothing over";
}

TEST(ColorEditor, ASystemColourStaysSystemAndACustomOneIsRGB) {
    TColorEditor editor;
    auto* name = child<QLineEdit>(editor, "nameEdit");
    editor.SetColor(clBtnFace);
    EXPECT_EQ(editor.Color(), TColor(0x8000000F));
    EXPECT_EQ(name->text(), "clBtnFace");
    EXPECT_EQ(editor.ColorList()->currentItem()->text(), "clBtnFace");
    const QImage swatch = child<QLabel>(editor, "preview")->pixmap().toImage();
    EXPECT_EQ(swatch.pixel(swatch.width() / 2, swatch.height() / 2), ToQRgb(clBtnFace));

    editor.ColorList()->setCurrentItem(editor.ColorList()->findItems("clInfoBk", Qt::MatchExactly).value(0));
    EXPECT_EQ(editor.Color(), clInfoBk);

    onModal<QColorDialog>([](QColorDialog* d) {
        d->setCurrentColor(QColor(10, 20, 30));
        d->accept();
    });
    editor.CustomButton()->click();
    EXPECT_EQ(editor.Color(), RGB(10, 20, 30));
    EXPECT_EQ(name->text(), "$001E140A");
    EXPECT_EQ(editor.ColorList()->currentItem(), nullptr);

    // The value field reads names and hex; anything else gives the shown value back.
    name->setText("clHighlight");
    emit name->editingFinished();
    EXPECT_EQ(editor.Color(), clHighlight);
    name->setText("greenish");
    emit name->editingFinished();
    EXPECT_EQ(editor.Color(), clHighlight);
    EXPECT_EQ(name->text(), "clHighlight");
}

TEST(FontEditor, EveryFieldRoundTripsAndThePreviewFollows) {
    TFont font;
    font.SetName("No Such Face Installed");
    font.SetSize(14);
    font.SetColor(clNavy);
    font.SetStyle({fsBold, fsUnderline});
    font.SetPitch(fpFixed);
    font.SetCharset(ANSI_CHARSET);
    TFontEditor editor;
    editor.SetFont(font);
    TFont out;
    editor.GetFont(out);
    EXPECT_EQ(out.Name(), font.Name());
    EXPECT_EQ(out.Size(), 14);
    EXPECT_EQ(out.Color(), clNavy);
    EXPECT_EQ(out.Style(), font.Style());
    EXPECT_EQ(out.Pitch(), fpFixed);
    EXPECT_EQ(out.Charset(), ANSI_CHARSET);

    child<QCheckBox>(editor, "italic")->setChecked(true);
    child<QSpinBox>(editor, "size")->setValue(30);
    editor.GetFont(out);
    EXPECT_TRUE(out.Style().Contains(fsItalic));
    EXPECT_EQ(editor.Preview()->font(), out.ToQFont());
    EXPECT_TRUE(editor.Preview()->font().italic());
    editor.SetFontColor(clRed);
    EXPECT_EQ(editor.Preview()->palette().color(QPalette::WindowText), ToQColor(clRed));
}

class PictureEditorFiles : public ::testing::Test {
protected:
    QString path(const char* name) const { return dir.filePath(name); }
    QTemporaryDir dir;
    TPictureEditor editor;
    QStringList errors;
    void SetUp() override {
        editor.OnError = [this](const QString& m) { errors << m; };
    }
};

TEST_F(PictureEditorFiles, LoadTakesThePixelsAndABrokenFileKeepsThePicture) {
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(qRgb(10, 20, 30));
    image.setPixel(2, 1, qRgb(200, 100, 50));
    image.setPixel(0, 1, qRgba(0, 0, 0, 0));
    ASSERT_TRUE(image.save(path("in.png")));
    ASSERT_TRUE(editor.LoadFromFile(path("in.png")));
    EXPECT_EQ(PixelAt(editor.Picture(), 0, 0), RGB(10, 20, 30));
    EXPECT_EQ(PixelAt(editor.Picture(), 2, 1), RGB(200, 100, 50));
    EXPECT_EQ(PixelAt(editor.Picture(), 0, 1), clWhite) << "transparency becomes white";
    EXPECT_EQ(editor.SizeLabel()->text(), "3 × 2");

    QFile broken(path("broken.png"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("not a picture at all");
    broken.close();
    EXPECT_FALSE(editor.LoadFromFile(path("broken.png")));
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].contains("broken.png")) << errors[0].toStdString();
    EXPECT_EQ(editor.Picture().Width(), 3);
    EXPECT_EQ(PixelAt(editor.Picture(), 2, 1), RGB(200, 100, 50));

    // Saved in both formats, the pixels come back.
    for (const char* name : {"out.png", "out.bmp"}) {
        ASSERT_TRUE(editor.SaveToFile(path(name))) << name;
        TPictureEditor again;
        ASSERT_TRUE(again.LoadFromFile(path(name)));
        EXPECT_EQ(again.Picture().Image().convertToFormat(QImage::Format_RGB32),
                  editor.Picture().Image().convertToFormat(QImage::Format_RGB32)) << name;
    }

    editor.Clear();
    EXPECT_TRUE(editor.Picture().Empty());
    EXPECT_EQ(editor.SizeLabel()->text(), "(none)");
    QString error;
    EXPECT_FALSE(editor.SaveToFile(path("empty.png"), &error));
    EXPECT_FALSE(error.isEmpty());
}

class UserDataEditor : public ::testing::Test {
protected:
    void SetUp() override {
        editor.OnError = [this](const QString& m) { errors << m; };
    }
    TUserDataEditor editor;
    QStringList errors;
};

TEST_F(UserDataEditor, KeysStayUniqueAsAddKeyandValueKeepsThem) {
    editor.AddNewPair();
    editor.AddNewPair();
    EXPECT_EQ(keys(editor.UserData()), (QStringList{"Key1", "Key2"}));
    EXPECT_FALSE(editor.AddPair("Key1", "v"));
    EXPECT_FALSE(editor.AddPair("", "v"));
    EXPECT_EQ(errors.size(), 2);

    // Renaming in the grid goes through RenameKey: a taken key is refused and the old one comes back.
    editor.Grid()->item(1, 0)->setText("Key1");
    EXPECT_EQ(editor.Grid()->item(1, 0)->text(), "Key2");
    ASSERT_EQ(errors.size(), 3);
    EXPECT_TRUE(errors[2].contains("Key1") && errors[2].contains("Key2")) << errors[2].toStdString();
    EXPECT_FALSE(editor.RenameKey(0, ""));
    EXPECT_EQ(keys(editor.UserData()), (QStringList{"Key1", "Key2"}));

    EXPECT_TRUE(editor.RenameKey(1, "key1")) << "keys compare case-sensitively";
    editor.Grid()->item(0, 1)->setText("a value");
    EXPECT_EQ(editor.UserData().GetValueByKey("Key1"), "a value");
    EXPECT_EQ(editor.UserData().GetValueByKey("key1"), "");
    EXPECT_EQ(errors.size(), 4);
}

TEST_F(UserDataEditor, DeleteAndMoveKeepTheOrder) {
    TUserData data;
    for (const char* key : {"a", "b", "c", "d"}) data.AddKeyandValue(key, QString(key).toUpper());
    editor.SetUserData(data);
    editor.DeleteRow(1);
    EXPECT_EQ(keys(editor.UserData()), (QStringList{"a", "c", "d"}));
    editor.MoveRow(2, -1);
    EXPECT_EQ(keys(editor.UserData()), (QStringList{"a", "d", "c"}));
    editor.MoveRow(0, +1);
    editor.MoveRow(0, -1);
    EXPECT_EQ(keys(editor.UserData()), (QStringList{"d", "a", "c"}));
    EXPECT_EQ(column(editor.Grid(), 0), (QStringList{"d", "a", "c"}));
    EXPECT_EQ(column(editor.Grid(), 1), (QStringList{"D", "A", "C"}));
}

TEST(UserDataEditorDialog, CancelLeavesTheDataAloneAndOkTakesTheEdit) {
    TUserData data;
    data.AddKeyandValue("Owner", "Ann");
    TUserData before;
    before.Assign(data);
    onModal<TUserDataEditor>([](TUserDataEditor* d) {
        d->AddNewPair();
        d->DeleteRow(0);
        d->reject();
    });
    EXPECT_FALSE(TUserDataEditor::Edit(data));
    EXPECT_EQ(data, before);

    onModal<TUserDataEditor>([](TUserDataEditor* d) {
        d->SetValue(0, "Bob");
        d->accept();
    });
    EXPECT_TRUE(TUserDataEditor::Edit(data));
    EXPECT_EQ(data.GetValueByKey("Owner"), "Bob");
}

TEST(LayerCollectionEditor, EditsReachTheCanvasAtOnce) {
    TMyCAD cad;
    TLayerCollectionEditor editor(&cad);
    QStringList errors;
    editor.OnError = [&errors](const QString& m) { errors << m; };
    QSignalSpy changes(&editor, &TLayerCollectionEditor::layersChanged);

    ASSERT_TRUE(editor.AddLayer("Walls"));
    EXPECT_EQ(cad.GetLayerNoByName("Walls"), 1);
    EXPECT_EQ(column(editor.Grid(), 0), (QStringList{"Layer0", "Walls"}));
    EXPECT_FALSE(editor.AddLayer("Walls"));

    editor.Grid()->item(1, 0)->setText("Layer0");
    EXPECT_EQ(cad.GetLayerNameByID(cad.GetLayerIdByNo(1)), "Walls");
    EXPECT_EQ(editor.Grid()->item(1, 0)->text(), "Walls");
    EXPECT_EQ(errors.size(), 2);
    EXPECT_TRUE(editor.RenameLayer(1, "Doors"));
    EXPECT_EQ(cad.GetLayerNoByName("Doors"), 1);

    // The check box in the grid reaches the canvas.
    editor.Grid()->item(1, 1)->setCheckState(Qt::Unchecked);
    EXPECT_FALSE(cad.IsVisibleLayerByID(cad.GetLayerIdByNo(1)));
    editor.SetLayerVisible(1, true);
    EXPECT_TRUE(cad.IsVisibleLayerByID(cad.GetLayerIdByNo(1)));
    editor.SetCurrentRow(0);
    EXPECT_EQ(cad.CurrentLayerId(), cad.GetLayerIdByNo(0));

    EXPECT_TRUE(editor.DeleteLayer(0));
    EXPECT_EQ(column(editor.Grid(), 0), QStringList{"Doors"});
    EXPECT_FALSE(editor.DeleteLayer(0)) << "the last layer stays";
    EXPECT_EQ(cad.GetLayersCount(), 1);
    ASSERT_EQ(errors.size(), 3);
    EXPECT_TRUE(errors[2].contains("Doors"));
    EXPECT_EQ(changes.count(), 6);
}
