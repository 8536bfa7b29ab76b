// libFuzzer target for the DXF group reader: every input is walked section by
// section, entry by entry and group by group under either decimal separator,
// and the entries read are written and read back.
#include "fuzz/dxf_read_harness.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    faroven::fuzz::runDxfRead(data, size);
    return 0;
}
