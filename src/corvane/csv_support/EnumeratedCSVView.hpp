#pragma once

#include "corvane/csv_support/CSVDelimiter.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A CSV table whose rows are lists of fields, with an optional header row.
class EnumeratedCSVView {
public:
    /// One row's fields, in order.
    using Row = std::vector<std::string>;

    /// One column: its header name (or its index in decimal) and its values.
    struct Column {
        std::string header;            ///< the header's name, or the index in decimal
        std::vector<std::string> rows; ///< the column's field in each row, in order
        friend bool operator==(const Column&, const Column&) = default;
    };
    /// The columns, in order.
    using Columns = std::vector<Column>;

    EnumeratedCSVView() = default;
    /// Throws CSVParseError, also when the columns, short rows padded, would hold more cells than
    /// twice the text's bytes plus 100,000.
    EnumeratedCSVView(std::string_view text, const CSVDelimiter& delimiter, bool loadColumns,
                      bool hasHeader = true, std::optional<std::size_t> rowLimit = std::nullopt);

    /// The header row (empty without one); the data rows; the columns, when they were asked for.
    ///@{
    const std::vector<std::string>& header() const { return header_; }
    const std::vector<Row>& rows() const { return rows_; }
    const std::optional<Columns>& columns() const { return columns_; }
    ///@}

private:
    std::vector<std::string> header_;
    std::vector<Row> rows_;
    std::optional<Columns> columns_;
};

} // namespace corvane
