#include "corvane/tag_value/TagSyncPair.hpp"

#include <string>

namespace corvane {

std::optional<TagSyncPair> TagSyncPair::fromText(std::string_view text) {
    const auto mark = text.find('>');
    if (mark == std::string_view::npos) return std::nullopt;
    auto from = TagName::fromRawValue(text.substr(0, mark));
    auto to = TagName::fromRawValue(text.substr(mark + 1));
    if (!from || !to || from->isEmpty() || to->isEmpty()) return std::nullopt;
    return TagSyncPair(*from, *to);
}

TagSyncPair TagSyncPair::fromJSON(const nlohmann::json& json) {
    auto name = [&](const char* key) {
        const std::string text = json.at(key).get<std::string>();
        auto parsed = TagName::fromRawValue(text);
        if (!parsed || parsed->isEmpty())
            throw nlohmann::json::other_error::create(
                501, std::string("\"") + key + "\" is not a tag name: " + text, &json);
        return *parsed;
    };
    return TagSyncPair(name("from"), name("to"));
}

nlohmann::json TagSyncPair::toJSON() const {
    return nlohmann::json{{"from", from_.rawValue()}, {"to", to_.rawValue()}};
}

} // namespace corvane
