// Applying an inspector edit to the objects shown. Shapes on a canvas change
// as one "ACT_CHANGE" undo step per canvas and are repainted; other objects
// are repainted when they are widgets (the canvas itself included).
#pragma once

#include "inspector/property_node.h"

#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

class QObject;

namespace faroven {

// Writes a checked value of the node to every object. A value that any
// object does not take (it reads back otherwise, or the setter throws) is
// refused: every object keeps its old value, no undo step is recorded, and
// error says what was refused. The value is first tried, then put back, and
// written for real inside the undo step, so a refusal never leaves a step.
bool ApplyPropertyValue(const std::vector<QObject*>& objects, const TPropertyNode& node,
                        const QVariant& value, QString* error);

// Runs write on every object as one step (for the modal editors, which
// change compound values such as fonts, user data and pictures).
void ApplyObjectEdit(const std::vector<QObject*>& objects, const std::function<void(QObject*)>& write);

}  // namespace faroven
