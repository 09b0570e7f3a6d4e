#include "corvane/tag_value/TagNameMapping.hpp"

#include "corvane/tag_value/TagItem.hpp"

#include <unordered_map>

namespace corvane {

namespace {

TagName cg(const char* dictionary, const char* key) {
    return TagName(TagStream(dictionary), TagKey(key));
}

std::vector<TagNameMapping::Row> makeRows() {
    // The ExifTool side is the catalogue constant, so it is always the catalogue's own spelling of
    // the name.
#define CORVANE_MAPPING(constant, dictionary, key) {TagItem::item##constant().name(), cg(dictionary, key)},
#define CORVANE_UNMAPPED(dictionary, key) {TagName::empty, cg(dictionary, key)},
    return {
#include "corvane/tag_value/detail/TagNameMapping.inc"
    };
#undef CORVANE_UNMAPPED
#undef CORVANE_MAPPING
}

struct Dictionaries {
    std::unordered_map<TagName, TagName> et2cg;
    std::unordered_map<TagName, TagName> cg2et;

    Dictionaries() {
        const auto& rows = TagNameMapping::etcgMapping();
        et2cg.reserve(rows.size());
        cg2et.reserve(rows.size());
        for (const auto& row : rows) {
            if (row.et.isEmpty() || row.cg.isEmpty()) continue;
            et2cg.try_emplace(row.et, row.cg);
            cg2et.try_emplace(row.cg, row.et);
        }
    }

    static const Dictionaries& shared() {
        static const Dictionaries dictionaries;
        return dictionaries;
    }
};

std::optional<TagName> lookUp(const std::unordered_map<TagName, TagName>& map, const TagName& name) {
    auto it = map.find(name);
    if (it == map.end()) return std::nullopt;
    return it->second;
}

} // namespace

const std::vector<TagNameMapping::Row>& TagNameMapping::etcgMapping() {
    static const std::vector<Row> rows = makeRows();
    return rows;
}

std::optional<TagName> TagNameMapping::cgName(const TagName& etName) {
    return lookUp(Dictionaries::shared().et2cg, etName);
}

std::optional<TagName> TagNameMapping::etName(const TagName& cgName) {
    return lookUp(Dictionaries::shared().cg2et, cgName);
}

} // namespace corvane
