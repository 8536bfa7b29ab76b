#include "designer/widget_collection.h"

#include "cad/canvas/mycad.h"
#include "designer/user_data_task_menu.h"
#include "designer/widget_plugin.h"
#include "inspector/component_combo_box.h"
#include "inspector/component_inspector.h"
#include "ruler/ruler.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QExtensionManager>

namespace faroven {

namespace {

// Widgets made for a form know it, so that they can show themselves as in a
// designer (the canvas draws a dashed frame round its bounds).
template <class Widget>
QWidget* createDesigning(QWidget* parent) {
    auto* widget = new Widget(parent);
    widget->SetDesigning(true);
    return widget;
}

void registerCanvasTaskMenu(QDesignerFormEditorInterface* core) {
    QExtensionManager* manager = core ? core->extensionManager() : nullptr;
    if (!manager) return;
    manager->registerExtensions(new TUserDataTaskMenuFactory(manager), Q_TYPEID(QDesignerTaskMenuExtension));
}

// A canvas enters a form with its user data marked not translatable: uic then
// sets the pairs once in setupUi, not in retranslateUi at every change of
// language, and lupdate does not offer them to translators.
const char* const canvasFormProperties =
    "  <property name=\"UserDataPairs\">\n"
    "   <stringlist notr=\"true\"/>\n"
    "  </property>\n";

}  // namespace

TFarovenWidgets::TFarovenWidgets(QObject* parent) : QObject(parent) {
    const TWidgetPluginInfo widgets[] = {
        {QStringLiteral("faroven::TRsRuler"), QStringLiteral("ruler"), QStringLiteral("ruler/ruler.h"),
         QStringLiteral(":/faroven/designer/ruler.svg"),
         QStringLiteral("A ruler with ticks and labels in a chosen unit, to place beside a canvas"), QSize(400, 25), {},
         createDesigning<TRsRuler>, {}},
        {QStringLiteral("faroven::TRsRulerCorner"), QStringLiteral("rulerCorner"), QStringLiteral("ruler/ruler.h"),
         QStringLiteral(":/faroven/designer/ruler_corner.svg"),
         QStringLiteral("The square where two rulers meet, showing the unit"), QSize(25, 25), {},
         createDesigning<TRsRulerCorner>, {}},
        {QStringLiteral("faroven::TMyCAD"), QStringLiteral("canvas"), QStringLiteral("cad/canvas/mycad.h"),
         QStringLiteral(":/faroven/designer/canvas.svg"),
         QStringLiteral("The drawing canvas: shapes on a page, edited with the mouse"), QSize(400, 300),
         QString::fromLatin1(canvasFormProperties),
         createDesigning<TMyCAD>, registerCanvasTaskMenu},
        {QStringLiteral("faroven::TComponentInspector"), QStringLiteral("componentInspector"),
         QStringLiteral("inspector/component_inspector.h"), QStringLiteral(":/faroven/designer/inspector.svg"),
         QStringLiteral("A property grid showing and editing the canvas or its selected shapes"), QSize(250, 400), {},
         createDesigning<TComponentInspector>, {}},
        {QStringLiteral("faroven::TComponentComboBox"), QStringLiteral("componentComboBox"),
         QStringLiteral("inspector/component_combo_box.h"), QStringLiteral(":/faroven/designer/combo_box.svg"),
         QStringLiteral("A drop-down of the canvas and its shapes that selects the one chosen"), QSize(250, 24), {},
         createDesigning<TComponentComboBox>, {}},
    };
    for (const TWidgetPluginInfo& info : widgets) m_widgets.append(new TWidgetPlugin(info, this));
}

}  // namespace faroven
