#pragma once

#include "corvane/csv_support/CSVDelimiter.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// A CSV table whose rows are dictionaries keyed by the names of its first row.
class NamedCSVView {
public:
    /// One row: each header name with its field; the columns by header name.
    ///@{
    using Row = std::unordered_map<std::string, std::string>;
    using Columns = std::unordered_map<std::string, std::vector<std::string>>;
    ///@}

    NamedCSVView() = default;
    /// The first row is always the header; `hasHeader` is accepted for symmetry
    /// with EnumeratedCSVView. Throws CSVParseError, also for a table too large to hold: every
    /// row is padded to the header's width, and a view refuses more cells than twice the text's
    /// bytes plus 100,000 (blank lines under a wide header).
    NamedCSVView(std::string_view text, const CSVDelimiter& delimiter, bool loadColumns,
                 bool hasHeader = true, std::optional<std::size_t> rowLimit = std::nullopt);

    /// The header row; the data rows, in order.
    ///@{
    const std::vector<std::string>& header() const { return header_; }
    const std::vector<Row>& rows() const { return rows_; }
    ///@}
    /// Each header name with its values in row order, when asked for.
    const std::optional<Columns>& columns() const { return columns_; }

private:
    std::vector<std::string> header_;
    std::vector<Row> rows_;
    std::optional<Columns> columns_;
};

} // namespace corvane
