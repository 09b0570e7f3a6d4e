#pragma once

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_table/MultiValuedString.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

class TagItem;

/// The merged state of the rows selected in a `TagValueTable` (its `ValueSet`): what an inspector
/// shows and edits for the selection, over every selected tag and every editor.
class TagValueSet {
public:
    /// The files the values come from.
    using Editors = std::vector<TagEditorRef>;
    /// A choice's value and title.
    using Choice = std::pair<std::string, std::string>;

    /// Nothing selected: no value, not edited, editable and supported.
    TagValueSet() : editors_(std::make_shared<const Editors>()) {}
    /// Merges the items (sorted by name here) over the editors. `filteredChoices` keeps only the
    /// choices that every item offers (same value and title), in the order of their first
    /// appearance.
    TagValueSet(std::shared_ptr<const Editors> editors, std::vector<const TagItem*> tagItems);

    /// The selected tags; the editors.
    ///@{
    const std::vector<const TagItem*>& tagItems() const { return tagItems_; }
    const Editors& editors() const { return *editors_; }
    ///@}
    /// The distinct values over every selected tag of every editor.
    const MultiValuedString& string() const { return string_; }
    /// Some selected tag of some editor holds an unsaved change.
    bool isEdited() const { return isEdited_; }
    /// Every selected tag can be edited in every editor.
    bool canBeEdited() const { return canBeEdited_; }
    /// Every selected tag's type is one the library converts.
    bool isSupported() const { return isSupported_; }
    /// The menu of choices to offer for the selection.
    const std::vector<Choice>& filteredChoices() const { return filteredChoices_; }

    /// Same tags, editors, values and choices.
    friend bool operator==(const TagValueSet& a, const TagValueSet& b);

private:
    std::vector<const TagItem*> tagItems_;
    std::shared_ptr<const Editors> editors_;
    MultiValuedString string_;
    bool isEdited_ = false;
    bool canBeEdited_ = true;
    bool isSupported_ = true;
    std::vector<Choice> filteredChoices_;
};

} // namespace corvane
