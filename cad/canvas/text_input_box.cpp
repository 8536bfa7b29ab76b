#include "cad/canvas/text_input_box.h"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextDocument>

namespace faroven {

TTextInputBox::TTextInputBox(QWidget* parent, bool multiLine) : QPlainTextEdit(parent), m_multiLine(multiLine) {
    setObjectName(QStringLiteral("TextInputBox"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(1);
    document()->setDocumentMargin(1);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(m_multiLine ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    if (!m_multiLine) setLineWrapMode(QPlainTextEdit::NoWrap);
    if (parent) parent->installEventFilter(this);
}

int TTextInputBox::OneLineHeight() const {
    const int margin = int(document()->documentMargin());
    return QFontMetrics(font()).lineSpacing() + 2 * (frameWidth() + margin) + 2;
}

void TTextInputBox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        finish(false);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_multiLine && (event->modifiers() & Qt::ShiftModifier)) {
            // A plain '\n' starts a new block, which Text() reports as a line break.
            insertPlainText(QStringLiteral("\n"));
        } else {
            finish(true);
        }
        return;
    default:
        QPlainTextEdit::keyPressEvent(event);
    }
}

void TTextInputBox::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    // A context menu or another window taking over for a moment leaves the input open.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) finish(true);
}

void TTextInputBox::insertFromMimeData(const QMimeData* source) {
    if (m_multiLine || !source->hasText()) {
        QPlainTextEdit::insertFromMimeData(source);
        return;
    }
    // A caption is one line: pasted line breaks become spaces.
    QString text = source->text();
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    insertPlainText(text);
}

bool TTextInputBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::MouseButtonPress) finish(true);
    return false;  // the press goes on to the parent
}

void TTextInputBox::finish(bool commit) {
    if (m_finished) return;
    m_finished = true;
    emit finished(commit);
}

}  // namespace faroven
