// ExifTool's JSON output ("-g0:1 -j"), which carries values that other programs wrote into files.
// Records name one of three sources, a file, another file and a folder.

#include "FuzzInput.hpp"

#include "corvane/tag_storages/ETTagStorageReader.hpp"

#include <nlohmann/json.hpp>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<TagStorageSource> sources{TagStorageSource("/photos/a.jpg"),
                                                       TagStorageSource("/photos/b.mov"),
                                                       TagStorageSource("/photos/trip")};
    static const ETTagStorageReader reader{[] {
        ETTagStorageReader::Settings settings(sources);
        settings.setupDefaultBannedValues();
        return settings;
    }()};
    try {
        (void)reader.parseExifToolOutput(fuzz::text(data, size), sources);
    } catch (const Error&) {
    } catch (const nlohmann::json::parse_error&) { // documented: output that isn't JSON
    }
    return 0;
}
