// The stream encodings every file of the drawing uses: little-endian Int32,
// Single, Byte, 4-byte colour, and Str = Int32 length followed by (length mod
// 256) bytes of Windows-1252 text. Short reads raise EReadError; contents that
// cannot be right (a count the rest of the stream cannot hold) raise
// EFileFormatError, which names the byte offset.
#pragma once

#include "platform/color.h"
#include "platform/stream.h"

#include <QString>
#include <cstdint>
#include <memory>

namespace faroven {

class TBitmap;

// A stream whose contents are not a valid drawing, block, record or library:
// the message says what is wrong and at which byte offset.
class EFileFormatError : public EReadError {
public:
    EFileFormatError(const QString& what, int64_t offset);
    int64_t Offset() const { return m_offset; }
private:
    int64_t m_offset;
};

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
void WriteDouble(TStream& s, double v);
double ReadDouble(TStream& s);
// A 10-byte x87 extended float, as old versions stored coordinates, rounded
// to the nearest Single.
float ReadExtended(TStream& s);
// A fixed text field of `width` bytes: the text padded with blanks (cut to
// the width); reading takes the whole field and trims blanks at both ends.
void WriteText(TStream& s, const QString& text, int width);
QString ReadText(TStream& s, int width);

// Reads an Int32 count of items that take at least bytesPerItem bytes each
// (counted as 1 when 0). A negative count reads as 0; a count that the rest
// of the stream cannot hold raises EFileFormatError naming `what`, before the
// caller allocates anything for it.
int32_t ReadCount(TStream& s, int bytesPerItem, const char* what);

// The string and bitmap fields of the shape records. ReadStrBuffer reads
// exactly count bytes as text; WriteStrBuffer writes the first count bytes of
// the text's 8-bit form (the caller writes the Int32 length before, and passes
// it mod 256). A bitmap is an Int64 byte count and a BMP file image; a count
// of 0 or below means none: ReadBitmapBuffer then leaves `bitmap` null, and
// WriteBitmapBuffer writes it for a null or empty bitmap.
QString ReadStrBuffer(TStream& s, uint8_t count);
bool WriteStrBuffer(TStream& s, const QString& text, uint8_t count);
bool ReadBitmapBuffer(TStream& s, std::unique_ptr<TBitmap>& bitmap);
bool WriteBitmapBuffer(TStream& s, const TBitmap* bitmap);

}  // namespace faroven
