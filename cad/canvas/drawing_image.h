// A drawing stream read completely, before any of it joins a canvas: the
// canvas's settings, its layers and its shapes (owned here until taken over).
#pragma once

#include "cad/canvas/mycad.h"

#include <memory>
#include <vector>

namespace faroven {

struct TMyCAD::DrawingImage {
    QString version;
    TColor background = clWhite;
    int32_t width = 0, height = 0;
    uint8_t unit = 0;
    std::unique_ptr<TBitmap> bkBitmap;
    uint8_t bkBitmapMode = 0;
    double ratio = 1.0;
    bool hasTagAndUserData = false;
    int32_t tag = 0;
    TUserData userData;
    std::vector<TLayerRecord> layers;
    int32_t currentLayerId = -1;
    std::vector<std::unique_ptr<TMyShape>> shapes;
};

}  // namespace faroven
