// What the editor knows about the drawing it shows as a document: the file it
// was read from or saved to, and whether it holds changes not saved yet.
#pragma once

#include "cad/canvas/mycad.h"

#include <QString>
#include <cstdint>
#include <functional>

class DocumentState {
public:
    explicit DocumentState(faroven::TMyCAD* cad);

    // The drawing's file; empty for a drawing never saved.
    const QString& fileName() const { return m_fileName; }
    // The file's name without its folder, or "Untitled".
    QString displayName() const;

    // Unsaved changes: a mouse edit since the last save, a recorded edit, undo
    // or redo since the drawing was last saved or loaded, or a change the undo
    // history does not record (layers, page settings) reported by markModified.
    // Undoing back to the saved state still counts as a change.
    bool isModified() const;
    // Reports a change to the drawing that the canvas does not count.
    void markModified() { m_unrecordedChange = true; }
    // The drawing now matches the file (just saved, loaded or started empty,
    // with an empty name).
    void markSaved(const QString& fileName);

private:
    faroven::TMyCAD* m_cad;
    QString m_fileName;
    int64_t m_savedEditCount = 0;
    bool m_unrecordedChange = false;
};

// The answers to "save the changes first?".
enum class UnsavedChoice { Save, Discard, Cancel };

// Whether the drawing may be closed or replaced: yes when it has no unsaved
// changes; otherwise ask() decides, and Save counts only when save() succeeds.
// Cancel, or a failed save, keeps the drawing.
bool mayDiscardDrawing(const DocumentState& document, const std::function<UnsavedChoice()>& ask,
                       const std::function<bool()>& save);
