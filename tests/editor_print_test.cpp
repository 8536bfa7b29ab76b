// The editor's page setup dialog and its picture exports, over a real canvas
// and real files.
#include "apps/editor/document_state.h"
#include "apps/editor/page_setup_dialog.h"
#include "apps/editor/print_actions.h"
#include "cad/canvas/mycad.h"
#include "support/shapes.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

using namespace faroven;

namespace {
template <class W>
W* field(QWidget& dialog, const char* name) {
    W* widget = dialog.findChild<W*>(name);
    if (!widget) ADD_FAILURE() << "no field " << name;
    return widget;
}

void setSpin(QWidget& dialog, const char* name, int value) { field<QSpinBox>(dialog, name)->setValue(value); }

// Closes the message box the next event loop shows and keeps its text.
std::shared_ptr<QString> closeMessageBoxLater() {
    auto text = std::make_shared<QString>();
    QTimer::singleShot(0, [text] {
        if (auto box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            *text = box->text();
            box->reject();
        }
    });
    return text;
}
}  // namespace

TEST(EditorPageSetup, OkAppliesEveryFieldToTheCanvas) {
    TMyCAD cad;
    PageSetupDialog dialog(&cad);
    field<QComboBox>(dialog, "paperStyle")->setCurrentIndex(int(A3));
    field<QComboBox>(dialog, "orientation")->setCurrentIndex(1);
    // A standard size is shown turned and cannot be typed over.
    EXPECT_EQ(field<QSpinBox>(dialog, "paperWidth")->value(), 420);
    EXPECT_FALSE(field<QSpinBox>(dialog, "paperWidth")->isEnabled());
    field<QLineEdit>(dialog, "headText")->setText("Ground floor");
    auto* alignment = field<QComboBox>(dialog, "headAlignment");
    alignment->setCurrentIndex(alignment->findText("Left"));
    setSpin(dialog, "headDistance", 12);
    field<QLineEdit>(dialog, "footText")->setText("Sheet 1");
    field<QGroupBox>(dialog, "printBorder")->setChecked(true);
    setSpin(dialog, "borderLeft", 5);
    setSpin(dialog, "borderTop", 6);
    setSpin(dialog, "borderRight", 7);
    setSpin(dialog, "borderBottom", 8);
    const bool background = !cad.PrintBackground();
    field<QCheckBox>(dialog, "printBackground")->setChecked(background);
    dialog.accept();

    EXPECT_TRUE(dialog.changedPage());
    EXPECT_EQ(cad.PageStyle(), A3);
    EXPECT_EQ(cad.PageOrientation(), poLandscape);
    EXPECT_EQ(cad.PageWidth(), 420u);
    EXPECT_EQ(cad.PageHeight(), 297u);
    EXPECT_EQ(cad.width(), cad.PageRectAt(cad.Zoom()).Width());
    EXPECT_EQ(cad.PageHead(), "Ground floor");
    EXPECT_EQ(cad.PageHeadAlignment(), taLeftJustify);
    EXPECT_EQ(cad.PageHeadToTop(), 12);
    EXPECT_EQ(cad.PageFoot(), "Sheet 1");
    EXPECT_TRUE(cad.PrintABorder());
    EXPECT_EQ(cad.PrintABordertoLeft(), 5);
    EXPECT_EQ(cad.PrintABordertoTop(), 6);
    EXPECT_EQ(cad.PrintABordertoRight(), 7);
    EXPECT_EQ(cad.PrintABordertoBottom(), 8);
    EXPECT_EQ(cad.PrintBackground(), background);

    // The dialog opens on what the canvas has; OK without an edit is no change.
    PageSetupDialog again(&cad);
    EXPECT_EQ(field<QLineEdit>(again, "headText")->text(), "Ground floor");
    again.accept();
    EXPECT_FALSE(again.changedPage());
}

TEST(EditorPageSetup, ACustomPaperSizesTheCanvasAndItsPictures) {
    TMyCAD cad;
    cad.SetZoom(0.5);
    PageSetupDialog dialog(&cad);
    field<QComboBox>(dialog, "paperStyle")->setCurrentIndex(int(CustomerPage));
    setSpin(dialog, "paperWidth", 300);
    setSpin(dialog, "paperHeight", 200);
    dialog.accept();
    EXPECT_EQ(cad.PageStyle(), CustomerPage);
    EXPECT_EQ(cad.PageWidth(), 300u);
    EXPECT_EQ(cad.PageHeight(), 200u);
    const TRect page = cad.PageRectAt(0.5);
    EXPECT_EQ(cad.PageImage().size(), QSize(page.Width(), page.Height()));

    // Turning a custom paper swaps its sides.
    PageSetupDialog turn(&cad);
    field<QComboBox>(turn, "orientation")->setCurrentIndex(1);
    turn.accept();
    EXPECT_EQ(cad.PageWidth(), 200u);
    EXPECT_EQ(cad.PageHeight(), 300u);
}

TEST(EditorPageSetup, CancelLeavesTheCanvasAsItWas) {
    TMyCAD cad;
    cad.SetPageHead("Plan");
    const PageSettings before = PageSettings::of(&cad);
    PageSetupDialog dialog(&cad);
    field<QComboBox>(dialog, "paperStyle")->setCurrentIndex(int(A0));
    field<QComboBox>(dialog, "orientation")->setCurrentIndex(1);
    field<QLineEdit>(dialog, "headText")->setText("Other");
    field<QGroupBox>(dialog, "printBorder")->setChecked(true);
    setSpin(dialog, "borderTop", 30);
    dialog.reject();
    EXPECT_TRUE(PageSettings::of(&cad) == before);
    EXPECT_EQ(cad.PageHead(), "Plan");
    EXPECT_EQ(cad.width(), cad.PageRectAt(cad.Zoom()).Width());
}

class EditorExport : public ::testing::Test {
protected:
    EditorExport() : document(&cad), actions(&cad, &document, &window, &menu, &exportMenu) {
        test::AddRect(cad, 20, 20, 200, 120);
        cad.SetPageHead("Export");
    }
    QByteArray written(const QString& name) {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QTemporaryDir dir;
    TMyCAD cad;
    DocumentState document;
    QWidget window;
    QMenu menu;
    QMenu exportMenu;
    PrintActions actions;
};

TEST_F(EditorExport, EveryKindWritesItsFileFormat) {
    EXPECT_EQ(exportMenu.actions().size(), 6);
    const struct {
        PrintActions::Picture picture;
        const char* name;
        QByteArray start;
    } kinds[] = {{PrintActions::Picture::Png, "plan.png", "\x89PNG"},
                 {PrintActions::Picture::Jpg, "plan.jpg", "\xFF\xD8\xFF"},
                 {PrintActions::Picture::Bmp, "plan.bmp", "BM"},
                 {PrintActions::Picture::Svg, "plan.svg", "<?xml"},
                 {PrintActions::Picture::Pdf, "plan.pdf", "%PDF"},
                 {PrintActions::Picture::Wmf, "plan.wmf", "\xD7\xCD\xC6\x9A"}};
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.name);
        EXPECT_TRUE(actions.exportTo(kind.picture, dir.filePath(kind.name)));
        EXPECT_TRUE(written(kind.name).startsWith(kind.start));
    }
    EXPECT_TRUE(written("plan.svg").contains("<svg"));

    // The quality reaches the JPG writer.
    ASSERT_TRUE(actions.exportTo(PrintActions::Picture::Jpg, dir.filePath("low.jpg"), 5));
    ASSERT_TRUE(actions.exportTo(PrintActions::Picture::Jpg, dir.filePath("high.jpg"), 100));
    EXPECT_LT(written("low.jpg").size(), written("high.jpg").size());
}

TEST_F(EditorExport, PixelPicturesAreOffWhileThePageIsTooLargeForOne) {
    const auto enabled = [this] {
        QString states;
        for (QAction* action : exportMenu.actions()) states += action->isEnabled() ? u'+' : u'-';
        return states;
    };
    cad.SetPageStyle(A0);
    cad.SetZoom(8);
    actions.update();
    EXPECT_EQ(enabled(), "---+++");  // PNG, JPG, BMP; SVG, PDF and WMF are at true size
    cad.SetZoom(1);
    actions.update();
    EXPECT_EQ(enabled(), "++++++");
}

TEST_F(EditorExport, TheProposedNameIsTheDrawingsWithTheSuffix) {
    EXPECT_EQ(actions.suggestedFileName(PrintActions::Picture::Png), "Untitled.png");
    const QString drawing = dir.filePath("house.fvd");
    ASSERT_TRUE(cad.SaveToFile(drawing));
    document.markSaved(drawing);
    EXPECT_EQ(actions.suggestedFileName(PrintActions::Picture::Pdf), dir.filePath("house.pdf"));
}

TEST_F(EditorExport, AFailedExportIsShownAndWritesNothing) {
    const QString fileName = dir.filePath("missing/plan.png");
    const auto shown = closeMessageBoxLater();
    EXPECT_FALSE(actions.exportTo(PrintActions::Picture::Png, fileName));
    EXPECT_TRUE(shown->contains("plan.png")) << shown->toStdString();
    EXPECT_FALSE(QFile::exists(fileName));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}
