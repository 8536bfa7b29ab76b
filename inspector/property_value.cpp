#include "inspector/property_value.h"

#include "cad/canvas/layers.h"
#include "cad/persistence/userdata.h"
#include "inspector/color_names.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"

#include <QObject>
#include <cmath>
#include <limits>

namespace faroven {

namespace {

QString enumKey(const TPropertyNode& node, int value) {
    const char* key = node.Enum.isValid() ? node.Enum.valueToKey(value) : nullptr;
    return key ? QString::fromLatin1(key) : QString::number(value);
}

// The range of an integer property's type.
std::pair<qlonglong, qlonglong> integerRange(QMetaType type) {
    switch (type.id()) {
    case QMetaType::UChar: return {0, 255};
    case QMetaType::Char: case QMetaType::SChar: return {-128, 127};
    case QMetaType::Short: return {-32768, 32767};
    case QMetaType::UShort: return {0, 65535};
    case QMetaType::UInt: case QMetaType::ULong: return {0, qlonglong(std::numeric_limits<uint32_t>::max())};
    case QMetaType::LongLong: case QMetaType::ULongLong:
        return {std::numeric_limits<qlonglong>::min(), std::numeric_limits<qlonglong>::max()};
    default: return {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};
    }
}

QString setText(const TPropertyNode& node, int bits) {
    QStringList names;
    for (const auto& [name, bit] : SetMembers(node))
        if ((bits & bit) == bit && bit) names << name;
    return QLatin1Char('[') + names.join(QLatin1Char(',')) + QLatin1Char(']');
}

}  // namespace

std::vector<std::pair<QString, int>> SetMembers(const TPropertyNode& node) {
    std::vector<std::pair<QString, int>> members;
    for (int i = 0; node.Enum.isValid() && i < node.Enum.keyCount(); ++i) {
        const int v = node.Enum.value(i);
        members.emplace_back(QString::fromLatin1(node.Enum.key(i)), node.SetBitsByOrdinal ? 1 << v : v);
    }
    return members;
}

QString PropertyValueText(const TPropertyNode& node, const QVariant& value) {
    switch (node.Kind) {
    case TPropertyKind::Bool: return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case TPropertyKind::Integer: return QString::number(value.toLongLong());
    case TPropertyKind::Float: return QString::number(value.toDouble(), 'g', 7);
    case TPropertyKind::String: return value.toString();
    case TPropertyKind::Strings: {
        const QStringList lines = value.toStringList();
        return lines.size() == 1 ? lines.front() : QStringLiteral("(%1 lines)").arg(lines.size());
    }
    case TPropertyKind::Enum: return enumKey(node, value.toInt());
    case TPropertyKind::Set: return setText(node, value.toInt());
    case TPropertyKind::Color: return ColorToString(value.toInt());
    case TPropertyKind::Pen:
        if (const TPen* p = value.value<TPen*>())
            return QStringLiteral("%1, %2, %3").arg(QLatin1String(QMetaEnum::fromType<TPenStyle>().valueToKey(p->Style())))
                .arg(p->Width()).arg(ColorToString(p->Color()));
        break;
    case TPropertyKind::Brush:
        if (const TBrush* b = value.value<TBrush*>())
            return QStringLiteral("%1, %2").arg(QLatin1String(QMetaEnum::fromType<TBrushStyle>().valueToKey(b->Style())))
                .arg(ColorToString(b->Color()));
        break;
    case TPropertyKind::Font:
        if (const TFont* f = value.value<TFont*>()) return QStringLiteral("%1, %2").arg(f->Name()).arg(f->Size());
        break;
    case TPropertyKind::UserData:
        if (const TUserData* u = value.value<TUserData*>())
            return u->GetCount() == 1 ? QStringLiteral("(1 pair)") : QStringLiteral("(%1 pairs)").arg(u->GetCount());
        break;
    case TPropertyKind::Picture:
        if (const TBitmap* b = value.value<TBitmap*>())
            return b->Empty() ? QStringLiteral("(none)") : QStringLiteral("(%1 × %2)").arg(b->Width()).arg(b->Height());
        break;
    case TPropertyKind::Layers:
        if (const TLayerTable* t = value.value<const TLayerTable*>())
            return t->Count() == 1 ? QStringLiteral("(1 layer)") : QStringLiteral("(%1 layers)").arg(t->Count());
        break;
    case TPropertyKind::Object:
        if (const QObject* o = value.value<QObject*>())
            return QStringLiteral("(%1)").arg(QString::fromLatin1(o->metaObject()->className()).section(QLatin1String("::"), -1));
        break;
    case TPropertyKind::Other: return value.toString();
    }
    return QString();
}

QVariant ParsePropertyText(const TPropertyNode& node, const QString& typed, QString* error) {
    const QString text = typed.trimmed();
    auto fail = [&](const QString& why) {
        if (error) *error = QStringLiteral("%1: %2").arg(node.Path, why);
        return QVariant();
    };
    switch (node.Kind) {
    case TPropertyKind::Bool:
        if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || text == QLatin1String("1")) return true;
        if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || text == QLatin1String("0")) return false;
        return fail(QStringLiteral("\"%1\" is not True or False").arg(text));
    case TPropertyKind::Integer: {
        bool ok = false;
        const qlonglong v = text.toLongLong(&ok);
        if (!ok) return fail(QStringLiteral("\"%1\" is not a whole number").arg(text));
        return v;
    }
    case TPropertyKind::Float: {
        bool ok = false;
        const double v = text.toDouble(&ok);
        if (!ok) return fail(QStringLiteral("\"%1\" is not a number").arg(text));
        return v;
    }
    case TPropertyKind::String: return typed;
    case TPropertyKind::Strings: return typed.split(QLatin1Char('\n'));
    case TPropertyKind::Enum: {
        bool ok = false;
        int v = node.Enum.keyToValue(text.toLatin1().constData(), &ok);
        if (!ok) v = text.toInt(&ok);
        if (!ok) return fail(QStringLiteral("\"%1\" is not one of its values").arg(text));
        return v;
    }
    case TPropertyKind::Set: {
        QString inner = text;
        if (inner.startsWith(QLatin1Char('['))) inner.remove(0, 1);
        if (inner.endsWith(QLatin1Char(']'))) inner.chop(1);
        int bits = 0;
        const auto members = SetMembers(node);
        for (const QString& part : inner.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QString name = part.trimmed();
            auto it = std::find_if(members.begin(), members.end(), [&](const auto& m) { return m.first == name; });
            if (it == members.end()) return fail(QStringLiteral("\"%1\" is not a member of the set").arg(name));
            bits |= it->second;
        }
        return bits;
    }
    case TPropertyKind::Color: {
        bool ok = false;
        const TColor c = StringToColor(text, &ok);
        if (!ok) return fail(QStringLiteral("\"%1\" is not a colour name or number").arg(text));
        return int(c);
    }
    default: return fail(QStringLiteral("cannot be typed in"));
    }
}

QVariant CheckPropertyValue(const TPropertyNode& node, const QVariant& value, QString* error) {
    if (value.metaType().id() == QMetaType::QString && node.Kind != TPropertyKind::String)
        return ParsePropertyText(node, value.toString(), error);
    auto fail = [&](const QString& why) {
        if (error) *error = QStringLiteral("%1: %2").arg(node.Path, why);
        return QVariant();
    };
    switch (node.Kind) {
    case TPropertyKind::Integer: {
        bool ok = false;
        const qlonglong v = value.toLongLong(&ok);
        const auto [low, high] = integerRange(node.Type);
        if (!ok) return fail(QStringLiteral("not a whole number"));
        if (v < low || v > high) return fail(QStringLiteral("%1 is out of range (%2 to %3)").arg(v).arg(low).arg(high));
        return v;
    }
    case TPropertyKind::Float: {
        bool ok = false;
        const double v = value.toDouble(&ok);
        if (!ok || !std::isfinite(v)) return fail(QStringLiteral("not a finite number"));
        if (node.Type.id() == QMetaType::Float && std::abs(v) > std::numeric_limits<float>::max())
            return fail(QStringLiteral("%1 is out of range").arg(v));
        return v;
    }
    case TPropertyKind::Enum: {
        const int v = EnumVariantToInt(value);
        if (!node.Enum.valueToKey(v)) return fail(QStringLiteral("%1 is not one of its values").arg(v));
        return v;
    }
    case TPropertyKind::Set: {
        const int v = value.toInt();
        int all = 0;
        for (const auto& m : SetMembers(node)) all |= m.second;
        if (v & ~all) return fail(QStringLiteral("%1 holds bits that are not members").arg(v));
        return v;
    }
    case TPropertyKind::Color: return int(value.toLongLong());
    case TPropertyKind::Bool: return value.toBool();
    case TPropertyKind::String: return value.toString();
    case TPropertyKind::Strings: return value.toStringList();
    default: return fail(QStringLiteral("is edited through its own editor"));
    }
}

}  // namespace faroven
