#pragma once

#include "corvane/comparison/TagComparatorTable.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvane {

/// One row of a comparison view: a family's heading or one tag's row.
using TagComparatorRow = std::variant<TagComparatorGroupName, TagComparatorGroupEntry>;

/// The data source of a comparison view: holds the table given, narrows it to a search text
/// (ignoring case and diacritics) and flattens the result into rows. Setting the table or the search
/// recomputes the rows at once. Not thread-safe: it belongs to its view's thread.
class TagComparatorSource {
public:
    /// A shared comparison table.
    using TableRef = std::shared_ptr<const TagComparatorTable>;

    TagComparatorSource() = default;
    virtual ~TagComparatorSource() = default;

    /// The search text (nothing shows every row); setting it recomputes the rows.
    ///@{
    const std::optional<std::string>& search() const { return search_; }
    virtual void setSearch(std::optional<std::string> search);
    ///@}
    /// The whole table; setting it recomputes the rows.
    ///@{
    const TableRef& sourceTable() const { return sourceTable_; }
    virtual void setSourceTable(TableRef table);
    void setSourceTable(TagComparatorTable table) {
        ///@}
        setSourceTable(std::make_shared<const TagComparatorTable>(std::move(table)));
    }

    /// The table now shown: the source table, filtered when a search is set.
    const TableRef& displayedTable() const { return internalTable_; }
    /// The rows of `displayedTable()`, in order, headings included.
    const std::vector<TagComparatorRow>& cachedRows() const { return cachedRows_; }

    /// Recomputes `displayedTable()` and `cachedRows()`; the setters call it.
    virtual void reloadCachedData();
    /// No row to show.
    bool isEmpty() const { return cachedRows_.empty(); }
    std::size_t numberOfRows() const { return cachedRows_.size(); } ///< the number of `cachedRows()`
    /// The tag column and one per file; 0 without a table.
    std::size_t numberOfColumns() const;
    /// Column 0: the localized heading of the tag column; then the files' titles. std::out_of_range
    /// past the last column.
    std::string title(std::size_t column) const;
    /// std::out_of_range past the last row.
    const TagComparatorRow& dataRow(std::size_t row) const { return cachedRows_.at(row); }
    /// The cell of an entry row at `column`, carrying the current search; nothing for a heading row
    /// or a column past the last.
    std::optional<TagComparatorSearchValue> searchValue(std::size_t row, std::size_t column,
                                                        bool showName) const;

private:
    TableRef internalTable_;
    std::vector<TagComparatorRow> cachedRows_;
    std::optional<std::string> search_;
    TableRef sourceTable_;
};

} // namespace corvane
