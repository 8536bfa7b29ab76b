#include "cad/shapes/shape_factory.h"

#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/image.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"

#include <array>
#include <utility>
#include <vector>

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

// One line per shape class, in the order the file formats list them.
constexpr std::array kShapeClasses{
    ShapeClass{"TMyRectangle", &make<TMyRectangle>},
    ShapeClass{"TMyLinkPoint", &make<TMyLinkPoint>},
    ShapeClass{"TMyLineLinkLine", &make<TMyLineLinkLine>},
    ShapeClass{"TMyEllipse", &make<TMyEllipse>},
    ShapeClass{"TMyLine", &make<TMyLine>},
    ShapeClass{"TMyFreeLine", &make<TMyFreeLine>},
    ShapeClass{"TMyRuleLine", &make<TMyRuleLine>},
    ShapeClass{"TMyPolyLine", &make<TMyPolyLine>},
    ShapeClass{"TMyPolygon", &make<TMyPolygon>},
    ShapeClass{"TMyPolyBezier", &make<TMyPolyBezier>},
    ShapeClass{"TMyText", &make<TMyText>},
    ShapeClass{"TMyImage", &make<TMyImage>},
    ShapeClass{"TMyElliArc", &make<TMyElliArc>},
    ShapeClass{"TMyLinkLine", &make<TMyLinkLine>},
    ShapeClass{"TMyCombine", &make<TMyCombine>},
    ShapeClass{"TMyGroup", &make<TMyGroup>},
    ShapeClass{"TMyBLine", &make<TMyBLine>},
};

std::vector<std::pair<QString, std::function<TMyShape*(TMyCAD*)>>>& registered() {
    static std::vector<std::pair<QString, std::function<TMyShape*(TMyCAD*)>>> classes;
    return classes;
}

}  // namespace

TMyShape* NewShapeOfClass(const QString& className, TMyCAD* canvas) {
    for (const ShapeClass& c : kShapeClasses)
        if (className == QLatin1String(c.name)) return c.create(canvas);
    for (const auto& [name, create] : registered())
        if (className == name) return create(canvas);
    return nullptr;
}

bool RegisterShapeClass(const QString& className, std::function<TMyShape*(TMyCAD*)> create) {
    if (className.isEmpty() || !create) return false;
    for (const ShapeClass& c : kShapeClasses)
        if (className == QLatin1String(c.name)) return false;
    for (auto& [name, existing] : registered())
        if (name == className) {
            existing = std::move(create);
            return true;
        }
    registered().emplace_back(className, std::move(create));
    return true;
}

QString ShapeClassName(const TMyShape* shape) {
    if (!shape) return {};
    const QString qualified = QString::fromLatin1(shape->metaObject()->className());
    return qualified.mid(qualified.lastIndexOf(QLatin1Char(':')) + 1);
}

QStringList ShapeClassNames() {
    QStringList names;
    for (const ShapeClass& c : kShapeClasses) names << QString::fromLatin1(c.name);
    for (const auto& entry : registered()) names << entry.first;
    return names;
}

}  // namespace faroven
