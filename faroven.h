// Faroven: every public header of the library.
#pragma once

#include "platform/ansi.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/color.h"
#include "platform/component.h"
#include "platform/control.h"
#include "platform/graphics.h"
#include "platform/stream.h"
#include "platform/strings.h"
#include "platform/system.h"
#include "platform/types.h"
#include "cad/enums.h"
#include "cad/types.h"
