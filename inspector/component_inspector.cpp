#include "inspector/component_inspector.h"

#include "cad/canvas/mycad.h"
#include "inspector/color_names.h"
#include "inspector/deferred_call.h"
#include "inspector/editors/property_editors.h"
#include "inspector/property_delegate.h"
#include "inspector/property_edit.h"
#include "inspector/property_node.h"
#include "inspector/property_value.h"

#include <QHeaderView>
#include <QMessageBox>
#include <QPointer>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <map>
#include <utility>

namespace faroven {

namespace {

// Rows of a set's members carry the member's bits besides the set's path.
constexpr int MemberBitsRole = TPropertyDelegate::PathRole + 1;

// Values edited in their own dialog, in place even where the property has no setter.
bool editedInPlace(TPropertyKind kind) {
    return kind == TPropertyKind::Font || kind == TPropertyKind::UserData || kind == TPropertyKind::Picture ||
           kind == TPropertyKind::Layers;
}

bool hasDialog(TPropertyKind kind) {
    switch (kind) {
    case TPropertyKind::String: case TPropertyKind::Strings: case TPropertyKind::Color: case TPropertyKind::Font:
    case TPropertyKind::UserData: case TPropertyKind::Picture: case TPropertyKind::Layers:
        return true;
    default:
        return false;
    }
}

using ObjectEdit = std::function<void(const std::function<void(QObject*)>&)>;

// Edits a copy of the first object's owned value (a font, user data, a
// picture) in Editor; on OK the copy is assigned to that value of every
// object through apply.
template <class Editor, class T>
void editOwnedCopy(const TPropertyNode& node, QObject* first, QWidget* parent, const QString& title,
                   const ObjectEdit& apply) {
    T copy;
    copy.Assign(*node.Read(first).template value<T*>());
    if (Editor::Edit(copy, parent, title))
        apply([&](QObject* o) {
            if (T* value = node.Read(o).template value<T*>()) value->Assign(copy);
        });
}

}  // namespace

struct TComponentInspector::Private {
    explicit Private(TComponentInspector* self) : self(self), update(self, [this] { runUpdate(); }) {}
    TComponentInspector* self = nullptr;
    QTreeWidget* grid = nullptr;
    QToolButton* byCategoryButton = nullptr;
    QToolButton* alphabeticalButton = nullptr;
    QPointer<TMyCAD> canvas;
    std::vector<QPointer<QObject>> objects;
    std::vector<TPropertyNode> nodes;
    std::map<QString, QTreeWidgetItem*> items;
    bool byCategory = true;
    QString lastError;
    bool filling = false;       // the grid is being filled: item changes are not edits
    bool followQueued = false;
    TDeferredCall update;

    std::vector<QObject*> live() const {
        std::vector<QObject*> out;
        for (const auto& o : objects)
            if (o) out.push_back(o.data());
        return out;
    }

    // Coalesces selection changes and removals into one rebuild when control
    // returns to the event loop.
    void queueRebuild(bool follow) {
        followQueued |= follow;
        update.Request();
    }

    void runUpdate() {
        if (std::exchange(followQueued, false) && canvas) followSelection();
        else rebuild();
    }

    void followSelection() {
        std::vector<QObject*> shown;
        for (TMyShape* s : canvas->WorkingShapes()) shown.push_back(s);
        if (shown.empty()) shown.push_back(canvas.data());
        self->SetObjects(shown);
    }

    void rebuild() {
        const QString current = grid->currentItem() ? grid->currentItem()->data(0, TPropertyDelegate::PathRole).toString() : QString();
        nodes = SharedPropertyNodes(live());
        filling = true;
        grid->clear();
        items.clear();
        std::vector<const TPropertyNode*> order;
        for (const TPropertyNode& n : nodes) order.push_back(&n);
        std::sort(order.begin(), order.end(), [this](const TPropertyNode* a, const TPropertyNode* b) {
            if (byCategory && a->Category != b->Category) return a->Category < b->Category;
            return a->Name < b->Name;
        });
        std::map<QString, QTreeWidgetItem*> categories;
        for (const TPropertyNode* n : order) {
            QTreeWidgetItem* parent = nullptr;
            if (byCategory) {
                QTreeWidgetItem*& category = categories[n->Category];
                if (!category) {
                    category = new QTreeWidgetItem(grid, {n->Category});
                    category->setFirstColumnSpanned(true);
                    QFont bold = category->font(0);
                    bold.setBold(true);
                    category->setFont(0, bold);
                    category->setFlags(Qt::ItemIsEnabled);
                    category->setExpanded(true);
                }
                parent = category;
            }
            addRow(parent, *n);
        }
        filling = false;
        self->RefreshValues();
        fitNameColumn();
        if (auto it = items.find(current); it != items.end()) grid->setCurrentItem(it->second);
    }

    // Names readable in full, leaving the values at least half the width.
    void fitNameColumn() {
        grid->resizeColumnToContents(0);
        grid->header()->resizeSection(0, std::min(grid->header()->sectionSize(0) + 8, std::max(120, grid->width() / 2)));
    }

    void addRow(QTreeWidgetItem* parent, const TPropertyNode& n) {
        auto* item = parent ? new QTreeWidgetItem(parent, {n.Name}) : new QTreeWidgetItem(grid, {n.Name});
        item->setData(0, TPropertyDelegate::PathRole, n.Path);
        item->setData(1, TPropertyDelegate::PathRole, n.Path);
        Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        if (!n.ReadOnly() && n.Kind == TPropertyKind::Bool) flags |= Qt::ItemIsUserCheckable;
        else if (!n.ReadOnly() && !n.HasChildren()) flags |= Qt::ItemIsEditable;
        else if (editedInPlace(n.Kind)) flags |= Qt::ItemIsEditable;  // the "…" button
        item->setFlags(flags);
        if (n.ReadOnly() && !n.HasChildren() && !editedInPlace(n.Kind)) {
            const QBrush grey = grid->palette().brush(QPalette::Disabled, QPalette::Text);
            item->setForeground(0, grey);
            item->setForeground(1, grey);
            item->setToolTip(0, QObject::tr("%1 (read-only)").arg(n.Path));
        }
        items[n.Path] = item;
        for (const TPropertyNode& child : n.Children) addRow(item, child);
        if (n.Kind == TPropertyKind::Set) {
            for (const auto& [name, bits] : SetMembers(n)) {
                auto* member = new QTreeWidgetItem(item, {name});
                member->setData(0, TPropertyDelegate::PathRole, n.Path + QLatin1Char('.') + name);
                member->setData(0, MemberBitsRole, bits);
                member->setFlags(n.ReadOnly() ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
                items[n.Path + QLatin1Char('.') + name] = member;
            }
        }
    }

    // The shared value of a node, or an invalid variant when the objects differ.
    QVariant sharedValue(const TPropertyNode& n) const {
        const std::vector<QObject*> objs = live();
        if (objs.empty()) return {};
        const QVariant first = n.Read(objs.front());
        // Pointers differ between objects; their rows show the first object's summary.
        if (n.HasChildren() || n.Kind == TPropertyKind::UserData || n.Kind == TPropertyKind::Picture ||
            n.Kind == TPropertyKind::Layers || n.Kind == TPropertyKind::Object)
            return first;
        for (size_t i = 1; i < objs.size(); ++i)
            if (n.Read(objs[i]) != first) return {};
        return first;
    }

    void showValue(QTreeWidgetItem* item, const TPropertyNode& n) {
        const QVariant value = sharedValue(n);
        item->setText(1, value.isValid() ? PropertyValueText(n, value) : QString());
        if (n.Kind == TPropertyKind::Bool)
            item->setCheckState(1, !value.isValid() ? Qt::PartiallyChecked : value.toBool() ? Qt::Checked : Qt::Unchecked);
        if (n.Kind == TPropertyKind::Color) item->setIcon(1, value.isValid() ? QIcon(ColorSwatch(value.toInt())) : QIcon());
        if (n.Kind == TPropertyKind::Set)
            for (int i = 0; i < item->childCount(); ++i) {
                QTreeWidgetItem* member = item->child(i);
                const int bits = member->data(0, MemberBitsRole).toInt();
                member->setCheckState(1, !value.isValid() ? Qt::PartiallyChecked
                                         : (value.toInt() & bits) == bits ? Qt::Checked : Qt::Unchecked);
            }
        for (const TPropertyNode& child : n.Children)
            if (auto it = items.find(child.Path); it != items.end()) showValue(it->second, child);
    }

    void report(const QString& message) {
        lastError = message;
        if (self->OnError) self->OnError(message);
        else QMessageBox::warning(self, QObject::tr("Property not changed"), message);
    }

    // A check box in the grid was ticked or cleared.
    void checkChanged(QTreeWidgetItem* item, int column) {
        if (filling || column != 1) return;
        const QString path = item->data(0, TPropertyDelegate::PathRole).toString();
        const bool on = item->checkState(1) == Qt::Checked;
        if (item->data(0, MemberBitsRole).isValid()) {
            const QString setPath = item->parent()->data(0, TPropertyDelegate::PathRole).toString();
            const TPropertyNode* set = FindPropertyNode(nodes, setPath);
            const std::vector<QObject*> objs = live();
            if (!set || objs.empty()) return;
            const int bits = item->data(0, MemberBitsRole).toInt();
            const int value = set->Read(objs.front()).toInt();
            self->SetPropertyValue(setPath, on ? value | bits : value & ~bits);
        } else {
            self->SetPropertyValue(path, on);
        }
    }
};

TComponentInspector::TComponentInspector(QWidget* owner) : TComponentBase<QWidget>(owner), d(new Private(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(2, 2, 2, 0);
    d->byCategoryButton = new QToolButton(this);
    d->byCategoryButton->setText(tr("By category"));
    d->alphabeticalButton = new QToolButton(this);
    d->alphabeticalButton->setText(tr("A–Z"));
    for (QToolButton* b : {d->byCategoryButton, d->alphabeticalButton}) {
        b->setCheckable(true);
        b->setAutoRaise(true);
        bar->addWidget(b);
    }
    d->byCategoryButton->setChecked(true);
    bar->addStretch(1);
    layout->addLayout(bar);
    connect(d->byCategoryButton, &QToolButton::clicked, this, [this] { SetSortByCategory(true); });
    connect(d->alphabeticalButton, &QToolButton::clicked, this, [this] { SetSortByCategory(false); });

    d->grid = new QTreeWidget(this);
    d->grid->setObjectName(QStringLiteral("propertyGrid"));
    d->grid->setColumnCount(2);
    d->grid->setHeaderLabels({tr("Property"), tr("Value")});
    d->grid->setItemDelegate(new TPropertyDelegate(this));
    d->grid->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);
    d->grid->setAlternatingRowColors(true);
    d->grid->setUniformRowHeights(true);
    d->grid->header()->setSectionResizeMode(0, QHeaderView::Interactive);
    d->grid->header()->resizeSection(0, 130);
    d->grid->header()->setStretchLastSection(true);
    layout->addWidget(d->grid);
    connect(d->grid, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) { d->checkChanged(item, column); });
    // A double-click on a value opens its dialog where it has one, else edits in place.
    connect(d->grid, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item, int column) {
        const QString path = item->data(0, TPropertyDelegate::PathRole).toString();
        if (column == 1 && HasEditor(path)) OpenEditor(path);
        else if (column == 1 && (item->flags() & Qt::ItemIsEditable)) d->grid->editItem(item, 1);
    });
}

TComponentInspector::~TComponentInspector() = default;

TMyCAD* TComponentInspector::Canvas() const { return d->canvas; }

void TComponentInspector::SetCanvas(TMyCAD* canvas) {
    if (d->canvas == canvas) return;
    if (d->canvas) disconnect(d->canvas, nullptr, this, nullptr);
    d->canvas = canvas;
    if (!canvas) return;
    connect(canvas, &TMyCAD::selectionChanged, this, [this] { d->queueRebuild(true); });
    d->followSelection();
}

void TComponentInspector::SetObjects(const std::vector<QObject*>& objects) {
    for (const auto& o : d->objects)
        if (o) disconnect(o, &QObject::destroyed, this, nullptr);
    d->objects.clear();
    for (QObject* o : objects) {
        if (!o) continue;
        d->objects.emplace_back(o);
        connect(o, &QObject::destroyed, this, [this] { d->queueRebuild(false); });
    }
    d->rebuild();
}

std::vector<QObject*> TComponentInspector::Objects() const { return d->live(); }

bool TComponentInspector::SortByCategory() const { return d->byCategory; }

void TComponentInspector::SetSortByCategory(bool byCategory) {
    d->byCategory = byCategory;
    d->byCategoryButton->setChecked(byCategory);
    d->alphabeticalButton->setChecked(!byCategory);
    d->rebuild();
}

QStringList TComponentInspector::PropertyPaths() const {
    QStringList paths;
    for (QTreeWidgetItemIterator it(d->grid); *it; ++it) {
        const QString path = (*it)->data(0, TPropertyDelegate::PathRole).toString();
        if (!path.isEmpty() && !(*it)->data(0, MemberBitsRole).isValid()) paths << path;
    }
    return paths;
}

const TPropertyNode* TComponentInspector::PropertyNode(const QString& path) const { return FindPropertyNode(d->nodes, path); }

bool TComponentInspector::HasProperty(const QString& path) const { return PropertyNode(path) != nullptr; }

bool TComponentInspector::IsReadOnly(const QString& path) const {
    const TPropertyNode* n = PropertyNode(path);
    return !n || n->ReadOnly();
}

QVariant TComponentInspector::PropertyValue(const QString& path) const {
    const TPropertyNode* n = PropertyNode(path);
    const std::vector<QObject*> objs = d->live();
    return n && !objs.empty() ? n->Read(objs.front()) : QVariant();
}

QString TComponentInspector::PropertyText(const QString& path) const {
    const TPropertyNode* n = PropertyNode(path);
    if (!n) return QString();
    const QVariant v = d->sharedValue(*n);
    return v.isValid() ? PropertyValueText(*n, v) : QString();
}

bool TComponentInspector::SetPropertyValue(const QString& path, const QVariant& value) {
    const TPropertyNode* n = PropertyNode(path);
    const std::vector<QObject*> objs = d->live();
    QString error;
    bool done = false;
    if (!n) error = tr("%1 is not a property of the objects shown").arg(path);
    else if (objs.empty()) error = tr("No object is shown");
    else done = ApplyPropertyValue(objs, *n, value, &error);
    if (done) {
        d->lastError.clear();
        // A new name changes the combo box and tree entries too.
        RefreshValues();
        emit propertyChanged(path);
    } else {
        RefreshValues();
        d->report(error);
    }
    return done;
}

bool TComponentInspector::SetPropertyText(const QString& path, const QString& text) {
    const TPropertyNode* n = PropertyNode(path);
    if (!n) return SetPropertyValue(path, text);
    QString error;
    const QVariant value = ParsePropertyText(*n, text, &error);
    if (!value.isValid()) {
        RefreshValues();
        d->report(error);
        return false;
    }
    return SetPropertyValue(path, value);
}

QString TComponentInspector::LastError() const { return d->lastError; }

bool TComponentInspector::HasEditor(const QString& path) const {
    const TPropertyNode* n = PropertyNode(path);
    if (!n || !hasDialog(n->Kind)) return false;
    if (n->Kind == TPropertyKind::Layers) return d->live().size() == 1 && qobject_cast<TMyCAD*>(d->live().front());
    return !n->ReadOnly() || editedInPlace(n->Kind);
}

bool TComponentInspector::OpenEditor(const QString& path) {
    const TPropertyNode* n = PropertyNode(path);
    const std::vector<QObject*> objs = d->live();
    if (!n || objs.empty() || !HasEditor(path)) return false;
    // The grid may be rebuilt and objects may go while the dialog runs: keep
    // the node, and apply to the objects shown when it opened that remain.
    const TPropertyNode node = *n;
    const std::vector<QPointer<QObject>> guarded(objs.begin(), objs.end());
    QObject* first = objs.front();
    const QString title = QStringLiteral("%1.%2").arg(first->objectName(), node.Path);
    bool changed = false;
    auto applyAll = [&](const std::function<void(QObject*)>& write) {
        std::vector<QObject*> remaining;
        for (const auto& o : guarded)
            if (o) remaining.push_back(o);
        ApplyObjectEdit(remaining, write);
        changed = !remaining.empty();
    };
    switch (node.Kind) {
    case TPropertyKind::String: {
        QStringList lines = node.Read(first).toString().split(QLatin1Char('\n'));
        if (TStringListEditor::Edit(lines, this, title)) changed = SetPropertyValue(path, lines.join(QLatin1Char('\n')));
        break;
    }
    case TPropertyKind::Strings: {
        QStringList lines = node.Read(first).toStringList();
        if (TStringListEditor::Edit(lines, this, title)) changed = SetPropertyValue(path, lines);
        break;
    }
    case TPropertyKind::Color: {
        TColor color = node.Read(first).toInt();
        if (TColorEditor::Edit(color, this, title)) changed = SetPropertyValue(path, int(color));
        break;
    }
    case TPropertyKind::Font: editOwnedCopy<TFontEditor, TFont>(node, first, this, title, applyAll); break;
    case TPropertyKind::UserData: editOwnedCopy<TUserDataEditor, TUserData>(node, first, this, title, applyAll); break;
    case TPropertyKind::Picture: editOwnedCopy<TPictureEditor, TBitmap>(node, first, this, title, applyAll); break;
    case TPropertyKind::Layers:
        TLayerCollectionEditor::Edit(qobject_cast<TMyCAD*>(first), this);
        changed = guarded.front() != nullptr;
        break;
    default: break;
    }
    if (changed) {
        RefreshValues();
        emit propertyChanged(path);
    }
    return changed;
}

void TComponentInspector::RefreshValues() {
    d->filling = true;
    for (const TPropertyNode& n : d->nodes)
        if (auto it = d->items.find(n.Path); it != d->items.end()) d->showValue(it->second, n);
    d->filling = false;
}

QTreeWidget* TComponentInspector::Grid() const { return d->grid; }

void TComponentInspector::resizeEvent(QResizeEvent* event) {
    TComponentBase<QWidget>::resizeEvent(event);
    d->fitNameColumn();
}

QTreeWidgetItem* TComponentInspector::ItemOf(const QString& path) const {
    auto it = d->items.find(path);
    return it == d->items.end() ? nullptr : it->second;
}

}  // namespace faroven
