#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/preset_support/Identified.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_table/TagValueFilter.hpp"

#include <any>
#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace corvane {

class TagValueRow;

/// What a view asks of a `TagValueTable` (its `Request`): which editors, which rows, which
/// selection. A plain value; the table compares it with the request of its content to decide how
/// much to recompute (`diff`).
class TagValueTableRequest {
public:
    /// The files whose tags the table shows.
    using Editors = std::vector<TagEditorRef>;
    /// Turns a row into what the view shows (stored in `objectValue`). Called from several threads
    /// at once. Compared by identity: keep one box to get cheap reloads.
    using Convert = Identified<std::function<std::any(const TagValueRow&)>>;
    /// The fields `diff` tells apart.
    enum class Field { domain, convert, filter, editors, selection, showSections };

    /// A request for the set of `domain` over `editors`.
    explicit TagValueTableRequest(TagSetManager::Domain domain, Editors editors = {})
        : domain_(domain), editors_(std::make_shared<const Editors>(std::move(editors))) {}

    /// The tag-set domain whose set the table shows; fixed for a table's life.
    TagSetManager::Domain domain() const { return domain_; }
    /// Null: rows carry no object value.
    std::shared_ptr<Convert> convert;
    TagValueFilter filter; ///< which rows are shown
    /// The rows asked for; the content keeps those that exist and hold values.
    IndexSet selection;
    bool showSections = false; ///< heading rows for the set's sections

    /// The editors whose tags the table shows.
    const Editors& editors() const { return *editors_; }
    /// The editors, shared with the rows built from this request (copies of the request are cheap).
    const std::shared_ptr<const Editors>& sharedEditors() const { return editors_; }
    /// Replaces the editors.
    void setEditors(Editors editors) { editors_ = std::make_shared<const Editors>(std::move(editors)); }

    /// The fields that differ; editors by identity, element by element, `convert` by identity.
    std::set<Field> diff(const TagValueTableRequest& other) const;
    /// No field differs.
    friend bool operator==(const TagValueTableRequest& a, const TagValueTableRequest& b) {
        return a.diff(b).empty();
    }

private:
    TagSetManager::Domain domain_;
    std::shared_ptr<const Editors> editors_;
};

} // namespace corvane
