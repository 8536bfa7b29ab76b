// TStrings: an ordered list of text lines (the framework's string list).
#pragma once

#include "platform/types.h"

#include <QString>
#include <QStringList>

namespace faroven {

class TStrings : public TPersistent {
public:
    int Count() const { return int(m_lines.size()); }
    // The line at index; raises EStringListError when out of range.
    QString Strings(int index) const;
    QString operator[](int index) const { return Strings(index); }
    void SetStrings(int index, const QString& s);
    int Add(const QString& s);
    void Insert(int index, const QString& s);
    void Delete(int index);
    void Clear();
    int IndexOf(const QString& s) const { return int(m_lines.indexOf(s)); }
    // All lines joined with CR LF after each line, as the framework's Text.
    QString Text() const;
    // Splits at CR LF, LF or CR.
    void SetText(const QString& text);
    QStringList Lines() const { return m_lines; }
    void SetLines(const QStringList& lines);
    void Assign(const TPersistent* source) override;
    void Assign(const TStrings& source) { Assign(&source); }
    void LoadFromFile(const QString& fileName);
    void SaveToFile(const QString& fileName) const;
    friend bool operator==(const TStrings& a, const TStrings& b) { return a.m_lines == b.m_lines; }

    TNotifyEvent OnChange;

private:
    void changed() { if (OnChange) OnChange(this); }
    QStringList m_lines;
};
using TStringList = TStrings;

class EStringListError : public Exception { using Exception::Exception; };

}  // namespace faroven
