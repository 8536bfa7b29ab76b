#include "inspector/editors/layer_collection_editor.h"

#include "cad/canvas/mycad.h"
#include "inspector/editors/grid_dialog_layout.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>

namespace faroven {

namespace {
enum Column { NameColumn, VisibleColumn, CurrentColumn, ShapesColumn };

// The current layer's marker: a filled dot, drawn so that it needs no glyph.
QIcon currentMarker() {
    QPixmap dot(12, 12);
    dot.fill(Qt::transparent);
    QPainter painter(&dot);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(30, 110, 200));
    painter.drawEllipse(QRectF(1.5, 1.5, 9, 9));
    return QIcon(dot);
}

}  // namespace

TLayerCollectionEditor::TLayerCollectionEditor(TMyCAD* canvas, QWidget* parent)
    : QDialog(parent), m_canvas(canvas) {
    setWindowTitle(tr("Layers"));
    m_grid = new QTableWidget(0, 4);
    m_grid->setObjectName(QStringLiteral("grid"));
    m_grid->setHorizontalHeaderLabels({tr("Name"), tr("Visible"), tr("Current"), tr("Shapes")});
    m_grid->horizontalHeader()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    for (int column : {VisibleColumn, CurrentColumn, ShapesColumn})
        m_grid->horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    m_grid->verticalHeader()->setVisible(false);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 10);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);

    auto add = new QPushButton(tr("&Add"));
    add->setObjectName(QStringLiteral("addButton"));
    m_delete = new QPushButton(tr("&Delete"));
    m_delete->setObjectName(QStringLiteral("deleteButton"));
    m_current = new QPushButton(tr("Set &current"));
    m_current->setObjectName(QStringLiteral("currentButton"));
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    LayOutGridDialog(this, m_grid, {add, m_delete, m_current}, buttons);

    connect(add, &QPushButton::clicked, this, [this] {
        const int row = AddNewLayer();
        if (row < 0) return;
        m_grid->setFocus();
        m_grid->editItem(m_grid->item(row, NameColumn));
    });
    connect(m_delete, &QPushButton::clicked, this, &TLayerCollectionEditor::deleteCurrentRow);
    connect(m_current, &QPushButton::clicked, this, [this] { SetCurrentRow(m_grid->currentRow()); });
    connect(m_grid, &QTableWidget::cellChanged, this, &TLayerCollectionEditor::cellEdited);
    connect(m_grid, &QTableWidget::currentCellChanged, this, &TLayerCollectionEditor::updateButtons);
    Refresh();
    // The grid opens on the current layer.
    if (m_canvas && m_canvas->GetLayerNoById(m_canvas->CurrentLayerId()) >= 0)
        m_grid->setCurrentCell(m_canvas->GetLayerNoById(m_canvas->CurrentLayerId()), NameColumn);
}

// Items are updated in place rather than replaced: Refresh also runs while
// the grid reports the edit of one of them.
void TLayerCollectionEditor::Refresh() {
    const int keptRow = m_grid->currentRow();
    {
        const QSignalBlocker blocker(m_grid);
        const int count = m_canvas ? m_canvas->Layers().Count() : 0;
        m_grid->setRowCount(count);
        const QIcon marker = currentMarker();
        for (int row = 0; row < count; ++row) {
            const TLayerRecord& layer = m_canvas->Layers().Records()[size_t(row)];
            const bool current = layer.LayerId == m_canvas->CurrentLayerId();
            QTableWidgetItem* name = itemAt(row, NameColumn);
            name->setText(layer.LayerName);
            QFont font = m_grid->font();
            font.setBold(current);
            name->setFont(font);
            itemAt(row, VisibleColumn)->setCheckState(layer.Visible ? Qt::Checked : Qt::Unchecked);
            itemAt(row, CurrentColumn)->setIcon(current ? marker : QIcon());
            itemAt(row, ShapesColumn)->setText(QString::number(m_canvas->GetShapesCountInALayer(layer.LayerId)));
        }
    }
    if (m_grid->rowCount() > 0)
        m_grid->setCurrentCell(std::clamp(keptRow, 0, m_grid->rowCount() - 1), NameColumn);
    updateButtons();
}

QTableWidgetItem* TLayerCollectionEditor::itemAt(int row, int column) {
    if (QTableWidgetItem* item = m_grid->item(row, column)) return item;
    auto item = new QTableWidgetItem;
    if (column != NameColumn) item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (column == VisibleColumn) item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    if (column == ShapesColumn) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_grid->setItem(row, column, item);
    return item;
}

int TLayerCollectionEditor::layerIdAt(int row) const {
    return m_canvas ? m_canvas->GetLayerIdByNo(row) : -1;
}

QString TLayerCollectionEditor::layerNameAt(int row) const {
    return m_canvas ? m_canvas->GetLayerNameByID(layerIdAt(row)) : QString();
}

bool TLayerCollectionEditor::AddLayer(const QString& name) {
    if (!m_canvas) return false;
    if (name.isEmpty()) {
        report(tr("A layer needs a name."));
        return false;
    }
    if (m_canvas->GetLayerNoByName(name) >= 0) {
        report(tr("There is a layer named \"%1\" already; layer names must be unique.").arg(name));
        return false;
    }
    if (m_canvas->NewLayer(name, true) < 0) {
        report(tr("The layer \"%1\" cannot be added: a drawing has at most %2 layers.")
                   .arg(name)
                   .arg(TLayerTable::kMaxLayers));
        return false;
    }
    changed(m_canvas->Layers().Count() - 1);
    return true;
}

int TLayerCollectionEditor::AddNewLayer() {
    if (!m_canvas) return -1;
    QString name;
    for (int n = 1; name.isEmpty() || m_canvas->GetLayerNoByName(name) >= 0; ++n) name = QStringLiteral("Layer%1").arg(n);
    return AddLayer(name) ? m_canvas->Layers().Count() - 1 : -1;
}

bool TLayerCollectionEditor::RenameLayer(int row, const QString& name) {
    const int id = layerIdAt(row);
    if (id < 0) return false;
    const QString oldName = layerNameAt(row);
    if (name == oldName) return true;
    QString refusal;
    if (name.isEmpty()) refusal = tr("A layer needs a name; the layer stays \"%1\".").arg(oldName);
    else if (!m_canvas->SetLayerNameByID(id, name))
        refusal = tr("There is a layer named \"%1\" already; the layer stays \"%2\".").arg(name, oldName);
    if (!refusal.isEmpty()) {
        Refresh();
        report(refusal);
        return false;
    }
    changed(row);
    return true;
}

bool TLayerCollectionEditor::DeleteLayer(int row) {
    const int id = layerIdAt(row);
    if (id < 0) return false;
    const QString name = layerNameAt(row);
    if (m_canvas->Layers().Count() <= 1) {
        report(tr("The layer \"%1\" is the last one and cannot be deleted: a drawing needs a layer.").arg(name));
        return false;
    }
    const bool deleted = m_canvas->DeleteLayerByID(id);
    // A refusal may still have removed some of its shapes: show the canvas as it is.
    changed(std::min(row, m_canvas->Layers().Count() - 1));
    if (!deleted) report(tr("The canvas refused to delete the layer \"%1\".").arg(name));
    return deleted;
}

void TLayerCollectionEditor::SetLayerVisible(int row, bool visible) {
    const int id = layerIdAt(row);
    if (id < 0) return;
    if (visible) m_canvas->VisibleLayerByID(id);
    else m_canvas->InVisibleLayerByID(id);
    changed(row);
}

void TLayerCollectionEditor::SetCurrentRow(int row) {
    const int id = layerIdAt(row);
    if (id < 0) return;
    m_canvas->SetCurrentLayerId(id);
    changed(row);
}

void TLayerCollectionEditor::report(const QString& message) {
    if (OnError) OnError(message);
    else QMessageBox::warning(this, windowTitle(), message);
}

void TLayerCollectionEditor::changed(int row) {
    if (m_canvas) m_canvas->Invalidate();
    Refresh();
    if (row >= 0 && row < m_grid->rowCount()) m_grid->setCurrentCell(row, NameColumn);
    emit layersChanged();
}

void TLayerCollectionEditor::cellEdited(int row, int column) {
    QTableWidgetItem* item = m_grid->item(row, column);
    if (!item) return;
    if (column == NameColumn) RenameLayer(row, item->text());
    else if (column == VisibleColumn) SetLayerVisible(row, item->checkState() == Qt::Checked);
}

// Deleting a layer deletes its shapes and cannot be undone: ask first when it has any.
void TLayerCollectionEditor::deleteCurrentRow() {
    const int row = m_grid->currentRow();
    const int id = layerIdAt(row);
    if (id < 0) return;
    const int shapes = m_canvas->GetShapesCountInALayer(id);
    if (shapes > 0 && m_canvas->Layers().Count() > 1) {
        const QString name = layerNameAt(row);
        const QString question = shapes == 1 ? tr("Delete the layer \"%1\" and the shape on it?").arg(name)
                                             : tr("Delete the layer \"%1\" and the %2 shapes on it?").arg(name).arg(shapes);
        if (QMessageBox::question(this, windowTitle(), question) != QMessageBox::Yes) return;
    }
    DeleteLayer(row);
}

void TLayerCollectionEditor::updateButtons() {
    const bool onLayer = layerIdAt(m_grid->currentRow()) >= 0;
    m_delete->setEnabled(onLayer);
    m_current->setEnabled(onLayer && layerIdAt(m_grid->currentRow()) != m_canvas->CurrentLayerId());
}

void TLayerCollectionEditor::Edit(TMyCAD* canvas, QWidget* parent) {
    TLayerCollectionEditor editor(canvas, parent);
    editor.exec();
}

}  // namespace faroven
