// TComponentComboBox: the components of a canvas (the canvas and its shapes,
// by name with their class) in a drop-down. Choosing one selects it on the
// canvas and shows it in the linked inspector; a selection made on the
// canvas is shown here in turn.
#pragma once

#include "platform/component.h"

#include <QComboBox>
#include <memory>

namespace faroven {

class TMyCAD;
class TComponentInspector;

class TComponentComboBox : public TComponentBase<QComboBox> {
    Q_OBJECT
public:
    explicit TComponentComboBox(QWidget* owner = nullptr);
    ~TComponentComboBox() override;

    TMyCAD* Canvas() const;
    void SetCanvas(TMyCAD* canvas);
    TComponentInspector* Inspector() const;
    void SetInspector(TComponentInspector* inspector);

    // Rebuilds the list from the canvas (it is also rebuilt when opened).
    void Refresh();
    // The component shown: the selected shape, the canvas, or nullptr while
    // several shapes are selected.
    QObject* Component() const;
    // Selects the component as choosing it in the list does.
    void SelectComponent(QObject* component);
    // The text of the list entry of a component: "Shape3: TMyRectangle".
    static QString EntryText(const QObject* component);

protected:
    void showPopup() override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace faroven
