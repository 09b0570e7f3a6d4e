#include "corvane/comparison/TagComparatorSearchValue.hpp"
#include "corvane/comparison/TagComparatorSource.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include "ComparisonFixtures.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TagComparatorTable sampleTable() {
    return TagComparatorTable::fromStorages(
        {test::storageWith("/p/first.jpg",
                           {{"EXIF:Make", "ACME"}, {"EXIF:Artist", "Zoë Ünsal"}, {"XMP:Title", "Straße"}}),
         test::storageWith("/p/second.jpg", {{"EXIF:Make", "Acme"}, {"IPTC:Caption-Abstract", "Café"}})});
}

std::string rowText(const TagComparatorRow& row) {
    if (const auto* group = std::get_if<TagComparatorGroupName>(&row)) return "# " + group->stream.rawValue();
    return std::get<TagComparatorGroupEntry>(row).key().localizedText();
}

std::vector<std::string> rowsOf(const TagComparatorSource& source) {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < source.numberOfRows(); ++i)
        rows.push_back(rowText(source.dataRow(i)));
    return rows;
}

TEST(ComparisonSource, FlattensGroupsIntoRowsAndNamesColumnsAndWithoutTableIsEmpty) {
    TagComparatorSource source;
    source.setSourceTable(sampleTable());
    EXPECT_EQ(source.displayedTable(), source.sourceTable());
    EXPECT_EQ(rowsOf(source), (std::vector<std::string>{"# EXIF", "EXIF Artist", "EXIF Make", "# XMP",
                                                        "XMP Title", "# IPTC", "IPTC Caption-Abstract"}));
    EXPECT_EQ(source.numberOfColumns(), 3u);
    EXPECT_EQ((std::vector{source.title(0), source.title(1), source.title(2)}),
              (std::vector<std::string>{"Tags", "first.jpg", "second.jpg"}));
    EXPECT_THROW(source.title(3), std::out_of_range);

    EXPECT_FALSE(source.searchValue(0, 1, true)); // a heading row has no cells
    auto cell = source.searchValue(2, 2, true);
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->text(), "Acme");
    EXPECT_TRUE(cell->isShared);
    // Without a table, everything is empty.
    TagComparatorSource none;
    EXPECT_TRUE(none.isEmpty() && none.numberOfRows() == 0 && none.numberOfColumns() == 0);
    EXPECT_EQ(none.displayedTable(), nullptr);
    EXPECT_EQ(none.title(0), "Tags");
    EXPECT_THROW(none.title(1), std::out_of_range);
    none.setSearch("acme");
    EXPECT_TRUE(none.isEmpty());
}

TEST(ComparisonSource, SearchIgnoresCaseAndDiacriticsAndEmptySearchShowsAll) {
    TagComparatorSource source;
    source.setSourceTable(sampleTable());
    source.setSearch("zoe unsal");
    EXPECT_EQ(rowsOf(source), (std::vector<std::string>{"# EXIF", "EXIF Artist"}));
    EXPECT_EQ(source.numberOfColumns(), 3u);
    EXPECT_EQ(source.searchValue(1, 1, true)->search, "zoe unsal");

    source.setSearch("CAFE");
    EXPECT_EQ(rowsOf(source), (std::vector<std::string>{"# IPTC", "IPTC Caption-Abstract"}));
    source.setSearch("strasse");
    EXPECT_EQ(rowsOf(source), (std::vector<std::string>{"# XMP", "XMP Title"}));
    source.setSearch("make"); // a tag name matches too
    EXPECT_EQ(rowsOf(source), (std::vector<std::string>{"# EXIF", "EXIF Make"}));

    source.setSearch("no such text");
    EXPECT_EQ(source.numberOfRows(), 0u);
    EXPECT_TRUE(source.isEmpty());
    ASSERT_NE(source.displayedTable(), nullptr);
    EXPECT_TRUE(source.displayedTable()->isEmpty());

    source.setSearch("");
    EXPECT_EQ(source.numberOfRows(), 7u);
    source.setSearch(std::nullopt);
    EXPECT_EQ(source.displayedTable(), source.sourceTable());
    source.setSourceTable(nullptr);
    EXPECT_TRUE(source.isEmpty());
    EXPECT_EQ(source.numberOfColumns(), 0u);
}

TEST(ComparisonSearch, RangesCoverTheMatchedOriginalText) {
    using Range = TagComparatorSearchValue::Range;
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("cafe", "Le CAFÉ noir"), Range(3, 8));
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("é", "cafe\u0301!"), Range(3, 6)); // decomposed é
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("STRASSE", "Große Straße"), Range(7, 14));
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("😀", "a😀b"), Range(1, 5));
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("東京", "in 東京"), Range(3, 9));
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("x", "abc"), std::nullopt);
    EXPECT_EQ(TagComparatorSearchValue::rangeOf("", "abc"), std::nullopt);

    TagComparatorSearchValue cell;
    cell.rawText = "Zoë";
    EXPECT_EQ(cell.highlightedRange(), std::nullopt);
    cell.search = "OE";
    EXPECT_EQ(cell.highlightedRange(), Range(1, 4));
}

} // namespace
} // namespace corvane
