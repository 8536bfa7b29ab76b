// TMyCAD: DXF export (the writer itself is dxf/dxf_export.cpp).
#include "cad/canvas/mycad.h"
#include "dxf/dxf_export.h"

namespace faroven {

void TMyCAD::SaveToDxf(const QString& fileName) { SaveToDxf(fileName, TDxfExportOptions{}); }

void TMyCAD::SaveToDxf1(const QString& fileName) {
    TDxfExportOptions options;
    options.GlyphOutlines = true;
    SaveToDxf(fileName, options);
}

void TMyCAD::SaveToDxf(const QString& fileName, const TDxfExportOptions& options) {
    SaveToDxfFile(*this, fileName, options);
}

}  // namespace faroven
