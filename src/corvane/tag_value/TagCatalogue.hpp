#pragma once

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// The tag catalogue as loaded from the data compiled into the library
/// (data/catalogue.tsv, written by scripts/generate-catalogue). It is parsed
/// once, on first use, and immutable afterwards, so every query below is a
/// lock-free read from any thread. TagStream, TagName and TagItem answer their
/// catalogue questions through it.
class TagCatalogue {
public:
    /// Everything the catalogue knows about one family.
    struct Family {
        const TagStream* stream = nullptr;                               ///< the family
        int index = 0;                                                   ///< place in the display order
        bool isMaker = false;                                            ///< the family holds maker notes
        std::unordered_map<std::string_view, const TagItem*> itemsByKey; ///< the items, by key
        std::vector<const TagItem*> items;                               ///< sorted by name
    };

    /// The catalogue, loaded on first use; lives as long as the process.
    static const TagCatalogue& shared();

    /// Every family, in catalogue order; the maker families; every item, sorted by name.
    ///@{
    const std::vector<TagStream>& streams() const { return streams_; }
    const std::vector<TagStream>& makerStreams() const { return makerStreams_; }
    const std::vector<const TagItem*>& items() const { return itemPointers_; }
    ///@}

    /// A family by name; nullptr for an unknown one.
    const Family* family(std::string_view stream) const {
        auto it = families_.find(stream);
        return it == families_.end() ? nullptr : &it->second;
    }
    /// An item by family and key; nullptr when absent.
    const TagItem* find(std::string_view stream, std::string_view key) const {
        const Family* f = family(stream);
        if (!f) return nullptr;
        auto it = f->itemsByKey.find(key);
        return it == f->itemsByKey.end() ? nullptr : it->second;
    }

    /// The raw catalogue text compiled into the library.
    static std::string_view data();

    TagCatalogue(const TagCatalogue&) = delete;
    TagCatalogue& operator=(const TagCatalogue&) = delete;

private:
    TagCatalogue();
    void parse(std::string_view text);

    std::vector<TagStream> streams_;
    std::vector<TagStream> makerStreams_;
    std::vector<TagItem> items_;
    std::vector<const TagItem*> itemPointers_;
    std::unordered_map<std::string_view, Family> families_;
};

} // namespace corvane
