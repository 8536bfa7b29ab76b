// TTextInputBox: the small editor the canvas opens over a shape to type its
// caption or its text in place. It only edits and reports; the canvas decides
// what the text does to the shape (mycad_text_input.cpp).
//
// Enter finishes with the text; Shift+Enter starts a new line in a multi-line
// box (a one-line box finishes on it too); Escape finishes without the text.
// Losing the focus to another widget, or a mouse press elsewhere on the parent
// widget, finishes with the text. `finished` is emitted once; the box stays
// open until its owner closes it.
#pragma once

#include <QPlainTextEdit>

namespace faroven {

class TTextInputBox : public QPlainTextEdit {
    Q_OBJECT
public:
    // A child of parent (which it watches for presses elsewhere).
    TTextInputBox(QWidget* parent, bool multiLine);

    bool MultiLine() const { return m_multiLine; }
    // The text typed: lines separated by '\n' (never more than one line in a one-line box).
    QString Text() const { return toPlainText(); }
    // The height that shows one line of the current font, frame included.
    int OneLineHeight() const;

signals:
    void finished(bool commit);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void finish(bool commit);

    bool m_multiLine;
    bool m_finished = false;
};

}  // namespace faroven
