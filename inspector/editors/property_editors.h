// Temporary interface stub.
#pragma once
#include "inspector/editors/color_editor.h"
#include "inspector/editors/font_editor.h"
#include "inspector/editors/layer_collection_editor.h"
#include "inspector/editors/picture_editor.h"
#include "inspector/editors/string_list_editor.h"
#include "inspector/editors/userdata_editor.h"
