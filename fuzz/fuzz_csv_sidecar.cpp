// CSV sidecars as other programs and people write them.

#include "FuzzInput.hpp"

#include "corvane/sidecar_support/CSVSidecarReader.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        (void)CSVSidecarReader().readData(fuzz::text(data, size));
    } catch (const Error&) {
    }
    return 0;
}
