#pragma once

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_table/MultiValuedString.hpp"
#include "corvane/tag_value/TagSection.hpp"

#include <any>
#include <memory>
#include <variant>
#include <vector>

namespace corvane {

class TagItem;

/// One row of a `TagValueTable` (its `RowValue`): one tag merged across the editors the row was
/// built from. Built off the main thread, then read-only.
class TagValueRow {
public:
    /// The files a row reads.
    using Editors = std::vector<TagEditorRef>;

    /// Reads the tag from every editor, each through its own guard: the distinct current values
    /// (a missing value counts as the empty text), whether any editor holds an unsaved change of
    /// it, and whether every editor can edit it (true without editors). With `splitEditors`, the
    /// editors are read on several threads at once: for rebuilding a few rows over many editors,
    /// where the rows alone leave cores idle.
    TagValueRow(std::shared_ptr<const Editors> editors, const TagItem& tagItem, bool splitEditors = false);

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
    const TagItem* tagItem_;
    std::shared_ptr<const Editors> editors_;
    MultiValuedString string_;
    bool isEdited_ = false;
    bool canBeEdited_ = true;
    bool isSupported_ = false;
    std::any objectValue_;
};

/// A row of a `TagValueTable`: a section heading or a tag's merged value.
using TagValueEntry = std::variant<TagSection, TagValueRow>;

} // namespace corvane
