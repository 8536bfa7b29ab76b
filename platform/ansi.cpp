#include "platform/ansi.h"

#include <array>

namespace faroven {

namespace {
// Code points of bytes 0x80..0x9F; 0 marks the five undefined bytes, which map
// to the C1 control of the same value.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178,
};
}  // namespace

QByteArray ToAnsi(const QString& text) {
    QByteArray out;
    out.reserve(text.size());
    for (QChar qc : text) {
        const char16_t c = qc.unicode();
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            out.append(char(c));
            continue;
        }
        char byte = '?';
        for (int i = 0; i < 32; ++i) {
            if (kHigh[i] == c || (kHigh[i] == 0 && c == 0x80 + i)) {
                byte = char(0x80 + i);
                break;
            }
        }
        out.append(byte);
    }
    return out;
}

QString FromAnsi(const char* bytes, int length) {
    if (length <= 0) return QString();
    // Written in place: files hold many short strings, and appending one
    // character at a time costs more than the conversion.
    QString out(length, Qt::Uninitialized);
    char16_t* d = reinterpret_cast<char16_t*>(out.data());
    for (int i = 0; i < length; ++i) {
        const auto b = uint8_t(bytes[i]);
        d[i] = b >= 0x80 && b <= 0x9F && kHigh[b - 0x80] ? kHigh[b - 0x80] : char16_t(b);
    }
    return out;
}

QString FromAnsi(const QByteArray& bytes) { return FromAnsi(bytes.constData(), int(bytes.size())); }

}  // namespace faroven
