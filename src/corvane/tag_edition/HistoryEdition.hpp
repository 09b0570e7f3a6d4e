#pragma once

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// One batch of change events: which tags of which editor changed. Editors are keys by identity,
/// so two editors of the same file are two keys. Holds no old values: it says what to refresh.
class HistoryEdition {
public:
    /// Tag names; the changed tag names of each editor.
    ///@{
    using TagNames = std::unordered_set<TagName>;
    using Values = std::unordered_map<std::shared_ptr<TagEditor>, TagNames, TagEditorHash, TagEditorEqual>;
    ///@}

    HistoryEdition() = default;

    /// The changed tag names of each editor.
    const Values& values() const { return values_; }

    /// Adds the name to the editor's set, making the set for a new editor.
    void registerTag(const std::shared_ptr<TagEditor>& editor, const TagName& tagName);

    /// Some editor changed.
    bool hasEditions() const { return !values_.empty(); }
    /// One of these editors changed.
    bool hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const;
    /// One of these editors changed one of these tags.
    bool hasEditions(const std::vector<std::shared_ptr<TagEditor>>& editors,
                     const std::vector<TagName>& tagNames) const;
    /// One of these editors changed a location tag.
    bool hasLocationEditions(const std::vector<std::shared_ptr<TagEditor>>& editors) const;
    /// The tags changed in these editors, together.
    TagNames tagNames(const std::vector<std::shared_ptr<TagEditor>>& editors) const;

    /// The tags changed in this editor, or nullptr when it didn't change.
    const TagNames* tagNamesOf(const std::shared_ptr<TagEditor>& editor) const;

    friend bool operator==(const HistoryEdition&, const HistoryEdition&) = default;

private:
    Values values_;
};

} // namespace corvane
