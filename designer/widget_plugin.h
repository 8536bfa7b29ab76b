// TWidgetPlugin: how Qt Designer sees one of the library's widgets — its
// name, group, icon, header and default size in the widget box, and the
// function that makes an instance for a form.
#pragma once

#include <QObject>
#include <QSize>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <functional>

namespace faroven {

struct TWidgetPluginInfo {
    QString ClassName;   // with the namespace: "faroven::TMyCAD"
    QString ObjectName;  // base of the object names Designer gives instances
    QString IncludeFile;
    QString IconFile;
    QString Description;  // the tooltip and the What's This text
    QSize DefaultSize;
    // Properties the form entry sets, as <property> elements; may be empty.
    QString PropertyXml;
    std::function<QWidget*(QWidget* parent)> Create;
    // Registers extensions with the form editor once; may be empty.
    std::function<void(QDesignerFormEditorInterface* core)> Initialize;
};

class TWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
public:
    TWidgetPlugin(TWidgetPluginInfo info, QObject* parent = nullptr);

    QString name() const override { return m_info.ClassName; }
    QString group() const override;
    QString toolTip() const override { return m_info.Description; }
    QString whatsThis() const override { return m_info.Description; }
    QString includeFile() const override { return m_info.IncludeFile; }
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override { return m_info.Create(parent); }
    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface* core) override;
    QString domXml() const override;

private:
    TWidgetPluginInfo m_info;
    bool m_initialized = false;
};

}  // namespace faroven
