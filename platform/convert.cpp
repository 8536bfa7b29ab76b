#include "platform/convert.h"

#include <QLocale>
#include <atomic>
#include <cerrno>
#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale.h>
#include <stdlib.h>

namespace faroven {

namespace {

char16_t systemDecimalPoint() {
    const QString point = QLocale::system().decimalPoint();
    return point.isEmpty() ? u'.' : point.at(0).unicode();
}

std::atomic<char16_t>& separatorCell() {
    static std::atomic<char16_t> cell{systemDecimalPoint()};
    return cell;
}

QString invalidInteger(const QString& text) {
    return QStringLiteral("'%1' is not a valid integer value").arg(text);
}

QString invalidFloat(const QString& text) {
    return QStringLiteral("'%1' is not a valid floating point value").arg(text);
}

bool isBlank(QChar c) { return c.unicode() <= u' '; }

// The "C" locale, so that strtod reads a point whatever setlocale() says.
locale_t cLocale() {
    static locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    return locale;
}

}  // namespace

QChar DecimalSeparator() { return QChar(separatorCell().load(std::memory_order_relaxed)); }

void SetDecimalSeparator(QChar separator) { separatorCell().store(separator.unicode(), std::memory_order_relaxed); }

QString Trim(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && isBlank(text.at(first))) ++first;
    while (last > first && isBlank(text.at(last - 1))) --last;
    if (first == 0 && last == text.size()) return text;
    return text.mid(first, last - first);
}

bool TryStrToInt64(const QString& text, int64_t& value) {
    const QString t = Trim(text);
    qsizetype i = 0;
    bool negative = false;
    if (i < t.size() && (t.at(i) == u'+' || t.at(i) == u'-')) negative = t.at(i++) == u'-';
    if (i == t.size()) return false;
    // Accumulate as a negative number so that INT64_MIN fits.
    int64_t acc = 0;
    for (; i < t.size(); ++i) {
        const char16_t c = t.at(i).unicode();
        if (c < u'0' || c > u'9') return false;
        const int digit = c - u'0';
        if (acc < (std::numeric_limits<int64_t>::min() + digit) / 10) return false;
        acc = acc * 10 - digit;
    }
    if (!negative) {
        if (acc == std::numeric_limits<int64_t>::min()) return false;
        acc = -acc;
    }
    value = acc;
    return true;
}

bool TryStrToInt(const QString& text, int& value) {
    int64_t v = 0;
    if (!TryStrToInt64(text, v) || v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max())
        return false;
    value = int(v);
    return true;
}

int64_t StrToInt64(const QString& text) {
    int64_t v = 0;
    if (!TryStrToInt64(text, v)) throw EConvertError(invalidInteger(text));
    return v;
}

int StrToInt(const QString& text) {
    int v = 0;
    if (!TryStrToInt(text, v)) throw EConvertError(invalidInteger(text));
    return v;
}

bool TryStrToFloat(const QString& text, double& value) {
    const QString t = Trim(text);
    const QChar separator = DecimalSeparator();
    // Check the syntax and rewrite the number in ASCII with a point.
    std::string ascii;
    ascii.reserve(size_t(t.size()));
    qsizetype i = 0;
    auto digitAt = [&](qsizetype k) { return k < t.size() && t.at(k) >= u'0' && t.at(k) <= u'9'; };
    if (i < t.size() && (t.at(i) == u'+' || t.at(i) == u'-')) ascii.push_back(char(t.at(i++).unicode()));
    int digits = 0;
    while (digitAt(i)) { ascii.push_back(char(t.at(i++).unicode())); ++digits; }
    if (i < t.size() && t.at(i) == separator) {
        ascii.push_back('.');
        ++i;
        while (digitAt(i)) { ascii.push_back(char(t.at(i++).unicode())); ++digits; }
    }
    if (digits == 0) return false;
    if (i < t.size() && (t.at(i) == u'e' || t.at(i) == u'E')) {
        ascii.push_back('e');
        ++i;
        if (i < t.size() && (t.at(i) == u'+' || t.at(i) == u'-')) ascii.push_back(char(t.at(i++).unicode()));
        if (!digitAt(i)) return false;
        while (digitAt(i)) ascii.push_back(char(t.at(i++).unicode()));
    }
    if (i != t.size()) return false;
    errno = 0;
    char* end = nullptr;
    const double v = strtod_l(ascii.c_str(), &end, cLocale());
    if (end != ascii.c_str() + ascii.size()) return false;
    if (std::isinf(v)) return false;  // overflow; underflow keeps the tiny value
    value = v;
    return true;
}

double StrToFloat(const QString& text) {
    double v = 0;
    if (!TryStrToFloat(text, v)) throw EConvertError(invalidFloat(text));
    return v;
}

QString IntToStr(int64_t value) { return QString::number(value); }

namespace {
QString specialFloat(double value) {
    if (std::isnan(value)) return QStringLiteral("NAN");
    return value < 0 ? QStringLiteral("-INF") : QStringLiteral("INF");
}

QString withSeparator(const char* begin, const char* end) {
    QString out = QString::fromLatin1(begin, end - begin);
    const QChar separator = DecimalSeparator();
    if (separator != u'.') out.replace(u'.', separator);
    return out;
}
}  // namespace

QString FloatToStr(double value) {
    if (!std::isfinite(value)) return specialFloat(value);
    if (value == 0) return QStringLiteral("0");
    // 15 significant digits in scientific form: [-]d.dddddddddddddde[+-]xx,
    // rewritten in place (this runs for every number of a DXF export).
    char sci[40];
    const auto res = std::to_chars(sci, sci + sizeof sci, value, std::chars_format::scientific, 14);
    const char* e = std::find(sci, res.ptr, 'e');
    const bool negative = sci[0] == '-';
    char mantissa[24];
    int m = 0;
    for (const char* p = sci + (negative ? 1 : 0); p < e; ++p)
        if (*p != '.') mantissa[m++] = *p;
    while (m > 1 && mantissa[m - 1] == '0') --m;
    int exponent = 0;
    std::from_chars(e + 1 + (e[1] == '+' ? 1 : 0), res.ptr, exponent);
    char out[48];
    int n = 0;
    if (negative) out[n++] = '-';
    if (exponent >= -5 && exponent < 15) {
        if (exponent < 0) {
            out[n++] = '0';
            out[n++] = '.';
            for (int k = 0; k < -exponent - 1; ++k) out[n++] = '0';
            for (int k = 0; k < m; ++k) out[n++] = mantissa[k];
        } else if (exponent + 1 >= m) {
            for (int k = 0; k < m; ++k) out[n++] = mantissa[k];
            for (int k = 0; k < exponent + 1 - m; ++k) out[n++] = '0';
        } else {
            for (int k = 0; k <= exponent; ++k) out[n++] = mantissa[k];
            out[n++] = '.';
            for (int k = exponent + 1; k < m; ++k) out[n++] = mantissa[k];
        }
    } else {
        out[n++] = mantissa[0];
        if (m > 1) {
            out[n++] = '.';
            for (int k = 1; k < m; ++k) out[n++] = mantissa[k];
        }
        out[n++] = 'E';
        n = int(std::to_chars(out + n, out + sizeof out, exponent).ptr - out);
    }
    return withSeparator(out, out + n);
}

QString FormatFloatFixed(double value, int decimals) {
    if (!std::isfinite(value)) return specialFloat(value);
    decimals = std::clamp(decimals, 0, 64);
    // A double has at most 309 digits before the point.
    char buffer[400];
    const auto res = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    return withSeparator(buffer, res.ptr);
}

QString FormatIntWidth(int64_t value, int width) { return QString::number(value).rightJustified(width, u' '); }

}  // namespace faroven
