// TVariant: the framework's dynamically typed value, reduced to the four kinds
// the library stores: empty, integer, double and string. An empty value means
// "nothing here" and converts to 0 or to the empty text.
#pragma once

#include <QString>
#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <variant>

namespace faroven {

// The framework's variant type codes, kept so that VarType comparisons read
// as they do there.
enum TVarType : uint16_t {
    varEmpty = 0x0000,
    varInteger = 0x0003,
    varDouble = 0x0005,
    varString = 0x0100,
};

class TVariant {
public:
    TVariant() = default;
    template <std::integral T>
        requires(!std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, char16_t>)
    TVariant(T value) : m_value(int64_t(value)) {}
    template <std::floating_point T>
    TVariant(T value) : m_value(double(value)) {}
    TVariant(const QString& text) : m_value(text) {}
    TVariant(const char* text) : m_value(QString::fromLatin1(text)) {}
    TVariant(bool) = delete;  // no boolean kind: say 0 or 1

    TVarType VarType() const;
    bool IsEmpty() const { return std::holds_alternative<std::monostate>(m_value); }
    bool IsInteger() const { return std::holds_alternative<int64_t>(m_value); }
    bool IsDouble() const { return std::holds_alternative<double>(m_value); }
    bool IsString() const { return std::holds_alternative<QString>(m_value); }
    bool IsNumeric() const { return IsInteger() || IsDouble(); }

    // Conversions. Empty gives 0 or "". A double becomes an integer by
    // rounding half to even; a string is converted with StrToInt / StrToFloat
    // under the current decimal separator and raises EConvertError when it is
    // not a number. Numbers become text with IntToStr / FloatToStr.
    int64_t AsInteger() const;
    double AsDouble() const;
    QString AsString() const;

    void Clear() { m_value = std::monostate{}; }

    // Equal when both are empty, both are numbers of the same value (an
    // integer equals a double of the same value), or both are the same text.
    // A number never equals a text.
    friend bool operator==(const TVariant& a, const TVariant& b);

private:
    std::variant<std::monostate, int64_t, double, QString> m_value;
};

inline TVarType VarType(const TVariant& v) { return v.VarType(); }
inline bool VarIsEmpty(const TVariant& v) { return v.IsEmpty(); }

// Describes the value for messages and test output: Empty, Integer 5,
// Double 1.5, String "x".
QString VarToDebugString(const TVariant& v);
std::ostream& operator<<(std::ostream& out, const TVariant& v);

}  // namespace faroven
