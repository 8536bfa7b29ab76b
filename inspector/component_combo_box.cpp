#include "inspector/component_combo_box.h"

#include "cad/canvas/mycad.h"
#include "inspector/component_entries.h"
#include "inspector/component_inspector.h"
#include "inspector/deferred_call.h"

#include <QPointer>
#include <unordered_map>

namespace faroven {

struct TComponentComboBox::Private {
    explicit Private(TComponentComboBox* self) : refresh(self, [self] { self->Refresh(); }) {}
    QPointer<TMyCAD> canvas;
    QPointer<TComponentInspector> inspector;
    // The list's components by row, and rows by component.
    std::vector<QPointer<QObject>> components;
    std::unordered_map<const QObject*, int> rows;
    TDeferredCall refresh;
};

TComponentComboBox::TComponentComboBox(QWidget* owner) : TComponentBase<QComboBox>(owner), d(new Private(this)) {
    setMinimumContentsLength(16);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(this, &QComboBox::activated, this, [this](int row) {
        if (row >= 0 && row < int(d->components.size()) && d->components[size_t(row)])
            SelectComponent(d->components[size_t(row)]);
    });
}

TComponentComboBox::~TComponentComboBox() = default;

TMyCAD* TComponentComboBox::Canvas() const { return d->canvas; }

void TComponentComboBox::SetCanvas(TMyCAD* canvas) {
    if (d->canvas == canvas) return;
    if (d->canvas) disconnect(d->canvas, nullptr, this, nullptr);
    d->canvas = canvas;
    if (canvas) connect(canvas, &TMyCAD::selectionChanged, this, [this] { d->refresh.Request(); });
    Refresh();
}

TComponentInspector* TComponentComboBox::Inspector() const { return d->inspector; }
void TComponentComboBox::SetInspector(TComponentInspector* inspector) { d->inspector = inspector; }

void TComponentComboBox::Refresh() {
    const QSignalBlocker block(this);
    clear();
    d->components.clear();
    d->rows.clear();
    if (!d->canvas) return;
    auto add = [this](QObject* o) {
        d->rows[o] = int(d->components.size());
        d->components.emplace_back(o);
        addItem(EntryText(o));
    };
    add(d->canvas);
    for (TMyShape* s : d->canvas->MyShapes())
        if (s) add(s);
    QObject* shown = Component();
    auto it = d->rows.find(shown);
    setCurrentIndex(it == d->rows.end() ? -1 : it->second);
}

QObject* TComponentComboBox::Component() const {
    if (!d->canvas) return nullptr;
    const auto& selected = d->canvas->WorkingShapes();
    if (selected.empty()) return d->canvas;
    return selected.size() == 1 ? selected.front() : nullptr;
}

void TComponentComboBox::SelectComponent(QObject* component) {
    SelectComponentOnCanvas(d->canvas, component);
    if (d->inspector) d->inspector->SetObject(component);
    auto it = d->rows.find(component);
    const QSignalBlocker block(this);
    setCurrentIndex(it == d->rows.end() ? -1 : it->second);
}

QString TComponentComboBox::EntryText(const QObject* component) { return ComponentEntryText(component); }

void TComponentComboBox::showPopup() {
    Refresh();
    QComboBox::showPopup();
}

}  // namespace faroven
