#include "inspector/component_tree.h"

namespace faroven {

struct TComponentTree::Private {};

TComponentTree::TComponentTree(QWidget* owner) : TComponentBase<QTreeWidget>(owner), d(new Private) {}
TComponentTree::~TComponentTree() = default;
TMyCAD* TComponentTree::Canvas() const { return nullptr; }
void TComponentTree::SetCanvas(TMyCAD*) {}
void TComponentTree::Refresh() {}
QTreeWidgetItem* TComponentTree::ItemOf(const QObject*) const { return nullptr; }

}  // namespace faroven
