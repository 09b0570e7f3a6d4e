#pragma once

// A view pads every short row to the header's width, so a few bytes of blank lines under a wide
// header would make a table of millions of empty cells (34 KB made 5 GB). Every cell of a real
// table costs at least one byte of text, its delimiter or line end; the views refuse to build more
// than twice that many, plus room for small tables of short rows.

#include "corvane/csv_support/CSVParseError.hpp"

#include <cstddef>
#include <string>

namespace corvane::detail {

class CellBudget {
public:
    explicit CellBudget(std::size_t textBytes) : limit_(2 * textBytes + 100'000) {}

    /// Counts `cells` more; throws CSVParseError once the table would hold more than the limit.
    void spend(std::size_t cells) {
        if (cells > limit_ - spent_)
            throw CSVParseError::generic("The CSV table is too large to hold: more than " +
                                         std::to_string(limit_) + " cells");
        spent_ += cells;
    }

private:
    std::size_t limit_;
    std::size_t spent_ = 0;
};

} // namespace corvane::detail
