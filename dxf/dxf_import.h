// TDXF2DImport: reads the two-dimensional content of an ASCII DXF file into a
// canvas. Layers of the LAYER table become canvas layers, the supported
// entities become shapes on their layers, and the entities of block
// definitions are read as ordinary shapes at their own coordinates.
//
// A DXF point (x, y) becomes the canvas point ((x + OffSetX) * Scalex,
// (y + OffSetY) * Scaley); nothing else is applied, so the caller chooses the
// unit and whether y is turned (Scalex = 96 / 25.4, Scaley = -96 / 25.4 and
// OffSetY = -height in mm bring back a file the canvas wrote).
//
// By default an import is all or nothing: the shapes wait until the whole file
// has been read, so a file that fails half-way leaves the canvas as it was
// (layers it created are removed again). KeepPartialImport keeps what was added
// before the failure instead. Extended switches on the entities and details
// that real CAD programs write beyond the basic set (see docs/dxf.md).
// The imported shapes become one "ACT_ADD" undo step and the selection.
#pragma once

#include "cad/types.h"
#include "dxf/dxf_primitives.h"
#include "platform/graphics.h"

#include <array>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace faroven {

class TMyCAD;
class TMyShape;

// One group of a DXF entity as read.
struct TDxfGroup {
    uint16_t code = 0;
    TVariant value;
};

// A DXF file whose content cannot be imported. Message() is the library's
// text ("Invalid DXF file."); Line() and FileName() say where.
class EDXFImportError : public EReadError {
public:
    EDXFImportError(const QString& message, const QString& fileName, int line)
        : EReadError(message), m_fileName(fileName), m_line(line) {}
    const QString& FileName() const { return m_fileName; }
    int Line() const { return m_line; }
private:
    QString m_fileName;
    int m_line;
};

class TDXF2DImport : public TObject {
    Q_GADGET
    Q_PROPERTY(float OffSetX READ OffSetX WRITE SetOffSetX)
    Q_PROPERTY(float OffSetY READ OffSetY WRITE SetOffSetY)
    Q_PROPERTY(bool ReadFailed READ ReadFailed WRITE SetReadFailed)
    Q_PROPERTY(float Scalex READ Scalex WRITE SetScalex)
    Q_PROPERTY(float Scaley READ Scaley WRITE SetScaley)
public:
    // Opens the file (EInOutError when it cannot be read) for the canvas,
    // which is not owned and may be nil (then ReadDXF does nothing).
    TDXF2DImport(const QString& fileName, TMyCAD* canvas);
    // Reads DXF text held in memory.
    TDXF2DImport(const QByteArray& bytes, TMyCAD* canvas, const QString& name = QStringLiteral("<memory>"));
    ~TDXF2DImport() override;

    // Imports the whole file. Raises EConvertError for a bad number and
    // EDXFImportError for a broken structure, both naming the line; ReadFailed
    // tells afterwards whether the last import failed.
    void ReadDXF();
    // Rewinds and moves on section by section to the given one; false when
    // the file has none.
    bool GoToSection(TSections section);

    TFont* DefaultFont() { return &m_defaultFont; }
    void SetDefaultFont(const TFont& font) { m_defaultFont.Assign(font); }
    // With a region that is not empty, the imported shapes are moved together
    // so that the top left corner of their bounds lies on the region's top
    // left corner (all-or-nothing imports only). Empty (0, 0, 0, 0) by default:
    // the mapping alone places them.
    TRect DestRegion() const { return m_destRegion; }
    void SetDestRegion(const TRect& rect) { m_destRegion = rect; }
    float OffSetX() const { return m_offSetX; }
    void SetOffSetX(float v) { m_offSetX = v; }
    float OffSetY() const { return m_offSetY; }
    void SetOffSetY(float v) { m_offSetY = v; }
    float Scalex() const { return m_scalex; }
    void SetScalex(float v) { m_scalex = v; }
    float Scaley() const { return m_scaley; }
    void SetScaley(float v) { m_scaley = v; }
    bool ReadFailed() const { return m_readFailed; }
    void SetReadFailed(bool v) { m_readFailed = v; }

    // Set by ReadDXF when an entity could not be turned into a shape.
    bool UnsupportedContent() const { return m_unsupported; }
    // When on, a spline polyline without fitted points is reported to the
    // user with a message box. Off by default.
    bool ReportUnsupported() const { return m_reportUnsupported; }
    void SetReportUnsupported(bool v) { m_reportUnsupported = v; }
    // When on, shapes added before a failure stay on the canvas. Off by default.
    bool KeepPartialImport() const { return m_keepPartial; }
    void SetKeepPartialImport(bool v) { m_keepPartial = v; }
    // The extended import. Off by default.
    bool Extended() const { return m_extended; }
    void SetExtended(bool v) { m_extended = v; }
    // What the last ReadDXF left out, one line each: "line N: ENTITY: why".
    const QStringList& Skipped() const { return m_skipped; }
    // The header's $EXTMIN/$EXTMAX (minimum first) and $ANGDIR.
    TRect2D Extents() const { return m_extents; }
    TArcDirection AngleDirection() const { return m_angleDirection; }
    // The extended import stops expanding block references once this many
    // entities have been read (and reports it). 2,000,000 by default.
    int MaxExpandedEntities() const { return m_maxExpanded; }
    void SetMaxExpandedEntities(int v) { m_maxExpanded = v; }
    // Called every 10,000 entities with the number read so far.
    std::function<void(int entities)> OnProgress;

    // Section readers; each stands on the first group of its section and
    // leaves the reader on its ENDSEC.
    void ReadHeader();
    void ReadTables();
    void ReadClasses();
    void ReadBlocks();
    void ReadBlock();
    void ReadSourceBlock();
    void ReadEntities();
    // Reads the entity the reader stands on; the new shape (owned by the
    // caller) or nil when the entity makes none.
    TMyShape* ReadEntity(bool inBlock);

    // Entity readers: the new shape or nil.
    TMyShape* ReadLine2D(const TGroupTable& entry);
    TMyShape* ReadArc2D(const TGroupTable& entry);
    TMyShape* ReadSolid2D(const TGroupTable& entry);
    TMyShape* ReadDIMENSION2D(const TGroupTable& entry);
    TMyShape* ReadCircle2D(const TGroupTable& entry);
    TMyShape* ReadEllipse2D(const TGroupTable& entry);
    TMyShape* ReadLWPolyline2D(const TGroupTable& entry);
    TMyShape* ReadPolyline2D(const TGroupTable& entry);
    TMyShape* ReadText2D(const TGroupTable& entry);

    // A DXF point in canvas coordinates (through the transform of the block
    // reference being expanded, if any).
    TMyPoint mm2Pixel(double x, double y) const;

private:
    class Extension;
    friend class Extension;
    // An entry table (513 slots, costly to make and to empty) lent out per
    // nesting level of ReadEntity; only the slots an entity filled are
    // emptied for the next one.
    struct PooledEntry {
        TGroupTable table;
        std::vector<int> filled;
    };
    class EntryLease;

    explicit TDXF2DImport(std::unique_ptr<TDXFRead> reader, TMyCAD* canvas);
    bool atSectionEnd() const;
    bool atGroup(int code, const char* value) const;
    // Collects one entity into the table and the group list; false at the end of the file.
    bool collectEntity(TGroupTable& entry, std::vector<TDxfGroup>* groups, std::vector<int>* filled = nullptr);
    TMyShape* readBasicEntity(const QString& name, const TGroupTable& entry, bool inBlock);
    TMyShape* uprightEllipse(double cx, double cy, double halfWidth, double halfHeight);
    void addImported(TMyShape* shape);
    void skip(const QString& entity, const QString& why);
    [[noreturn]] void invalid(int line) const;
    void commit();
    void placeInDestRegion();
    void rollback();
    int layerIdOf(const QString& name);

    TMyCAD* m_canvas;
    TFont m_defaultFont;
    TRect m_destRegion{0, 0, 0, 0};
    std::unique_ptr<TDXFRead> m_reader;
    float m_offSetX = 0, m_offSetY = 0;
    bool m_readFailed = false;
    float m_scalex = 1, m_scaley = 1;
    bool m_unsupported = false;
    bool m_reportUnsupported = false;
    bool m_keepPartial = false;
    bool m_extended = false;
    int m_maxExpanded = 2'000'000;
    TRect2D m_extents;
    TArcDirection m_angleDirection = adCounterClockwise;
    QStringList m_skipped;

    // The groups of the entity just collected, in file order (repeated codes
    // such as the vertices of an LWPOLYLINE are all here).
    std::vector<TDxfGroup> m_groups;
    // The shapes read but not yet on the canvas, each with its layer.
    std::vector<std::pair<TMyShape*, int>> m_pending;
    std::vector<int> m_createdLayers;
    int m_currentLayerId = -1;
    int m_layerBefore = -1;  // the canvas's current layer when the import began
    QString m_lastLayerName;
    int m_lastLayerId = -1;
    int m_entityCount = 0;
    int m_entityLine = 0;  // where the entity being read starts
    // The affine map of an expanded block reference (x' = a x + c y + e,
    // y' = b x + d y + f); the identity otherwise.
    std::array<double, 6> m_transform{1, 0, 0, 1, 0, 0};
    std::unique_ptr<Extension> m_extension;
    std::vector<std::unique_ptr<PooledEntry>> m_entries;
    size_t m_entriesInUse = 0;
};

}  // namespace faroven
