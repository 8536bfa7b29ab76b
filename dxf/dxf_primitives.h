// The lowest layer of DXF exchange: a pull reader that walks an ASCII DXF file
// one group (a code line and a value line) at a time and knows its sections,
// a writer that emits groups and section brackets in the same text form, the
// entry table that holds one entity's groups keyed by group code, the colour
// numbering, and a few small conversions used by the importer.
//
// Value typing by group code (inclusive ranges), shared by reader and writer:
//   0..9, 999..1009      text     read trimmed         written cut to 255 chars
//   10..59, 140..147,
//   210..239, 1010..1059 real     read as a number     written "%.6f"
//   60..79, 170..175,
//   1060..1079           integer  read as a number     written "%6d"
//   every other code     untyped  read as it stands    written as an empty line
// Numbers are read with a point or a comma as decimal separator, whatever the
// process-wide separator is, and always written with a point.
#pragma once

#include "cad/types.h"
#include "platform/color.h"
#include "platform/textfile.h"
#include "platform/types.h"
#include "platform/variant.h"

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>

namespace faroven {

class TStream;

inline namespace dxf_enums {
Q_NAMESPACE

// The section the reader stands in. scUnknow (spelled so) means no recognised
// section and sits before scClasses: the ordinals are part of the interface.
enum TSections : uint8_t { scHeader, scTables, scBlocks, scEntities, scUnknow, scClasses };
Q_ENUM_NS(TSections)
enum TArcDirection : uint8_t { adClockwise, adCounterClockwise };
Q_ENUM_NS(TArcDirection)

}  // namespace dxf_enums

static_assert(scHeader == 0 && scEntities == 3 && scUnknow == 4 && scClasses == 5);
static_assert(adClockwise == 0 && adCounterClockwise == 1);

// ---------------------------------------------------------------- value typing

enum class TDxfValueType { Text, Real, Integer, Untyped };

// The type of the values of a group code (table above).
TDxfValueType DxfValueType(int code);

// ---------------------------------------------------------------- entry table

// One entry's groups keyed by group code: 513 slots, slot k holds code k for
// k = 0..255 and slot c - 744 holds code c for c = 1000..1256. Codes 256..999
// and above 1256 have no slot. An empty slot means the group is absent.
struct TGroupTable : std::array<TVariant, 513> {
    // The slot of a group code, or -1 when the code has none.
    static constexpr int SlotOf(int code) {
        if (code >= 0 && code <= 255) return code;
        if (code >= 1000 && code <= 1256) return code - 744;
        return -1;
    }
    // The group code held by a slot (0..512).
    static constexpr int CodeOfSlot(int slot) { return slot <= 255 ? slot : slot + 744; }

    // The value of a group code; an empty value when absent or without slot.
    const TVariant& Value(int code) const;
    // Stores the value of a group code; a code without slot is dropped.
    void SetValue(int code, const TVariant& value);
    bool Has(int code) const { return !Value(code).IsEmpty(); }
    // Empties every slot.
    void Clear();
};

static_assert(TGroupTable::SlotOf(1000) == 256 && TGroupTable::SlotOf(1256) == 512);

// ---------------------------------------------------------------- reader

// Walks an ASCII DXF file group by group. A new (or rewound) reader stands on
// the first group inside the first section. The end of the file is not an
// error: ConsumeGroup returns false, NextSection leaves scUnknow, ReadAnEntry
// returns 0. Bad numbers raise EConvertError (its message names the text, the
// group code and the line); files that cannot be read raise EInOutError naming
// the file. The process-wide decimal separator is the same after every call,
// exceptions included.
class TDXFRead : public TObject {
    Q_GADGET
    Q_PROPERTY(bool IsR12DXF READ IsR12DXF WRITE SetIsR12DXF)
public:
    // Opens the file; EInOutError when it cannot be opened.
    explicit TDXFRead(const QString& fileName);
    // Reads a stream from its current position; the stream must outlive the
    // reader. The name appears in messages.
    explicit TDXFRead(TStream& stream, const QString& name = QStringLiteral("<stream>"));
    // Reads DXF text held in memory.
    static std::unique_ptr<TDXFRead> FromBytes(const QByteArray& bytes, const QString& name = QStringLiteral("<memory>"));
    ~TDXFRead() override;

    // Reads the next group into CurrentGroupCode and CurrentValue. Returns
    // false at the end of the file: then the group just read (normally 0 EOF)
    // keeps its code but its value is not converted, CurrentValue keeps the
    // previous group's value; with nothing left to read, nothing changes.
    bool ConsumeGroup();
    // Moves to the next 0 SECTION group, reads the section name into
    // CurrentSection and stands on the first group inside the section;
    // scUnknow for an unknown name or at the end of the file.
    void NextSection();
    // Collects one entry into entry: skips to the next group with this code
    // (returns 0 if a 0 group or the end of the file comes first, code 0
    // excepted), then stores that group and every following one until the next
    // group with the same code or with code 0, where the reader then stands.
    // Only codes 0..255 and 1000..1255 are stored; a repeated code keeps its
    // last value; slots not mentioned keep what they held (clear the entry
    // first). Returns code, or 0 when the end of the file cut the entry short.
    // With code 0 both outcomes return 0: an entry is complete when its slot 0
    // was filled and the reader then stands on a 0 group (CurrentGroupCode 0).
    uint16_t ReadAnEntry(uint16_t code, TGroupTable& entry);
    // Back to the start, in the state of a new reader (IsR12DXF is kept).
    void Rewind();

    TSections CurrentSection() const { return m_section; }
    uint16_t CurrentGroupCode() const { return m_code; }
    const TVariant& CurrentValue() const { return m_value; }
    // True once the reader has reached the end of the file.
    bool Eof() const { return m_atEnd; }
    // The line of the current group's code line (1-based).
    int CurrentLine() const { return m_line; }
    // The file name, or the name given for a stream or bytes.
    const QString& Name() const;

    bool IsR12DXF() const { return m_isR12; }
    void SetIsR12DXF(bool value) { m_isR12 = value; }

private:
    enum class ReadResult { Group, LastGroup, Nothing };
    explicit TDXFRead(std::unique_ptr<TTextFileReader> text);
    void start();
    ReadResult readGroup();

    TSections m_section = scUnknow;
    uint16_t m_code = 0;
    TVariant m_value;
    bool m_isR12 = true;
    bool m_atEnd = false;
    int m_line = 0;
    std::unique_ptr<TTextFileReader> m_text;
    QByteArray m_valueBytes;
};

// ---------------------------------------------------------------- writer

// Writes ASCII DXF groups with CR LF line ends. The writer never writes the
// final 0 EOF group by itself: the caller writes WriteGroup(0, "EOF").
class TDXFWrite : public TObject {
public:
    // Creates or truncates the file; EInOutError when it cannot.
    explicit TDXFWrite(const QString& fileName);
    // Writes to a stream from its current position; the stream must outlive
    // the writer.
    explicit TDXFWrite(TStream& stream, const QString& name = QStringLiteral("<stream>"));
    // Flushes and closes; call Flush first to see a write error.
    ~TDXFWrite() override;

    // Drops everything written and starts again at the beginning.
    void Reset();
    // 0 SECTION, then 2 and the section name; scUnknow writes no name group.
    void BeginSection(TSections section);
    // 0 ENDSEC; the argument is not used.
    void EndSection(TSections section);
    // Writes one group: the code as "%3d", the value by the typing table.
    // Strings given for numeric codes are read with a point or a comma;
    // doubles given for integer codes are rounded half to even. A value that
    // cannot be written (text that is no number, an integer beyond 32 bits, a
    // real that is not finite) raises EConvertError and writes nothing. Line
    // breaks inside a text value are written as blanks so that the file keeps
    // two lines per group.
    void WriteGroup(uint16_t code, const TVariant& value);
    // Writes every non-empty slot: codes 0..255 in ascending order, then
    // codes 1000..1255.
    void WriteAnEntry(const TGroupTable& entry);
    // Hands everything written so far to the file; EInOutError on failure.
    void Flush();

private:
    TTextFileWriter m_text;
};

// ---------------------------------------------------------------- conversions

// A homogeneous 2D point.
struct TPoint2D {
    float x = 0;
    float y = 0;
    float w = 0;
    friend bool operator==(const TPoint2D&, const TPoint2D&) = default;
};
struct TRect2D {
    TPoint2D first;
    TPoint2D second;
    friend bool operator==(const TRect2D&, const TRect2D&) = default;
};

// (x / w, y / w, 1) when w is neither 1 nor 0; otherwise the point unchanged
// (a w of 0 is passed through, not divided).
TPoint2D CartesianPoint2D(const TPoint2D& point);
// Both corners through CartesianPoint2D.
TRect2D CartesianRect2D(const TRect2D& rect);
// CartesianRect2D, then x and y each put in order (first = minimum). The
// comparisons and the swapped values are the input's raw x and y, which is the
// same for corners with w = 1.
TRect2D ReorderRect2D(const TRect2D& rect);
// Screen pixels (96 per inch) to millimetres.
TMyPoint pixel2mm(const TMyPoint& point);
// Hook for a coordinate mode change; returns the point unchanged.
TMyPoint ModeChange(const TMyPoint& point, int mode);

// ---------------------------------------------------------------- colours

// Black and white 7, red 1, yellow 2, green 3, cyan 4, blue 5, magenta 6,
// gray (128,128,128) 8, silver (192,192,192) 9, every other colour 7. System
// colours are resolved to their RGB value first.
int ColorToDxfColorNumber(TColor color);
// The 256-entry palette of DXF colour numbers. A negative number (a layer
// switched off) gives the colour of its absolute value; numbers beyond 255 in
// magnitude (BYLAYER is 256) give black, as do the entries the palette leaves
// unset.
TColor DxfColorNumberToColor(int number);

}  // namespace faroven
