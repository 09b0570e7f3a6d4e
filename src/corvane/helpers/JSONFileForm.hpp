#pragma once

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json.hpp>

#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

namespace corvane {

/// The file side of a library file type that has a JSON form: `Derived` gives `fromJSON` and
/// `toJSON` (of `nlohmann::ordered_json`) and a `DecodingError` type (an `Error` made from a
/// message); this adds reading and writing the bytes and the files, the same way for every such type.
template <class Derived> class JSONFileForm {
public:
    /// Parses and reads. Text that isn't JSON or holds the wrong kinds of values throws
    /// `Derived::DecodingError` (or one of its subclasses); text nested deeper than
    /// `maxJSONNesting` throws JSONNestingError.
    static Derived fromJSONData(std::string_view data) { return decode(data, "JSON data"); }
    /// Pretty-printed, two blanks per level.
    std::string jsonData() const { return static_cast<const Derived&>(*this).toJSON().dump(2); }
    /// Throws FileError when the file can't be read, and `Derived::DecodingError` whose message
    /// starts with the file's path when its content can't be read.
    static Derived fromJSONURL(const std::filesystem::path& url) {
        const std::string bytes = readFileBytes(url);
        try {
            return decode(bytes, url.string());
        } catch (const typename Derived::DecodingError& e) {
            throw typename Derived::DecodingError(url.string() + ": " + e.what());
        }
    }
    /// Writes atomically, readable by its owner only. Throws FileError.
    void exportTo(const std::filesystem::path& url) const { writeFileAtomically(url, jsonData(), 0600); }

    friend bool operator==(const JSONFileForm&, const JSONFileForm&) = default;

private:
    /// The readers of `Derived` throw the JSON library's errors and std::invalid_argument (an
    /// unknown name) or std::out_of_range (a missing member) as well as their own; all of them
    /// leave as the type's own error, so that a caller catches one family.
    static Derived decode(std::string_view data, const std::string& source) {
        try {
            return Derived::fromJSON(parseOrderedJSONInput(data, source));
        } catch (const Error&) {
            throw;
        } catch (const std::exception& e) {
            throw typename Derived::DecodingError(e.what());
        }
    }
};

} // namespace corvane
