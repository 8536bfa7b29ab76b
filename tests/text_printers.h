// Readable gtest output for Qt text values in the suites that compare them.
#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"';
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (c == '\r') *out << "\\r";
        else if (c == '\n') *out << "\\n";
        else if (b < 0x20 || b >= 0x7f) *out << "\\x" << "0123456789abcdef"[b >> 4] << "0123456789abcdef"[b & 15];
        else *out << c;
    }
    *out << '"';
}
