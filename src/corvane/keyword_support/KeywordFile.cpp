#include "corvane/keyword_support/KeywordFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/ItemListJSON.hpp"

#include <algorithm>

namespace corvane {

KeywordFile KeywordFile::fromJSON(const nlohmann::ordered_json& j) {
    auto [description, items] = readItemList<DecodingError>(j, "keyword library", KeywordItem::fromJSON);
    return KeywordFile(std::move(description), std::move(items));
}

namespace {

// The levels of the deepest branch, stopping once past `limit`.
std::size_t depth(const std::vector<KeywordItemRef>& items, std::size_t limit) {
    std::size_t deepest = 0;
    for (const auto& item : items) {
        deepest = std::max(deepest, 1 + (limit == 0 ? 0 : depth(item->children(), limit - 1)));
        if (deepest > limit) break;
    }
    return deepest;
}

} // namespace

nlohmann::ordered_json KeywordFile::toJSON() const {
    if (depth(items_, maxDepth) > maxDepth)
        throw DepthError("the keyword tree is deeper than " + std::to_string(maxDepth) +
                         " levels, more than a keyword library holds");
    return writeItemList(description_, items_);
}

KeywordFile KeywordFile::fromJSONData(std::string_view data, const std::string& source) {
    return readJSONInput<DecodingError>(data, source, KeywordFile::fromJSON);
}

KeywordFile KeywordFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url), url.string());
}

} // namespace corvane
