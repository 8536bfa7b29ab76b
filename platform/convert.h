// Conversions between numbers and text under one process-wide decimal
// separator, as the framework does it. The separator starts as the system
// locale's decimal point; code that needs a fixed separator for a moment sets
// it and puts it back, best with DecimalSeparatorGuard so that an exception
// cannot leave it changed. Only the user-interface thread may change it.
#pragma once

#include "platform/types.h"

#include <QChar>
#include <QString>
#include <cstdint>

namespace faroven {

QChar DecimalSeparator();
void SetDecimalSeparator(QChar separator);

// Saves the decimal separator on construction (optionally setting a new one)
// and restores the saved one on destruction, on every path out of a scope.
class DecimalSeparatorGuard {
public:
    DecimalSeparatorGuard() : m_saved(DecimalSeparator()) {}
    explicit DecimalSeparatorGuard(QChar separator) : m_saved(DecimalSeparator()) { SetDecimalSeparator(separator); }
    ~DecimalSeparatorGuard() { SetDecimalSeparator(m_saved); }
    DecimalSeparatorGuard(const DecimalSeparatorGuard&) = delete;
    DecimalSeparatorGuard& operator=(const DecimalSeparatorGuard&) = delete;
    QChar Saved() const { return m_saved; }
private:
    QChar m_saved;
};

// Removes every character up to and including the blank (controls too) from
// both ends, like the framework's Trim.
QString Trim(const QString& text);

// Whole numbers: optional blanks, an optional sign and decimal digits. Text
// that is not such a number, or whose value does not fit, raises EConvertError
// "'<text>' is not a valid integer value".
int StrToInt(const QString& text);
int64_t StrToInt64(const QString& text);
bool TryStrToInt(const QString& text, int& value);
bool TryStrToInt64(const QString& text, int64_t& value);

// Reals: optional blanks, an optional sign, digits with at most one decimal
// separator (the current one; a point is not accepted when the separator is a
// comma), at least one digit, an optional exponent E or e with optional sign
// and digits. No thousands separators, no INF or NAN. A value too large for a
// double raises as well; one too small becomes 0 or a subnormal. Failure
// raises EConvertError "'<text>' is not a valid floating point value".
double StrToFloat(const QString& text);
bool TryStrToFloat(const QString& text, double& value);

QString IntToStr(int64_t value);
// Shortest text with at most 15 significant digits, in fixed notation for
// magnitudes from 1E-5 up to below 1E15 and as "1.5E-7" / "1E20" otherwise;
// uses the current decimal separator. NAN, INF and -INF for the special values.
QString FloatToStr(double value);
// printf's "%.<decimals>f": fixed notation, never an exponent, with the
// current decimal separator.
QString FormatFloatFixed(double value, int decimals);
// printf's "%<width>d": the number right-aligned in width characters.
QString FormatIntWidth(int64_t value, int width);

}  // namespace faroven
