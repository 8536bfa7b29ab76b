// The shape families the demo editor puts on its first page.
#pragma once

#include "cad/shapes/line.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
