// TMyCAD: layers. Every shape names its layer by id; the table keeps the
// records in creation order, the current layer and the id counter.
#include "cad/canvas/mycad.h"

namespace faroven {

int TMyCAD::NewLayer(const QString& name, bool visible) {
    const int id = m_layers.Add(name, visible);
    if (id >= 0 && OnNewLayer) OnNewLayer(id, name, visible);
    return id;
}

int TMyCAD::GetLayerIdByName(const QString& name) const {
    const int i = m_layers.IndexOfName(name);
    return i < 0 ? -1 : m_layers.Records()[size_t(i)].LayerId;
}

int TMyCAD::GetLayerIdByNo(int index) const {
    if (index < 0 || index >= m_layers.Count()) return -1;
    return m_layers.Records()[size_t(index)].LayerId;
}

QString TMyCAD::GetLayerNameByID(int id) const {
    const TLayerRecord* r = m_layers.ById(id);
    return r ? r->LayerName : QString();
}

// Renaming to a name another layer already has is refused, so that names stay unique.
bool TMyCAD::SetLayerNameByID(int id, const QString& name) {
    TLayerRecord* r = m_layers.ById(id);
    if (!r) return false;
    const int other = m_layers.IndexOfName(name);
    if (other >= 0 && m_layers.Records()[size_t(other)].LayerId != id) return false;
    r->LayerName = name;
    return true;
}

bool TMyCAD::SetLayerNameByName(const QString& oldName, const QString& newName) {
    const int id = GetLayerIdByName(oldName);
    return id >= 0 && SetLayerNameByID(id, newName);
}

int TMyCAD::GetMaxLayerId() const {
    return m_layers.Count() == 0 ? -1 : m_layers.Records().back().LayerId;
}

void TMyCAD::SetCurrentLayerId(int id) {
    if (!m_layers.ById(id)) return;
    m_layers.SetCurrentId(id);
    RemoveAllWorkingShapes();
    Invalidate();
}

// Hiding a layer also drops its shapes from the selection (and from being the
// current shape): hidden shapes can be neither seen nor picked, so they
// should not stay selected and show hot marks.
void TMyCAD::setLayerVisible(int index, bool visible) {
    dropSceneCache();
    if (index < 0) return;
    TLayerRecord& record = const_cast<TLayerRecord&>(m_layers.Records()[size_t(index)]);
    record.Visible = visible;
    const size_t selectedBefore = m_workingShapes.size();
    if (!visible) {
        for (size_t i = m_workingShapes.size(); i-- > 0;)
            if (!IsShapeOnVisibleLayer(m_workingShapes[i])) m_workingShapes.erase(m_workingShapes.begin() + long(i));
        if (m_currentShape && !IsShapeOnVisibleLayer(m_currentShape)) m_currentShape = nullptr;
        if (m_hoverShape && !IsShapeOnVisibleLayer(m_hoverShape)) m_hoverShape = nullptr;
    }
    Invalidate();
    if (m_workingShapes.size() != selectedBefore) emit selectionChanged();
}

bool TMyCAD::IsVisibleLayerByID(int id) const {
    const TLayerRecord* r = m_layers.ById(id);
    return r && r->Visible;
}

void TMyCAD::VisibleLayerByID(int id) { setLayerVisible(m_layers.IndexOfId(id), true); }
void TMyCAD::VisibleLayerByName(const QString& name) { setLayerVisible(m_layers.IndexOfName(name), true); }
void TMyCAD::InVisibleLayerByID(int id) { setLayerVisible(m_layers.IndexOfId(id), false); }
void TMyCAD::InVisibleLayerByName(const QString& name) { setLayerVisible(m_layers.IndexOfName(name), false); }

void TMyCAD::VisibleAllLayer() {
    for (int i = 0; i < m_layers.Count(); ++i) setLayerVisible(i, true);
    Invalidate();
}

std::vector<TMyShape*> TMyCAD::GetShapesByLayerId(int id) const {
    std::vector<TMyShape*> out;
    for (TMyShape* shape : m_myShapes)
        if (shape && shape->LayerId() == id) out.push_back(shape);
    return out;
}

int TMyCAD::GetShapesCountInALayer(int id) const { return int(GetShapesByLayerId(id).size()); }

// Members of groups are reached through their group, so only root shapes are selected.
void TMyCAD::SelectAllShapesByLayerId(int id) {
    RemoveAllWorkingShapes();
    for (TMyShape* shape : GetShapesByLayerId(id))
        if (!shape->HasParentShape()) AddWorkingShapes(shape);
}

// ---- Deletion and merging ------------------------------------------------------------------

bool TMyCAD::DeleteLayerByID(int id) {
    RemoveAllWorkingShapes();
    m_currentShape = nullptr;
    if (m_layers.IndexOfId(id) < 0) return false;
    // Roots only: members go with their group. They are deleted as
    // DeleteShapeById does, but by identity and in one renumbering, so that a
    // shape without an id, or sharing one with a shape of another layer, is
    // still the one deleted, and a big layer goes in one pass.
    std::vector<TMyShape*> roots;
    for (TMyShape* shape : m_myShapes) {
        if (!shape || shape->HasParentShape() || shape->LayerId() != id) continue;
        shape->SetLocked(false);
        roots.push_back(shape);
    }
    const bool result = roots.empty() || deleteShapes(roots, false);
    if (result) {
        // An OnShapeDeleted handler may have changed the table: look the layer up again.
        const int index = m_layers.IndexOfId(id);
        if (index >= 0) {
            const TLayerRecord removed = m_layers.RemoveAt(index);
            if (OnDeleteLayer) OnDeleteLayer(removed.LayerId, removed.LayerName, removed.Visible);
            m_layers.SetCurrentId(m_layers.Count() > 0 ? m_layers.Records().front().LayerId : -1);
        }
    }
    Invalidate();
    return result;
}

bool TMyCAD::DeleteLayerByName(const QString& name) {
    const int index = m_layers.IndexOfName(name);
    if (index < 0) {
        // The same as for an unknown id: the selection is dropped all the same.
        RemoveAllWorkingShapes();
        m_currentShape = nullptr;
        return false;
    }
    return DeleteLayerByID(m_layers.Records()[size_t(index)].LayerId);
}

// With no layer at all nothing fails, and the counter restarts as well.
bool TMyCAD::DeleteAllLayers() {
    std::vector<int> ids;
    for (const TLayerRecord& r : m_layers.Records()) ids.push_back(r.LayerId);
    bool result = true;
    for (int id : ids) result = DeleteLayerByID(id);
    if (result) {
        m_layers.SetCurrentId(-1);
        m_layers.ResetCounter();
    }
    return result;
}

bool TMyCAD::MergeLayers(int targetId, int sourceId) {
    if (targetId == sourceId || m_layers.IndexOfId(targetId) < 0 || m_layers.IndexOfId(sourceId) < 0) return false;
    for (TMyShape* shape : m_myShapes)
        if (shape && shape->LayerId() == sourceId) shape->SetLayerId(targetId);
    m_layers.SetCurrentId(targetId);
    return DeleteLayerByID(sourceId);
}

bool TMyCAD::IsShapeOnVisibleLayer(const TMyShape* shape) const {
    if (!shape) return false;
    const TMyShape* root = GetRootParentShape(const_cast<TMyShape*>(shape));
    return m_layers.IsVisible(root->LayerId());
}

bool TMyCAD::IsShapePickable(const TMyShape* shape) const {
    if (!shape) return false;
    const TMyShape* root = GetRootParentShape(const_cast<TMyShape*>(shape));
    if (!root->Visible() || !m_layers.IsVisible(root->LayerId())) return false;
    return m_operateAllLayer || root->LayerId() == m_layers.CurrentId();
}

}  // namespace faroven
