// A paint device that records what a QPainter draws on it as a placeable
// Windows metafile (WMF): pens, brushes, fonts, polylines, polygons, ellipses,
// rectangles, text and bitmaps become the metafile's own records, so other
// programs read the picture as vectors.
#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QString>
#include <memory>

namespace faroven {

class TWmfPaintEngine;

class TWmfDevice : public QPaintDevice {
public:
    // A picture of width x height logical units (the device's pixels), of which
    // unitsPerInch make one inch (the placeable header's "inch" field; 96 gives
    // a picture whose pixels are screen pixels). Coordinates must fit 16 bits:
    // sizes above 32767 raise std::invalid_argument, as do sizes and units
    // below 1 and more than 65535 units per inch.
    TWmfDevice(int width, int height, int unitsPerInch = 96);
    static constexpr int MaxSize = 32767;
    ~TWmfDevice() override;
    TWmfDevice(const TWmfDevice&) = delete;
    TWmfDevice& operator=(const TWmfDevice&) = delete;

    QPaintEngine* paintEngine() const override;
    // The complete metafile: placeable header, metafile header, records, end
    // record. Valid once every painter on the device has ended; a later
    // painter draws on top of what is there.
    QByteArray Data() const;
    // Writes Data() to a file through QSaveFile; false with the reason on failure.
    bool Save(const QString& fileName, QString* error = nullptr) const;

protected:
    int metric(PaintDeviceMetric metric) const override;  // size, dpi = unitsPerInch, depth 24

private:
    int m_width, m_height, m_unitsPerInch;
    std::unique_ptr<TWmfPaintEngine> m_engine;
};

}  // namespace faroven
