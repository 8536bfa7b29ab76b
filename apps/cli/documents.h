// Opening any file the tool reads into a canvas, and writing a canvas to any
// file it writes, chosen by the file's content or name.
#pragma once

#include <QString>
#include <functional>

namespace faroven {
class TMyCAD;
}

namespace faroven::cli {

enum class FileKind { Drawing, Library, Dxf, Unknown };

// By content: a drawing or library signature; DXF by the .dxf suffix or a
// first line that is a group code.
FileKind KindOf(const QString& path);
QString KindName(FileKind kind);

struct DxfOptions {
    // DXF units (millimetres) to canvas pixels at 96 per inch, times scale.
    double scale = 1;
    // Added to DXF coordinates before scaling; without it the drawing's top
    // left corner is put at the canvas origin.
    bool offsetGiven = false;
    double offsetX = 0, offsetY = 0;
    bool extended = false;
    bool interchange = false;
};

// Reports long work: what is being done and how far (done of total, total 0
// when unknown).
using Progress = std::function<void(const QString& what, qint64 done, qint64 total)>;

// Loads a drawing or imports a DXF file into the canvas; raises the library's
// exceptions with their messages. Returns the lines of what a DXF import left
// out.
QStringList OpenInto(TMyCAD& canvas, const QString& path, const DxfOptions& options, const Progress& progress);

// Saves the canvas as a drawing (.fvd), DXF (.dxf) or picture (.png, .jpg,
// .bmp, .svg, .pdf, .wmf) by the file's suffix; zoom and page apply to pictures
// (see RenderPicture).
void SaveFrom(TMyCAD& canvas, const QString& path, const DxfOptions& options, double zoom = 1, bool page = false);

}  // namespace faroven::cli
