#include "inspector/component_inspector.h"

#include <QTreeWidget>
#include <QVBoxLayout>

namespace faroven {

struct TComponentInspector::Private {
    QTreeWidget* grid = nullptr;
};

TComponentInspector::TComponentInspector(QWidget* owner) : TComponentBase<QWidget>(owner), d(new Private) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    d->grid = new QTreeWidget(this);
    layout->addWidget(d->grid);
}
TComponentInspector::~TComponentInspector() = default;
TMyCAD* TComponentInspector::Canvas() const { return nullptr; }
void TComponentInspector::SetCanvas(TMyCAD*) {}
void TComponentInspector::SetObjects(const std::vector<QObject*>&) {}
std::vector<QObject*> TComponentInspector::Objects() const { return {}; }
bool TComponentInspector::SortByCategory() const { return true; }
void TComponentInspector::SetSortByCategory(bool) {}
QStringList TComponentInspector::PropertyPaths() const { return {}; }
bool TComponentInspector::HasProperty(const QString&) const { return false; }
bool TComponentInspector::IsReadOnly(const QString&) const { return false; }
QVariant TComponentInspector::PropertyValue(const QString&) const { return {}; }
QString TComponentInspector::PropertyText(const QString&) const { return {}; }
bool TComponentInspector::SetPropertyValue(const QString&, const QVariant&) { return false; }
bool TComponentInspector::SetPropertyText(const QString&, const QString&) { return false; }
QString TComponentInspector::LastError() const { return {}; }
bool TComponentInspector::OpenEditor(const QString&) { return false; }
bool TComponentInspector::HasEditor(const QString&) const { return false; }
void TComponentInspector::RefreshValues() {}
QTreeWidget* TComponentInspector::Grid() const { return d->grid; }
QTreeWidgetItem* TComponentInspector::ItemOf(const QString&) const { return nullptr; }

}  // namespace faroven
