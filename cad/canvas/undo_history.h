// TUndoHistory: the canvas's bounded list of editing steps, and beside it the
// steps that were taken back and may be redone.
//
// The undo side is one flat list of records in the order recorded. Every
// record made for one step shares its step number; steps are numbered 0, 1,
// 2 ... from the oldest kept step. A record owns a copy (snapshot) of the
// shape it stands for, made when the step was recorded.
//
// The history knows nothing of the drawing: the canvas makes the snapshots,
// decides what a step means and takes it back (mycad_undo.cpp).
#pragma once

#include "cad/types.h"

#include <QString>
#include <memory>
#include <vector>

namespace faroven {

class TMyShape;

// The action names a step is recorded under.
inline constexpr char ACT_ADD[] = "ACT_ADD";
inline constexpr char ACT_CHANGE[] = "ACT_CHANGE";
inline constexpr char ACT_DELETE[] = "ACT_DELETE";
inline constexpr char ACT_GROUP[] = "ACT_GROUP";
inline constexpr char ACT_UNGROUP[] = "ACT_UNGROUP";
inline constexpr char ACT_BRINGTOFRONT[] = "ACT_BRINGTOFRONT";
inline constexpr char ACT_SENDTOBACK[] = "ACT_SENDTOBACK";
inline constexpr char ACT_BRINGTOFRONTBYSTEP[] = "ACT_BRINGTOFRONTBYSTEP";
inline constexpr char ACT_SENDTOBACKBYSTEP[] = "ACT_SENDTOBACKBYSTEP";

// One end of a link line attached to a link point of a shape, by ids: shape
// numbers change while a step waits in the history, ids do not.
struct TUndoLink {
    int LineId = -1;
    int ShapeId = -1;
    bool AtStart = true;  // the line's start end (else its end)
    int PtId = -1;        // the link point on the shape
};

struct TUndoRecord {
    int Step = 0;
    QString ShapeName;                    // the recorded shape's component name
    std::unique_ptr<TMyShape> Snapshot;   // a copy of the shape, owned
    QString Action;                       // "ACT_ADD", "ACT_CHANGE", ...
    // The connections the shape took part in when recorded (as the line or
    // as the joined shape): a restored shape is joined again to what is left.
    std::vector<TUndoLink> Links;
    // The routes of the link lines attached to the shape (its own when it is
    // a link line), by line id: taking
    // back a move puts them back exactly, not merely routed again.
    std::vector<std::pair<int, TArrMyPoint>> LinkRoutes;
    // The id of the group the shape belonged to when recorded (-1: none): a
    // member whose deletion is taken back goes back into its group.
    int ParentId = -1;
};

// One step taken back: what redoing it needs (the records' Step is unused).
using TRedoStep = std::vector<TUndoRecord>;

class TUndoHistory {
public:
    TUndoHistory();
    ~TUndoHistory();
    TUndoHistory(const TUndoHistory&) = delete;
    TUndoHistory& operator=(const TUndoHistory&) = delete;

    // The most steps kept; 0 switches the history off and empties it. A
    // smaller non-zero limit trims the oldest steps at the next recording.
    int Limit() const { return m_limit; }
    void SetLimit(int limit);

    // ---- Undo side ----------------------------------------------------------
    const std::vector<TUndoRecord>& Records() const { return m_records; }
    bool Empty() const { return m_records.empty(); }
    // Makes room for a new step (dropping the oldest steps while the history
    // is full) and returns the number the new step's records must carry.
    int BeginStep();
    void Append(TUndoRecord record);
    // Removes the newest step's records and hands them over, oldest first.
    std::vector<TUndoRecord> TakeNewestStep();
    // The action of the newest step; empty when there is none.
    QString NewestAction() const;

    // ---- Redo side ----------------------------------------------------------
    bool CanRedo() const { return !m_redo.empty(); }
    void PushRedo(TRedoStep step);
    TRedoStep TakeRedo();
    QString NewestRedoAction() const;
    void ClearRedo();

    // Every snapshot, undo and redo, that carries the id gets the new one: a
    // shape that was made anew (a regrouped group) is found by older steps.
    void ReplaceShapeId(int oldId, int newId);
    // Frees every snapshot on both sides.
    void Clear();

private:
    int m_limit = 10;
    std::vector<TUndoRecord> m_records;
    std::vector<TRedoStep> m_redo;  // the newest at the back
};

}  // namespace faroven
