// TFarovenWidgets: the plugin Qt Designer loads. It lists the library's
// widgets for the widget box, all in the group "Velmoran": the ruler, the
// ruler corner, the canvas, the component inspector and the component combo
// box.
#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

namespace faroven {

class TFarovenWidgets : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)
public:
    explicit TFarovenWidgets(QObject* parent = nullptr);

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return m_widgets; }

private:
    QList<QDesignerCustomWidgetInterface*> m_widgets;
};

}  // namespace faroven
