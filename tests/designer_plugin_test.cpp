// The Qt Designer plugin loaded as Designer loads it, a form saved by Designer
// compiled through uic, and the canvas's user data as a form property.
//
// The plugin carries its own copy of the library, so widgets it makes are
// told apart by class name and reached through their meta-object, not cast.
#include "cad/canvas/mycad.h"
#include "ruler/ruler.h"
#include "ui_canvas_form.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QPluginLoader>
#include <QTimer>
#include <QXmlStreamReader>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionManager>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <gtest/gtest.h>
#include <memory>

using namespace faroven;

namespace {

QList<QDesignerCustomWidgetInterface*> pluginWidgets() {
    static QPluginLoader loader(QStringLiteral(FAROVEN_DESIGNER_PLUGIN));
    auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
    EXPECT_NE(collection, nullptr) << loader.errorString().toStdString();
    return collection ? collection->customWidgets() : QList<QDesignerCustomWidgetInterface*>{};
}

std::unique_ptr<QWidget> createPluginWidget(const QString& className) {
    for (QDesignerCustomWidgetInterface* widget : pluginWidgets())
        if (widget->name() == className) return std::unique_ptr<QWidget>(widget->createWidget(nullptr));
    return nullptr;
}

// The class of the widget a domXml adds to a form and the size of its
// geometry; an empty class when the XML is not well formed.
std::pair<QString, QSize> readFormEntry(const QString& xml) {
    QString className;
    QSize size;
    QXmlStreamReader reader(xml);
    while (reader.readNext() != QXmlStreamReader::Invalid && !reader.atEnd()) {
        if (!reader.isStartElement()) continue;
        if (reader.name() == u"widget" && className.isEmpty()) className = reader.attributes().value("class").toString();
        if (reader.name() == u"width") size.setWidth(reader.readElementText().toInt());
        if (reader.name() == u"height") size.setHeight(reader.readElementText().toInt());
    }
    return {reader.hasError() ? QString() : className, size};
}

// A form editor with nothing but the extension manager that the plugin's
// initialize() registers its task menu with.
struct BareFormEditor : QDesignerFormEditorInterface {
    BareFormEditor() { setExtensionManager(new QExtensionManager(this)); }
};

}  // namespace

TEST(DesignerPlugin, ListsTheFiveWidgetsWithIconsHeadersAndAFormEntry) {
    QStringList names;
    for (QDesignerCustomWidgetInterface* widget : pluginWidgets()) {
        const QString name = widget->name();
        const std::string where = name.toStdString();
        names << name;
        EXPECT_EQ(widget->group(), "Velmoran") << where;
        EXPECT_FALSE(widget->icon().pixmap(16, 16).isNull()) << where;
        EXPECT_FALSE(widget->toolTip().isEmpty()) << where;
        // The header uic includes is found on the library's include path.
        EXPECT_TRUE(QFile::exists(QStringLiteral(FAROVEN_TEST_DATA "/../../") + widget->includeFile())) << where;
        const auto [className, size] = readFormEntry(widget->domXml());
        EXPECT_EQ(className, name);
        EXPECT_FALSE(size.isEmpty()) << where;
    }
    EXPECT_EQ(names, (QStringList{"faroven::TRsRuler", "faroven::TRsRulerCorner", "faroven::TMyCAD",
                                  "faroven::TComponentInspector", "faroven::TComponentComboBox"}));
}

TEST(DesignerPlugin, MakesEachWidgetForAForm) {
    for (QDesignerCustomWidgetInterface* plugin : pluginWidgets()) {
        std::unique_ptr<QWidget> widget(plugin->createWidget(nullptr));
        ASSERT_NE(widget, nullptr) << plugin->name().toStdString();
        EXPECT_EQ(QString::fromLatin1(widget->metaObject()->className()), plugin->name());
        widget->resize(300, 200);
        widget->show();
        widget->resize(360, 240);
        EXPECT_EQ(widget->size(), QSize(360, 240)) << plugin->name().toStdString();
        widget->grab();
    }
    // The canvas knows it is in a form: a dashed frame along its edges.
    std::unique_ptr<QWidget> canvas = createPluginWidget("faroven::TMyCAD");
    canvas->resize(200, 150);
    const QImage shot = canvas->grab().toImage();
    int black = 0;
    for (int x = 0; x < shot.width(); ++x) black += shot.pixelColor(x, 0) == Qt::black;
    EXPECT_GT(black, shot.width() / 3);
    EXPECT_LT(black, shot.width());
}

TEST(DesignerPlugin, TaskMenuEditsTheUserDataOfCanvasesOnly) {
    BareFormEditor core;
    for (QDesignerCustomWidgetInterface* plugin : pluginWidgets()) plugin->initialize(&core);
    std::unique_ptr<QWidget> canvas = createPluginWidget("faroven::TMyCAD");
    std::unique_ptr<QWidget> ruler = createPluginWidget("faroven::TRsRuler");

    auto* menu = qt_extension<QDesignerTaskMenuExtension*>(core.extensionManager(), canvas.get());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(qt_extension<QDesignerTaskMenuExtension*>(core.extensionManager(), ruler.get()), nullptr);
    ASSERT_EQ(menu->taskActions().size(), 1);
    QAction* edit = menu->taskActions().first();
    EXPECT_EQ(edit->text(), QString::fromUtf8("Edit User Data\u2026"));
    EXPECT_EQ(menu->preferredEditAction(), edit);

    // Outside a form the pairs go straight to the canvas; confirming the
    // editor without a change keeps them as they were.
    const QStringList pairs = {"part", "A-12", "batch", "3"};
    canvas->setProperty("UserDataPairs", pairs);
    bool dialogShown = false;
    QTimer::singleShot(0, [&] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            dialogShown = true;
            dialog->accept();
        }
    });
    edit->trigger();
    EXPECT_TRUE(dialogShown);
    EXPECT_EQ(canvas->property("UserDataPairs").toStringList(), pairs);
}

TEST(DesignerForm, UicBuildsTheSavedFormWithItsPropertiesAndTheCanvasUserData) {
    QWidget form;
    Ui::CanvasForm ui;
    ui.setupUi(&form);
    EXPECT_EQ(form.findChild<TRsRuler*>("horizontalRuler"), ui.horizontalRuler);
    ASSERT_EQ(form.findChild<TMyCAD*>("canvas"), ui.canvas);
    const TUserData* data = ui.canvas->UserData();
    ASSERT_EQ(data->GetCount(), 2);
    EXPECT_EQ(data->GetKeyByNo(0), "customer");
    EXPECT_EQ(data->GetKeyByNo(1), "revision");
    EXPECT_EQ(data->GetValueByKey("customer"), QString::fromUtf8("Ørsted & Co"));
    EXPECT_EQ(data->GetValueByKey("revision"), "7");
    // Properties set in Designer come through uic's set<Property>() calls.
    EXPECT_TRUE(ui.horizontalRuler->Flat());
    EXPECT_DOUBLE_EQ(ui.horizontalRuler->Offset(), 2.5);
    EXPECT_EQ(ui.canvas->SnapPixels(), 9);
    EXPECT_EQ(ui.canvas->PageHead(), "Site plan");
}

TEST(CanvasUserDataPairs, RoundTripThroughThePropertyWithUniqueKeys) {
    TMyCAD canvas;
    canvas.UserData()->AddKeyandValue("old", "gone");
    // A repeated key is dropped as AddKeyandValue drops it; a key without its
    // value ends the list with an empty one.
    ASSERT_TRUE(canvas.setProperty("UserDataPairs", QStringList{"a", "1", "b", "2", "a", "3", "c"}));
    EXPECT_EQ(canvas.property("UserDataPairs").toStringList(), (QStringList{"a", "1", "b", "2", "c", ""}));
    EXPECT_EQ(canvas.UserData()->GetValueByKey("a"), "1");
    EXPECT_EQ(canvas.UserData()->GetValueByKey("old"), "");

    canvas.setProperty("UserDataPairs", QStringList{});
    EXPECT_EQ(canvas.UserData()->GetCount(), 0);
}
