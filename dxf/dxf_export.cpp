#include "dxf/dxf_export.h"

#include "dxf/dxf_interchange.h"

#include "cad/canvas/mycad.h"
#include "cad/geometry/rotated_text.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/curve.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/text.h"
#include "platform/ansi.h"
#include "platform/convert.h"

#include <QBuffer>
#include <QSaveFile>
#include <cmath>
#include <numbers>
#include <typeinfo>

namespace faroven {

namespace {

constexpr double kPixelsPerMm = 96 / 25.4;

// The ellipse's orientation, judged from its frame; it carries over from one
// ellipse to the next when a frame does not decide it.
enum class EllipseCase { None, One, Two, Three, Four };

class EntitiesWriter {
public:
    // The text goes to the device a megabyte at a time.
    EntitiesWriter(TMyCAD& canvas, bool glyphOutlines, QIODevice& device)
        : m_canvas(canvas), m_glyphOutlines(glyphOutlines), m_height(canvas.Height()), m_device(device) {
        m_out.reserve(kChunk + 4096);
    }

    void Write() {
        group(0, "SECTION");
        group(2, "ENTITIES");
        for (TMyShape* shape : m_canvas.MyShapes()) writeShape(shape);
        group(0, "ENDSEC");
        group(0, "EOF");
        flush();
    }

private:
    static constexpr qsizetype kChunk = 1 << 20;

    void flush() {
        if (m_device.write(m_out) != m_out.size())
            throw EWriteError(QStringLiteral("Cannot write the DXF text. %1").arg(m_device.errorString()));
        m_out.resize(0);
    }
    void group(int code, const QByteArray& value) {
        m_out += QByteArray::number(code);
        m_out += "\r\n";
        m_out += value;
        m_out += "\r\n";
        if (m_out.size() > kChunk) flush();
    }
    void group(int code, const QString& value) { group(code, ToAnsi(value)); }
    void group(int code, const char* value) { group(code, QByteArray(value)); }
    void real(int code, double value) { group(code, FloatToStr(value)); }
    void handle() { group(5, QByteArray::number(m_handle++)); }
    void x(int code, double px) { real(code, px / kPixelsPerMm); }
    void y(int code, double py) { real(code, (m_height - py) / kPixelsPerMm); }
    void point(int code, TMyPoint p) {
        x(code, p.x);
        y(code + 10, p.y);
        group(code + 20, "0.0");
    }
    void entity(const char* name) {
        group(0, name);
        handle();
        group(8, "0");
    }

    void line(TMyPoint a, TMyPoint b) {
        entity("LINE");
        point(10, a);
        point(11, b);
    }
    void closedPolylineHeader() {
        entity("POLYLINE");
        group(66, "1");
        group(10, "0.0");
        group(20, "0.0");
        group(30, "0.0");
        group(70, "1");
    }
    void vertex(TMyPoint p) {
        entity("VERTEX");
        point(10, p);
    }
    void seqend() { entity("SEQEND"); }
    void circle(TMyPoint centre, double radius) {
        entity("CIRCLE");
        point(10, centre);
        real(40, radius / kPixelsPerMm);
    }

    // Each branch takes its class exactly: a subclass (an application's own
    // shape) is not written as its parent.
    template <class T>
    static bool is(const TMyShape* shape) {
        return typeid(*shape) == typeid(T);
    }

    void writeShape(TMyShape* shape) {
        const TArrMyPoint& p = std::as_const(*shape).Points();
        if (is<TMyText>(shape))
            m_glyphOutlines ? writeGlyphs(static_cast<TMyText*>(shape)) : writeText(static_cast<TMyText*>(shape));
        else if (is<TMyLine>(shape) && p.size() >= 2)
            line(p[0], p[1]);
        else if (is<TMyLinkLine>(shape) || is<TMyPolyLine>(shape))
            for (size_t i = 0; i + 1 < p.size(); ++i) line(p[i], p[i + 1]);
        else if (is<TMyRectangle>(shape) || is<TMyPolygon>(shape))
            writeClosedPolyline(p);
        else if (is<TMyElliArc>(shape))
            writeArc(static_cast<TMyElliArc*>(shape));
        else if (is<TMyLineLinkLine>(shape) && p.size() >= 2)
            writeConnectorPoint(shape);
        else if (is<TMyEllipse>(shape) && p.size() >= 4)
            writeEllipse(shape);
        else if (is<TMyPolyBezier>(shape))
            writeCurve(p);
    }

    void writeClosedPolyline(const TArrMyPoint& points) {
        closedPolylineHeader();
        for (const TMyPoint& p : points) vertex(p);
        seqend();
    }

    // A text with word wrap is one TEXT with the whole text (its rows depend
    // on the frame); otherwise one TEXT per line, each a line height higher
    // than the one before.
    void writeText(TMyText* text) {
        const TArrMyPoint& p = std::as_const(*text).Points();
        if (p.size() < 4) return;
        const TMyPoint corner = p[3];
        const TFont* font = text->Font();
        const double height = std::abs(font->Height()) / kPixelsPerMm;
        const double angle = -double(text->Angle()) * 180 / std::numbers::pi + 0.0;
        auto textEntity = [&](double py, const QString& value) {
            entity("TEXT");
            x(10, corner.x);
            real(20, py / kPixelsPerMm);
            group(30, "0.0");
            real(40, height);
            real(50, angle);
            group(1, value);
        };
        QStringList lines = text->Lines()->Lines();
        if (lines.isEmpty()) lines << text->Info();
        if (text->WordWrap()) {
            textEntity(m_height - corner.y, lines.join(u' '));
            return;
        }
        const double lineHeight =
            GetTextWidthHeight(m_canvas.Canvas(), lines.first(), font, text->Angle(), 1.0).cy;
        for (int i = 0; i < lines.size(); ++i) textEntity(m_height - corner.y + i * lineHeight, lines[i]);
    }

    // The glyph outlines: a closed polyline per figure through its line-to
    // points. Curve points are left out, and the last figure is not ended by
    // a SEQEND; the closed flag of each header closes its figure.
    void writeGlyphs(TMyText* text) {
        TArrPoint points;
        std::vector<uint8_t> types;
        text->GetPathPoints(m_canvas.Canvas(), points, types);
        for (size_t i = 0; i < points.size(); ++i) {
            const TMyPoint p{float(points[i].x), float(points[i].y)};
            if (types[i] == 2) {
                vertex(p);
            } else if (types[i] == 6) {
                if (i > 0) seqend();
                closedPolylineHeader();
            }
        }
        if (points.empty()) seqend();
    }

    // Curve form: the rational curve through P0 with the parameter running
    // from 1/n to (n + 1)/n, as a closed polyline of whole pixels; the handle
    // counter restarts at n. Circle form: an ARC.
    void writeArc(TMyElliArc* arc) {
        const TArrMyPoint& p = std::as_const(*arc).Points();
        if (p.size() < 3) return;
        if (arc->ArcMode() == amEllipse) {
            writeCurve(p);
            return;
        }
        double r = 0, a1 = 0, a2 = 0;
        if (!m_canvas.GetRA1A2By3Points(p[0], p[1], p[2], r, a1, a2)) return;
        entity("ARC");
        point(10, arc->GetCenterPoint());
        real(40, r / kPixelsPerMm);
        real(50, a1);
        real(51, a2);
    }

    void writeCurve(const TArrMyPoint& p) {
        if (p.size() < 3) return;
        const double ax = p[0].x - 2.0 * p[1].x + 2.0 * p[2].x, ay = p[0].y - 2.0 * p[1].y + 2.0 * p[2].y;
        const double bx = -2.0 * p[0].x + 2.0 * p[1].x, by = -2.0 * p[0].y + 2.0 * p[1].y;
        const int n = Round(std::sqrt(std::sqrt(ax * ax + ay * ay) * 100));
        m_handle = n;
        closedPolylineHeader();
        // n is 0 only when the three points make A zero; there is no step then.
        for (int j = 1; n > 0 && j <= n + 1; ++j) {
            const double t = double(j) / n, d = t * t + 1;
            vertex(TMyPoint{float(Round((ax * t * t + bx * t + p[0].x) / d)),
                            float(Round((ay * t * t + by * t + p[0].y) / d))});
        }
        seqend();
    }

    void writeConnectorPoint(TMyShape* shape) {
        const TArrMyPoint& p = std::as_const(*shape).Points();
        const double r = std::abs(double(p[1].x) - p[0].x) / 2;
        const TMyPoint centre = shape->GetCenterPoint();
        circle(centre, r);
        circle(centre, r / 2);
    }

    // A circle when the radii differ by less than half a pixel; otherwise 181
    // vertices along the upper and then the lower half, stepping x across
    // the frame's width as its orientation gives it.
    void writeEllipse(TMyShape* shape) {
        const TArrMyPoint& p = std::as_const(*shape).Points();
        if (p[0].y == p[1].y && p[0].x < p[1].x) m_case = EllipseCase::One;
        else if (p[0].y == p[1].y && p[0].x > p[1].x) m_case = EllipseCase::Three;
        else if (p[0].y > p[1].y) m_case = EllipseCase::Two;
        else if (p[0].y < p[1].y) m_case = EllipseCase::Four;
        double step = 0;
        switch (m_case) {
        case EllipseCase::None: break;
        case EllipseCase::One:
        case EllipseCase::Three:
            m_rx = std::abs(double(p[1].x) - p[0].x) / 2;
            m_ry = std::abs(double(p[3].y) - p[0].y) / 2;
            step = m_case == EllipseCase::One ? double(p[1].x) - p[0].x : double(p[3].x) - p[2].x;
            break;
        case EllipseCase::Two:
        case EllipseCase::Four:
            m_rx = std::abs(double(p[3].x) - p[0].x) / 2;
            m_ry = std::abs(double(p[1].y) - p[0].y) / 2;
            step = m_case == EllipseCase::Two ? double(p[2].x) - p[1].x : double(p[0].x) - p[3].x;
            break;
        }
        const TMyPoint centre = shape->GetCenterPoint();
        if (std::abs(m_rx - m_ry) < 0.5) {
            circle(centre, m_rx);
            return;
        }
        const double cx = centre.x, cy = centre.y;
        double px = cx - m_rx;
        group(0, "POLYLINE");
        handle();
        group(8, "0");
        x(10, px);
        y(20, cy);
        group(30, "0.0");
        group(66, "1");
        group(70, "8");
        auto ellipseVertex = [&](double vy) {
            group(0, "VERTEX");
            group(8, "0");
            handle();
            x(10, px);
            y(20, vy);
            group(30, "0.0");
            group(70, "32");
        };
        auto offset = [&] {
            const double d = std::sqrt(std::abs(m_ry * m_ry * (1 - (px - cx) * (px - cx) / (m_rx * m_rx))));
            return std::isfinite(d) ? d : 0.0;
        };
        ellipseVertex(cy);
        for (int i = 0; i < 90; ++i) {
            px += step / 90;
            ellipseVertex(cy + offset());
        }
        for (int i = 0; i < 90; ++i) {
            px -= step / 90;
            ellipseVertex(cy - offset());
        }
        seqend();
    }

    TMyCAD& m_canvas;
    const bool m_glyphOutlines;
    const double m_height;
    QIODevice& m_device;
    QByteArray m_out;
    int m_handle = 20;
    EllipseCase m_case = EllipseCase::None;
    double m_rx = 0, m_ry = 0;
};

}  // namespace

void WriteDxf(TMyCAD& canvas, QIODevice& device, const TDxfExportOptions& options) {
    if (!options.Interchange) {
        EntitiesWriter(canvas, options.GlyphOutlines, device).Write();
        return;
    }
    QByteArray bytes;
    for (const QString& line : InterchangeDxfLines(canvas, options.GlyphOutlines)) {
        bytes += ToAnsi(line);
        bytes += "\r\n";
    }
    if (device.write(bytes) != bytes.size())
        throw EWriteError(QStringLiteral("Cannot write the DXF text. %1").arg(device.errorString()));
}

QByteArray DxfExportBytes(TMyCAD& canvas, const TDxfExportOptions& options) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    WriteDxf(canvas, buffer, options);
    return bytes;
}

QStringList DxfExportLines(TMyCAD& canvas, const TDxfExportOptions& options) {
    const QByteArray bytes = DxfExportBytes(canvas, options);
    QStringList lines;
    for (qsizetype start = 0, end; (end = bytes.indexOf("\r\n", start)) >= 0; start = end + 2)
        lines << FromAnsi(bytes.constData() + start, int(end - start));
    return lines;
}

void SaveToDxfFile(TMyCAD& canvas, const QString& fileName, const TDxfExportOptions& options) {
    // The text is written beside the old file, which it replaces only when
    // complete: a failed export leaves the old file as it was.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, file.errorString()));
    WriteDxf(canvas, file, options);
    if (!file.commit())
        throw EWriteError(QStringLiteral("Cannot write file \"%1\". %2").arg(fileName, file.errorString()));
}

}  // namespace faroven
