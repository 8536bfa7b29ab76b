#include "cad/canvas/undo_history.h"

#include "cad/shapes/shape.h"

namespace faroven {

TUndoHistory::TUndoHistory() = default;
TUndoHistory::~TUndoHistory() = default;

void TUndoHistory::SetLimit(int limit) {
    m_limit = std::max(limit, 0);
    if (m_limit == 0) Clear();
}

int TUndoHistory::BeginStep() {
    // A full history loses its oldest step; after the limit was lowered it
    // loses as many as it takes to make room for one more.
    while (!m_records.empty() && m_records.back().Step >= m_limit - 1) {
        const int oldest = m_records.front().Step;
        size_t end = 0;
        while (end < m_records.size() && m_records[end].Step == oldest) ++end;
        m_records.erase(m_records.begin(), m_records.begin() + long(end));
        for (TUndoRecord& r : m_records) --r.Step;
    }
    return m_records.empty() ? 0 : m_records.back().Step + 1;
}

void TUndoHistory::Append(TUndoRecord record) { m_records.push_back(std::move(record)); }

std::vector<TUndoRecord> TUndoHistory::TakeNewestStep() {
    std::vector<TUndoRecord> step;
    if (m_records.empty()) return step;
    const int newest = m_records.back().Step;
    size_t begin = m_records.size();
    while (begin > 0 && m_records[begin - 1].Step == newest) --begin;
    step.reserve(m_records.size() - begin);
    for (size_t i = begin; i < m_records.size(); ++i) step.push_back(std::move(m_records[i]));
    m_records.erase(m_records.begin() + long(begin), m_records.end());
    return step;
}

QString TUndoHistory::NewestAction() const { return m_records.empty() ? QString() : m_records.back().Action; }

void TUndoHistory::PushRedo(TRedoStep step) {
    if (m_limit == 0 || step.empty()) return;
    m_redo.push_back(std::move(step));
    if (m_redo.size() > size_t(m_limit)) m_redo.erase(m_redo.begin());
}

TRedoStep TUndoHistory::TakeRedo() {
    if (m_redo.empty()) return {};
    TRedoStep step = std::move(m_redo.back());
    m_redo.pop_back();
    return step;
}

QString TUndoHistory::NewestRedoAction() const {
    return m_redo.empty() || m_redo.back().empty() ? QString() : m_redo.back().front().Action;
}

void TUndoHistory::ClearRedo() { m_redo.clear(); }

void TUndoHistory::ReplaceShapeId(int oldId, int newId) {
    auto replace = [&](TUndoRecord& r) {
        if (r.Snapshot && r.Snapshot->GetShapeId() == oldId) r.Snapshot->SetShapeId(newId);
        if (r.ParentId == oldId) r.ParentId = newId;
        for (TUndoLink& link : r.Links) {
            if (link.LineId == oldId) link.LineId = newId;
            if (link.ShapeId == oldId) link.ShapeId = newId;
        }
    };
    for (TUndoRecord& r : m_records) replace(r);
    for (TRedoStep& step : m_redo)
        for (TUndoRecord& r : step) replace(r);
}

void TUndoHistory::Clear() {
    m_records.clear();
    m_redo.clear();
}

}  // namespace faroven
