#include "designer/widget_plugin.h"

#include <QIcon>
#include <QPainter>
#include <QSvgRenderer>

namespace faroven {

TWidgetPlugin::TWidgetPlugin(TWidgetPluginInfo info, QObject* parent) : QObject(parent), m_info(std::move(info)) {}

QString TWidgetPlugin::group() const { return QStringLiteral("Velmoran"); }

// The line drawing rendered at the sizes Designer's views ask for. Designer's
// widget box shows its Qt logo instead of a scalable icon that has no
// pixmaps of its own, so the icon is given pixmaps rather than the SVG file.
QIcon TWidgetPlugin::icon() const {
    QSvgRenderer drawing(m_info.IconFile);
    QIcon icon;
    if (!drawing.isValid()) return icon;
    for (int size : {16, 22, 24, 32, 48, 64}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter);
        painter.end();
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

void TWidgetPlugin::initialize(QDesignerFormEditorInterface* core) {
    if (m_initialized) return;
    if (m_info.Initialize) m_info.Initialize(core);
    m_initialized = true;
}

// The entry Designer adds to a form when the widget is dropped on it.
QString TWidgetPlugin::domXml() const {
    return QStringLiteral(
               "<ui language=\"c++\">\n"
               " <widget class=\"%1\" name=\"%2\">\n"
               "  <property name=\"geometry\">\n"
               "   <rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>\n"
               "  </property>\n"
               "%5"
               " </widget>\n"
               "</ui>\n")
        .arg(m_info.ClassName, m_info.ObjectName)
        .arg(m_info.DefaultSize.width())
        .arg(m_info.DefaultSize.height())
        .arg(m_info.PropertyXml);
}

}  // namespace faroven
