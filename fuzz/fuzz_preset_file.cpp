// Preset libraries as found on disk or in user defaults, written back when read.

#include "FuzzInput.hpp"

#include "corvane/preset_support/PresetFile.hpp"

#include <nlohmann/json.hpp>

#include <stdexcept>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        (void)PresetFile::fromJSONData(fuzz::text(data, size)).jsonData();
    } catch (const Error&) {                     // the coding error and the nesting check
    } catch (const nlohmann::json::exception&) { // documented: the JSON library's errors
    } catch (const std::invalid_argument&) {
    }
    return 0;
}
