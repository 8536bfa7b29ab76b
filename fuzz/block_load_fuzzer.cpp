// libFuzzer target: blocks (drawing streams inserted into a drawing) loaded from any bytes; the first byte picks the layer mode.
#include "fuzz/drawing_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runBlockLoad(data, size);
    return 0;
}
