#include "corvane/comparison/TagComparatorTable.hpp"
#include "corvane/comparison/TagStorageValueProvider.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include "ComparisonFixtures.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace corvane {
namespace {

using test::name;
using test::storageWith;

std::vector<std::string> streamsOf(const TagComparatorTable& table) {
    std::vector<std::string> result;
    for (const auto& n : table.orderedNames())
        result.push_back(n.stream.rawValue());
    return result;
}

std::vector<std::string> keysOf(const TagComparatorGroup& group) {
    std::vector<std::string> result;
    for (const auto& key : group.orderedKeys())
        result.push_back(key.name().key().rawValue());
    return result;
}

class ComparisonTable : public ::testing::Test {
protected:
    TagStorage first = storageWith("/p/first.jpg", {{"XMP:Title", "Été"},
                                                    {"EXIF:Model", "X100"},
                                                    {"EXIF:Make", "ACME"},
                                                    {"XMP:NotInCatalogue", "dropped"}});
    TagStorage second = storageWith(
        "/p/second.jpg",
        {{"EXIF:Make", "ACME"}, {"EXIF:Artist", "Zoë"}, {"IPTC:Keywords", "k1,k2"}, {"XMP:Title", "Summer"}});
};

TEST_F(ComparisonTable, OrdersStreamsAndKeysByFirstAppearanceAndMarksDifferences) {
    auto table = TagComparatorTable::fromStorages({first, second});
    EXPECT_EQ(table.titles(), (std::vector<std::string>{"first.jpg", "second.jpg"}));
    EXPECT_EQ(table.multiValuesCount(), 2);
    // The first file's families sorted, then the family only the second holds.
    EXPECT_EQ(streamsOf(table), (std::vector<std::string>{"EXIF", "XMP", "IPTC"}));

    const auto& exif = table.group(0);
    EXPECT_EQ(keysOf(exif), (std::vector<std::string>{"Make", "Model", "Artist"}));
    EXPECT_EQ(exif.multiValuesCount(), 2);
    // Make: the same in both; Model: absent from the second; Artist: absent from the first.
    EXPECT_EQ((std::vector<bool>{exif.isShared(0), exif.isShared(1), exif.isShared(2)}),
              (std::vector<bool>{false, true, true}));
    EXPECT_EQ(exif.strings(1), (std::vector<std::string>{"X100", ""}));
    EXPECT_EQ(exif.entry(2).values()[0].string, std::nullopt);

    const auto* xmp = table.group(TagComparatorGroupName{TagStream::streamXMP});
    ASSERT_NE(xmp, nullptr);
    EXPECT_EQ(keysOf(*xmp), (std::vector<std::string>{"Title"})); // the unknown tag is not shown
    EXPECT_TRUE(xmp->isShared(TagComparatorGroupKey(name("XMP:Title"), false)));
    EXPECT_EQ(table.group(TagComparatorGroupName{TagStream::streamPNG}), nullptr);
    EXPECT_THROW(table.group(3), std::out_of_range);
}

TEST_F(ComparisonTable, ProviderShowsEditsBeforeOriginalsAndClearedTagsWithoutValue) {
    first.unsafeSetValue("Edited", name("EXIF:Make"));
    first.unsafeSetValue("", name("EXIF:Model"));
    first.unsafeSetValue("New", name("EXIF:Artist"));
    TagStorageValueProvider provider("first", first);
    EXPECT_EQ(provider.streams(), (std::vector<TagStream>{TagStream::streamEXIF, TagStream::streamXMP}));
    EXPECT_EQ(provider.valuesCount(TagStream::streamEXIF), 3u);
    EXPECT_EQ(provider.key(0, TagStream::streamEXIF), TagKey("Artist"));
    EXPECT_EQ(provider.key(3, TagStream::streamEXIF), std::nullopt);
    std::vector<TagComparatorValue> values;
    for (const char* tag : {"EXIF:Make", "EXIF:Model", "EXIF:Artist", "XMP:Title", "IPTC:Keywords"})
        values.push_back(provider.value(name(tag)));
    EXPECT_EQ(
        values,
        (std::vector<TagComparatorValue>{
            {true, "Edited"}, {true, std::nullopt}, {true, "New"}, {false, "Été"}, {false, std::nullopt}}));
    EXPECT_FALSE(provider.contains(TagStream::streamIPTC));
    EXPECT_TRUE(provider.keys(TagStream::streamIPTC).empty());
}

TEST_F(ComparisonTable, KeepingOnlySharedEntriesKeepsTheDifferingRowsAndOneFileNeverDiffers) {
    auto table = TagComparatorTable::fromStorages({first, second}).keepingOnlySharedEntries();
    EXPECT_EQ(streamsOf(table), (std::vector<std::string>{"EXIF", "XMP", "IPTC"}));
    EXPECT_EQ(keysOf(table.group(0)), (std::vector<std::string>{"Model", "Artist"}));
    for (const auto& group : table)
        for (const auto& entry : group)
            EXPECT_TRUE(entry.isShared());
    auto single = TagComparatorTable::fromStorages({first}, false, {"Only"});
    EXPECT_EQ(single.titles(), (std::vector<std::string>{"Only"}));
    for (const auto& group : single)
        for (const auto& entry : group)
            EXPECT_FALSE(entry.isShared()) << entry.key().localizedText();
    EXPECT_TRUE(single.keepingOnlySharedEntries().isEmpty());
    EXPECT_TRUE(TagComparatorTable::fromStorages({}).isEmpty());
}

TEST_F(ComparisonTable, FilterKeepsRowsMatchingNameOrValueAndDropsEmptyGroups) {
    auto table = TagComparatorTable::fromStorages({first, second});
    std::vector<std::string> asked;
    auto filtered = table.filter([&](const std::string& text) {
        asked.push_back(text);
        return text == "Summer" || text == "EXIF Artist";
    });
    EXPECT_EQ(filtered.titles(), table.titles());
    EXPECT_EQ(filtered.multiValuesCount(), 2);
    EXPECT_EQ(streamsOf(filtered), (std::vector<std::string>{"EXIF", "XMP"}));
    EXPECT_EQ(keysOf(filtered.group(0)), (std::vector<std::string>{"Artist"}));
    EXPECT_EQ(keysOf(filtered.group(1)), (std::vector<std::string>{"Title"}));
    // The name is tried first; absent values are not offered; a row stops at its first success.
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "EXIF Artist"), 1);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "Zoë"), 0);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), ""), 0);

    EXPECT_THROW(table.filter([](const std::string&) -> bool { throw std::runtime_error("bad pattern"); }),
                 std::runtime_error);
}

TEST_F(ComparisonTable, KeyTextsFollowHidesStream) {
    TagComparatorGroupKey shown(name("EXIF:DateTimeOriginal"), false);
    TagComparatorGroupKey hidden(name("EXIF:DateTimeOriginal"), true);
    EXPECT_EQ(shown.localizedText(), "EXIF Date/Time Original");
    EXPECT_EQ(hidden.localizedText(), "Date/Time Original");
    EXPECT_EQ(TagComparatorGroupKey(name("XMP:NotInCatalogue"), true).localizedText(), "NotInCatalogue");

    auto table = TagComparatorTable::fromStorages({first}, true);
    EXPECT_TRUE(table.group(0).key(0).hidesStream());
    EXPECT_EQ(table.group(0).entry(0).search(0, true)->rawText, "Make");
}

TEST(ComparisonEntry, IsSharedComparesWithTheFirstValue) {
    TagComparatorGroupKey key(name("EXIF:Make"), false);
    EXPECT_FALSE(TagComparatorGroupEntry(key, {}).isShared());
    EXPECT_FALSE(TagComparatorGroupEntry(key, {{false, "a"}}).isShared());
    EXPECT_FALSE(TagComparatorGroupEntry(key, {{false, std::nullopt}, {true, std::nullopt}}).isShared());
    EXPECT_FALSE(TagComparatorGroupEntry(key, {{false, "a"}, {true, "a"}, {false, "a"}}).isShared());
    EXPECT_TRUE(TagComparatorGroupEntry(key, {{false, "a"}, {false, "a"}, {false, "b"}}).isShared());
    EXPECT_TRUE(TagComparatorGroupEntry(key, {{false, ""}, {false, std::nullopt}}).isShared());

    TagComparatorGroupEntry entry(key, {{false, "ACME"}, {true, "Other"}});
    auto nameCell = entry.search(0, true, "ac");
    ASSERT_TRUE(nameCell);
    EXPECT_TRUE(nameCell->isTag);
    EXPECT_EQ(nameCell->text(), "EXIF Make");
    EXPECT_EQ(entry.search(0, false)->text(), "Make");
    auto valueCell = entry.search(2, true);
    EXPECT_EQ(valueCell->text(), "Other");
    EXPECT_TRUE(!valueCell->isTag && valueCell->isEdited && valueCell->isShared && valueCell->isMultiValued);
    EXPECT_FALSE(entry.search(3, true));
}

} // namespace
} // namespace corvane
