#include "cad/canvas/layers.h"

namespace faroven {

int TLayerTable::Add(const QString& name, bool visible) {
    if (IndexOfName(name) >= 0 || Count() >= kMaxLayers) return -1;
    const int id = m_nextId++;
    m_records.push_back(TLayerRecord{name, id, visible});
    m_currentId = id;
    return id;
}

TLayerRecord TLayerTable::RemoveAt(int index) {
    TLayerRecord removed = m_records[size_t(index)];
    m_records.erase(m_records.begin() + index);
    return removed;
}

int TLayerTable::IndexOfId(int id) const {
    for (size_t i = 0; i < m_records.size(); ++i)
        if (m_records[i].LayerId == id) return int(i);
    return -1;
}

int TLayerTable::IndexOfName(const QString& name) const {
    for (size_t i = 0; i < m_records.size(); ++i)
        if (m_records[i].LayerName == name) return int(i);
    return -1;
}

TLayerRecord* TLayerTable::ById(int id) {
    const int i = IndexOfId(id);
    return i < 0 ? nullptr : &m_records[size_t(i)];
}

const TLayerRecord* TLayerTable::ById(int id) const {
    const int i = IndexOfId(id);
    return i < 0 ? nullptr : &m_records[size_t(i)];
}

const TLayerRecord* TLayerTable::ForShape(int layerId) const {
    if (const TLayerRecord* r = ById(layerId)) return r;
    return ById(layerId & 0xFF);
}

bool TLayerTable::IsVisible(int layerId) const {
    const TLayerRecord* r = ForShape(layerId);
    return r && r->Visible;
}

}  // namespace faroven
