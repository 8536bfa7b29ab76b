#include "inspector/component_entries.h"

#include "cad/canvas/mycad.h"
#include "cad/shapes/shape.h"

namespace faroven {

QString ComponentEntryText(const QObject* component) {
    if (!component) return QString();
    const QString className = QString::fromLatin1(component->metaObject()->className()).section(QLatin1String("::"), -1);
    return QStringLiteral("%1: %2").arg(component->objectName(), className);
}

void SelectComponentOnCanvas(TMyCAD* canvas, QObject* component) {
    if (!canvas) return;
    auto* shape = qobject_cast<TMyShape*>(component);
    if (shape && canvas->GetShapeNoInMyShapes(shape) < 0) return;
    if (shape && canvas->WorkingShapes().size() == 1 && canvas->WorkingShapes().front() == shape) return;
    canvas->RemoveAllWorkingShapes();
    if (shape) canvas->AddWorkingShapes(shape);
}

}  // namespace faroven
