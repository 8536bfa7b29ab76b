#include "cad/persistence/stream_io.h"

#include "platform/ansi.h"
#include "platform/bitmap.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace faroven {

namespace {
template <class T>
void writeLE(TStream& s, T v) {
    uint8_t b[sizeof(T)];
    std::memcpy(b, &v, sizeof(T));  // the machine is little-endian, like the format
    s.WriteBuffer(b, sizeof(T));
}
template <class T>
T readLE(TStream& s) {
    uint8_t b[sizeof(T)];
    s.ReadBuffer(b, sizeof(T));
    T v;
    std::memcpy(&v, b, sizeof(T));
    return v;
}
}  // namespace

EFileFormatError::EFileFormatError(const QString& what, int64_t offset)
    : EReadError(QStringLiteral("%1 at byte offset %2").arg(what).arg(offset)), m_offset(offset) {}

void WriteInt32(TStream& s, int32_t v) { writeLE(s, v); }
int32_t ReadInt32(TStream& s) { return readLE<int32_t>(s); }
void WriteSingle(TStream& s, float v) { writeLE(s, v); }
float ReadSingle(TStream& s) { return readLE<float>(s); }
void WriteByte(TStream& s, uint8_t v) { writeLE(s, v); }
uint8_t ReadByte(TStream& s) { return readLE<uint8_t>(s); }
void WriteColor(TStream& s, TColor v) { writeLE(s, v); }
TColor ReadColor(TStream& s) { return readLE<TColor>(s); }

void WriteStr(TStream& s, const QString& text) {
    const QByteArray bytes = ToAnsi(text);
    WriteInt32(s, int32_t(bytes.size()));
    const int kept = int(bytes.size() % 256);
    if (kept) s.WriteBuffer(bytes.constData(), kept);
}

QString ReadStr(TStream& s) {
    const int32_t length = ReadInt32(s);
    const int kept = int(uint32_t(length) % 256);
    if (kept == 0) return QString();
    char buffer[256];
    s.ReadBuffer(buffer, kept);
    return FromAnsi(buffer, kept);
}

void WriteDouble(TStream& s, double v) { writeLE(s, v); }
double ReadDouble(TStream& s) { return readLE<double>(s); }

float ReadExtended(TStream& s) {
    uint8_t b[10];
    s.ReadBuffer(b, 10);
    uint64_t mantissa;
    std::memcpy(&mantissa, b, 8);
    const int exponent = (b[8] | (b[9] << 8)) & 0x7FFF;
    const bool negative = b[9] & 0x80;
    long double value;
    if (exponent == 0x7FFF)
        value = (mantissa << 1) ? std::numeric_limits<long double>::quiet_NaN()
                                : std::numeric_limits<long double>::infinity();
    else  // the integer bit is explicit, so denormals need no special case
        value = std::ldexp(static_cast<long double>(mantissa), (exponent ? exponent : 1) - 16383 - 63);
    // One rounding, from the exact value to the nearest Single.
    return float(negative ? -value : value);
}

void WriteText(TStream& s, const QString& text, int width) {
    QByteArray bytes = ToAnsi(text).left(width);
    bytes.append(width - bytes.size(), ' ');
    s.WriteBuffer(bytes.constData(), width);
}

QString ReadText(TStream& s, int width) {
    QByteArray bytes(width, '\0');
    s.ReadBuffer(bytes.data(), width);
    return FromAnsi(bytes).trimmed();
}

int32_t ReadCount(TStream& s, int bytesPerItem, const char* what) {
    const int32_t count = ReadInt32(s);
    if (count <= 0) return 0;
    const int64_t left = s.Size() - s.Position();
    if (int64_t(count) * std::max(bytesPerItem, 1) > left)
        throw EFileFormatError(QStringLiteral("%1 count %2 is more than the %3 bytes left can hold")
                                   .arg(QLatin1String(what)).arg(count).arg(left),
                               s.Position() - 4);
    return count;
}

QString ReadStrBuffer(TStream& s, uint8_t count) {
    if (count == 0) return QString();
    char buffer[256];
    s.ReadBuffer(buffer, count);
    return FromAnsi(buffer, count);
}

bool WriteStrBuffer(TStream& s, const QString& text, uint8_t count) {
    const QByteArray bytes = ToAnsi(text);
    const int n = std::min<int>(count, int(bytes.size()));
    if (n) s.WriteBuffer(bytes.constData(), n);
    return true;
}

bool ReadBitmapBuffer(TStream& s, std::unique_ptr<TBitmap>& bitmap) {
    const int64_t start = s.Position();
    const int64_t count = readLE<int64_t>(s);
    if (count <= 0) return true;
    if (count > s.Size() - s.Position())
        throw EFileFormatError(QStringLiteral("Bitmap of %1 bytes is longer than the stream").arg(count), start);
    // Exactly count bytes belong to the bitmap, whatever its image says.
    TMemoryStream image;
    image.CopyFrom(s, count);
    image.SetPosition(0);
    auto loaded = std::make_unique<TBitmap>();
    try {
        loaded->LoadFromStream(image);
    } catch (const Exception& e) {
        throw EFileFormatError(QStringLiteral("Bitmap is not valid (%1)").arg(e.Message()), start);
    }
    bitmap = std::move(loaded);
    return true;
}

bool WriteBitmapBuffer(TStream& s, const TBitmap* bitmap) {
    if (!bitmap || bitmap->Empty()) {
        writeLE<int64_t>(s, 0);
        return true;
    }
    TMemoryStream image;
    bitmap->SaveToStream(image);
    writeLE<int64_t>(s, image.Size());
    if (image.Size()) s.WriteBuffer(image.Memory(), image.Size());
    return true;
}

}  // namespace faroven
