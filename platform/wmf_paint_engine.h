// The paint engine behind TWmfDevice: turns what a QPainter draws into
// metafile records. Geometry is mapped through the painter's transform into
// the device's integer units; gradients, opacity and brush strokes are left to
// QPainter, which hands them over as images.
#pragma once

#include "platform/wmf_dc.h"
#include "platform/wmf_records.h"

#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <optional>

namespace faroven {

class TWmfPaintEngine final : public QPaintEngine {
public:
    TWmfPaintEngine(int width, int height, int unitsPerInch);

    // The complete metafile of everything recorded so far.
    QByteArray Metafile() const;

    bool begin(QPaintDevice* device) override;
    bool end() override;
    Type type() const override { return User; }
    void updateState(const QPaintEngineState& state) override;

    using QPaintEngine::drawEllipse;
    using QPaintEngine::drawLines;
    using QPaintEngine::drawPoints;
    using QPaintEngine::drawPolygon;
    using QPaintEngine::drawRects;
    void drawPath(const QPainterPath& path) override;
    void drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) override;
    void drawRects(const QRectF* rects, int rectCount) override;
    void drawLines(const QLineF* lines, int lineCount) override;
    void drawEllipse(const QRectF& rect) override;
    void drawPoints(const QPointF* points, int pointCount) override;
    void drawTextItem(const QPointF& p, const QTextItem& textItem) override;
    void drawPixmap(const QRectF& r, const QPixmap& pixmap, const QRectF& sr) override;
    void drawImage(const QRectF& r, const QImage& image, const QRectF& sr, Qt::ImageConversionFlags flags) override;
    void drawTiledPixmap(const QRectF& r, const QPixmap& pixmap, const QPointF& offset) override;

private:
    void ChangeClip(const QRegion& deviceRegion, Qt::ClipOperation operation);
    std::optional<QRegion> Clip() const;
    // Writes the clip and raster operation and selects the pen and brush
    // given (nullptr: whatever is selected will do). False when the clip
    // leaves nothing to draw.
    bool Prepare(const QPen* pen, const QBrush* brush);
    void Polygons(QList<QPolygonF> polygons, Qt::FillRule rule, const QPen& pen, const QBrush& brush);
    void Polyline(const QPolygonF& devicePoints, const QPen& pen);
    void Box(uint16_t function, const QRectF& deviceRect);
    void TextOutline(const QPointF& p, const QFont& font, const QString& text);
    void DeviceImage(const QRect& target, const QImage& image);
    void StretchDib(const QRect& target, const QImage& image);

    wmf::TWmfRecords m_out;
    wmf::TWmfDeviceContext m_dc{m_out};
    int m_width, m_height, m_unitsPerInch;

    QTransform m_transform;
    QPen m_pen;
    QBrush m_brush;
    QPainter::CompositionMode m_mode = QPainter::CompositionMode_SourceOver;
    std::optional<QRegion> m_clip;  // in device units; nullopt: no clip set
    bool m_clipEnabled = false;
};

}  // namespace faroven
