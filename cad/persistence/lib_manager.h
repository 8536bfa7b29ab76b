// Shape libraries: files of named combined shapes, each stored in
// coordinates normalised to its own bounding box so that it can be inserted
// at any size.
//
// A library file is a 10-byte tag ("ZEMALIBX.j" now) followed by entries one
// after another, without count or index. An entry is: name length (Byte),
// name (Windows-1252), size (Int32, the bytes of the rest of the entry),
// width and height (Int32, the stored bounding box, 0 stored as 1), the user
// data (Int32 count and key/value Str pairs; "ZEMALIBX.j" entries only), and
// the shapes (Int32 count, then for each its class name as a 16-byte text
// field and its shape record). docs/libraries.md has the details.
//
// TLibManager keeps one library in memory and works on that image; SaveToFile
// writes it out. A hidden canvas reads and writes the shape records (it is a
// widget, so a QApplication must exist, as for any canvas).
//
// A library file comes from outside: every reader checks what it reads
// against the bytes there are, and a corrupt file raises EFileFormatError
// naming the entry and the byte offset; nothing is allocated for counts the
// file cannot hold, and the entry walk always moves forward.
#pragma once

#include "cad/persistence/file_version.h"
#include "cad/persistence/userdata.h"
#include "cad/types.h"
#include "platform/color.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace faroven {

class TBitmap;
class TMemoryStream;
class TMyCAD;
class TMyShape;
class TStream;

// The tag of libraries written now.
inline constexpr char CurrentLibTag[] = "ZEMALIBX.j";
constexpr int kLibTagWidth = 10;

// The record version a library tag stands for ("ZEMALIBX.3" holds "XP.4"
// records); an empty string for a tag outside the list.
QString LibTagRecordVersion(const QString& tag);
// The tag at the start of the file: its first 10 bytes, or an empty string
// for a shorter file. A missing file raises EFOpenError.
QString ReadLibFileTag(const QString& fileName);

// Probes: true when the file starts with one of the tags named.
// IsZEMALibFile: ".j", ".h", ".a", ".9", ".8", ".7", ".6", ".3", ".2" (not ".i", not ".e").
bool IsZEMALibFile(const QString& fileName);
bool IsZEMALibFileX8(const QString& fileName);
bool IsZEMALibFileX9(const QString& fileName);
bool IsZEMALibFileXA(const QString& fileName);
bool IsZEMALibFileXE(const QString& fileName);
bool IsZEMALibFileXH(const QString& fileName);
bool IsZEMALibFileXI(const QString& fileName);
bool IsZEMALibFileX67(const QString& fileName);  // ".6" or ".7"
bool IsZEMALibX2File(const QString& fileName);
bool IsOLDZEMALibFile(const QString& fileName);  // "ZEMALIB2.1"

// The shapes of an entry as read: owned by the caller, belonging to the
// manager's hidden canvas (copy them onto another canvas to show them there).
using TLibShapes = std::vector<std::unique_ptr<TMyShape>>;

class TLibManager {
public:
    // Loads the file into memory (an empty name starts an empty library) and
    // writes the current tag at its start. A missing file raises EFOpenError.
    explicit TLibManager(const QString& fileName = QString());
    ~TLibManager();
    TLibManager(const TLibManager&) = delete;
    TLibManager& operator=(const TLibManager&) = delete;

    QString LibFileName() const { return m_libFileName; }
    void SetLibFileName(const QString& fileName) { m_libFileName = fileName; }
    // The library's bytes in memory, as SaveToFile writes them.
    TMemoryStream& Memory() { return *m_memory; }
    QByteArray Bytes() const;
    // The canvas that reads and writes the shape records.
    TMyCAD& HiddenCanvas() { return *m_canvas; }

    // Replace the memory image by the file's bytes, as they are. A missing
    // file raises EFOpenError.
    void LoadFromFile(const QString& fileName);
    // Writes the memory image to the file, atomically: when writing fails the
    // file keeps its former contents (EFCreateError or EWriteError).
    void SaveToFile(const QString& fileName);

    // ---- Entries -------------------------------------------------------------------------------
    int GetcmbShapesCount();
    // The name of the index-th entry (0-based); empty when there is none.
    QString GetCmbShapesNameByID(int index);
    // Every entry's name in file order, in one walk.
    QStringList GetCmbShapesNames();
    // The entry with exactly that name: its start and whole length in bytes.
    bool GetExistShape(const QString& name, int64_t& position, int64_t& length);

    // Reads an entry at a target size (width and height in drawing units; 0
    // or less takes the stored size): its shapes with every point scaled from
    // the entry's unit box, relations numbered within the entry. With
    // skipLinkPoints, TMyLinkPoint shapes are not returned; their centres go
    // to linkPoints instead. userData (when given) receives the entry's pairs.
    // False when there is no entry of that name.
    bool GetCmbShape(const QString& name, TArrMyPoint& linkPoints, TUserData* userData, TLibShapes& shapes,
                     double width, double height, bool skipLinkPoints);
    // The same for the entries of older libraries, read in the layout of
    // their tag (no user data).
    bool GetCmbShapeforX8(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    bool GetCmbShapeforX9(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    bool GetCmbShapeforXA(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    bool GetCmbShapeforXE(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    bool GetCmbShapeforXH(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    bool GetCmbShapeforXI(const QString& name, TArrMyPoint& linkPoints, TLibShapes& shapes, double width,
                          double height, bool skipLinkPoints);
    // The stored width and height of an entry; false when there is none.
    bool GetCmbShapeSize(const QString& name, int& width, int& height);

    // Writing entries: the shapes (and every member of the groups among
    // them, which the list must hold too) are stored normalised to their
    // bounding box without link points; the shapes themselves are not
    // changed. width and height (when given) receive the stored size. False,
    // with the library unchanged, for an empty or too long (over 255 bytes)
    // name, a name already there (Append, Insert), or no shapes.
    bool AppendNewShape(const QString& name, const std::vector<TMyShape*>& shapes, const TUserData* userData,
                        int* width = nullptr, int* height = nullptr);
    // Writes the entry at a byte position, which must be an entry's start or
    // the end (false otherwise); the rest of the file moves behind it.
    bool InsertNewShape(int64_t position, const QString& name, const std::vector<TMyShape*>& shapes,
                        const TUserData* userData, int* width = nullptr, int* height = nullptr);
    // Rewrites the entry of that name in place; false when there is none.
    bool RepalceExistShape(const QString& name, const std::vector<TMyShape*>& shapes, const TUserData* userData,
                           int* width = nullptr, int* height = nullptr);
    bool DeleteShape(const QString& name);
    // False when oldName is missing, or newName is empty, too long or taken.
    bool RenameCmbShapeName(const QString& oldName, const QString& newName);
    // Moves the entry before another; false when either is missing.
    bool MoveCmbShapeBeforeByName(const QString& name, const QString& beforeName);

    // A picture of the entry at its stored size times scale, over the
    // background colour: the entry's box, grown to the ink its shapes paint
    // beyond it (arrow heads, pens, captions), with a margin of kImageMargin
    // pixels; ink further than kMaxInkBeyond pixels from the box is left
    // out. The scale is lowered if need be so that the box's sides stay
    // within kMaxImageSide pixels.
    static constexpr int kImageMargin = 2;
    static constexpr int kMaxImageSide = 2048;
    static constexpr int kMaxInkBeyond = 128;
    bool GetCmbShapeImage(const QString& name, double scale, TBitmap& bitmap, TColor background);

    // ---- Fields, at the memory image's position; each returns its bytes ---------------------------
    int ReadLibTag(QString& tag);             // at position 0; 0 bytes when the image is shorter
    int WriteLibTag(const QString& tag = QString::fromLatin1(CurrentLibTag));  // at position 0
    int ReplaceoldTagwithNewTag(const QString& newTag);
    int ReadCmbShapeName(QString& name);
    int WriteCmbShapeName(const QString& name);
    int ReadCmbShapeSize(int32_t& size);
    int WriteCmbShapeSize(int32_t size);
    int ReadWidthHeight(int32_t& width, int32_t& height);
    int WriteWidthHeight(int32_t width, int32_t height);
    int ReadUserDataRecords(TUserData& userData);
    int WriteUserDataRecords(const TUserData& userData);
    // Reads the shape count and the shapes, in the record version the hidden
    // canvas is set to, scaled to the target size.
    int ReadShapes(TArrMyPoint& linkPoints, TLibShapes& shapes, double width, double height, bool skipLinkPoints);
    // Writes the shape count and the normalised shapes; width and height
    // receive the box they are normalised to.
    int WriteShapes(const std::vector<TMyShape*>& shapes, int32_t& width, int32_t& height);
    int ReadStrBuffer(QString& text, uint8_t count);
    int WriteStrBuffer(const QString& text, uint8_t count);

    // ---- Older libraries ----------------------------------------------------------------------
    // Each step reads every entry in the layout of its older tag, rewrites it
    // in the layout of the newer one, and puts the newer tag at the start.
    // Upgradefromx6tox8 also takes ".7", ".3" and ".2" libraries.
    void Upgradefromx6tox8();
    void Upgradefromx8tox9();
    void Upgradefromx9toxa();
    void Upgradefromxatoxe();
    void Upgradefromxetoxh();
    void Upgradefromxhtoxi();
    void Upgradefromxitoxj();
    // Runs the steps from the given tag (the file's, as a probe read it) up
    // to the current one. False for a tag that is not a library's.
    bool UpgradeFrom(const QString& tag);
    // "ZEMALIB2.1" libraries: their layout is not known, so they are not
    // guessed at; raises EFileFormatError saying so.
    void LoadFromOldFile(const QString& fileName);

private:
    struct EntryHead;
    bool readEntry(const QString& name, TFileVersion version, bool withUserData, TArrMyPoint& linkPoints,
                   TUserData* userData, TLibShapes& shapes, double width, double height, bool skipLinkPoints);
    bool findEntry(const QString& name, EntryHead& head);
    EntryHead readEntryHead(int64_t start);
    int64_t entriesStart() const;
    bool isEntryBoundary(int64_t position);
    int readShapes(TStream& s, TArrMyPoint& linkPoints, TLibShapes& shapes, double width, double height,
                   bool skipLinkPoints);
    int writeShapes(TStream& s, const std::vector<TMyShape*>& shapes, int32_t& width, int32_t& height);
    QByteArray entryBytes(const QString& name, const std::vector<TMyShape*>& shapes, const TUserData* userData,
                          TFileVersion version, int* width, int* height);
    void replaceBytes(int64_t position, int64_t length, const QByteArray& bytes);
    void upgradeStep(TFileVersion from, const char* newTag);

    QString m_libFileName;
    std::unique_ptr<TMemoryStream> m_memory;
    std::unique_ptr<TMyCAD> m_canvas;
};

}  // namespace faroven
