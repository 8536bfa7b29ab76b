// The drawing the demo editor opens with: one shape of each class, and
// connectors routed between boxes.
#pragma once

#include "cad/canvas/mycad.h"

// Adds the sample shapes to the canvas and selects the first rectangle so
// that its hot marks show.
void AddSampleDrawing(faroven::TMyCAD* cad);
