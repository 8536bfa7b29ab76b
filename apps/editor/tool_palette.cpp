#include "tool_palette.h"

#include <QAction>
#include <QActionGroup>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

using namespace faroven;

namespace {
const QColor kInk(0x30, 0x30, 0x30);
const QColor kAccent(0x2a, 0x6f, 0xdb);
const QColor kFill(0xcf, 0xe0, 0xfa);

using Draw = void (*)(QPainter&);

void arrowHead(QPainter& p, QPointF tip, QPointF from) {
    const QLineF back(tip, from);
    QLineF side1 = back, side2 = back;
    side1.setLength(5);
    side2.setLength(5);
    side1.setAngle(back.angle() + 30);
    side2.setAngle(back.angle() - 30);
    p.save();
    p.setBrush(p.pen().color());
    p.drawPolygon(QPolygonF({tip, side1.p2(), side2.p2()}));
    p.restore();
}

// The polyline with a node that the two node tools show, the node in accent.
void nodeLine(QPainter& p) {
    p.drawPolyline(QPolygonF({{3, 20}, {10, 9}, {17, 20}}));
    p.fillRect(QRectF(8, 7, 4, 4), kAccent);
}

// A pictogram per tool, drawn on a 24 x 24 square with the ink pen set.
// The palette shows the tools in this order, a separator before each group.
struct ToolRow {
    TDrawTool tool;
    const char* name;
    bool groupStart;
    Draw draw;
};

const ToolRow kTools[] = {
    {SpSelecting, QT_TRANSLATE_NOOP("ToolPalette", "Select"), false,
     [](QPainter& p) {
         p.setBrush(kInk);
         p.drawPolygon(QPolygonF({{7, 3}, {7, 19}, {11, 15}, {14, 21}, {16.5, 20}, {13.5, 14}, {19, 14}}));
     }},
    {SpRotateSelecting, QT_TRANSLATE_NOOP("ToolPalette", "Rotate"), false,
     [](QPainter& p) {
         p.drawArc(QRectF(4, 4, 16, 16), 60 * 16, 270 * 16);
         arrowHead(p, {20, 7}, {14.5, 4.5});
     }},
    {SpDragWhole, QT_TRANSLATE_NOOP("ToolPalette", "Drag the whole drawing"), false,
     [](QPainter& p) {
         // A hand: four fingers and a thumb on a palm.
         QPainterPath hand;
         hand.addRoundedRect(QRectF(6.5, 12, 12, 9), 3, 3);
         const QRectF fingers[] = {{6.5, 5, 3, 10}, {9.5, 2.5, 3, 12}, {12.5, 3, 3, 11}, {15.5, 5, 3, 10}};
         for (const QRectF& f : fingers) hand.addRoundedRect(f, 1.5, 1.5);
         hand.addRoundedRect(QRectF(2.5, 12.5, 7, 3), 1.5, 1.5);
         p.setBrush(Qt::white);
         p.drawPath(hand.simplified());
     }},
    {SpBrowse, QT_TRANSLATE_NOOP("ToolPalette", "Browse"), false,
     [](QPainter& p) {
         QPainterPath eye;
         eye.moveTo(2, 12);
         eye.quadTo(12, 2, 22, 12);
         eye.quadTo(12, 22, 2, 12);
         p.drawPath(eye);
         p.setBrush(kAccent);
         p.drawEllipse(QPointF(12, 12), 3.5, 3.5);
     }},
    {SpClose, QT_TRANSLATE_NOOP("ToolPalette", "No tool (the mouse edits nothing)"), false,
     [](QPainter& p) {
         p.setPen(Qt::NoPen);
         p.setBrush(QColor(0xd0, 0x30, 0x30));
         p.drawEllipse(QRectF(3, 3, 18, 18));
         p.fillRect(QRectF(7, 10.5, 10, 3), Qt::white);
     }},
    {SpLine, QT_TRANSLATE_NOOP("ToolPalette", "Line"), true, [](QPainter& p) { p.drawLine(QPointF(4, 20), {20, 4}); }},
    {SpRuleLine, QT_TRANSLATE_NOOP("ToolPalette", "Ruler line"), false,
     [](QPainter& p) {
         p.drawLine(QPointF(3, 7), {3, 19});
         p.drawLine(QPointF(21, 7), {21, 19});
         p.drawLine(QPointF(4, 15), {20, 15});
         arrowHead(p, {4, 15}, {10, 15});
         arrowHead(p, {20, 15}, {14, 15});
         for (double x : {8.0, 12.0, 16.0}) p.drawLine(QPointF(x, 6), {x, 9});
     }},
    {SpPolyLine, QT_TRANSLATE_NOOP("ToolPalette", "Polyline"), false,
     [](QPainter& p) { p.drawPolyline(QPolygonF({{3, 19}, {8, 6}, {14, 16}, {21, 5}})); }},
    {SpFreeLine, QT_TRANSLATE_NOOP("ToolPalette", "Freehand"), false,
     [](QPainter& p) {
         QPainterPath path(QPointF(3, 16));
         path.cubicTo(6, 3, 9, 23, 13, 12);
         path.cubicTo(16, 4, 19, 20, 21, 7);
         p.drawPath(path);
     }},
    {SpPolyBezier, QT_TRANSLATE_NOOP("ToolPalette", "Bézier curve"), false,
     [](QPainter& p) {
         QPainterPath path(QPointF(3, 20));
         path.cubicTo(6, 3, 18, 21, 21, 4);
         p.drawPath(path);
         p.setPen(QPen(kAccent, 1));
         p.drawLine(QPointF(3, 20), {6, 4});
         p.drawLine(QPointF(21, 4), {18, 20});
         p.setBrush(kAccent);
         p.drawEllipse(QPointF(6, 4), 1.5, 1.5);
         p.drawEllipse(QPointF(18, 20), 1.5, 1.5);
     }},
    {SpBLine, QT_TRANSLATE_NOOP("ToolPalette", "B-spline"), false,
     [](QPainter& p) {
         const QPolygonF control({{3, 20}, {7, 4}, {17, 20}, {21, 4}});
         p.save();
         p.setPen(QPen(kAccent, 1, Qt::DashLine));
         p.drawPolyline(control);
         p.restore();
         QPainterPath path(control[0]);
         path.cubicTo(6, 9, 10, 12, 12, 12);
         path.cubicTo(14, 12, 18, 15, 21, 4);
         p.drawPath(path);
     }},
    {SpElliArc, QT_TRANSLATE_NOOP("ToolPalette", "Arc"), false,
     [](QPainter& p) { p.drawArc(QRectF(3, 6, 18, 18), 0, 180 * 16); }},
    {SpRectangle, QT_TRANSLATE_NOOP("ToolPalette", "Rectangle"), true,
     [](QPainter& p) {
         p.setBrush(kFill);
         p.drawRect(QRectF(3.5, 6.5, 17, 11));
     }},
    {SpEllipse, QT_TRANSLATE_NOOP("ToolPalette", "Ellipse"), false,
     [](QPainter& p) {
         p.setBrush(kFill);
         p.drawEllipse(QRectF(2.5, 6, 19, 12));
     }},
    {SpPolygon, QT_TRANSLATE_NOOP("ToolPalette", "Polygon"), false,
     [](QPainter& p) {
         p.setBrush(kFill);
         p.drawPolygon(QPolygonF({{12, 3}, {21, 10}, {17, 21}, {7, 21}, {3, 10}}));
     }},
    {SpText, QT_TRANSLATE_NOOP("ToolPalette", "Text"), false,
     [](QPainter& p) {
         QFont font = p.font();
         font.setBold(true);
         font.setPixelSize(19);
         p.setFont(font);
         p.drawText(QRectF(0, 0, 24, 24), Qt::AlignCenter, QStringLiteral("A"));
     }},
    {SpImage, QT_TRANSLATE_NOOP("ToolPalette", "Image"), false,
     [](QPainter& p) {
         p.drawRect(QRectF(2.5, 4.5, 19, 15));
         p.setPen(Qt::NoPen);
         p.setBrush(QColor(0x4c, 0x9a, 0x4c));
         p.drawPolygon(QPolygonF({{3, 19}, {9, 10}, {13, 16}, {16, 12}, {21, 19}}));
         p.setBrush(QColor(0xe8, 0xb0, 0x20));
         p.drawEllipse(QPointF(16.5, 8.5), 2, 2);
     }},
    {SpLinkLine, QT_TRANSLATE_NOOP("ToolPalette", "Connector"), true,
     [](QPainter& p) {
         p.drawRect(QRectF(1.5, 2.5, 7, 6));
         p.drawRect(QRectF(15.5, 15.5, 7, 6));
         p.save();
         p.setPen(QPen(kAccent, 1.5));
         p.drawPolyline(QPolygonF({{8.5, 5.5}, {12, 5.5}, {12, 18.5}, {14, 18.5}}));
         arrowHead(p, {15.5, 18.5}, {11, 18.5});
         p.restore();
     }},
    {SpLinkPoint, QT_TRANSLATE_NOOP("ToolPalette", "Link point"), false,
     [](QPainter& p) {
         p.drawRect(QRectF(6.5, 6.5, 11, 11));
         p.setPen(QPen(kAccent, 1.5));
         p.drawLine(QPointF(9, 9), {15, 15});
         p.drawLine(QPointF(15, 9), {9, 15});
     }},
    {SpLineLinkLine, QT_TRANSLATE_NOOP("ToolPalette", "Junction"), false,
     [](QPainter& p) {
         p.drawLine(QPointF(2, 12), {22, 12});
         p.drawLine(QPointF(12, 2), {12, 22});
         p.setBrush(kAccent);
         p.drawEllipse(QPointF(12, 12), 5, 5);
     }},
    {SpPolylinePolygonPointAdding, QT_TRANSLATE_NOOP("ToolPalette", "Add node"), true,
     [](QPainter& p) {
         nodeLine(p);
         p.drawLine(QPointF(18, 2), {18, 10});
         p.drawLine(QPointF(14, 6), {22, 6});
     }},
    {SpPolylinePolygonPointRemoving, QT_TRANSLATE_NOOP("ToolPalette", "Remove node"), false,
     [](QPainter& p) {
         nodeLine(p);
         p.drawLine(QPointF(14, 6), {22, 6});
     }},
};
static_assert(std::size(kTools) == SpBLine + 1, "a row for every tool");

const ToolRow& rowOf(TDrawTool tool) {
    for (const ToolRow& row : kTools)
        if (row.tool == tool) return row;
    return kTools[0];
}
}  // namespace

ToolPalette::ToolPalette(TMyCAD* cad, QWidget* parent) : QToolBar(tr("Tools"), parent), m_cad(cad) {
    setObjectName("Tools");
    setIconSize(QSize(24, 24));
    m_group = new QActionGroup(this);
    m_group->setExclusive(true);
    for (const ToolRow& row : kTools) {
        if (row.groupStart) addSeparator();
        QAction* action = addAction(toolIcon(row.tool), toolName(row.tool));
        action->setCheckable(true);
        m_group->addAction(action);
        m_actions[row.tool] = action;
        const TDrawTool tool = row.tool;
        connect(action, &QAction::triggered, this, [this, tool] {
            m_cad->SetShapeTool(tool);
            emit toolChosen(tool);
        });
    }
    // After a shape is drawn the canvas may go back to selecting by itself.
    auto previous = m_cad->OnActionToolToSelecting;
    // Raised just before the canvas's tool becomes SpSelecting.
    m_cad->OnActionToolToSelecting = [this, previous] {
        if (previous) previous();
        m_actions[SpSelecting]->setChecked(true);
    };
    sync();
}

void ToolPalette::sync() { m_actions[m_cad->ShapeTool()]->setChecked(true); }

QString ToolPalette::toolName(TDrawTool tool) { return tr(rowOf(tool).name); }

QIcon ToolPalette::toolIcon(TDrawTool tool) {
    // Drawn at twice the size so that the icon stays sharp on high-density screens.
    QPixmap pixmap(48, 48);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kInk, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    rowOf(tool).draw(painter);
    return QIcon(pixmap);
}
