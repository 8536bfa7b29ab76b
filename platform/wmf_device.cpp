#include "platform/wmf_device.h"

#include "platform/wmf_paint_engine.h"

#include <QSaveFile>
#include <stdexcept>

namespace faroven {

TWmfDevice::TWmfDevice(int width, int height, int unitsPerInch)
    : m_width(width), m_height(height), m_unitsPerInch(unitsPerInch) {
    if (width < 1 || height < 1 || width > MaxSize || height > MaxSize)
        throw std::invalid_argument("metafile size must be 1 to 32767 units a side");
    if (unitsPerInch < 1 || unitsPerInch > 65535)
        throw std::invalid_argument("metafile units per inch must be 1 to 65535");
    m_engine = std::make_unique<TWmfPaintEngine>(width, height, unitsPerInch);
}

TWmfDevice::~TWmfDevice() = default;

QPaintEngine* TWmfDevice::paintEngine() const { return m_engine.get(); }

QByteArray TWmfDevice::Data() const { return m_engine->Metafile(); }

bool TWmfDevice::Save(const QString& fileName, QString* error) const {
    QSaveFile file(fileName);
    const QByteArray data = Data();
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit()) return true;
    if (error) *error = file.errorString();
    return false;
}

int TWmfDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
    case PdmWidth: return m_width;
    case PdmHeight: return m_height;
    case PdmWidthMM: return int(std::lround(m_width * 25.4 / m_unitsPerInch));
    case PdmHeightMM: return int(std::lround(m_height * 25.4 / m_unitsPerInch));
    case PdmNumColors: return 1 << 24;
    case PdmDepth: return 24;
    case PdmDpiX: case PdmDpiY: case PdmPhysicalDpiX: case PdmPhysicalDpiY: return m_unitsPerInch;
    case PdmDevicePixelRatio: return 1;
    case PdmDevicePixelRatioScaled: return int(devicePixelRatioFScale());
    default: return QPaintDevice::metric(metric);
    }
}

}  // namespace faroven
