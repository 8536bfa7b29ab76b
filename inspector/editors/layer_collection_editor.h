// TLayerCollectionEditor: the canvas's layers as a collection. One row per
// layer in table order: the name (renamed in place), a Visible check box, a
// marker on the current layer and the number of shapes on it. Add, Delete
// and Set current act on the canvas at once, as in a collection editor, so
// the dialog has only a Close button. Names stay unique as the canvas keeps
// them; the last layer is never deleted (a drawing needs one to add shapes
// to). Refusals are reported through OnError.
//
// After each change the canvas is repainted and layersChanged() is emitted.
//
// Child widgets, by object name: "grid" (QTableWidget, columns Name, Visible,
// Current, Shapes), "addButton", "deleteButton", "currentButton".
#pragma once

#include <QDialog>
#include <QPointer>
#include <functional>

class QPushButton;
class QTableWidget;
class QTableWidgetItem;

namespace faroven {

class TMyCAD;

class TLayerCollectionEditor : public QDialog {
    Q_OBJECT
public:
    explicit TLayerCollectionEditor(TMyCAD* canvas, QWidget* parent = nullptr);

    // Rereads the layers from the canvas.
    void Refresh();
    QTableWidget* Grid() const { return m_grid; }

    // Adds a layer (which the canvas makes current); refused for an empty or taken name.
    bool AddLayer(const QString& name);
    // Adds a layer under the first free name of "Layer1", "Layer2", …; returns its row or -1.
    int AddNewLayer();
    // Refused for an empty name or one another layer has.
    bool RenameLayer(int row, const QString& name);
    // Deletes the layer with its shapes; refused for the last layer or when
    // the canvas refuses.
    bool DeleteLayer(int row);
    void SetLayerVisible(int row, bool visible);
    void SetCurrentRow(int row);

    // Reports a refused edit; a message box when not set.
    std::function<void(const QString& message)> OnError;

    static void Edit(TMyCAD* canvas, QWidget* parent = nullptr);

signals:
    void layersChanged();

private:
    // The grid's item, made when the row is new.
    QTableWidgetItem* itemAt(int row, int column);
    int layerIdAt(int row) const;
    QString layerNameAt(int row) const;
    void report(const QString& message);
    // Repaints the canvas, shows the layers again with row current and tells the listeners.
    void changed(int row);
    void cellEdited(int row, int column);
    void deleteCurrentRow();
    void updateButtons();

    QPointer<TMyCAD> m_canvas;
    QTableWidget* m_grid = nullptr;
    QPushButton* m_delete = nullptr;
    QPushButton* m_current = nullptr;
};

}  // namespace faroven
