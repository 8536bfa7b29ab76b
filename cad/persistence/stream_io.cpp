#include "cad/persistence/stream_io.h"

#include "platform/ansi.h"

#include <cstring>

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

}  // namespace faroven
