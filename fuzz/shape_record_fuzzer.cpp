// libFuzzer target: one shape record of any class, read under any version.
#include "fuzz/shape_record_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runShapeRecord(data, size);
    return 0;
}
