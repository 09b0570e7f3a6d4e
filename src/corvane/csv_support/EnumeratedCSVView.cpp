#include "corvane/csv_support/EnumeratedCSVView.hpp"

#include "corvane/csv_support/detail/CSVParsingState.hpp"
#include "corvane/csv_support/detail/CellBudget.hpp"

namespace corvane {
using detail::CSVParsingState;

EnumeratedCSVView::EnumeratedCSVView(std::string_view text, const CSVDelimiter& delimiter, bool loadColumns,
                                     bool hasHeader, std::optional<std::size_t> rowLimit) {
    const char32_t d = delimiter.rawValue();
    if (hasHeader) CSVParsingState::enumArray(text, d, 0, 1, [this](Row&& row) { header_ = std::move(row); });
    CSVParsingState::enumArray(text, d, hasHeader ? 1 : 0, rowLimit,
                               [this](Row&& row) { rows_.push_back(std::move(row)); });
    if (!loadColumns) return;
    const std::size_t count = hasHeader ? header_.size() : (rows_.empty() ? 0 : rows_.front().size());
    // Every column holds a cell for each row, short rows padded.
    detail::CellBudget(text.size()).spend(count * rows_.size());
    Columns columns(count);
    for (std::size_t i = 0; i < count; ++i) {
        Column& column = columns[i];
        column.header = i < header_.size() ? header_[i] : std::to_string(i);
        column.rows.reserve(rows_.size());
        for (const Row& row : rows_)
            column.rows.push_back(i < row.size() ? row[i] : std::string());
    }
    columns_ = std::move(columns);
}

} // namespace corvane
