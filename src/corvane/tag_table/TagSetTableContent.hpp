#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/preset_support/Identified.hpp"
#include "corvane/tag_set/TagSet.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_table/BasicTableContent.hpp"
#include "corvane/tag_value/TagSection.hpp"

#include <functional>
#include <memory>
#include <set>
#include <variant>
#include <vector>

namespace corvane {

class TagItem;

/// A row of a `TagSetTable`: a heading, or a tag of the catalogue.
using TagSetTableEntry = std::variant<TagSection, const TagItem*>;

/// What changed in one reload of a `TagSetTable`: every row, or only the selection.
enum class TagSetTableReloadType { entries, selection };

/// What the editor of a tag set asks of its `TagSetTable` (its `Request`).
class TagSetTableRequest {
public:
    /// Keeps a tag when it returns true. Compared by identity.
    using Filter = Identified<std::function<bool(const TagItem&)>>;
    /// The fields `diff` tells apart.
    enum class Field { domain, filter, selection, showSections };

    /// A request for the user set of `domain`.
    explicit TagSetTableRequest(TagSetManager::Domain domain) : domain_(domain) {}

    /// The domain whose user set is shown; a request of another domain reloads everything.
    ///@{
    TagSetManager::Domain domain() const { return domain_; }
    void setDomain(TagSetManager::Domain domain) { domain_ = domain; }
    ///@}
    /// Null: every known tag.
    std::shared_ptr<Filter> filter;
    IndexSet selection;        ///< the rows asked for; the content keeps those that exist
    bool showSections = false; ///< heading rows for the set's sections

    /// The fields in which the two requests differ; the table rebuilds its rows unless only
    /// `selection` differs.
    std::set<Field> diff(const TagSetTableRequest& other) const;
    /// No field differs.
    friend bool operator==(const TagSetTableRequest& a, const TagSetTableRequest& b) {
        return a.diff(b).empty();
    }

private:
    TagSetManager::Domain domain_;
};

/// What a `TagSetTable` shows (its `Content`): the domain's user set as rows, without values. Tags
/// the catalogue doesn't know and tags the filter refuses give no row; a heading shows (when
/// sections are shown) only before a row that survived.
class TagSetTableContent
    : public BasicTableContent<TagSetTableContent, TagSetTableRequest, TagSetTableEntry> {
public:
    /// Reads the set once from `TagSetManager::shared()` and builds the rows.
    explicit TagSetTableContent(const TagSetTableRequest& request);

    /// The tag rows; headings can't be selected.
    static bool isValueRow(const TagSetTableEntry& entry) {
        return std::holds_alternative<const TagItem*>(entry);
    }

private:
    void reloadEntries();
};

} // namespace corvane
