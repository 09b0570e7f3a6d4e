#pragma once

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_table/MultiValuedString.hpp"
#include "corvane/tag_value/TagSection.hpp"

#include <any>
#include <cstddef>
#include <memory>
#include <span>
#include <variant>
#include <vector>

namespace corvane {

class TagItem;
class TagValueTableContent;
namespace detail {
class ValueTally;
}

/// One row of a `TagValueTable` (its `RowValue`): one tag merged across the editors the row was
/// built from. Built off the main thread, then read-only.
class TagValueRow {
public:
    /// The files a row reads.
    using Editors = std::vector<TagEditorRef>;

    /// Reads the tag from every editor, each through its own guard: the distinct current values
    /// (a missing value counts as the empty text), whether any editor holds an unsaved change of
    /// it, and whether every editor can edit it (true without editors). Each editor's reading is
    /// kept with the row, so that after an edit only the edited editors are read again.
    TagValueRow(std::shared_ptr<const Editors> editors, const TagItem& tagItem);

    /// The tag; the editors read; the merged value; whether any editor has the tag edited; whether
    /// every editor can edit it.
    ///@{
    const TagItem& tagItem() const { return *tagItem_; }
    const Editors& editors() const { return *editors_; }
    const MultiValuedString& string() const { return string_; }
    bool isEdited() const { return isEdited_; }
    bool canBeEdited() const { return canBeEdited_; }
    ///@}
    /// The tag's type is one the library converts.
    bool isSupported() const { return isSupported_; }
    /// What the request's `convert` made of the row; empty without one. Opaque to the table.
    ///@{
    const std::any& objectValue() const { return objectValue_; }
    void setObjectValue(std::any value) { objectValue_ = std::move(value); }
    ///@}

private:
    friend class TagValueTableContent;
    // Reads again the editors at these positions of `editors()` (each at most once) and merges
    // anew, from their new readings and the others' kept ones.
    void reread(std::span<const std::size_t> positions);

    const TagItem* tagItem_;
    std::shared_ptr<const Editors> editors_;
    // Each editor's reading behind the merged fields, shared by the copies of the row.
    std::shared_ptr<detail::ValueTally> tally_;
    MultiValuedString string_;
    bool isEdited_ = false;
    bool canBeEdited_ = true;
    bool isSupported_ = false;
    std::any objectValue_;
};

/// A row of a `TagValueTable`: a section heading or a tag's merged value.
using TagValueEntry = std::variant<TagSection, TagValueRow>;

} // namespace corvane
