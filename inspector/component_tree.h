// TComponentTree: the canvas and its shapes as a tree, groups with their
// members below them. Choosing a row selects the shape on the canvas (a
// member through its group, as a click does); the canvas's selection is
// highlighted here in turn.
#pragma once

#include "platform/component.h"

#include <QTreeWidget>
#include <memory>

namespace faroven {

class TMyCAD;

class TComponentTree : public TComponentBase<QTreeWidget> {
    Q_OBJECT
public:
    explicit TComponentTree(QWidget* owner = nullptr);
    ~TComponentTree() override;

    TMyCAD* Canvas() const;
    void SetCanvas(TMyCAD* canvas);
    // Rebuilds the rows from the canvas.
    void Refresh();
    // The row of a component (the canvas or a shape), or nullptr.
    QTreeWidgetItem* ItemOf(const QObject* component) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

}  // namespace faroven
