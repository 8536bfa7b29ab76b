#include "inspector/property_edit.h"

#include "cad/canvas/mycad.h"
#include "cad/canvas/undo_scope.h"
#include "cad/shapes/shape.h"
#include "inspector/property_value.h"

#include <QWidget>
#include <cmath>
#include <map>
#include <memory>

namespace faroven {

namespace {

bool sameValue(const TPropertyNode& node, const QVariant& a, const QVariant& b) {
    if (node.Kind == TPropertyKind::Float) {
        const double x = a.toDouble(), y = b.toDouble();
        return std::abs(x - y) <= 1e-6 * std::max(1.0, std::abs(y));
    }
    return a == b;
}

void repaint(QObject* object) {
    if (auto* canvas = qobject_cast<TMyCAD*>(object)) canvas->Invalidate();
    else if (auto* widget = qobject_cast<QWidget*>(object)) widget->update();
}

}  // namespace

void ApplyObjectEdit(const std::vector<QObject*>& objects, const std::function<void(QObject*)>& write) {
    // One undo step per canvas, holding its shapes that are in the drawing.
    std::map<TMyCAD*, std::vector<TMyShape*>> shapesByCanvas;
    for (QObject* o : objects)
        if (auto* shape = qobject_cast<TMyShape*>(o); shape && shape->Canvas() &&
                                                       shape->Canvas()->GetShapeNoInMyShapes(shape) >= 0)
            shapesByCanvas[shape->Canvas()].push_back(shape);
    std::vector<std::unique_ptr<TUndoChangeScope>> steps;
    for (auto& [canvas, shapes] : shapesByCanvas) steps.push_back(std::make_unique<TUndoChangeScope>(*canvas, shapes));
    for (QObject* o : objects) write(o);
    for (QObject* o : objects) repaint(o);
}

bool ApplyPropertyValue(const std::vector<QObject*>& objects, const TPropertyNode& node,
                        const QVariant& value, QString* error) {
    QString why;
    const QVariant checked = CheckPropertyValue(node, value, &why);
    if (!checked.isValid() || node.ReadOnly()) {
        if (error) *error = node.ReadOnly() ? QStringLiteral("%1 is read-only").arg(node.Path) : why;
        return false;
    }
    std::vector<QVariant> old;
    for (QObject* o : objects) old.push_back(node.Read(o));

    // Try the value on every object and see whether each one took it.
    QString refusal;
    size_t written = 0;
    try {
        for (; written < objects.size(); ++written) node.Write(objects[written], checked);
        for (QObject* o : objects) {
            const QVariant now = node.Read(o);
            if (!sameValue(node, now, checked)) {
                refusal = QStringLiteral("%1: the value %2 was refused (%3 would be %4); the old value is kept")
                              .arg(node.Path, PropertyValueText(node, checked), o->objectName(),
                                   PropertyValueText(node, now));
                break;
            }
        }
    } catch (const Exception& e) {
        refusal = QStringLiteral("%1: %2; the old value is kept").arg(node.Path, e.Message());
    } catch (const std::exception& e) {
        refusal = QStringLiteral("%1: %2; the old value is kept").arg(node.Path, QString::fromUtf8(e.what()));
    }
    // Put the old values back: refused, or to be written again inside the undo step.
    for (size_t i = std::min(written + 1, objects.size()); i-- > 0;) {
        try {
            node.Write(objects[i], old[i]);
        } catch (const std::exception&) {
        }
    }
    if (!refusal.isEmpty()) {
        if (error) *error = refusal;
        return false;
    }
    ApplyObjectEdit(objects, [&](QObject* o) { node.Write(o, checked); });
    return true;
}

}  // namespace faroven
