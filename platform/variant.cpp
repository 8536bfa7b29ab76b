#include "platform/variant.h"

#include "platform/convert.h"
#include "platform/types.h"

#include <ostream>

namespace faroven {

TVarType TVariant::VarType() const {
    switch (m_value.index()) {
    case 1: return varInteger;
    case 2: return varDouble;
    case 3: return varString;
    default: return varEmpty;
    }
}

int64_t TVariant::AsInteger() const {
    if (const auto* i = std::get_if<int64_t>(&m_value)) return *i;
    if (const auto* d = std::get_if<double>(&m_value)) {
        const double r = std::nearbyint(*d);
        if (!(r >= -9223372036854775808.0 && r < 9223372036854775808.0))
            throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(FloatToStr(*d)));
        return int64_t(r);
    }
    if (const auto* s = std::get_if<QString>(&m_value)) return StrToInt64(*s);
    return 0;
}

double TVariant::AsDouble() const {
    if (const auto* d = std::get_if<double>(&m_value)) return *d;
    if (const auto* i = std::get_if<int64_t>(&m_value)) return double(*i);
    if (const auto* s = std::get_if<QString>(&m_value)) return StrToFloat(*s);
    return 0;
}

QString TVariant::AsString() const {
    if (const auto* s = std::get_if<QString>(&m_value)) return *s;
    if (const auto* i = std::get_if<int64_t>(&m_value)) return IntToStr(*i);
    if (const auto* d = std::get_if<double>(&m_value)) return FloatToStr(*d);
    return QString();
}

bool operator==(const TVariant& a, const TVariant& b) {
    if (a.IsEmpty() || b.IsEmpty()) return a.IsEmpty() && b.IsEmpty();
    if (a.IsString() || b.IsString())
        return a.IsString() && b.IsString() && std::get<QString>(a.m_value) == std::get<QString>(b.m_value);
    if (a.IsInteger() && b.IsInteger()) return std::get<int64_t>(a.m_value) == std::get<int64_t>(b.m_value);
    return a.AsDouble() == b.AsDouble();
}

QString VarToDebugString(const TVariant& v) {
    switch (v.VarType()) {
    case varInteger: return QStringLiteral("Integer %1").arg(v.AsInteger());
    case varDouble: return QStringLiteral("Double %1").arg(v.AsDouble(), 0, 'g', 17);
    case varString: return QStringLiteral("String \"%1\"").arg(v.AsString());
    default: return QStringLiteral("Empty");
    }
}

std::ostream& operator<<(std::ostream& out, const TVariant& v) { return out << VarToDebugString(v).toStdString(); }

}  // namespace faroven
