// Temporary interface stub.
#pragma once
#include <QDialog>
namespace faroven {
class TMyCAD;
class TLayerCollectionEditor : public QDialog {
    Q_OBJECT
public:
    explicit TLayerCollectionEditor(TMyCAD* canvas, QWidget* parent = nullptr) : QDialog(parent) {}
    static void Edit(TMyCAD* canvas, QWidget* parent = nullptr) {}
signals:
    void layersChanged();
};
}  // namespace faroven
