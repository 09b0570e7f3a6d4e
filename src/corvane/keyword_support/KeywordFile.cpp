#include "corvane/keyword_support/KeywordFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/ItemListJSON.hpp"

namespace corvane {

KeywordFile KeywordFile::fromJSON(const nlohmann::ordered_json& j) {
    auto [description, items] = readItemList<DecodingError>(j, "keyword library", KeywordItem::fromJSON);
    return KeywordFile(std::move(description), std::move(items));
}

nlohmann::ordered_json KeywordFile::toJSON() const {
    return writeItemList(description_, items_);
}

KeywordFile KeywordFile::fromJSONData(std::string_view data, const std::string& source) {
    return readJSONInput<DecodingError>(data, source, KeywordFile::fromJSON);
}

KeywordFile KeywordFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url), url.string());
}

} // namespace corvane
