// The properties an inspector lists for an object, as a tree of nodes read
// from Qt's meta-object system. Owned attribute objects (pens, brushes,
// fonts) and QObject sub-objects (the canvas's grid settings) expand into
// their own properties; a node knows how to read and write its value on any
// object of the same kind, through its parent's pointer for sub-properties.
#pragma once

#include <QMetaEnum>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

class QObject;

namespace faroven {

enum class TPropertyKind {
    Bool, Integer, Float, String, Strings, Enum, Set, Color,
    Font, Pen, Brush, Object, UserData, Picture, Layers, Other
};

struct TPropertyNode {
    QString Name;      // "Color"
    QString Path;      // "Pen.Color"
    QString Category;  // set on top-level nodes
    TPropertyKind Kind = TPropertyKind::Other;
    // Numbers: the meta-type (int, uint, float, double …) sets the range.
    QMetaType Type;
    // Enumerations and sets: names and values.
    QMetaEnum Enum;
    // A set stores bit 1 << value for each member (as font styles do) rather
    // than the members' own flag values.
    bool SetBitsByOrdinal = false;
    std::function<QVariant(QObject*)> Read;
    // Empty for read-only properties.
    std::function<void(QObject*, const QVariant&)> Write;
    std::vector<TPropertyNode> Children;

    bool ReadOnly() const { return !Write; }
    // Compound values (pens, brushes, fonts, sub-objects) are edited through their children.
    bool HasChildren() const { return !Children.empty(); }
};

// The property tree of an object: the properties its own library classes
// declare (every property for other classes), plus "Name" for the object name.
std::vector<TPropertyNode> PropertyNodesOf(const QObject* object);

// The properties every object has, with the same kind: the nodes of the
// first object that all others share, sub-properties included.
std::vector<TPropertyNode> SharedPropertyNodes(const std::vector<QObject*>& objects);

// Finds a node by path in a tree, or nullptr.
const TPropertyNode* FindPropertyNode(const std::vector<TPropertyNode>& nodes, const QString& path);

// The category the inspector files a top-level property under.
QString PropertyCategory(const QString& name);

// Enumeration values as plain ints and back, whatever the enum's size.
int EnumVariantToInt(const QVariant& value);
QVariant IntToEnumVariant(QMetaType type, int value);

}  // namespace faroven
