// libFuzzer target for the DXF import (basic and extended) into a canvas.
#include "fuzz/dxf_import_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runDxfImport(data, size);
    return 0;
}
