// TStringListEditor: the modal editor of multi-line text (captions,
// MultiInfo, text lines), one list entry per line.
//
// Child widgets, by object name: "text" (the QPlainTextEdit) and
// "lineCount" (the QLabel reading "3 lines").
#pragma once

#include <QDialog>
#include <QStringList>

class QLabel;
class QPlainTextEdit;

namespace faroven {

class TStringListEditor : public QDialog {
    Q_OBJECT
public:
    explicit TStringListEditor(QWidget* parent = nullptr);

    void SetLines(const QStringList& lines);
    // The lines of the text. A final newline ends the last line rather than
    // starting an empty one: "a\nb\n" is two lines.
    QStringList Lines() const;

    QPlainTextEdit* TextEdit() const { return m_text; }

    // Shows the dialog on lines; true when OK was pressed and the lines
    // changed (then lines holds the new ones).
    static bool Edit(QStringList& lines, QWidget* parent = nullptr, const QString& title = QString());

private:
    void updateLineCount();

    QPlainTextEdit* m_text = nullptr;
    QLabel* m_lineCount = nullptr;
};

}  // namespace faroven
