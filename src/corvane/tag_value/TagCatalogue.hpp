#pragma once

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <atomic>
#include <deque>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// The tag catalogue as loaded from the data compiled into the library
/// (data/catalogue.tsv, written by scripts/generate-catalogue). Its first use
/// only finds where each family's rows lie. An item asked for by key is found
/// in its family's rows and parsed alone; a family's items are all parsed when
/// its list is asked for (or once it has answered many lookups), and every item
/// only when the whole list is. A program that reads a photo so parses the tags
/// the photo holds, not twenty thousand items. An item is the same object
/// however it was first reached. Each part is loaded once and immutable
/// afterwards, so every query below is safe from any thread. TagStream, TagName
/// and TagItem answer their catalogue questions through it.
class TagCatalogue {
public:
    /// Everything the catalogue knows about one family.
    class Family {
    public:
        const TagStream* stream = nullptr; ///< the family
        int index = 0;                     ///< place in the display order
        bool isMaker = false;              ///< the family holds maker notes

        /// An item by key; nullptr when absent.
        const TagItem* find(std::string_view key) const;
        /// The items, sorted by name.
        const std::vector<const TagItem*>& items() const;

    private:
        friend class TagCatalogue;
        void load() const;
        const std::vector<std::string_view>& lines() const;
        const TagItem* findAlone(std::string_view line) const;

        mutable std::vector<std::string_view> lines_; // the rows' lines, sorted by key on first use
        bool sorted_ = false;                         // the text holds them sorted by key
        bool searchable_ = false; // no key is escaped: a key is searched for as the text holds it
        mutable std::once_flag linesSorted_;
        mutable std::atomic<int> lookups_{0}; // lookups answered by parsing rows alone
        mutable std::mutex aloneMutex_;
        mutable std::deque<TagItem> alone_; // items parsed alone, before the family's list
        mutable std::unordered_map<std::string_view, const TagItem*> aloneByKey_;
        mutable std::atomic<bool> loaded_{false};
        mutable std::once_flag loading_;
        mutable std::vector<TagItem> storage_;
        mutable std::unordered_map<std::string_view, const TagItem*> itemsByKey_;
        mutable std::vector<const TagItem*> items_;
    };

    /// The catalogue, loaded on first use; lives as long as the process.
    static const TagCatalogue& shared();

    /// Every family, in catalogue order; the maker families; every item, sorted by name.
    ///@{
    const std::vector<TagStream>& streams() const { return streams_; }
    const std::vector<TagStream>& makerStreams() const { return makerStreams_; }
    const std::vector<const TagItem*>& items() const;
    ///@}

    /// A family by name; nullptr for an unknown one.
    const Family* family(std::string_view stream) const {
        auto it = families_.find(stream);
        return it == families_.end() ? nullptr : &it->second;
    }
    /// An item by family and key; nullptr when absent.
    const TagItem* find(std::string_view stream, std::string_view key) const {
        const Family* f = family(stream);
        return f ? f->find(key) : nullptr;
    }

    /// The raw catalogue text compiled into the library.
    static std::string_view data();

    TagCatalogue(const TagCatalogue&) = delete;
    TagCatalogue& operator=(const TagCatalogue&) = delete;

private:
    TagCatalogue();
    void index(std::string_view text);

    std::vector<TagStream> streams_;
    std::vector<TagStream> makerStreams_;
    std::unordered_map<std::string_view, Family> families_;
    Family unlisted_; // rows of a family missing from the family list (the generator writes none)
    std::vector<const Family*> textOrder_; // the families in the order their rows first appear
    mutable std::once_flag allLoaded_;
    mutable std::vector<const TagItem*> itemPointers_;
};

} // namespace corvane
