// The inspector's modal property editors: multi-line strings, colours, fonts,
// pictures, user data and the canvas's layers.
#pragma once

#include "inspector/editors/color_editor.h"
#include "inspector/editors/font_editor.h"
#include "inspector/editors/layer_collection_editor.h"
#include "inspector/editors/picture_editor.h"
#include "inspector/editors/string_list_editor.h"
#include "inspector/editors/userdata_editor.h"
