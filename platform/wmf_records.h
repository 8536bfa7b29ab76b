// The byte layout of a Windows metafile: record function numbers, a buffer of
// records that keeps the sizes the metafile header needs, the placeable and
// metafile headers around it, and 24-bit device-independent bitmaps. Nothing
// here knows about Qt's painter; the paint engine decides what to record.
#pragma once

#include <QByteArray>
#include <QImage>
#include <cstdint>
#include <initializer_list>

namespace faroven::wmf {

// Record functions (the low byte numbers the record, the high byte is the
// number of 16-bit parameters of the fixed-size ones).
enum TRecordFunction : uint16_t {
    META_EOF = 0x0000,
    META_SAVEDC = 0x001E,
    META_SETBKMODE = 0x0102,
    META_SETROP2 = 0x0104,
    META_SETPOLYFILLMODE = 0x0106,
    META_RESTOREDC = 0x0127,
    META_SELECTOBJECT = 0x012D,
    META_SETTEXTALIGN = 0x012E,
    META_DIBCREATEPATTERNBRUSH = 0x0142,
    META_DELETEOBJECT = 0x01F0,
    META_SETTEXTCOLOR = 0x0209,
    META_SETWINDOWORG = 0x020B,
    META_SETWINDOWEXT = 0x020C,
    META_CREATEPENINDIRECT = 0x02FA,
    META_CREATEFONTINDIRECT = 0x02FB,
    META_CREATEBRUSHINDIRECT = 0x02FC,
    META_POLYGON = 0x0324,
    META_POLYLINE = 0x0325,
    META_INTERSECTCLIPRECT = 0x0416,
    META_ELLIPSE = 0x0418,
    META_RECTANGLE = 0x041B,
    META_SETPIXEL = 0x041F,
    META_POLYPOLYGON = 0x0538,
    META_EXTTEXTOUT = 0x0A32,
    META_STRETCHDIB = 0x0F43,
};

constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;
constexpr int kPlaceableHeaderBytes = 22;
constexpr int kMetaHeaderWords = 9;

// COLORREF: 0x00BBGGRR.
constexpr uint32_t ColorRef(int r, int g, int b) { return uint32_t(r) | uint32_t(g) << 8 | uint32_t(b) << 16; }

// Little-endian parameters of one record.
class TWmfParams {
public:
    TWmfParams& Word(int v);  // 16 bits, signed or unsigned
    TWmfParams& DWord(uint32_t v);
    TWmfParams& Words(std::initializer_list<int> words);
    TWmfParams& Byte(int v);
    // Bytes followed by a zero byte when needed to end on a word boundary.
    TWmfParams& Padded(const QByteArray& bytes);
    const QByteArray& Bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

// The records of a metafile in the order they are added.
class TWmfRecords {
public:
    void Add(uint16_t function, const QByteArray& params);
    void Add(uint16_t function, std::initializer_list<int> words) { Add(function, TWmfParams().Words(words).Bytes()); }
    const QByteArray& Bytes() const { return m_bytes; }
    // Size of the largest record so far in words (the end record counts 3).
    uint32_t MaxRecordWords() const { return m_maxWords; }

    // The complete file: placeable header with a bounding box of 0,0,width,height
    // and unitsPerInch, metafile header, the records and the end record.
    QByteArray Metafile(int width, int height, int unitsPerInch, int objectCount) const;

private:
    QByteArray m_bytes;
    uint32_t m_maxWords = 3;
};

// A device-independent bitmap: BITMAPINFOHEADER and 24-bit rows, bottom row
// first, each padded to four bytes. Pixels with alpha are composited onto
// white, because the metafile has no alpha.
QByteArray Dib24(const QImage& image);

}  // namespace faroven::wmf
