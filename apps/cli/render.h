// Pictures of a drawing through the canvas's own rendering.
#pragma once

#include <QString>

namespace faroven {
class TMyCAD;
}

namespace faroven::cli {

// Whether the suffix names a picture that RenderPicture writes.
bool IsPictureSuffix(const QString& suffix);

// A picture file by the suffix (PNG, JPG, BMP, SVG, PDF, WMF) at a zoom. By
// default the shapes of visible layers on white with a margin of 10 pixels
// around them; with page, the canvas's own export of the page (pixel
// pictures as the screen shows it, SVG and PDF as it prints). EWriteError or
// EFCreateError when the file cannot be written.
void RenderPicture(TMyCAD& canvas, const QString& path, double zoom, bool page);

}  // namespace faroven::cli
