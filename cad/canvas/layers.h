// The layer table of a canvas: records in creation order, the current layer
// and the id counter. Names are unique (exact comparison); ids come from the
// counter and are not reused while it runs.
#pragma once

#include <QString>
#include <vector>

namespace faroven {

struct TLayerRecord {
    QString LayerName;
    int LayerId = 0;
    bool Visible = true;
};

class TLayerTable {
public:
    const std::vector<TLayerRecord>& Records() const { return m_records; }
    int Count() const { return int(m_records.size()); }
    int CurrentId() const { return m_currentId; }
    void SetCurrentId(int id) { m_currentId = id; }
    int NextId() const { return m_nextId; }

    // At most this many layers: files and GetLayersCount count them in 8 bits.
    static constexpr int kMaxLayers = 255;

    // Appends a layer with the counter's id and makes it current; -1 when the
    // name is taken or the table is full.
    int Add(const QString& name, bool visible);
    // Removes the record at an index (which must be valid); the current layer is the caller's to set.
    TLayerRecord RemoveAt(int index);
    // Restarts the id counter (after every layer is deleted).
    void ResetCounter() { m_nextId = 0; }
    // A drawing being loaded brings its layers and counter as they were saved.
    void Replace(std::vector<TLayerRecord> records, int currentId, int nextId) {
        m_records = std::move(records);
        m_currentId = currentId;
        m_nextId = nextId;
    }

    int IndexOfId(int id) const;
    int IndexOfName(const QString& name) const;
    TLayerRecord* ById(int id);
    const TLayerRecord* ById(int id) const;

    // The record for a shape's layer id: the layer with that id, or else the
    // one with its low 8 bits (a shape keeps its layer id in 8 bits in files).
    const TLayerRecord* ForShape(int layerId) const;
    // Visibility as painting and picking see it (ForShape).
    bool IsVisible(int layerId) const;

private:
    std::vector<TLayerRecord> m_records;
    int m_currentId = -1;
    int m_nextId = 0;
};

}  // namespace faroven
