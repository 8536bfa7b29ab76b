// The extended DXF import: what TDXF2DImport reads beyond its basic set when
// Extended is on. Internal to the importer; not installed as API.
#pragma once

#include "dxf/dxf_import.h"
#include "platform/color.h"
#include "platform/graphics.h"

#include <QByteArray>
#include <QHash>

namespace faroven {

class TDXF2DImport::Extension {
public:
    explicit Extension(TDXF2DImport& import) : m_import(import) {}

    // A LAYER table entry: its colour, line type and line weight for the
    // entities that take them from their layer; a layer switched off or
    // frozen is hidden when the import created it.
    void LayerRead(const TGroupTable& entry, const std::vector<TDxfGroup>& groups, int layerId, bool created);
    // Keeps the block whose BLOCK entry was just read (the reader stands on
    // its first entity) for the references that expand it.
    void ReadBlockDefinition(const TGroupTable& header);
    // The shape of an entity (nil when it makes none or was expanded into
    // several), styled by its colour, line type and line weight.
    TMyShape* ReadEntity(const QString& name, const TGroupTable& entry, const std::vector<TDxfGroup>& groups,
                         bool inBlock, int line);
    // While a block reference is expanded, entities on layer "0" take the
    // reference's layer: true then, with that layer.
    bool TakesInsertLayer(const QString& layerName, int& layerId) const;

private:
    struct Style {
        TColor color = clBlack;
        int widthHundredthsMm = 0;
        TPenStyle penStyle = psSolid;
    };
    struct Block {
        double baseX = 0, baseY = 0;
        QByteArray entities;  // the block's groups as DXF text
    };

    Style styleOf(const TGroupTable& entry, const std::vector<TDxfGroup>& groups) const;
    void applyStyle(TMyShape* shape, const Style& style) const;
    void expandInsert(const TGroupTable& entry, int line);
    TMyShape* readText(const TGroupTable& entry);
    TMyShape* readMText(const TGroupTable& entry, const std::vector<TDxfGroup>& groups);
    TMyShape* readCircle(const TGroupTable& entry);
    TMyShape* readEllipse(const TGroupTable& entry);
    TMyShape* readLWPolyline(const TGroupTable& entry, const std::vector<TDxfGroup>& groups);
    TMyShape* readSpline(const TGroupTable& entry, const std::vector<TDxfGroup>& groups);
    TMyShape* ellipseShape(double cx, double cy, double ux, double uy, double ratio) const;
    TMyShape* placeText(TMyShape* text, double x, double y, double heightMm, double angleDegrees, double fx, double fy) const;

    TDXF2DImport& m_import;
    QHash<QString, Style> m_layerStyles;
    QHash<QString, Block> m_blocks;
    // The style of the reference being expanded, for entities "by block".
    Style m_blockStyle;
    int m_insertLayer = -1;
    int m_depth = 0;
};

// MTEXT's text without its formatting codes; paragraphs become line breaks.
QString PlainMText(const QString& text);

}  // namespace faroven
