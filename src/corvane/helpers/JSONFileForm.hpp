#pragma once

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/JSONInput.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace corvane {

/// The file side of a library file type that has a JSON form: `Derived` gives `fromJSON` and
/// `toJSON` (of `nlohmann::ordered_json`) and a `DecodingError` type (an `Error` made from a
/// message); this adds reading and writing the bytes and the files, the same way for every such type.
template <class Derived> class JSONFileForm {
public:
    /// Parses through the nesting check of outside input and reads; text that isn't JSON throws
    /// `Derived::DecodingError` too, and input nested too deep JSONNestingError.
    static Derived fromJSONData(std::string_view data) { return fromJSONText(data, "JSON data"); }

    /// Pretty-printed, two blanks per level.
    std::string jsonData() const { return static_cast<const Derived&>(*this).toJSON().dump(2); }
    /// Throws std::filesystem::filesystem_error when the file can't be read.
    static Derived fromJSONURL(const std::filesystem::path& url) {
        return fromJSONText(readFileBytes(url), url.string());
    }
    /// Writes atomically, readable by its owner only. Throws std::filesystem::filesystem_error.
    void exportTo(const std::filesystem::path& url) const { writeFileAtomically(url, jsonData(), 0600); }

    friend bool operator==(const JSONFileForm&, const JSONFileForm&) = default;

private:
    static Derived fromJSONText(std::string_view data, const std::string& source) {
        nlohmann::ordered_json j;
        try {
            j = parseOrderedJSONInput(data, source);
        } catch (const nlohmann::json::exception& e) {
            throw typename Derived::DecodingError(e.what());
        }
        return Derived::fromJSON(j);
    }
};

} // namespace corvane
