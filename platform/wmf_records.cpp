#include "platform/wmf_records.h"

#include <algorithm>

namespace faroven::wmf {

TWmfParams& TWmfParams::Word(int v) {
    m_bytes.append(char(v & 0xFF));
    m_bytes.append(char((v >> 8) & 0xFF));
    return *this;
}

TWmfParams& TWmfParams::DWord(uint32_t v) {
    Word(int(v & 0xFFFF));
    return Word(int(v >> 16));
}

TWmfParams& TWmfParams::Words(std::initializer_list<int> words) {
    for (int w : words) Word(w);
    return *this;
}

TWmfParams& TWmfParams::Byte(int v) {
    m_bytes.append(char(v & 0xFF));
    return *this;
}

TWmfParams& TWmfParams::Padded(const QByteArray& bytes) {
    m_bytes.append(bytes);
    if (bytes.size() % 2) m_bytes.append('\0');
    return *this;
}

void TWmfRecords::Add(uint16_t function, const QByteArray& params) {
    Q_ASSERT(params.size() % 2 == 0);
    const uint32_t words = uint32_t(3 + params.size() / 2);
    TWmfParams head;
    head.DWord(words).Word(function);
    m_bytes.append(head.Bytes());
    m_bytes.append(params);
    m_maxWords = std::max(m_maxWords, words);
}

QByteArray TWmfRecords::Metafile(int width, int height, int unitsPerInch, int objectCount) const {
    TWmfParams placeable;
    placeable.DWord(kPlaceableKey).Words({0, 0, 0, width, height, unitsPerInch}).DWord(0);
    // The checksum is the exclusive-or of the ten words before it.
    const QByteArray& head = placeable.Bytes();
    uint16_t checksum = 0;
    for (int i = 0; i < 20; i += 2) checksum ^= uint16_t(uint8_t(head[i]) | uint8_t(head[i + 1]) << 8);
    placeable.Word(checksum);

    const uint32_t totalWords = uint32_t(kMetaHeaderWords + m_bytes.size() / 2 + 3);
    TWmfParams header;
    header.Words({1, kMetaHeaderWords, 0x0300}).DWord(totalWords).Word(objectCount).DWord(m_maxWords).Word(0);

    QByteArray out = placeable.Bytes() + header.Bytes() + m_bytes;
    out.append(TWmfParams().DWord(3).Word(META_EOF).Bytes());
    return out;
}

QByteArray Dib24(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    const int w = argb.width(), h = argb.height();
    const int stride = (w * 3 + 3) & ~3;
    TWmfParams info;
    info.DWord(40).DWord(uint32_t(w)).DWord(uint32_t(h)).Words({1, 24}).DWord(0).DWord(uint32_t(stride * h));
    info.DWord(0).DWord(0).DWord(0).DWord(0);
    QByteArray out = info.Bytes();
    const qsizetype start = out.size();
    out.resize(start + qsizetype(stride) * h, '\0');
    for (int y = 0; y < h; ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(argb.constScanLine(h - 1 - y));
        auto* dst = reinterpret_cast<uint8_t*>(out.data() + start + qsizetype(stride) * y);
        for (int x = 0; x < w; ++x) {
            const int a = qAlpha(src[x]);
            const auto over = [a](int c) { return uint8_t((c * a + 255 * (255 - a) + 127) / 255); };
            dst[3 * x] = over(qBlue(src[x]));
            dst[3 * x + 1] = over(qGreen(src[x]));
            dst[3 * x + 2] = over(qRed(src[x]));
        }
    }
    return out;
}

}  // namespace faroven::wmf
