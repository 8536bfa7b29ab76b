#include "dxf/dxf_p.h"
#include "dxf/dxf_primitives.h"

#include "platform/ansi.h"
#include "platform/convert.h"

#include <cmath>
#include <limits>

namespace faroven {

namespace {

double realOf(const TVariant& value) {
    if (value.IsString()) return dxf_detail::readReal(value.AsString());
    return value.AsDouble();
}

int64_t integerOf(const TVariant& value) {
    if (value.IsString()) return dxf_detail::readInteger(value.AsString());
    return value.AsInteger();
}

// The value line of a group, by the typing table, with '.' as separator.
QByteArray valueLine(uint16_t code, const TVariant& value) {
    switch (DxfValueType(code)) {
    case TDxfValueType::Text: {
        QByteArray text = ToAnsi(value.AsString()).left(255);
        text.replace('\r', ' ').replace('\n', ' ');
        return text;
    }
    case TDxfValueType::Real: {
        const double v = realOf(value);
        if (!std::isfinite(v))
            throw EConvertError(QStringLiteral("'%1' is not a valid floating point value for group code %2")
                                    .arg(FloatToStr(v)).arg(code));
        return FormatFloatFixed(v, 6).toLatin1();
    }
    case TDxfValueType::Integer: {
        const int64_t v = integerOf(value);
        if (v < std::numeric_limits<int32_t>::min() || v > std::numeric_limits<int32_t>::max())
            throw EConvertError(QStringLiteral("'%1' is not a valid integer value for group code %2").arg(v).arg(code));
        return FormatIntWidth(v, 6).toLatin1();
    }
    case TDxfValueType::Untyped: break;
    }
    return QByteArray();
}

const char* sectionName(TSections section) {
    switch (section) {
    case scHeader: return "HEADER";
    case scTables: return "TABLES";
    case scBlocks: return "BLOCKS";
    case scEntities: return "ENTITIES";
    case scClasses: return "CLASSES";
    case scUnknow: break;
    }
    return nullptr;
}

}  // namespace

TDXFWrite::TDXFWrite(const QString& fileName) : m_text(fileName) {}

TDXFWrite::TDXFWrite(TStream& stream, const QString& name) : m_text(stream, name) {}

TDXFWrite::~TDXFWrite() = default;

void TDXFWrite::Reset() { m_text.Rewrite(); }

void TDXFWrite::Flush() { m_text.Flush(); }

void TDXFWrite::BeginSection(TSections section) {
    WriteGroup(0, "SECTION");
    if (const char* name = sectionName(section)) WriteGroup(2, name);
}

void TDXFWrite::EndSection(TSections /*section*/) { WriteGroup(0, "ENDSEC"); }

void TDXFWrite::WriteGroup(uint16_t code, const TVariant& value) {
    const DecimalSeparatorGuard guard(u'.');
    // The value is formatted first so that a value that cannot be written
    // leaves no lone code line behind.
    const QByteArray valueText = valueLine(code, value);
    m_text.WriteLine(FormatIntWidth(code, 3).toLatin1());
    m_text.WriteLine(valueText);
}

void TDXFWrite::WriteAnEntry(const TGroupTable& entry) {
    for (int code = 0; code <= 255; ++code)
        if (!entry.Value(code).IsEmpty()) WriteGroup(uint16_t(code), entry.Value(code));
    for (int code = 1000; code <= 1255; ++code)
        if (!entry.Value(code).IsEmpty()) WriteGroup(uint16_t(code), entry.Value(code));
}

}  // namespace faroven
