#include "inspector/component_combo_box.h"

namespace faroven {

struct TComponentComboBox::Private {};

TComponentComboBox::TComponentComboBox(QWidget* owner) : TComponentBase<QComboBox>(owner), d(new Private) {}
TComponentComboBox::~TComponentComboBox() = default;
TMyCAD* TComponentComboBox::Canvas() const { return nullptr; }
void TComponentComboBox::SetCanvas(TMyCAD*) {}
TComponentInspector* TComponentComboBox::Inspector() const { return nullptr; }
void TComponentComboBox::SetInspector(TComponentInspector*) {}
void TComponentComboBox::Refresh() {}
QObject* TComponentComboBox::Component() const { return nullptr; }
void TComponentComboBox::SelectComponent(QObject*) {}
QString TComponentComboBox::EntryText(const QObject*) { return {}; }
void TComponentComboBox::showPopup() { QComboBox::showPopup(); }

}  // namespace faroven
