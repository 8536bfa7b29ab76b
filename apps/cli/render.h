// Pictures of a drawing: its shapes on visible layers as the canvas paints
// them, without marks, on white, at a zoom.
#pragma once

#include <QString>

namespace faroven {
class TMyCAD;
}

namespace faroven::cli {

// A PNG, SVG or PDF file by the suffix; a margin of 10 pixels around the
// shapes. EWriteError when the file cannot be written.
void RenderPicture(TMyCAD& canvas, const QString& path, double zoom);

}  // namespace faroven::cli
