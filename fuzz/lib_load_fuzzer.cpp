// libFuzzer target: shape library files from any bytes.
#include "fuzz/lib_load_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runLibraryLoad(data, size);
    return 0;
}
