#include "inspector_panel.h"

#include "inspector/component_combo_box.h"
#include "inspector/component_inspector.h"
#include "inspector/component_tree.h"
#include "inspector/editors/userdata_editor.h"
#include "inspector/property_edit.h"

#include <QAction>
#include <QSplitter>
#include <QVBoxLayout>

using namespace faroven;

InspectorPanel::InspectorPanel(TMyCAD* cad, QWidget* parent) : QDockWidget(tr("Inspector"), parent), m_cad(cad) {
    setObjectName(QStringLiteral("inspectorDock"));
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(4, 4, 4, 4);
    m_combo = new TComponentComboBox(body);
    m_combo->setToolTip(tr("The component shown: choose one to select it"));
    layout->addWidget(m_combo);
    auto* split = new QSplitter(Qt::Vertical, body);
    m_tree = new TComponentTree(split);
    m_inspector = new TComponentInspector(split);
    split->addWidget(m_tree);
    split->addWidget(m_inspector);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 3);
    layout->addWidget(split, 1);
    setWidget(body);

    m_inspector->SetCanvas(cad);
    m_combo->SetCanvas(cad);
    m_combo->SetInspector(m_inspector);
    m_tree->SetCanvas(cad);
    connect(m_inspector, &TComponentInspector::propertyChanged, this, [this](const QString& path) {
        const std::vector<QObject*> shown = m_inspector->Objects();
        const bool canvasOnly = shown.size() == 1 && shown.front() == m_cad;
        if (canvasOnly && path == QLatin1String("Layers")) emit layersEdited();
        // A new name shows in the lists.
        if (path == QLatin1String("Name")) m_listedEdits = -1;
        refresh();
        emit edited(canvasOnly);
    });

    m_userData = new QAction(tr("User &data…"), this);
    m_userData->setToolTip(tr("Edit the key/value pairs of the selected shape, or of the drawing"));
    connect(m_userData, &QAction::triggered, this, &InspectorPanel::editUserData);
}

void InspectorPanel::refresh() {
    m_inspector->RefreshValues();
    // The lists are rebuilt only when shapes came or went or were edited.
    if (m_cad->EditCount() != m_listedEdits || m_cad->GetShapesCount() != m_listedShapes) {
        m_listedEdits = m_cad->EditCount();
        m_listedShapes = m_cad->GetShapesCount();
        m_combo->Refresh();
        m_tree->Refresh();
    }
}

void InspectorPanel::editUserData() {
    TMyShape* shape = m_cad->GetSelectedShapesCount() == 1 ? m_cad->WorkingShapes().front() : nullptr;
    TUserData data;
    data.Assign(shape ? *shape->UserData() : *m_cad->UserData());
    const QString title = tr("User data of %1").arg(shape ? shape->Name() : tr("the drawing"));
    if (!TUserDataEditor::Edit(data, window(), title)) return;
    if (shape) ApplyObjectEdit({shape}, [&](QObject*) { shape->UserData()->Assign(data); });
    else m_cad->UserData()->Assign(data);
    refresh();
    emit edited(!shape);
}
