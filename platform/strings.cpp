#include "platform/strings.h"

#include "platform/ansi.h"
#include "platform/stream.h"

namespace faroven {

QString TStrings::Strings(int index) const {
    if (index < 0 || index >= Count())
        throw EStringListError(QStringLiteral("List index out of bounds (%1), %2 lines").arg(index).arg(Count()));
    return m_lines[index];
}

void TStrings::SetStrings(int index, const QString& s) {
    if (index < 0 || index >= Count())
        throw EStringListError(QStringLiteral("List index out of bounds (%1), %2 lines").arg(index).arg(Count()));
    m_lines[index] = s;
    changed();
}

int TStrings::Add(const QString& s) {
    m_lines.append(s);
    changed();
    return Count() - 1;
}

void TStrings::Insert(int index, const QString& s) {
    if (index < 0 || index > Count())
        throw EStringListError(QStringLiteral("List index out of bounds (%1), %2 lines").arg(index).arg(Count()));
    m_lines.insert(index, s);
    changed();
}

void TStrings::Delete(int index) {
    if (index < 0 || index >= Count())
        throw EStringListError(QStringLiteral("List index out of bounds (%1), %2 lines").arg(index).arg(Count()));
    m_lines.removeAt(index);
    changed();
}

void TStrings::Clear() {
    if (m_lines.isEmpty()) return;
    m_lines.clear();
    changed();
}

QString TStrings::Text() const {
    QString out;
    for (const QString& line : m_lines) {
        out += line;
        out += QStringLiteral("\r\n");
    }
    return out;
}

void TStrings::SetText(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QChar('\r'), QChar('\n'));
    QStringList lines = t.split(QChar('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    m_lines = lines;
    changed();
}

void TStrings::SetLines(const QStringList& lines) {
    m_lines = lines;
    changed();
}

void TStrings::Assign(const TPersistent* source) {
    if (auto other = dynamic_cast<const TStrings*>(source)) {
        if (other == this) return;
        m_lines = other->m_lines;
        changed();
        return;
    }
    TPersistent::Assign(source);
}

void TStrings::LoadFromFile(const QString& fileName) {
    TMemoryStream stream;
    stream.LoadFromFile(fileName);
    SetText(FromAnsi(stream.ToByteArray()));
}

void TStrings::SaveToFile(const QString& fileName) const {
    const QByteArray bytes = ToAnsi(Text());
    TFileStream file(fileName, fmCreate);
    file.WriteBuffer(bytes.constData(), bytes.size());
}

}  // namespace faroven
