// TMyCAD: the layer table operations that need no shape deletion.
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

void TMyCAD::setLayerVisible(int index, bool visible) {
    if (index < 0) return;
    const_cast<TLayerRecord&>(m_layers.Records()[size_t(index)]).Visible = visible;
    Invalidate();
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

}  // namespace faroven
