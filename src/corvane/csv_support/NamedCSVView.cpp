#include "corvane/csv_support/NamedCSVView.hpp"

#include "corvane/csv_support/detail/CSVParsingState.hpp"
#include "corvane/csv_support/detail/CellBudget.hpp"

#include <algorithm>

namespace corvane {
using detail::CSVParsingState;

NamedCSVView::NamedCSVView(std::string_view text, const CSVDelimiter& delimiter, bool loadColumns,
                           bool /*hasHeader*/, std::optional<std::size_t> rowLimit) {
    const char32_t d = delimiter.rawValue();
    CSVParsingState::enumArray(text, d, 0, 1,
                               [this](CSVParsingState::Row&& row) { header_ = std::move(row); });
    // Each row holds every column of the header, the columns as many again.
    detail::CellBudget budget(text.size());
    const std::size_t width = std::max<std::size_t>(header_.size(), 1) * (loadColumns ? 2 : 1);
    CSVParsingState::enumDict(
        header_, text, d, rowLimit,
        [&](Row&& row) {
            budget.spend(width);
            rows_.push_back(std::move(row));
        },
        1);
    if (!loadColumns) return;
    Columns columns;
    columns.reserve(header_.size());
    for (const std::string& name : header_) {
        auto [it, inserted] = columns.try_emplace(name);
        if (!inserted) continue; // a repeated name has one column, its later values
        it->second.reserve(rows_.size());
        for (const Row& row : rows_)
            it->second.push_back(row.at(name));
    }
    columns_ = std::move(columns);
}

} // namespace corvane
