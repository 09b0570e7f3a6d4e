// Views pad short rows to the header's width: blank lines under a wide header once made a
// 34 KB text take 5 GB. Tables past the cell budget are refused; tables within it, and every row
// limit, read as before.

#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/EnumeratedCSVView.hpp"
#include "corvane/csv_support/NamedCSVView.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace corvane {
namespace {

// `columns` header names, then `blankRows` empty lines.
std::string wideHeaderOverBlankLines(std::size_t columns, std::size_t blankRows) {
    std::string text;
    for (std::size_t i = 0; i < columns; ++i)
        text += (i ? ",c" : "c") + std::to_string(i);
    return text + std::string(blankRows + 1, '\n');
}

TEST(CSVViewSize, BlankLinesUnderAWideHeaderAreRefusedAndTheGreatestRowLimitMeansEveryRow) {
    const std::string hostile = wideHeaderOverBlankLines(500, 1'500); // 3.4 KB
    EXPECT_THROW(NamedCSVView(hostile, CSVDelimiter::comma(), false), CSVParseError);
    EXPECT_THROW(EnumeratedCSVView(hostile, CSVDelimiter::comma(), true, true), CSVParseError);
    // Without columns the enumerated view holds the rows as they stand, one empty cell each.
    EXPECT_EQ(EnumeratedCSVView(hostile, CSVDelimiter::comma(), false, true).rows().size(), 1'500u);

    // A table of short rows of a reasonable size is read whole.
    const std::string modest = wideHeaderOverBlankLines(50, 1'000);
    const NamedCSVView view(modest, CSVDelimiter::comma(), true);
    EXPECT_EQ(view.rows().size(), 1'000u);
    EXPECT_EQ(view.columns()->at("c49").size(), 1'000u);
    const std::string text = "a,b\n1,2\n3,4\n";
    EXPECT_EQ(NamedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX).rows().size(), 2u);
    EXPECT_EQ(EnumeratedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX).rows().size(), 2u);
    EXPECT_EQ(EnumeratedCSVView(text, CSVDelimiter::comma(), false, true, SIZE_MAX - 1).rows().size(), 2u);
}

} // namespace
} // namespace corvane
