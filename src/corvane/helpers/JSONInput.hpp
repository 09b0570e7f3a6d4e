#pragma once

// JSON that comes from outside (sidecars, preset libraries, user defaults, ExifTool's output) is read
// through here, so that every reader refuses input nested deeper than any real document of ours:
// a small file of 50,000 brackets would otherwise exhaust the stack of the code that walks the
// parsed tree.

#include "corvane/utilities/Error.hpp"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace corvane {

/// Nesting of arrays and objects that outside JSON may reach; our own files stay below 10.
inline constexpr std::size_t maxJSONNesting = 256;

/// JSON input nested deeper than `maxJSONNesting`. `what()` names the input:
/// "/path/preset.json: JSON nested deeper than 256 levels".
class JSONNestingError : public Error {
public:
    /// The error for the input named `source`.
    explicit JSONNestingError(const std::string& source);
    /// The input's name, as given.
    const std::string& source() const { return source_; }

private:
    std::string source_;
};

/// Throws JSONNestingError naming `source` (a path, or what the text is) when `data` nests arrays
/// and objects deeper than `maxJSONNesting`. One pass over the bytes, brackets in strings skipped;
/// it doesn't validate anything else.
void checkJSONNesting(std::string_view data, const std::string& source);

/// `checkJSONNesting`, then the parser; syntax errors leave as nlohmann's parse_error.
nlohmann::json parseJSONInput(std::string_view data, const std::string& source);
/// The same, keeping the order of object keys.
nlohmann::ordered_json parseOrderedJSONInput(std::string_view data, const std::string& source);

} // namespace corvane
