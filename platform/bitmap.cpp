#include "platform/bitmap.h"

#include "platform/canvas.h"
#include "platform/stream.h"

#include <QBuffer>
#include <QImageReader>
#include <cstdlib>
#include <cstring>

namespace faroven {

namespace {

void putU16(QByteArray& b, int at, uint16_t v) {
    b[at] = char(v & 0xFF);
    b[at + 1] = char(v >> 8);
}
void putU32(QByteArray& b, int at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + i] = char((v >> (8 * i)) & 0xFF);
}
uint32_t getU32(const uint8_t* p) { return p[0] | (p[1] << 8) | (p[2] << 16) | (uint32_t(p[3]) << 24); }

constexpr int kFileHeaderSize = 14;
constexpr int kInfoHeaderSize = 40;

}  // namespace

TBitmap::TBitmap() = default;

TBitmap::TBitmap(int width, int height, TPixelFormat format) : m_format(format) { SetSize(width, height); }

TBitmap::~TBitmap() { m_canvas.reset(); }

QImage::Format TBitmap::qtFormat() const {
    return m_format == pf24bit ? QImage::Format_BGR888 : QImage::Format_RGB32;
}

void TBitmap::endPainting() const {
    if (m_canvas) m_canvas->endPainting();
}

void TBitmap::SetSize(int width, int height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == Width() && height == Height()) return;
    endPainting();
    m_width = width;
    m_height = height;
    if (width == 0 || height == 0) {
        m_image = QImage();
    } else {
        QImage next(width, height, qtFormat());
        next.fill(Qt::white);
        if (!m_image.isNull()) {
            const int rowBytes = std::min(width, m_image.width()) * BytesPerPixel();
            for (int y = 0; y < std::min(height, m_image.height()); ++y)
                std::memcpy(next.scanLine(y), m_image.constScanLine(y), size_t(rowBytes));
        }
        m_image = next;
    }
    if (OnChange) OnChange(this);
}

void TBitmap::SetPixelFormat(TPixelFormat format) {
    if (format == m_format) return;
    endPainting();
    m_format = format;
    if (!m_image.isNull()) m_image = m_image.convertToFormat(qtFormat());
    if (OnChange) OnChange(this);
}

uint8_t* TBitmap::ScanLine(int row) {
    endPainting();
    if (row < 0 || row >= m_image.height())
        throw EInvalidGraphic(QStringLiteral("Scan line index %1 out of range (%2 rows of pixels)").arg(row).arg(m_image.height()));
    return m_image.scanLine(row);
}

const uint8_t* TBitmap::ScanLine(int row) const {
    endPainting();
    if (row < 0 || row >= m_image.height())
        throw EInvalidGraphic(QStringLiteral("Scan line index %1 out of range (%2 rows of pixels)").arg(row).arg(m_image.height()));
    return m_image.constScanLine(row);
}

TCanvas* TBitmap::Canvas() {
    if (!m_canvas) m_canvas.reset(new TCanvas(this));
    return m_canvas.get();
}

TColor TBitmap::TransparentColor() const {
    if (m_transparentMode == tmFixed) return m_transparentColor;
    if (m_image.isNull()) return clDefault;
    endPainting();
    const QRgb c = m_image.pixel(0, Height() - 1);
    return RGB(qRed(c), qGreen(c), qBlue(c));
}

QImage& TBitmap::Image() {
    endPainting();
    return m_image;
}

const QImage& TBitmap::Image() const {
    endPainting();
    return m_image;
}

void TBitmap::SetImage(const QImage& image) {
    endPainting();
    m_image = image.isNull() ? QImage() : image.convertToFormat(qtFormat());
    m_width = m_image.width();
    m_height = m_image.height();
    if (OnChange) OnChange(this);
}

void TBitmap::Assign(const TPersistent* source) {
    if (source == nullptr) {
        endPainting();
        m_image = QImage();
        m_width = m_height = 0;
        return;
    }
    if (auto other = dynamic_cast<const TBitmap*>(source)) {
        if (other == this) return;
        endPainting();
        other->endPainting();
        m_format = other->m_format;
        m_image = other->m_image.copy();
        m_width = other->m_width;
        m_height = other->m_height;
        m_transparent = other->m_transparent;
        m_transparentColor = other->m_transparentColor;
        m_transparentMode = other->m_transparentMode;
        if (OnChange) OnChange(this);
        return;
    }
    TPersistent::Assign(source);
}

void TBitmap::SaveToStream(TStream& stream) const {
    endPainting();
    const int bpp = m_format == pf24bit ? 24 : 32;
    const int bytes = bpp / 8;
    // The pixels as they are: an empty bitmap is saved as 0 x 0.
    const int w = m_image.width(), h = m_image.height();
    const int rowSize = ((w * bytes) + 3) & ~3;
    const int imageSize = rowSize * h;
    QByteArray data(kFileHeaderSize + kInfoHeaderSize + imageSize, '\0');
    data[0] = 'B';
    data[1] = 'M';
    putU32(data, 2, uint32_t(data.size()));
    putU32(data, 10, kFileHeaderSize + kInfoHeaderSize);
    putU32(data, 14, kInfoHeaderSize);
    putU32(data, 18, uint32_t(w));
    putU32(data, 22, uint32_t(h));
    putU16(data, 26, 1);
    putU16(data, 28, uint16_t(bpp));
    putU32(data, 34, uint32_t(imageSize));
    putU32(data, 38, 3780);  // 96 pixels per inch
    putU32(data, 42, 3780);
    // Rows are stored bottom-up; both in-memory formats already hold blue, green, red (, pad).
    for (int y = 0; y < h; ++y) {
        char* dst = data.data() + kFileHeaderSize + kInfoHeaderSize + (h - 1 - y) * rowSize;
        std::memcpy(dst, m_image.constScanLine(y), size_t(w * bytes));
    }
    stream.WriteBuffer(data.constData(), data.size());
}

void TBitmap::LoadFromStream(TStream& stream) {
    const int64_t start = stream.Position();
    uint8_t header[kFileHeaderSize];
    stream.ReadBuffer(header, kFileHeaderSize);
    if (header[0] != 'B' || header[1] != 'M')
        throw EInvalidGraphic(QStringLiteral("Bitmap image is not valid: no BMP signature at position %1").arg(start));
    const uint32_t fileSize = getU32(header + 2);
    if (fileSize < kFileHeaderSize + 12 || int64_t(fileSize) - kFileHeaderSize > stream.Size() - stream.Position())
        throw EReadError(QStringLiteral("Bitmap image at position %1 claims %2 bytes, %3 available")
                             .arg(start).arg(fileSize).arg(stream.Size() - start));
    QByteArray data(int(fileSize), '\0');
    std::memcpy(data.data(), header, kFileHeaderSize);
    stream.ReadBuffer(data.data() + kFileHeaderSize, fileSize - kFileHeaderSize);

    // An uncompressed image whose rows do not all fit in the file would be
    // read with its missing rows left as whatever memory held: refused.
    const auto* bytes = reinterpret_cast<const uint8_t*>(data.constData());
    if (fileSize >= kFileHeaderSize + kInfoHeaderSize && getU32(bytes + 14) >= uint32_t(kInfoHeaderSize)) {
        const int64_t width = int32_t(getU32(bytes + 18)), height = int32_t(getU32(bytes + 22));
        const int64_t bitCount = bytes[28] | (bytes[29] << 8);
        const uint32_t compression = getU32(bytes + 30);
        const int64_t rowSize = (std::abs(width) * bitCount + 31) / 32 * 4;  // below 2^45: no overflow
        const int64_t rows = std::abs(height);
        const int64_t available = int64_t(fileSize) - int64_t(getU32(bytes + 10));
        if ((compression == 0 || compression == 3) && rowSize > 0 && rows > 0 &&
            (available < 0 || rows > available / rowSize))
            throw EInvalidGraphic(
                QStringLiteral("Bitmap image at position %1 is not valid: its pixels are shorter than its header says")
                    .arg(start));
    }

    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "BMP");
    QImage image = reader.read();
    if (image.isNull())
        throw EInvalidGraphic(QStringLiteral("Bitmap image at position %1 is not valid: %2").arg(start).arg(reader.errorString()));
    const uint16_t bitCount = uint16_t(data[28] & 0xFF) | uint16_t((data[29] & 0xFF) << 8);
    endPainting();
    m_format = bitCount == 24 ? pf24bit : bitCount == 32 ? pf32bit : pfDevice;
    m_image = image.convertToFormat(qtFormat());
    m_width = m_image.width();
    m_height = m_image.height();
    if (OnChange) OnChange(this);
}

void TBitmap::SaveToFile(const QString& fileName) const {
    TFileStream file(fileName, fmCreate);
    SaveToStream(file);
}

void TBitmap::LoadFromFile(const QString& fileName) {
    TFileStream file(fileName, fmOpenRead);
    LoadFromStream(file);
}

}  // namespace faroven
