#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/preset_support/Identified.hpp"
#include "corvane/preset_support/PresetItem.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_table/BasicTableContent.hpp"
#include "corvane/tag_value/TagSection.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <variant>
#include <vector>

namespace corvane {

class TagItem;

/// One entry of a preset as a row of a `PresetEditionTable` (its `RowValue`).
class PresetEditionRow {
public:
    /// The row of a preset entry; nothing when the catalogue doesn't know its tag (the entry stays
    /// in the preset all the same).
    static std::optional<PresetEditionRow> make(const PresetItem::Entry& entry);

    /// The entry's tag in the catalogue, the preset entry, and its edition.
    ///@{
    const TagItem& tagItem() const { return *tagItem_; }
    const PresetItem::Entry& entry() const { return entry_; }
    const PresetEdition& edition() const { return entry_.edition(); }
    ///@}
    /// The tag can be written at all, in some format (`TagItem::isWritable`).
    bool isWritable() const;
    /// What the request's `convert` made of the row; empty without one.
    ///@{
    const std::any& objectValue() const { return objectValue_; }
    void setObjectValue(std::any value) { objectValue_ = std::move(value); }
    ///@}

private:
    PresetEditionRow(const TagItem& item, PresetItem::Entry entry)
        : tagItem_(&item), entry_(std::move(entry)) {}

    const TagItem* tagItem_;
    PresetItem::Entry entry_;
    std::any objectValue_;
};

/// A row of a `PresetEditionTable`: a family heading, a section heading, or an entry. The table
/// makes entry rows only; the two headings are there for views that group entries themselves.
using PresetEditionEntry = std::variant<TagStream, TagSection, PresetEditionRow>;

/// What changed in one reload of a `PresetEditionTable`: every row, or only the selection.
enum class PresetEditionTableReloadType { entries, selection };

/// What a view asks of a `PresetEditionTable` (its `Request`).
class PresetEditionTableRequest {
public:
    /// Compared by identity; called on the table's queue.
    using Convert = Identified<std::function<std::any(const PresetEditionRow&)>>;
    /// Keeps the rows it returns true for; compared by identity, called on the table's queue.
    using Filter = Identified<std::function<bool(const PresetEditionRow&)>>;
    /// The fields `diff` tells apart.
    enum class Field { presetItem, convert, filter, selection };

    PresetEditionTableRequest() = default;
    /// Shows the entries of `presetItem`.
    explicit PresetEditionTableRequest(PresetItemRef presetItem) : presetItem(std::move(presetItem)) {}

    /// Null: no rows.
    PresetItemRef presetItem;
    std::shared_ptr<Convert> convert; ///< see `Convert`; null converts nothing
    std::shared_ptr<Filter> filter;   ///< see `Filter`; null keeps every row
    IndexSet selection;               ///< the rows asked for

    /// The fields in which the two requests differ; the table rebuilds its rows unless only
    /// `selection` differs.
    std::set<Field> diff(const PresetEditionTableRequest& other) const;
    /// No field differs.
    friend bool operator==(const PresetEditionTableRequest& a, const PresetEditionTableRequest& b) {
        return a.diff(b).empty();
    }
};

/// What a `PresetEditionTable` shows (its `Content`): the preset's entries in order, as rows, less
/// the unknown tags and those the filter refuses; `tagSet()` lists the preset's tags in entry order.
class PresetEditionTableContent
    : public BasicTableContent<PresetEditionTableContent, PresetEditionTableRequest, PresetEditionEntry> {
public:
    /// The rows of the request's preset, computed on the calling thread.
    explicit PresetEditionTableContent(const PresetEditionTableRequest& request);

    /// The entry rows; headings can't be selected.
    static bool isValueRow(const PresetEditionEntry& entry) {
        return std::holds_alternative<PresetEditionRow>(entry);
    }

private:
    static TagSet presetTagSet(const PresetItemRef& preset);
    void reloadEntries();
};

} // namespace corvane
