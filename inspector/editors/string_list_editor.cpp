#include "inspector/editors/string_list_editor.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace faroven {

TStringListEditor::TStringListEditor(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("String list editor"));
    m_text = new QPlainTextEdit;
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_lineCount = new QLabel;
    m_lineCount->setObjectName(QStringLiteral("lineCount"));
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto layout = new QVBoxLayout(this);
    layout->addWidget(m_lineCount);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    setMinimumSize(360, 260);
    resize(460, 340);

    connect(m_text, &QPlainTextEdit::textChanged, this, &TStringListEditor::updateLineCount);
    updateLineCount();
}

// A last line that is empty gets a newline of its own, so that the final
// newline rule of Lines() gives it back.
void TStringListEditor::SetLines(const QStringList& lines) {
    QString text = lines.join(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) text += QLatin1Char('\n');
    m_text->setPlainText(text);
}

QStringList TStringListEditor::Lines() const {
    const QString text = m_text->toPlainText();
    if (text.isEmpty()) return {};
    QStringList lines = text.split(QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n'))) lines.removeLast();
    return lines;
}

void TStringListEditor::updateLineCount() {
    const qsizetype count = Lines().size();
    m_lineCount->setText(count == 1 ? tr("1 line") : tr("%1 lines").arg(count));
}

bool TStringListEditor::Edit(QStringList& lines, QWidget* parent, const QString& title) {
    TStringListEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetLines(lines);
    if (editor.exec() != QDialog::Accepted) return false;
    const QStringList edited = editor.Lines();
    if (edited == lines) return false;
    lines = edited;
    return true;
}

}  // namespace faroven
