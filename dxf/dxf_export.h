// Writing a canvas as an ASCII DXF file.
//
// The default form is a bare ENTITIES section in millimetres with the y axis
// turned upward: k = 96 / 25.4 pixels per millimetre, DXF x = x / k and DXF
// y = (H - y) / k with H the canvas control's height, z always "0.0". Every
// entity sits on layer "0" without colour or line type; handles count from 20
// and restart inside curved arcs and poly-Béziers, so they can repeat. Reals
// are written with FloatToStr, so with the user's decimal separator. Shapes are
// matched by their exact class, so an application's subclass of a shape class
// is not written. docs/dxf.md has the shape-by-shape mapping.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QStringList>

namespace faroven {

class TMyCAD;

struct TDxfExportOptions {
    // Texts as the closed outlines of their glyphs instead of TEXT entities,
    // for receivers without the font.
    bool GlyphOutlines = false;
    // A complete R2000 file for CAD programs instead of the bare ENTITIES
    // section: header, tables with the canvas's layers, unique handles, real
    // ellipses, arcs and splines, MTEXT, entities on their own layers with
    // their colours, line types and weights, numbers with a point
    // (dxf/dxf_interchange.h).
    bool Interchange = false;
};

// Writes the DXF text (Windows-1252, CR LF line ends) to the device;
// EWriteError when the device fails.
void WriteDxf(TMyCAD& canvas, QIODevice& device, const TDxfExportOptions& options = {});
// The text as bytes, and as lines (one per group code and one per value).
QByteArray DxfExportBytes(TMyCAD& canvas, const TDxfExportOptions& options = {});
QStringList DxfExportLines(TMyCAD& canvas, const TDxfExportOptions& options = {});

// Writes the file in one step: the old file is replaced only once the new
// one is complete. EFCreateError when the file cannot be created, EWriteError
// when it cannot be written. TMyCAD::SaveToDxf calls this.
void SaveToDxfFile(TMyCAD& canvas, const QString& fileName, const TDxfExportOptions& options = {});

}  // namespace faroven
