// The stream encodings every file of the drawing uses: little-endian Int32,
// Single, Byte, 4-byte colour, and Str = Int32 length followed by (length mod
// 256) bytes of Windows-1252 text. Short reads raise EReadError.
#pragma once

#include "platform/color.h"
#include "platform/stream.h"

#include <QString>
#include <cstdint>

namespace faroven {

void WriteInt32(TStream& s, int32_t v);
int32_t ReadInt32(TStream& s);
void WriteSingle(TStream& s, float v);
float ReadSingle(TStream& s);
void WriteByte(TStream& s, uint8_t v);
uint8_t ReadByte(TStream& s);
void WriteColor(TStream& s, TColor v);
TColor ReadColor(TStream& s);
// The length written is the full length of the text in bytes; only the first
// (length mod 256) bytes follow it, as the format has always done.
void WriteStr(TStream& s, const QString& text);
QString ReadStr(TStream& s);

}  // namespace faroven
