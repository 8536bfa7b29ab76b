// libFuzzer target: whole drawings loaded from any bytes.
#include "fuzz/drawing_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runDrawingLoad(data, size);
    return 0;
}
