// Property values as the inspector shows and reads them: text for every kind
// ("clRed", "psDash", "[fsBold,fsItalic]", "Arial, 10") and the checks a
// value passes before it is written (numbers in their type's range,
// enumeration values that exist, known colour names).
#pragma once

#include "inspector/property_node.h"

#include <QString>
#include <QVariant>
#include <utility>
#include <vector>

namespace faroven {

// The text the grid shows for a value of the node.
QString PropertyValueText(const TPropertyNode& node, const QVariant& value);

// Reads typed text into a value of the node's kind; an invalid QVariant and
// a message when the text is not a value of that kind.
QVariant ParsePropertyText(const TPropertyNode& node, const QString& text, QString* error);

// Brings a value into the node's form and checks it; an invalid QVariant and
// a message when it does not fit (text is parsed as typed).
QVariant CheckPropertyValue(const TPropertyNode& node, const QVariant& value, QString* error);

// The members of a set node: name and the bits it stands for.
std::vector<std::pair<QString, int>> SetMembers(const TPropertyNode& node);

}  // namespace faroven
