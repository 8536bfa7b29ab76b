// The class-name factory: the one place that maps the class names stored in
// drawing files, libraries, the clipboard and undo snapshots to the shape
// classes. Names are compared exactly and case-sensitively ("TMyRectangle").
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace faroven {

class TMyCAD;
class TMyShape;

// A new, empty shape of the named class for the canvas (which may be nil for
// a shape that stays outside any drawing, such as an undo snapshot); nil for
// a name that is not a shape class. The caller owns the result.
TMyShape* NewShapeOfClass(const QString& className, TMyCAD* canvas);

// The class name of a shape as files store it: "TMyRectangle" (its Qt class
// name without the namespace).
QString ShapeClassName(const TMyShape* shape);

// Every class name the factory knows: the library's in its table's order,
// then the registered ones.
QStringList ShapeClassNames();

// Makes an application's own shape class known by its class name (as
// ShapeClassName gives it: the class needs Q_OBJECT), so that undo, and
// loading once files exist, can make copies of it. A library class name cannot be taken over: false then.
bool RegisterShapeClass(const QString& className, std::function<TMyShape*(TMyCAD*)> create);

}  // namespace faroven
