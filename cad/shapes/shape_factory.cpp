#include "cad/shapes/shape_factory.h"

#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"

#include <array>

namespace faroven {

namespace {

template <class T>
TMyShape* make(TMyCAD* canvas) {
    return new T(canvas);
}

struct ShapeClass {
    const char* name;
    TMyShape* (*create)(TMyCAD*);
};

// One line per shape class.
constexpr std::array kShapeClasses{
    ShapeClass{"TMyRectangle", &make<TMyRectangle>},
    ShapeClass{"TMyEllipse", &make<TMyEllipse>},
    ShapeClass{"TMyGroup", &make<TMyGroup>},
    ShapeClass{"TMyCombine", &make<TMyCombine>},
    ShapeClass{"TMyLine", &make<TMyLine>},
    ShapeClass{"TMyRuleLine", &make<TMyRuleLine>},
    ShapeClass{"TMyPolyLine", &make<TMyPolyLine>},
    ShapeClass{"TMyPolygon", &make<TMyPolygon>},
    ShapeClass{"TMyFreeLine", &make<TMyFreeLine>},
};

}  // namespace

TMyShape* NewShapeOfClass(const QString& className, TMyCAD* canvas) {
    for (const ShapeClass& c : kShapeClasses)
        if (className == QLatin1String(c.name)) return c.create(canvas);
    return nullptr;
}

QString ShapeClassName(const TMyShape* shape) {
    if (!shape) return {};
    const QString qualified = QString::fromLatin1(shape->metaObject()->className());
    return qualified.mid(qualified.lastIndexOf(QLatin1Char(':')) + 1);
}

QStringList ShapeClassNames() {
    QStringList names;
    for (const ShapeClass& c : kShapeClasses) names << QString::fromLatin1(c.name);
    return names;
}

}  // namespace faroven
