#include "corvane/helpers/DefaultsData.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/UserDefaults.hpp"

#include <filesystem>

namespace corvane {

void writeDefaultsData(const std::string& key, const std::string& bytes) {
    auto defaults = KitSettings::shared().userDefaults();
    try {
        writeFileAtomically(defaults->preferenceFileURL(key), bytes, 0600);
    } catch (const FileError&) {
        defaults->set(key, bytes);
    }
}

std::optional<DefaultsData> readDefaultsData(const std::string& key) {
    auto defaults = KitSettings::shared().userDefaults();
    const auto url = defaults->preferenceFileURL(key);
    std::error_code error;
    if (std::filesystem::is_regular_file(url, error)) return DefaultsData{readFileBytes(url), url.string()};
    const auto stored = defaults->value(key);
    if (!stored || stored->is_null()) return std::nullopt;
    return DefaultsData{stored->is_string() ? stored->get<std::string>() : stored->dump(),
                        "user defaults \"" + key + "\""};
}

} // namespace corvane
