#include "inspector/property_node.h"

#include "cad/canvas/layers.h"
#include "cad/persistence/userdata.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"

#include <QMetaProperty>
#include <QObject>
#include <QSet>
#include <cstring>

namespace faroven {

namespace {

using Reader = std::function<QVariant(QObject*)>;

QMetaProperty propertyOf(const QObject* object, const char* name) {
    const QMetaObject* mo = object->metaObject();
    return mo->property(mo->indexOfProperty(name));
}

bool isIntegerType(QMetaType t) {
    switch (t.id()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::Short: case QMetaType::UShort:
    case QMetaType::Long: case QMetaType::ULong: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Char: case QMetaType::SChar: case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

// Colours are stored as plain ints; their names say what they are.
bool namesAColor(const QString& name) { return name.contains(QLatin1String("Color")); }

// The enumeration of a property. Properties whose enum lives in another
// namespace's meta-object (as the library's do) are found through the type.
QMetaEnum enumeratorOf(const QMetaProperty& p) {
    if (p.isEnumType()) return p.enumerator();
    const QMetaType t = p.metaType();
    const QMetaObject* mo = t.metaObject();
    if (!(t.flags() & QMetaType::IsEnumeration) || !mo) return QMetaEnum();
    QByteArray name(t.name());
    name = name.mid(name.lastIndexOf(':') + 1);
    const int i = mo->indexOfEnumerator(name.constData());
    return i >= 0 ? mo->enumerator(i) : QMetaEnum();
}

TPropertyKind kindOf(const QMetaProperty& p) {
    const QMetaType t = p.metaType();
    if (t == QMetaType::fromType<TPen*>()) return TPropertyKind::Pen;
    if (t == QMetaType::fromType<TBrush*>()) return TPropertyKind::Brush;
    if (t == QMetaType::fromType<TFont*>()) return TPropertyKind::Font;
    if (t == QMetaType::fromType<TUserData*>()) return TPropertyKind::UserData;
    if (t == QMetaType::fromType<TBitmap*>()) return TPropertyKind::Picture;
    if (t == QMetaType::fromType<const TLayerTable*>()) return TPropertyKind::Layers;
    if (t.flags() & QMetaType::PointerToQObject) return TPropertyKind::Object;
    if (const QMetaEnum e = enumeratorOf(p); e.isValid()) return e.isFlag() ? TPropertyKind::Set : TPropertyKind::Enum;
    if (t.id() == QMetaType::Bool) return TPropertyKind::Bool;
    if (isIntegerType(t)) return namesAColor(QString::fromLatin1(p.name())) ? TPropertyKind::Color : TPropertyKind::Integer;
    if (t.id() == QMetaType::Float || t.id() == QMetaType::Double) return TPropertyKind::Float;
    if (t.id() == QMetaType::QString) return TPropertyKind::String;
    if (t.id() == QMetaType::QStringList) return TPropertyKind::Strings;
    return TPropertyKind::Other;
}

// Values are handed around in one form per kind: ints for enumerations,
// sets and colours, qlonglong for integers, double for reals.
QVariant normalized(TPropertyKind kind, const QVariant& v) {
    switch (kind) {
    case TPropertyKind::Enum: case TPropertyKind::Set: return EnumVariantToInt(v);
    case TPropertyKind::Color: return int(v.toLongLong());
    case TPropertyKind::Integer: return v.toLongLong();
    case TPropertyKind::Float: return v.toDouble();
    default: return v;
    }
}

TPropertyNode leaf(const QString& parentPath, const QString& name, TPropertyKind kind, Reader read,
                   std::function<void(QObject*, const QVariant&)> write) {
    TPropertyNode n;
    n.Name = name;
    n.Path = parentPath.isEmpty() ? name : parentPath + QLatin1Char('.') + name;
    n.Kind = kind;
    n.Read = std::move(read);
    n.Write = std::move(write);
    if (kind == TPropertyKind::Integer) n.Type = QMetaType::fromType<int>();
    return n;
}

template <class T>
T* pointerFrom(const Reader& read, QObject* o) { return read(o).value<T*>(); }

template <class E>
TPropertyNode enumLeaf(const QString& parentPath, const QString& name, Reader read,
                       std::function<void(QObject*, const QVariant&)> write) {
    TPropertyNode n = leaf(parentPath, name, TPropertyKind::Enum, std::move(read), std::move(write));
    n.Enum = QMetaEnum::fromType<E>();
    return n;
}

std::vector<TPropertyNode> penChildren(const QString& path, const Reader& pen) {
    auto p = [pen](QObject* o) { return pointerFrom<TPen>(pen, o); };
    return {
        leaf(path, "Color", TPropertyKind::Color, [p](QObject* o) { return QVariant(int(p(o)->Color())); },
             [p](QObject* o, const QVariant& v) { p(o)->SetColor(v.toInt()); }),
        enumLeaf<TPenMode>(path, "Mode", [p](QObject* o) { return QVariant(int(p(o)->Mode())); },
                           [p](QObject* o, const QVariant& v) { p(o)->SetMode(TPenMode(v.toInt())); }),
        enumLeaf<TPenStyle>(path, "Style", [p](QObject* o) { return QVariant(int(p(o)->Style())); },
                            [p](QObject* o, const QVariant& v) { p(o)->SetStyle(TPenStyle(v.toInt())); }),
        leaf(path, "Width", TPropertyKind::Integer, [p](QObject* o) { return QVariant(qlonglong(p(o)->Width())); },
             [p](QObject* o, const QVariant& v) { p(o)->SetWidth(v.toInt()); }),
    };
}

std::vector<TPropertyNode> brushChildren(const QString& path, const Reader& brush) {
    auto b = [brush](QObject* o) { return pointerFrom<TBrush>(brush, o); };
    return {
        leaf(path, "Color", TPropertyKind::Color, [b](QObject* o) { return QVariant(int(b(o)->Color())); },
             [b](QObject* o, const QVariant& v) { b(o)->SetColor(v.toInt()); }),
        enumLeaf<TBrushStyle>(path, "Style", [b](QObject* o) { return QVariant(int(b(o)->Style())); },
                              [b](QObject* o, const QVariant& v) { b(o)->SetStyle(TBrushStyle(v.toInt())); }),
    };
}

std::vector<TPropertyNode> fontChildren(const QString& path, const Reader& font) {
    auto f = [font](QObject* o) { return pointerFrom<TFont>(font, o); };
    TPropertyNode style = leaf(path, "Style", TPropertyKind::Set,
                               [f](QObject* o) { return QVariant(int(f(o)->Style().Bits())); },
                               [f](QObject* o, const QVariant& v) { f(o)->SetStyle(TFontStyles::FromBits(uint8_t(v.toInt()))); });
    style.Enum = QMetaEnum::fromType<TFontStyle>();
    style.SetBitsByOrdinal = true;
    TPropertyNode charset = leaf(path, "Charset", TPropertyKind::Integer,
                                 [f](QObject* o) { return QVariant(qlonglong(f(o)->Charset())); },
                                 [f](QObject* o, const QVariant& v) { f(o)->SetCharset(TFontCharset(v.toInt())); });
    charset.Type = QMetaType::fromType<uint8_t>();
    return {
        charset,
        leaf(path, "Color", TPropertyKind::Color, [f](QObject* o) { return QVariant(int(f(o)->Color())); },
             [f](QObject* o, const QVariant& v) { f(o)->SetColor(v.toInt()); }),
        leaf(path, "Height", TPropertyKind::Integer, [f](QObject* o) { return QVariant(qlonglong(f(o)->Height())); },
             [f](QObject* o, const QVariant& v) { f(o)->SetHeight(v.toInt()); }),
        leaf(path, "Name", TPropertyKind::String, [f](QObject* o) { return QVariant(f(o)->Name()); },
             [f](QObject* o, const QVariant& v) { f(o)->SetName(v.toString()); }),
        enumLeaf<TFontPitch>(path, "Pitch", [f](QObject* o) { return QVariant(int(f(o)->Pitch())); },
                             [f](QObject* o, const QVariant& v) { f(o)->SetPitch(TFontPitch(v.toInt())); }),
        leaf(path, "Size", TPropertyKind::Integer, [f](QObject* o) { return QVariant(qlonglong(f(o)->Size())); },
             [f](QObject* o, const QVariant& v) { f(o)->SetSize(v.toInt()); }),
        style,
    };
}

std::vector<TPropertyNode> metaNodes(const QMetaObject* mo, const QString& parentPath, const Reader& owner, int depth);

// A property of an object, or of a sub-object reached through owner. The
// property is looked up by name on each object, so a node taken from one
// class works on another that declares a property of the same name.
TPropertyNode metaNode(const QMetaProperty& p, const QString& parentPath, const Reader& owner, int depth) {
    const QByteArray name = p.name();
    const TPropertyKind kind = kindOf(p);
    auto target = [owner](QObject* o) { return owner ? owner(o).value<QObject*>() : o; };
    Reader read = [target, name, kind](QObject* o) {
        QObject* t = target(o);
        return t ? normalized(kind, t->property(name.constData())) : QVariant();
    };
    std::function<void(QObject*, const QVariant&)> write;
    if (p.isWritable() && kind != TPropertyKind::Other) {
        write = [target, name, kind](QObject* o, const QVariant& v) {
            QObject* t = target(o);
            if (!t) return;
            const QMetaType type = propertyOf(t, name.constData()).metaType();
            QVariant value = (kind == TPropertyKind::Enum || kind == TPropertyKind::Set) ? IntToEnumVariant(type, v.toInt()) : v;
            if (kind != TPropertyKind::Enum && kind != TPropertyKind::Set) value.convert(type);
            t->setProperty(name.constData(), value);
        };
    }
    TPropertyNode n = leaf(parentPath, QString::fromLatin1(name), kind, read, write);
    n.Type = p.metaType();
    if (kind == TPropertyKind::Enum || kind == TPropertyKind::Set) n.Enum = enumeratorOf(p);
    // Pointer values are read as the pointer itself.
    Reader pointer = [target, name](QObject* o) {
        QObject* t = target(o);
        return t ? t->property(name.constData()) : QVariant();
    };
    switch (kind) {
    case TPropertyKind::Pen: n.Children = penChildren(n.Path, pointer); n.Read = pointer; break;
    case TPropertyKind::Brush: n.Children = brushChildren(n.Path, pointer); n.Read = pointer; break;
    case TPropertyKind::Font: n.Children = fontChildren(n.Path, pointer); n.Read = pointer; break;
    case TPropertyKind::UserData: case TPropertyKind::Picture: case TPropertyKind::Layers: n.Read = pointer; break;
    case TPropertyKind::Object:
        n.Read = pointer;
        // A sub-object's type is known from the declaration; a null one has nothing to list.
        if (depth < 3 && p.metaType().metaObject())
            n.Children = metaNodes(p.metaType().metaObject(), n.Path, pointer, depth + 1);
        break;
    default: break;
    }
    return n;
}

bool isLibraryClass(const QMetaObject* mo) { return QByteArray(mo->className()).startsWith("faroven::"); }

// The properties the library's own classes declare, most derived first, each
// name once; every property of classes that are not the library's.
std::vector<TPropertyNode> metaNodes(const QMetaObject* mo, const QString& parentPath, const Reader& owner, int depth) {
    bool anyLibraryClass = false;
    for (const QMetaObject* m = mo; m; m = m->superClass()) anyLibraryClass |= isLibraryClass(m);
    std::vector<TPropertyNode> nodes;
    QSet<QByteArray> seen{"objectName"};
    for (const QMetaObject* m = mo; m; m = m->superClass()) {
        if (anyLibraryClass && !isLibraryClass(m)) continue;
        for (int i = m->propertyOffset(); i < m->propertyCount(); ++i) {
            const QMetaProperty p = m->property(i);
            if (seen.contains(p.name())) continue;
            seen.insert(p.name());
            nodes.push_back(metaNode(p, parentPath, owner, depth));
        }
    }
    return nodes;
}

bool sameShape(const TPropertyNode& a, const TPropertyNode& b) {
    return a.Kind == b.Kind && a.ReadOnly() == b.ReadOnly();
}

// Keeps the nodes of first that every tree in others has too.
std::vector<TPropertyNode> intersect(const std::vector<TPropertyNode>& first,
                                     const std::vector<const std::vector<TPropertyNode>*>& others) {
    std::vector<TPropertyNode> kept;
    for (const TPropertyNode& n : first) {
        std::vector<const std::vector<TPropertyNode>*> childLists;
        bool shared = true;
        for (const auto* list : others) {
            const TPropertyNode* match = nullptr;
            for (const TPropertyNode& m : *list)
                if (m.Name == n.Name) match = &m;
            if (!match || !sameShape(n, *match)) { shared = false; break; }
            childLists.push_back(&match->Children);
        }
        if (!shared) continue;
        TPropertyNode copy = n;
        copy.Children = intersect(n.Children, childLists);
        kept.push_back(std::move(copy));
    }
    return kept;
}

}  // namespace

std::vector<TPropertyNode> PropertyNodesOf(const QObject* object) {
    if (!object) return {};
    std::vector<TPropertyNode> nodes = metaNodes(object->metaObject(), QString(), Reader(), 0);
    nodes.push_back(leaf(QString(), "Name", TPropertyKind::String,
                         [](QObject* o) { return QVariant(o->objectName()); },
                         [](QObject* o, const QVariant& v) { o->setObjectName(v.toString()); }));
    for (TPropertyNode& n : nodes) n.Category = PropertyCategory(n.Name);
    return nodes;
}

std::vector<TPropertyNode> SharedPropertyNodes(const std::vector<QObject*>& objects) {
    if (objects.empty()) return {};
    // Objects of one class share everything; compare one tree per class.
    std::vector<std::vector<TPropertyNode>> trees;
    QSet<const QMetaObject*> classes{objects.front()->metaObject()};
    for (QObject* o : objects)
        if (!classes.contains(o->metaObject())) {
            classes.insert(o->metaObject());
            trees.push_back(PropertyNodesOf(o));
        }
    std::vector<const std::vector<TPropertyNode>*> others;
    for (const auto& t : trees) others.push_back(&t);
    return intersect(PropertyNodesOf(objects.front()), others);
}

const TPropertyNode* FindPropertyNode(const std::vector<TPropertyNode>& nodes, const QString& path) {
    for (const TPropertyNode& n : nodes) {
        if (n.Path == path) return &n;
        if (path.startsWith(n.Path + QLatin1Char('.')))
            if (const TPropertyNode* child = FindPropertyNode(n.Children, path)) return child;
    }
    return nullptr;
}

QString PropertyCategory(const QString& name) {
    struct Rule { const char* category; std::vector<const char*> keys; };
    // The first rule with a key that the name contains wins.
    static const std::vector<Rule> rules = {
        {"Page", {"Page", "Print"}},
        {"Text", {"Caption", "Info", "Lines", "Alignment", "WordWrap", "CharacterSpace", "Font"}},
        {"Data", {"Name", "Tag", "UserData", "Version", "Layers"}},
        {"Behaviour", {"Enable", "Locked", "Snap", "Drag", "Selecting", "Mouse", "Operate", "LockBound",
                       "TextInput", "Hint", "Undo", "Tool", "Rotate", "Resizing", "Linkline"}},
        {"Layout", {"Angle", "Flip", "Log", "Zoom", "Ratio", "UNIT", "XYMode"}},
        {"Appearance", {"Pen", "Brush", "Color", "Gradient", "Arrow", "Tick", "Hot", "Visible", "Bitmap", "Grid",
                        "Arc", "Style", "Border", "Solid", "Cross", "Bright", "Contrast", "Gray", "Transparent",
                        "Show", "Size", "Trace", "Mode"}},
    };
    for (const Rule& r : rules)
        for (const char* key : r.keys)
            if (name.contains(QLatin1String(key))) return QLatin1String(r.category);
    return QStringLiteral("Misc");
}

int EnumVariantToInt(const QVariant& value) {
    const QMetaType t = value.metaType();
    if (!(t.flags() & QMetaType::IsEnumeration)) return value.toInt();
    const bool isUnsigned = t.flags() & QMetaType::IsUnsignedEnumeration;
    const void* data = value.constData();
    switch (t.sizeOf()) {
    case 1: { int8_t s; std::memcpy(&s, data, 1); return isUnsigned ? int(uint8_t(s)) : int(s); }
    case 2: { int16_t s; std::memcpy(&s, data, 2); return isUnsigned ? int(uint16_t(s)) : int(s); }
    case 8: { int64_t s; std::memcpy(&s, data, 8); return int(s); }
    default: { int32_t s; std::memcpy(&s, data, 4); return s; }
    }
}

QVariant IntToEnumVariant(QMetaType type, int value) {
    if (!(type.flags() & QMetaType::IsEnumeration)) return QVariant(value);
    QVariant v(type);
    const int64_t wide = value;
    // Little-endian: the low bytes of the value fill the enum's storage.
    std::memcpy(v.data(), &wide, size_t(std::min<qsizetype>(type.sizeOf(), 8)));
    return v;
}

}  // namespace faroven
