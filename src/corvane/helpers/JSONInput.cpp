#include "corvane/helpers/JSONInput.hpp"

#include "corvane/helpers/detail/JSONText.hpp"

namespace corvane {

JSONNestingError::JSONNestingError(const std::string& source)
    : Error(source + ": JSON nested deeper than " + std::to_string(maxJSONNesting) + " levels"),
      source_(source) {}

void checkJSONNesting(std::string_view data, const std::string& source) {
    std::size_t depth = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        switch (data[i]) {
        case '"':
            i = detail::endOfJSONString(data, i) - 1;
            break;
        case '[':
        case '{':
            if (++depth > maxJSONNesting) throw JSONNestingError(source);
            break;
        case ']':
        case '}':
            if (depth > 0) --depth;
            break;
        default:
            break;
        }
    }
}

nlohmann::json parseJSONInput(std::string_view data, const std::string& source) {
    checkJSONNesting(data, source);
    return nlohmann::json::parse(data.begin(), data.end());
}

nlohmann::ordered_json parseOrderedJSONInput(std::string_view data, const std::string& source) {
    checkJSONNesting(data, source);
    return nlohmann::ordered_json::parse(data.begin(), data.end());
}

} // namespace corvane
