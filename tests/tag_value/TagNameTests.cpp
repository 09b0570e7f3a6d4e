#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"
#include "corvane/tag_value/TagPair.hpp"
#include "corvane/tag_value/TagSection.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/tag_value/detail/DynamicTagItems.hpp"
#include "support/StorageValues.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <ostream>
#include <set>
#include <unordered_map>
#include <unordered_set>

using namespace corvane;
using corvane::test::tagName;

namespace corvane {
// Readable names in failure messages.
inline void PrintTo(const TagName& n, std::ostream* os) {
    *os << n.rawValue();
}
} // namespace corvane

TEST(TagName, ParsesStreamColonKeyOrdersAndHashes) {
    auto n = TagName::fromRawValue("EXIF:Artist");
    ASSERT_TRUE(n);
    EXPECT_EQ(n->stream(), TagStream::streamEXIF);
    EXPECT_EQ(n->key().rawValue(), "Artist");
    EXPECT_EQ(n->rawValue(), "EXIF:Artist");
    for (const char* bad : {"", "Artist", ":Artist", "EXIF:", ":"})
        EXPECT_FALSE(TagName::fromRawValue(bad)) << bad;
    // Split at the first colon: the key keeps the rest, and the text comes back unchanged.
    auto nested = TagName::fromRawValue("{MakerCanon}:OwnerName:string");
    ASSERT_TRUE(nested);
    EXPECT_EQ(nested->stream().rawValue(), "{MakerCanon}");
    EXPECT_EQ(nested->key().rawValue(), "OwnerName:string");
    EXPECT_EQ(nested->rawValue(), "{MakerCanon}:OwnerName:string");
    EXPECT_TRUE(TagName::empty.isEmpty());
    EXPECT_FALSE(n->isEmpty());
    EXPECT_LT(tagName("EXIF:ZZZ"), tagName("File:AAA"));
    EXPECT_LT(tagName("EXIF:Artist"), tagName("EXIF:Make"));
    // Plain byte order: upper case before lower case.
    EXPECT_LT(tagName("XMP:Zone"), tagName("XMP:artist"));
    std::unordered_set<TagName> set = {tagName("EXIF:Artist"), tagName("EXIF:Artist"), tagName("XMP:Artist")};
    EXPECT_EQ(set.size(), 2u);
}

TEST(TagName, KeepsTheCatalogueEntryItFoundButNotTheAbsenceOfOne) {
    // A name the catalogue lacks finds the entry made for it once a file has shown it.
    const auto shown = *TagName::fromRawValue("XMP:NoSuchTagBeforeARead");
    EXPECT_EQ(shown.item(), nullptr);
    const TagItem* made = detail::DynamicTagItems::shared().itemForRead("XMP", "XMP", "NoSuchTagBeforeARead");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(shown.item(), made);
    const auto artist = *TagName::fromRawValue("EXIF:Artist");
    const TagItem* item = artist.item();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->name(), artist);
    // A name given another name's value, by copy or by move, answers with the new name's entry,
    // not the one it had found before.
    TagName assigned = *TagName::fromRawValue("EXIF:Make");
    ASSERT_NE(assigned.item(), nullptr);
    assigned = artist;
    EXPECT_EQ(assigned.item(), item);
    TagName moved = *TagName::fromRawValue("EXIF:Model");
    ASSERT_NE(moved.item(), nullptr);
    moved = TagName(artist);
    EXPECT_EQ(moved.item(), item);
    EXPECT_EQ(moved, *TagName::fromRawValue("EXIF:Artist"));
    EXPECT_EQ(moved.hash(), TagName::fromRawValue("EXIF:Artist")->hash());
}

TEST(TagName, GroupsHoldCatalogueNamesInOrder) {
    // The location names are those of each family, then QuickTime's one.
    std::vector<TagName> location = TagName::exifLocationTagNames();
    for (const auto* family : {&TagName::iptcLocationTagNames(), &TagName::xmpLocationTagNames()})
        location.insert(location.end(), family->begin(), family->end());
    location.push_back(tagName("QuickTime:GPSCoordinates"));
    EXPECT_EQ(TagName::locationTagNames(), location);
    for (const auto* group : {&TagName::locationTagNames(), &TagName::exifThumbnailTagNames(),
                              &TagName::quicktimeArtworkTagNames(), &TagName::iTunMOVITagNames(),
                              &TagName::xmpGPSAddressTagNames()})
        for (const TagName& n : *group)
            EXPECT_NE(n.item(), nullptr) << n.rawValue();
}

TEST(TagName, ImageSizePairsRunInLookupOrder) {
    const auto& pairs = TagName::imageSizePairs();
    ASSERT_EQ(pairs.size(), 48u);
    EXPECT_EQ(pairs[0].first.rawValue(), "Composite:ImageWidth");
    EXPECT_EQ(pairs[2].first.rawValue(), "EXIF:ExifImageWidth");
    for (const auto& [w, h] : pairs) {
        EXPECT_NE(w.item(), nullptr) << w.rawValue();
        EXPECT_NE(h.item(), nullptr) << h.rawValue();
        EXPECT_NE(w.key().rawValue().find("Width"), std::string::npos);
        EXPECT_NE(h.key().rawValue().find("Height"), std::string::npos);
    }
}

TEST(TagNameMapping, LooksUpBothWays) {
    const std::pair<const char*, const char*> telling[] = {
        {"{Exif}:ISOSpeedRatings", "EXIF:ISO"},
        {"{Exif}:LensSpecification", "EXIF:LensInfo"},
        {"{GIF}:UnclampedDelayTime", "GIF:Duration"},
        {"{GPS}:GPSVersion", "EXIF:GPSVersionID"},
        {"{IPTC}:Byline", "IPTC:By-line"},
        {"{IPTC}:StarRating", "XMP:Rating"},
        {"{MakerCanon}:ImageSerialNumber", "Canon:FileNumber"},
        {"{MakerCanon}:OwnerName:string", "Canon:OwnerName"}};
    for (auto [cg, et] : telling)
        EXPECT_EQ(tagName(cg).etName(), tagName(et)) << cg;
    EXPECT_EQ(tagName("EXIF:ISO").cgName(), tagName("{Exif}:ISOSpeedRatings"));
    // Where two image I/O names share an ExifTool name, the first row wins.
    EXPECT_EQ(tagName("IPTC:Headline").cgName(), tagName("{IPTC}:Headline"));
    EXPECT_EQ(tagName("{IPTC}:Headline").etName(), tagName("IPTC:Headline"));
    EXPECT_EQ(tagName("EXIF:SerialNumber").cgName(), tagName("{Exif}:BodySerialNumber"));
    // Rows without a counterpart take no part.
    EXPECT_EQ(tagName("{TIFF}:DateTime").etName(), std::nullopt);
    EXPECT_EQ(TagName::empty.cgName(), std::nullopt);
    EXPECT_EQ(tagName("EXIF:NoSuchKey").cgName(), std::nullopt);
    ASSERT_EQ(TagNameMapping::etcgMapping().size(), 472u);
    // Every row with both sides, each a catalogue tag, leads back to the ExifTool name of the first
    // row that holds its image I/O name.
    std::unordered_map<TagName, TagName> firstEtOfCg;
    for (const auto& row : TagNameMapping::etcgMapping())
        if (!row.et.isEmpty()) firstEtOfCg.try_emplace(row.cg, row.et);
    for (const auto& row : TagNameMapping::etcgMapping()) {
        if (row.et.isEmpty()) continue;
        EXPECT_NE(row.et.item(), nullptr) << row.et.rawValue();
        auto cg = row.et.cgName();
        ASSERT_TRUE(cg) << row.et.rawValue();
        EXPECT_EQ(cg->etName(), firstEtOfCg.at(*cg)) << row.et.rawValue();
    }
}

TEST(TagPair, ConvertsThroughTheCatalogue) {
    auto pair = TagPair::fromName(tagName("EXIF:Orientation"), DynamicValue(int64_t{6}));
    ASSERT_TRUE(pair);
    EXPECT_EQ(pair->name(), TagItem::itemEXIFOrientation().name());
    EXPECT_EQ(pair->value(), "6");
    EXPECT_FALSE(TagPair::fromName(tagName("EXIF:Orientation"), DynamicValue("sideways")));
    EXPECT_FALSE(TagPair::fromName(tagName("EXIF:NoSuchKey"), DynamicValue("x")));
    EXPECT_FALSE(TagPair::fromRawName("not a name", DynamicValue("x")));
    auto artist = TagPair::fromRawName("EXIF:Artist", DynamicValue("Ann"));
    ASSERT_TRUE(artist);
    EXPECT_EQ(*artist, TagPair(TagItem::itemEXIFArtist().name(), "Ann"));
}

// Clear and restore as the editors take them are the accessors' tests; an absent optional clears.
TEST(TypedTagValue, AnAbsentOptionalClears) {
    EXPECT_TRUE(TypedTagValue<int>::optional(std::nullopt).isClear());
    EXPECT_EQ(TypedTagValue<int>::optional(3), TypedTagValue<int>::value(3));
}

TEST(TagName, StandsInJSONAsOneStringAsDoSections) {
    std::map<std::string, std::vector<TagName>> sets{{"Camera", {tagName("EXIF:Make"), tagName("XMP:Lens")}}};
    nlohmann::json j = sets;
    EXPECT_EQ(j.dump(), R"({"Camera":["EXIF:Make","XMP:Lens"]})");
    EXPECT_EQ(j.get<decltype(sets)>(), sets);
    EXPECT_THROW(nlohmann::json("Artist").get<TagName>(), std::invalid_argument);
    EXPECT_THROW(nlohmann::json(3).get<TagName>(), nlohmann::json::type_error);
    EXPECT_EQ(nlohmann::json(TagSection("Lens")).get<TagSection>(), TagSection("Lens"));
    EXPECT_FALSE(TagSection("GPS And Location").localizedName().empty());
}
