// TMyCAD: recording editing steps, taking the newest back, and redoing what
// was taken back.
//
// A step is recorded before an operation changes the drawing, as copies of
// the shapes it touches. Taking it back runs the counter-operation with
// recording off. Each take-back leaves a redo step behind that runs the
// operation again (recording it anew); any other recorded edit drops them.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/shapes/line.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/shape_factory.h"

#include <algorithm>
#include <unordered_set>

namespace faroven {

namespace {
bool isAction(const QString& action, const char* name) { return action == QLatin1String(name); }

// Each z-order action with its move and the move that takes it back.
struct ZOrderMove {
    const char* action;
    void (TMyCAD::*move)(TMyShape*, bool);
    void (TMyCAD::*counter)(TMyShape*, bool);
};
constexpr ZOrderMove kZOrderMoves[] = {
    {ACT_BRINGTOFRONT, &TMyCAD::BringToFront, &TMyCAD::SendToBack},
    {ACT_SENDTOBACK, &TMyCAD::SendToBack, &TMyCAD::BringToFront},
    {ACT_BRINGTOFRONTBYSTEP, &TMyCAD::BringToFrontByStep, &TMyCAD::SendToBackByStep},
    {ACT_SENDTOBACKBYSTEP, &TMyCAD::SendToBackByStep, &TMyCAD::BringToFrontByStep},
};

const ZOrderMove* zOrderMove(const QString& action) {
    for (const ZOrderMove& m : kZOrderMoves)
        if (isAction(action, m.action)) return &m;
    return nullptr;
}
}  // namespace

// ---- Snapshots ------------------------------------------------------------------------------

std::unique_ptr<TMyShape> TMyCAD::snapshotOf(const TMyShape* shape) const {
    // Snapshots belong to no canvas: they are never painted, indexed or picked.
    std::unique_ptr<TMyShape> copy(NewShapeOfClass(ShapeClassName(shape), nullptr));
    if (!copy) return nullptr;
    copy->Assign(shape);  // properties, geometry, relations, id and number
    copy->SetName(shape->Name());
    return copy;
}

TUndoRecord TMyCAD::recordOf(const TMyShape* shape, const QString& action, int step) const {
    const TMyShape* parent = GetShapeByNo(shape->ParentShapeNo());
    return TUndoRecord{step, shape->Name(), snapshotOf(shape), action, canvas_detail::linksOf(*this, shape),
                       canvas_detail::routesOf(*this, shape), parent ? parent->GetShapeId() : -1};
}

std::vector<TMyShape*> TMyCAD::restoreSnapshots(const std::vector<const TUndoRecord*>& records) {
    // Without any layer there is nowhere to put them.
    if (m_layers.Count() == 0) return {};
    // Numbers among the restored shapes are translated from the ones they had
    // when recorded to the places they take now, at the end of the list.
    const int base = GetShapesCount();
    int highest = -1;
    for (const TUndoRecord* r : records) highest = std::max(highest, r->Snapshot->ShapeNo());
    std::vector<int> oldToNew(size_t(highest + 1), -1);
    for (size_t k = 0; k < records.size(); ++k)
        if (const int no = records[k]->Snapshot->ShapeNo(); no >= 0) oldToNew[size_t(no)] = base + int(k);

    std::vector<TMyShape*> restored;
    for (const TUndoRecord* r : records) {
        TMyShape* shape = NewShapeOfClass(ShapeClassName(r->Snapshot.get()), this);
        shape->Assign(r->Snapshot.get());
        shape->SetName(r->ShapeName);
        shape->remapShapeNos(oldToNew);
        // Link lines come back detached; the records' links join them again.
        shape->SetLinkShapeNos({});
        if (auto* line = dynamic_cast<TMyLine*>(shape)) {
            line->SetStartSpNo(-1);
            line->SetStartSpPtId(-1);
            line->SetEndSpNo(-1);
            line->SetEndSpPtId(-1);
        }
        // Ids stay unique even when the drawing was cleared since.
        if (shape->GetShapeId() < 0 || GetShapeNoById(shape->GetShapeId()) >= 0) shape->SetShapeId(m_nextShapeId);
        m_nextShapeId = std::max(m_nextShapeId, shape->GetShapeId() + 1);
        const bool layerExists = m_layers.IndexOfId(shape->LayerId()) >= 0;
        shape->SetShapeNo(GetShapesCount());
        AddShape(shape, layerExists, true);
        restored.push_back(shape);
    }
    // A member whose group is still there (and was not restored with it)
    // goes back into the group.
    for (size_t k = 0; k < records.size(); ++k) {
        TMyShape* shape = restored[k];
        TMyShape* group = shape->HasParentShape() ? nullptr : shapeById(records[k]->ParentId);
        if (!group || !dynamic_cast<TMyGroup*>(group)) continue;
        shape->SetParentShapeNo(group->ShapeNo());
        std::vector<int32_t> members = std::as_const(*group).ChildShapeNos();
        members.push_back(shape->ShapeNo());
        std::sort(members.begin(), members.end());
        group->SetChildShapeNos(members);
    }
    // Connections come back where both sides are still (or again) there.
    for (size_t k = 0; k < records.size(); ++k)
        for (const TUndoLink& link : records[k]->Links) canvas_detail::rejoin(*this, link);
    for (TMyShape* shape : restored) ChangeLinkShapes(shape);
    return restored;
}

TMyShape* TMyCAD::shapeById(int id) const { return id < 0 ? nullptr : GetShapeByNo(GetShapeNoById(id)); }

// ---- Recording --------------------------------------------------------------------------

void TMyCAD::PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, const QString& action) {
    if (m_undo.Limit() == 0 || shapes.empty()) return;
    ++m_editCount;
    if (!m_redoing) m_undo.ClearRedo();
    const int step = m_undo.BeginStep();
    std::unordered_set<const TMyShape*> recorded;
    auto record = [&](TMyShape* shape) {
        if (!shape || !recorded.insert(shape).second) return;
        TUndoRecord r = recordOf(shape, action, step);
        if (r.Snapshot) m_undo.Append(std::move(r));
    };

    if (isAction(action, ACT_GROUP) || zOrderMove(action)) {
        record(shapes.front());
        return;
    }
    const bool withMembers = isAction(action, ACT_DELETE) || isAction(action, ACT_CHANGE);
    for (size_t i = shapes.size(); i-- > 0;) {
        TMyShape* shape = shapes[i];
        if (!shape) continue;
        if (withMembers) {
            const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, shape);
            for (TMyShape* s : tree) record(s);
        } else {
            record(shape);
            // An ungrouped root group keeps its direct members.
            if (isAction(action, ACT_UNGROUP) && !shape->HasParentShape())
                for (int no : std::as_const(*shape).ChildShapeNos()) record(GetShapeByNo(no));
        }
    }
}

void TMyCAD::PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, int lastIndex, const QString& action) {
    const size_t count = std::min(shapes.size(), size_t(std::max(lastIndex + 1, 0)));
    PushtoUndoRedoShapeList(std::vector<TMyShape*>(shapes.begin(), shapes.begin() + long(count)), action);
}

void TMyCAD::recordExactly(const std::vector<TMyShape*>& shapes, const QString& action) {
    if (m_undo.Limit() == 0 || shapes.empty()) return;
    ++m_editCount;
    const int step = m_undo.BeginStep();
    for (size_t i = shapes.size(); i-- > 0;)
        if (TUndoRecord r = recordOf(shapes[i], action, step); r.Snapshot) m_undo.Append(std::move(r));
}

// ---- Taking back ------------------------------------------------------------------------

void TMyCAD::PopFromUndoRedoShapeList() {
    if (m_undo.Limit() == 0 || m_undo.Empty()) return;
    ++m_editCount;
    RemoveAllWorkingShapes();
    std::vector<TUndoRecord> step = m_undo.TakeNewestStep();
    m_undo.PushRedo(takeBack(step));
    Invalidate();
}

TRedoStep TMyCAD::takeBack(std::vector<TUndoRecord>& step) {
    TRedoStep redo;
    auto keepForRedo = [&](const TMyShape* shape, const QString& action) {
        if (TUndoRecord r = recordOf(shape, action, 0); r.Snapshot) redo.push_back(std::move(r));
    };

    // Shapes that an "ACT_ADD" step added go again; copies of them (with
    // their members) are kept first, while their numbers still agree.
    std::vector<TMyShape*> added;
    for (size_t k = step.size(); k-- > 0;) {
        if (!isAction(step[k].Action, ACT_ADD)) continue;
        if (TMyShape* live = shapeById(step[k].Snapshot->GetShapeId())) {
            const std::vector<TMyShape*> tree = canvas_detail::shapeTree(*this, live);
            for (TMyShape* s : tree) keepForRedo(s, ACT_ADD);
            added.push_back(live);
        }
    }
    // Locked or not: the step made them, taking it back removes them.
    if (!added.empty()) deleteShapes(added, false, true);

    std::vector<TMyShape*> regroup;
    std::vector<const TUndoRecord*> goneMembers;
    const TUndoRecord* formerGroup = nullptr;
    std::vector<const TUndoRecord*> restore;
    std::vector<TMyShape*> changed;
    for (size_t k = step.size(); k-- > 0;) {
        const TUndoRecord& r = step[k];
        const QString& action = r.Action;
        TMyShape* live = shapeById(r.Snapshot->GetShapeId());
        if (isAction(action, ACT_UNGROUP)) {
            if (!r.Snapshot->HasParentShape() && r.Snapshot->HasChildShapes())
                formerGroup = &r;
            else if (live)
                regroup.push_back(live);
            else
                goneMembers.push_back(&r);
        } else if (isAction(action, ACT_DELETE)) {
            restore.push_back(&r);
        } else if (!live) {
            continue;  // the shape is gone: nothing to act on
        } else if (isAction(action, ACT_CHANGE)) {
            keepForRedo(live, ACT_CHANGE);
            // Properties and geometry come back; the shape keeps its place
            // and relations, which later steps may have renumbered.
            live->AssignWithoutRelation(r.Snapshot.get());
            canvas_detail::setEnds(*this, live, r.Links);
            changed.push_back(live);
        } else if (isAction(action, ACT_GROUP)) {
            keepForRedo(live, ACT_GROUP);
            for (int no : std::as_const(*live).ChildShapeNos())
                if (TMyShape* member = GetShapeByNo(no)) keepForRedo(member, ACT_GROUP);
            live->SetLocked(false);  // the group shape goes anyway
            UnGroupShape(live, false);
        } else if (const ZOrderMove* z = zOrderMove(action)) {
            (this->*z->counter)(live, false);
            keepForRedo(live, action);
        }
    }
    for (TMyShape* shape : changed) ChangeLinkShapes(shape);
    for (const TUndoRecord& r : step)
        if (isAction(r.Action, ACT_CHANGE)) canvas_detail::restoreRoutes(*this, r.LinkRoutes);

    // An ungrouped group comes back as a new group of its former members
    // (a member deleted since is restored from its copy first).
    for (TMyShape* s : restoreSnapshots(goneMembers)) regroup.push_back(s);
    if (!regroup.empty()) {
        const bool whole = formerGroup && m_undoRestoresWholeGroup;
        const int newId = groupShapes(regroup, false,
                                      whole ? ShapeClassName(formerGroup->Snapshot.get()) : QStringLiteral("TMyGroup"));
        if (TMyShape* group = shapeById(newId)) {
            if (formerGroup) {
                if (whole) group->AssignWithoutRelation(formerGroup->Snapshot.get());
                group->UserData()->Assign(*formerGroup->Snapshot->UserData());
                group->SetName(formerGroup->ShapeName);
                m_undo.ReplaceShapeId(formerGroup->Snapshot->GetShapeId(), newId);
            }
            keepForRedo(group, ACT_UNGROUP);
        }
    }

    if (!restore.empty())
        for (TMyShape* shape : restoreSnapshots(restore)) keepForRedo(shape, ACT_DELETE);
    return redo;
}

void TMyCAD::ClearAllUndoStuff() { m_undo.Clear(); }

void TMyCAD::SetUndoRedoSize(int v) { m_undo.SetLimit(uint8_t(v)); }

// ---- Redo ---------------------------------------------------------------------------------

bool TMyCAD::CanUndo() const { return m_undo.Limit() > 0 && !m_undo.Empty(); }

bool TMyCAD::CanRedo() const { return m_undo.CanRedo(); }

QString TMyCAD::UndoActionName() const { return CanUndo() ? m_undo.NewestAction() : QString(); }

QString TMyCAD::RedoActionName() const { return m_undo.NewestRedoAction(); }

void TMyCAD::Undo() { PopFromUndoRedoShapeList(); }

void TMyCAD::Redo() {
    if (!m_undo.CanRedo()) return;
    const TRedoStep step = m_undo.TakeRedo();
    ++m_editCount;
    RemoveAllWorkingShapes();
    m_redoing = true;
    redoStep(step);
    m_redoing = false;
    Invalidate();
}

void TMyCAD::redoStep(const TRedoStep& step) {
    const QString action = step.front().Action;
    std::vector<const TUndoRecord*> records;
    for (const TUndoRecord& r : step) records.push_back(&r);
    std::vector<TMyShape*> live;
    for (const TUndoRecord& r : step)
        if (TMyShape* s = shapeById(r.Snapshot->GetShapeId())) live.push_back(s);
    // The shapes of the step whose parent is not in the step themselves.
    auto rootsOf = [&](const std::vector<TMyShape*>& shapes) {
        std::unordered_set<int> numbers;
        for (TMyShape* s : shapes) numbers.insert(s->ShapeNo());
        std::vector<TMyShape*> roots;
        for (TMyShape* s : shapes)
            if (!numbers.count(s->ParentShapeNo())) roots.push_back(s);
        return roots;
    };

    if (isAction(action, ACT_ADD)) {
        const std::vector<TMyShape*> restored = restoreSnapshots(records);
        PushtoUndoRedoShapeList(rootsOf(restored), ACT_ADD);
    } else if (isAction(action, ACT_DELETE)) {
        deleteShapes(rootsOf(live), true);
    } else if (isAction(action, ACT_CHANGE)) {
        recordExactly(live, ACT_CHANGE);
        for (const TUndoRecord& r : step)
            if (TMyShape* s = shapeById(r.Snapshot->GetShapeId())) {
                s->AssignWithoutRelation(r.Snapshot.get());
                canvas_detail::setEnds(*this, s, r.Links);
                ChangeLinkShapes(s);
            }
        for (const TUndoRecord& r : step) canvas_detail::restoreRoutes(*this, r.LinkRoutes);
    } else if (isAction(action, ACT_GROUP)) {
        // The group as it was: members, looks and name; it gets a new id,
        // which every later step learns.
        const TUndoRecord& former = step.front();
        std::vector<TMyShape*> members;
        for (size_t k = 1; k < step.size(); ++k)
            if (TMyShape* s = shapeById(step[k].Snapshot->GetShapeId())) members.push_back(s);
        const int newId = groupShapes(members, true, ShapeClassName(former.Snapshot.get()));
        if (TMyShape* group = shapeById(newId)) {
            group->AssignWithoutRelation(former.Snapshot.get());
            group->SetName(former.ShapeName);
            m_undo.ReplaceShapeId(former.Snapshot->GetShapeId(), newId);
        }
    } else if (!live.empty()) {
        if (isAction(action, ACT_UNGROUP))
            UnGroupShape(live.front(), true);
        else if (const ZOrderMove* z = zOrderMove(action))
            (this->*z->move)(live.front(), true);
    }
}

// ---- An edit made by code as one step --------------------------------------------------------

TUndoChangeScope::TUndoChangeScope(TMyCAD& canvas, std::vector<TMyShape*> shapes)
    : m_canvas(canvas), m_shapes(std::move(shapes)) {
    m_canvas.PushtoUndoRedoShapeList(m_shapes, QString::fromLatin1(ACT_CHANGE));
}

TUndoChangeScope::~TUndoChangeScope() {
    for (TMyShape* shape : m_shapes)
        if (m_canvas.GetShapeNoInMyShapes(shape) >= 0) m_canvas.ChangeLinkShapes(shape);
    m_canvas.Invalidate();
}

}  // namespace faroven
