#include "document_state.h"

#include <QFileInfo>

using namespace faroven;

DocumentState::DocumentState(TMyCAD* cad) : m_cad(cad), m_savedEditCount(cad->EditCount()) {}

QString DocumentState::displayName() const {
    return m_fileName.isEmpty() ? QStringLiteral("Untitled") : QFileInfo(m_fileName).fileName();
}

bool DocumentState::isModified() const {
    return m_unrecordedChange || m_cad->Changed() || m_cad->EditCount() != m_savedEditCount;
}

void DocumentState::markSaved(const QString& fileName) {
    m_fileName = fileName;
    m_savedEditCount = m_cad->EditCount();
    m_unrecordedChange = false;
    // Saving clears the flag itself; loading and starting anew leave it.
    m_cad->SetChanged(false);
}

bool mayDiscardDrawing(const DocumentState& document, const std::function<UnsavedChoice()>& ask,
                       const std::function<bool()>& save) {
    if (!document.isModified()) return true;
    switch (ask()) {
        case UnsavedChoice::Save: return save();
        case UnsavedChoice::Discard: return true;
        case UnsavedChoice::Cancel: break;
    }
    return false;
}
