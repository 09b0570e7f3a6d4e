// JSON sidecars as other programs and people write them.

#include "FuzzInput.hpp"

#include "corvane/sidecar_support/JSONSidecarReader.hpp"

#include <nlohmann/json.hpp>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        (void)JSONSidecarReader().readString(fuzz::text(data, size));
    } catch (const Error&) {
    } catch (const nlohmann::json::parse_error&) { // documented: text that isn't JSON
    }
    return 0;
}
