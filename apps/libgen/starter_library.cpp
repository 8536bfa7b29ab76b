#include "apps/libgen/starter_library.h"

#include "cad/canvas/mycad.h"
#include "cad/persistence/lib_manager.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link_point.h"

#include <functional>

using namespace faroven;

namespace {

// Every symbol is drawn in a 100 x 60 box (a square one in 60 x 60) at the origin.
constexpr float W = 100, H = 60;

struct Entry {
    const char* name;
    std::function<void(TMyCAD&)> draw;
    // Link points, in drawing units of the box.
    std::vector<TMyPoint> links;
};

std::vector<TMyPoint> sideMiddles(float w, float h) { return {{w / 2, 0}, {w, h / 2}, {w / 2, h}, {0, h / 2}}; }

TMyShape* polygon(TMyCAD& cad, const TArrMyPoint& points) {
    return cad.AddShapeByCode(&cad, SpPolygon, QString(), points, 0, QString());
}

TMyShape* frame(TMyCAD& cad, TDrawTool tool, float w, float h, const QString& text = QString()) {
    return cad.AddShapeByCode2(&cad, tool, QString(), {0, 0}, int(w), int(h), 1, 0, text);
}

void addLinkPoints(TMyCAD& cad, const std::vector<TMyPoint>& points) {
    for (TMyPoint p : points) cad.AddShapeByCode(&cad, SpLinkPoint, QString(), {{p.x - 3, p.y - 3}, {p.x + 3, p.y + 3}}, 0, QString());
}

const std::vector<Entry>& entries() {
    static const std::vector<Entry> list = {
        {"Rectangle", [](TMyCAD& c) { frame(c, SpRectangle, W, H); }, sideMiddles(W, H)},
        {"Square", [](TMyCAD& c) { frame(c, SpRectangle, H, H); }, sideMiddles(H, H)},
        {"Ellipse", [](TMyCAD& c) { frame(c, SpEllipse, W, H); }, sideMiddles(W, H)},
        {"Circle", [](TMyCAD& c) { frame(c, SpEllipse, H, H); }, sideMiddles(H, H)},
        {"Triangle", [](TMyCAD& c) { polygon(c, {{W / 2, 0}, {W, H}, {0, H}}); },
         {{W / 2, 0}, {W, H}, {W / 2, H}, {0, H}}},
        {"Arrow",
         [](TMyCAD& c) {
             TMyShape* line = c.AddShapeByCode(&c, SpLine, QString(), {{0, H / 2}, {W, H / 2}}, 0, QString());
             if (auto* l = shape_cast<TMyLine>(line)) l->SetArrowStyle(ALeft);
         },
         {{0, H / 2}, {W, H / 2}}},
        {"Text", [](TMyCAD& c) { frame(c, SpText, W, H / 2, QStringLiteral("Text")); }, {}},
        {"Process", [](TMyCAD& c) { frame(c, SpRectangle, W, H, QStringLiteral("Process")); }, sideMiddles(W, H)},
        {"Decision",
         [](TMyCAD& c) { polygon(c, {{W / 2, 0}, {W, H / 2}, {W / 2, H}, {0, H / 2}}); },
         sideMiddles(W, H)},
        {"Terminator",
         [](TMyCAD& c) {
             // A rectangle with round ends: two half circles joined by straight sides.
             TArrMyPoint points;
             const float r = H / 2;
             for (int i = 0; i <= 12; ++i) {
                 const double a = -M_PI / 2 + M_PI * i / 12;
                 points.push_back({float(W - r + r * std::cos(a)), float(r + r * std::sin(a))});
             }
             for (int i = 0; i <= 12; ++i) {
                 const double a = M_PI / 2 + M_PI * i / 12;
                 points.push_back({float(r + r * std::cos(a)), float(r + r * std::sin(a))});
             }
             polygon(c, points);
         },
         sideMiddles(W, H)},
        {"Data",
         [](TMyCAD& c) { polygon(c, {{20, 0}, {W, 0}, {W - 20, H}, {0, H}}); },
         {{W / 2 + 10, 0}, {W - 10, H / 2}, {W / 2 - 10, H}, {10, H / 2}}},
        {"Document",
         [](TMyCAD& c) {
             // A sheet whose lower edge is a wave.
             TArrMyPoint points = {{0, 0}, {W, 0}, {W, H - 8}};
             for (int i = 1; i < 16; ++i) {
                 const double x = W - W * i / 16.0;
                 points.push_back({float(x), float(H - 8 + 8 * std::sin(2 * M_PI * i / 16.0))});
             }
             points.push_back({0, H - 8});
             polygon(c, points);
         },
         {{W / 2, 0}, {W, H / 2}, {W / 2, H - 8}, {0, H / 2}}},
        {"Connector", [](TMyCAD& c) { frame(c, SpEllipse, 30, 30); }, sideMiddles(30, 30)},
    };
    return list;
}

}  // namespace

QStringList StarterEntryNames() {
    QStringList names;
    for (const Entry& e : entries()) names.push_back(QString::fromLatin1(e.name));
    return names;
}

void BuildStarterLibrary(TLibManager& library) {
    for (const Entry& e : entries()) {
        TMyCAD cad;
        e.draw(cad);
        addLinkPoints(cad, e.links);
        library.AppendNewShape(QString::fromLatin1(e.name), {cad.MyShapes().begin(), cad.MyShapes().end()}, nullptr);
    }
}
