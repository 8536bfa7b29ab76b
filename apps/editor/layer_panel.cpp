#include "layer_panel.h"

#include <QGridLayout>
#include <QInputDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using namespace faroven;

LayerPanel::LayerPanel(TMyCAD* cad, QWidget* parent) : QDockWidget(tr("Layers"), parent), m_cad(cad) {
    setObjectName("LayerPanel");
    auto body = new QWidget(this);
    auto layout = new QVBoxLayout(body);
    layout->setContentsMargins(4, 4, 4, 4);
    m_list = new QListWidget(body);
    m_list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_list->setToolTip(tr("Tick to show a layer; double-click to make it current; F2 renames"));
    layout->addWidget(m_list);

    auto buttons = new QGridLayout();
    auto add = new QPushButton(tr("Add"), body);
    auto rename = new QPushButton(tr("Rename"), body);
    auto remove = new QPushButton(tr("Delete"), body);
    auto current = new QPushButton(tr("Current"), body);
    remove->setToolTip(tr("Delete the layer and every shape on it"));
    current->setToolTip(tr("New shapes go on the current layer"));
    buttons->addWidget(add, 0, 0);
    buttons->addWidget(rename, 0, 1);
    buttons->addWidget(current, 1, 0);
    buttons->addWidget(remove, 1, 1);
    layout->addLayout(buttons);
    setWidget(body);

    connect(add, &QPushButton::clicked, this, &LayerPanel::addLayer);
    connect(rename, &QPushButton::clicked, this, &LayerPanel::renameLayer);
    connect(remove, &QPushButton::clicked, this, &LayerPanel::deleteLayer);
    connect(current, &QPushButton::clicked, this, &LayerPanel::makeCurrent);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &LayerPanel::makeCurrent);
    connect(m_list, &QListWidget::itemChanged, this, &LayerPanel::itemChanged);

    // Layers created or deleted elsewhere (files, DXF import) show up too;
    // handlers set before keep running.
    auto previousNew = m_cad->OnNewLayer;
    m_cad->OnNewLayer = [this, previousNew](int id, const QString& name, bool visible) {
        if (previousNew) previousNew(id, name, visible);
        scheduleRefresh();
    };
    auto previousDelete = m_cad->OnDeleteLayer;
    m_cad->OnDeleteLayer = [this, previousDelete](int id, const QString& name, bool visible) {
        if (previousDelete) previousDelete(id, name, visible);
        scheduleRefresh();
    };
    refresh();
}

void LayerPanel::scheduleRefresh() {
    if (m_refreshPending) return;
    m_refreshPending = true;
    QTimer::singleShot(0, this, [this] {
        m_refreshPending = false;
        refresh();
    });
}

void LayerPanel::refresh() {
    m_updating = true;
    const int selected = selectedLayerId();
    m_list->clear();
    for (const TLayerRecord& layer : m_cad->Layers().Records()) {
        auto item = new QListWidgetItem(layer.LayerName, m_list);
        item->setData(Qt::UserRole, layer.LayerId);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
        item->setCheckState(layer.Visible ? Qt::Checked : Qt::Unchecked);
        const bool current = layer.LayerId == m_cad->CurrentLayerId();
        QFont font = item->font();
        font.setBold(current);
        item->setFont(font);
        item->setToolTip(tr("Layer id %1, %2 shape(s)%3")
                             .arg(layer.LayerId)
                             .arg(m_cad->GetShapesCountInALayer(layer.LayerId))
                             .arg(current ? tr(", current") : QString()));
        if (layer.LayerId == selected || (selected < 0 && current)) m_list->setCurrentItem(item);
    }
    m_updating = false;
    emit layersChanged();
}

int LayerPanel::selectedLayerId() const {
    const QListWidgetItem* item = m_list->currentItem();
    return item ? item->data(Qt::UserRole).toInt() : -1;
}

void LayerPanel::addLayer() {
    // The first free "Layer<n>" name.
    QString name;
    for (int n = m_cad->GetLayersCount();; ++n) {
        name = QStringLiteral("Layer%1").arg(n);
        if (m_cad->GetLayerNoByName(name) < 0) break;
    }
    if (m_cad->NewLayer(name, true) < 0)
        QMessageBox::warning(this, tr("Layers"), tr("A drawing holds at most 255 layers."));
    else
        emit edited();
    refresh();
}

void LayerPanel::renameLayer() {
    if (QListWidgetItem* item = m_list->currentItem()) m_list->editItem(item);
}

void LayerPanel::deleteLayer() {
    const int id = selectedLayerId();
    if (id < 0) return;
    const int shapes = m_cad->GetShapesCountInALayer(id);
    if (shapes > 0 &&
        QMessageBox::question(this, tr("Delete layer"),
                              tr("Delete layer \"%1\" and its %2 shape(s)?").arg(m_cad->GetLayerNameByID(id)).arg(shapes)) !=
            QMessageBox::Yes)
        return;
    if (m_cad->GetLayersCount() == 1) {
        QMessageBox::information(this, tr("Delete layer"), tr("A drawing keeps at least one layer."));
        return;
    }
    m_cad->DeleteLayerByID(id);
    emit edited();
    refresh();
}

void LayerPanel::makeCurrent() {
    const int id = selectedLayerId();
    if (id < 0 || id == m_cad->CurrentLayerId()) return;
    m_cad->SetCurrentLayerId(id);
    emit edited();
    refresh();
}

void LayerPanel::itemChanged(QListWidgetItem* item) {
    if (m_updating) return;
    const int id = item->data(Qt::UserRole).toInt();
    const bool visible = item->checkState() == Qt::Checked;
    if (visible != m_cad->IsVisibleLayerByID(id)) {
        if (visible)
            m_cad->VisibleLayerByID(id);
        else
            m_cad->InVisibleLayerByID(id);
        emit edited();
    }
    const QString name = item->text().trimmed();
    if (name != m_cad->GetLayerNameByID(id)) {
        if (name.isEmpty())
            QMessageBox::warning(this, tr("Rename layer"), tr("A layer needs a name."));
        else if (!m_cad->SetLayerNameByID(id, name))
            QMessageBox::warning(this, tr("Rename layer"), tr("Another layer is already called \"%1\".").arg(name));
        else
            emit edited();
    }
    scheduleRefresh();
}
