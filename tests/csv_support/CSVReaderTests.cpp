#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/utilities/FileError.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>

using namespace corvane;
namespace fs = std::filesystem;

namespace {

fs::path write(const test::TemporaryFolder& folder, const std::string& name, std::string_view bytes) {
    std::ofstream(folder / name, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return folder / name;
}

// `columns` header names, then `blankRows` empty lines.
std::string wideHeaderOverBlankLines(std::size_t columns, std::size_t blankRows) {
    std::string text;
    for (std::size_t i = 0; i < columns; ++i)
        text += (i ? ",c" : "c") + std::to_string(i);
    return text + std::string(blankRows + 1, '\n');
}

} // namespace

TEST(CSVViews, NamedRowsAreKeyedByTheFirstRowEnumeratedOnesByIndexAndTheDelimiterIsGuessed) {
    const NamedCSVView view("name,age\nann,31,extra\nbob\n", CSVDelimiter::comma(), true);
    EXPECT_EQ(view.header(), (std::vector<std::string>{"name", "age"}));
    EXPECT_EQ(view.rows(), (std::vector<NamedCSVView::Row>{{{"name", "ann"}, {"age", "31"}},
                                                           {{"name", "bob"}, {"age", ""}}}));
    ASSERT_TRUE(view.columns());
    EXPECT_EQ(view.columns()->at("age"), (std::vector<std::string>{"31", ""}));

    // hasHeader does not change the named view; the row limit counts data rows.
    const NamedCSVView limited("a\n1\n2\n3", CSVDelimiter::comma(), false, false, 2);
    EXPECT_EQ(limited.header(), (std::vector<std::string>{"a"}));
    EXPECT_EQ(limited.rows().size(), 2u);
    EXPECT_FALSE(limited.columns());

    const NamedCSVView empty("", CSVDelimiter::comma(), true);
    EXPECT_TRUE(empty.header().empty());
    EXPECT_TRUE(empty.rows().empty());
    const EnumeratedCSVView withHeader("a,b\n1,2\n3\n", CSVDelimiter::comma(), true, true);
    EXPECT_EQ(withHeader.header(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(withHeader.rows(), (std::vector<std::vector<std::string>>{{"1", "2"}, {"3"}}));
    EXPECT_EQ(*withHeader.columns(), (EnumeratedCSVView::Columns{{"a", {"1", "3"}}, {"b", {"2", ""}}}));

    // Without a header, columns are named by index and counted from the first row.
    const EnumeratedCSVView noHeader("1,2\n3,4,5\n", CSVDelimiter::comma(), true, false);
    EXPECT_TRUE(noHeader.header().empty());
    EXPECT_EQ(noHeader.rows().size(), 2u);
    EXPECT_EQ(*noHeader.columns(), (EnumeratedCSVView::Columns{{"0", {"1", "3"}}, {"1", {"2", "4"}}}));
    auto guessed = CSVReader<EnumeratedCSVView>::fromString("a;b\n1;2,5\n");
    EXPECT_EQ(guessed.delimiter(), CSVDelimiter::semicolon());
    EXPECT_EQ(guessed.content().rows().front(), (std::vector<std::string>{"1", "2,5"}));

    auto given = CSVReader<EnumeratedCSVView>::fromString("a;b\n1;2,5\n", CSVDelimiter::comma());
    EXPECT_EQ(given.content().header(), (std::vector<std::string>{"a;b"}));
    EXPECT_EQ(given.text(), "a;b\n1;2,5\n");

    EXPECT_THROW(CSVReader<NamedCSVView>::fromString("a\n\"x\"y"), CSVParseError);
}

TEST(CSVReader, EncodingsAreDetectedOrGivenAndByteOrderMarksDropped) {
    test::TemporaryFolder folder;
    auto utf8 = CSVReader<NamedCSVView>::fromFile(write(folder, "bom.csv", "\xEF\xBB\xBFid;v\n1;\xC3\xA9"));
    EXPECT_EQ(utf8.delimiter(), CSVDelimiter::semicolon());
    EXPECT_EQ(utf8.content().header(), (std::vector<std::string>{"id", "v"}));
    EXPECT_EQ(utf8.content().rows().front().at("v"), "\u00E9");

    auto onlyBOM = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "only.csv", "\xEF\xBB\xBF"),
                                                          std::nullopt, TextEncoding::utf8(), false, false);
    EXPECT_TRUE(onlyBOM.content().rows().empty());
    EXPECT_TRUE(onlyBOM.text().empty());

    // UTF-16BE keeps its mark through the converter; the reader drops it.
    const std::string be("\xFE\xFF\0a\0,\0b", 8);
    auto utf16 = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "be.csv", be), std::nullopt,
                                                        TextEncoding::utf16BigEndian(), false, false);
    EXPECT_EQ(utf16.content().rows().front(), (std::vector<std::string>{"a", "b"}));

    const fs::path latin1 = write(folder, "latin1.csv", "name\ncaf\xE9\n");
    auto read = CSVReader<EnumeratedCSVView>::fromFile(latin1, std::nullopt, TextEncoding::isoLatin1());
    EXPECT_EQ(read.content().rows().front().front(), "caf\u00E9");

    // The same bytes are not UTF-8.
    EXPECT_THROW(CSVReader<EnumeratedCSVView>::fromFile(latin1), FileError);
    // A folder opens like a file but can't be read: the system's error, not a stream exception.
    EXPECT_THROW(CSVReader<EnumeratedCSVView>::fromFile(folder.path()), FileError);

    const std::string le("\xFF\xFEx\0,\0y\0", 8);
    auto detected = CSVReader<EnumeratedCSVView>::fromFile(write(folder, "le.csv", le), std::nullopt,
                                                           TextEncoding::automatic(), false, false);
    EXPECT_EQ(detected.content().rows().front(), (std::vector<std::string>{"x", "y"}));

    EXPECT_EQ(TextEncoding::detect("plain,ascii"), TextEncoding::utf8());
    EXPECT_FALSE(TextEncoding::named("no-such-charset"));
}

// Views pad short rows to the header's width: blank lines under a wide header once made a
// 34 KB text take 5 GB. Tables past the cell budget are refused; tables within it, and every row
// limit, read as before.
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
