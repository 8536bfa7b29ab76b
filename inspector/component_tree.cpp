#include "inspector/component_tree.h"

#include "cad/canvas/mycad.h"
#include "inspector/component_entries.h"
#include "inspector/deferred_call.h"

#include <QPointer>
#include <unordered_map>

namespace faroven {

namespace {
constexpr int ComponentRole = Qt::UserRole + 1;
}

struct TComponentTree::Private {
    explicit Private(TComponentTree* self) : refresh(self, [self] { self->Refresh(); }) {}
    QPointer<TMyCAD> canvas;
    std::unordered_map<const QObject*, QTreeWidgetItem*> items;
    TDeferredCall refresh;
    bool syncing = false;  // the tree is following the canvas: selection changes are not choices
};

TComponentTree::TComponentTree(QWidget* owner) : TComponentBase<QTreeWidget>(owner), d(new Private(this)) {
    setHeaderHidden(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (d->syncing || !d->canvas) return;
        const QList<QTreeWidgetItem*> chosen = selectedItems();
        std::vector<TMyShape*> shapes;
        for (QTreeWidgetItem* item : chosen)
            if (auto* s = qobject_cast<TMyShape*>(item->data(0, ComponentRole).value<QObject*>())) shapes.push_back(s);
        d->syncing = true;
        if (shapes.size() <= 1) SelectComponentOnCanvas(d->canvas, shapes.empty() ? static_cast<QObject*>(d->canvas) : shapes.front());
        else {
            d->canvas->RemoveAllWorkingShapes();
            for (TMyShape* s : shapes) d->canvas->AddWorkingShapes(s);
        }
        d->syncing = false;
    });
}

TComponentTree::~TComponentTree() = default;

TMyCAD* TComponentTree::Canvas() const { return d->canvas; }

void TComponentTree::SetCanvas(TMyCAD* canvas) {
    if (d->canvas == canvas) return;
    if (d->canvas) disconnect(d->canvas, nullptr, this, nullptr);
    d->canvas = canvas;
    if (canvas)
        connect(canvas, &TMyCAD::selectionChanged, this, [this] {
            if (!d->syncing) d->refresh.Request();
        });
    Refresh();
}

void TComponentTree::Refresh() {
    d->syncing = true;
    clear();
    d->items.clear();
    if (d->canvas) {
        auto* root = new QTreeWidgetItem(this, {ComponentEntryText(d->canvas)});
        root->setData(0, ComponentRole, QVariant::fromValue<QObject*>(d->canvas));
        d->items[d->canvas] = root;
        const auto& shapes = d->canvas->MyShapes();
        // Members hang below their group, whatever their place in the z-order.
        std::function<void(QTreeWidgetItem*, TMyShape*)> add = [&](QTreeWidgetItem* parent, TMyShape* s) {
            auto* item = new QTreeWidgetItem(parent, {ComponentEntryText(s)});
            item->setData(0, ComponentRole, QVariant::fromValue<QObject*>(s));
            d->items[s] = item;
            for (int32_t no : s->ChildShapeNos())
                if (no >= 0 && size_t(no) < shapes.size() && shapes[size_t(no)] && shapes[size_t(no)] != s)
                    add(item, shapes[size_t(no)]);
        };
        for (TMyShape* s : shapes)
            if (s && !s->HasParentShape()) add(root, s);
        root->setExpanded(true);
        for (TMyShape* s : d->canvas->WorkingShapes())
            if (auto it = d->items.find(s); it != d->items.end()) {
                it->second->setSelected(true);
                scrollToItem(it->second);
            }
    }
    d->syncing = false;
}

QTreeWidgetItem* TComponentTree::ItemOf(const QObject* component) const {
    auto it = d->items.find(component);
    return it == d->items.end() ? nullptr : it->second;
}

}  // namespace faroven
