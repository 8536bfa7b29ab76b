// What a rendering of a drawing shows besides the shapes of its visible
// layers. Marks of the editor (hot marks, link points, rubber bands, the
// cross-hair) are never part of a rendering.
#pragma once

namespace faroven {

struct TRenderOptions {
    // ColorOfBackGround and BkBitmap; without it the device keeps its own
    // background (white paper, a transparent picture).
    bool Background = true;
    bool Grid = false;
    bool HeadFoot = true;
    // The frame at the PrintABorder distances.
    bool Border = false;
};

}  // namespace faroven
