// The tag catalogue: every tag ExifTool knows, looked up by family and key, and checked against
// what ExifTool reads in files.
#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagStream.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <thread>

using namespace corvane;
using corvane::test::tagName;
namespace fs = std::filesystem;

namespace {

struct Resolution {
    int total = 0;
    std::vector<std::string> unknown;
};

// Files every tag of ExifTool's grouped JSON the way the reader does: under
// family 0, or under family 1 for maker notes.
Resolution resolve(const std::vector<std::string>& files) {
    std::vector<std::string> args = {"-j", "-g0:1", "-n"};
    args.insert(args.end(), files.begin(), files.end());
    auto run = test::runExifTool(args);
    Resolution r;
    auto json = nlohmann::json::parse(run.standardOutput);
    for (const auto& object : json) {
        for (const auto& [group, tags] : object.items()) {
            if (group == "SourceFile" || !tags.is_object()) continue;
            auto colon = group.find(':');
            std::string g0 = group.substr(0, colon);
            std::string g1 = colon == std::string::npos ? g0 : group.substr(colon + 1);
            const std::string& stream = g0 == "MakerNotes" ? g1 : g0;
            for (const auto& [key, value] : tags.items()) {
                ++r.total;
                if (!TagItem::find(stream, key)) r.unknown.push_back(group + ":" + key);
            }
        }
    }
    return r;
}

} // namespace

TEST(TagCatalogue, HoldsEveryExifToolTagOnceInNameOrderAndEveryFamily) {
    const auto& all = TagItem::allCases();
    ASSERT_GT(all.size(), 20000u);
    EXPECT_TRUE(std::adjacent_find(all.begin(), all.end(),
                                   [](auto* a, auto* b) { return !(a->name() < b->name()); }) == all.end())
        << "items must be strictly sorted, hence unique";
    for (const TagItem* item : all) {
        ASSERT_EQ(TagItem::find(item->name()), item) << item->name().rawValue();
        ASSERT_TRUE(item->stream().isG0Stream()) << item->name().rawValue();
    }
    const auto& streams = TagStream::allCases();
    // Read on its own at start-up, the family list is the catalogue's.
    EXPECT_EQ(streams, TagCatalogue::shared().streams());
    EXPECT_TRUE(std::is_sorted(streams.begin(), streams.end()));
    EXPECT_EQ(std::set<TagStream>(streams.begin(), streams.end()).size(), streams.size());
    EXPECT_FALSE(TagStream("NoSuchFamily").isG0Stream());
    // A family without a row of its own is still a family, with no items.
    EXPECT_TRUE(TagStream::streamTrailer.isG0Stream());
}

TEST(TagCatalogue, LooksUpByFamilyThenKeyAndListsAFamilysRowsSorted) {
    const TagItem* artist = tagName("EXIF:Artist").item();
    ASSERT_NE(artist, nullptr);
    EXPECT_TRUE(artist->isWritable());
    EXPECT_EQ(tagName("EXIF:NoSuchKey").item(), nullptr);
    EXPECT_EQ(tagName("NoSuchFamily:Artist").item(), nullptr);
    EXPECT_EQ(TagName::empty.item(), nullptr);
    // Keys are case-sensitive, as ExifTool prints them.
    EXPECT_EQ(tagName("EXIF:artist").item(), nullptr);
    const auto& exif = TagStream::streamEXIF.items();
    ASSERT_GT(exif.size(), 300u);
    EXPECT_TRUE(std::is_sorted(exif.begin(), exif.end(), [](auto* a, auto* b) { return *a < *b; }));
    EXPECT_TRUE(
        std::all_of(exif.begin(), exif.end(), [](auto* i) { return i->stream() == TagStream::streamEXIF; }));
    size_t total = 0;
    for (const TagStream& s : TagStream::allCases())
        total += s.items().size();
    EXPECT_EQ(total, TagItem::allCases().size());
    EXPECT_TRUE(TagStream("NoSuchFamily").items().empty());
}

TEST(TagCatalogue, KeepsChoicesTheBestOfRepeatedDefinitionsAndTheCuratedKinds) {
    const TagItem& orientation = TagItem::itemEXIFOrientation();
    ASSERT_EQ(orientation.choices().size(), 8u);
    EXPECT_EQ(orientation.choices()[0].value, "1");
    EXPECT_EQ(orientation.choices()[0].title, "Horizontal (normal)");
    // QuickTime:Model is defined in several tables; the writable text one wins.
    EXPECT_TRUE(TagItem::itemQuickTimeModel().isWritable());
    EXPECT_EQ(TagItem::itemQuickTimeModel().type(), TagType::string);
    // XMP:Rating is xmp:Rating (a number), not the IPTC Extension structure.
    EXPECT_EQ(TagItem::itemXMPRating().type(), TagType::real);
    struct Kind {
        const TagItem& item;
        int ordinal;
    };
    const Kind kinds[] = {
        {TagItem::itemEXIFDateTimeOriginal(), 5},
        {TagItem::itemQuickTimeContentCreateDate(), 6},
        {TagItem::itemXMPCreateDate(), 7},
        {TagItem::itemFileFileModifyDate(), 7},
        {TagItem::itemIPTCCountry_PrimaryLocationCode(), 40},
        {TagItem::itemIPTCDateCreated(), 41},
        {TagItem::itemIPTCTimeCreated(), 42},
        {TagItem::itemEXIFGPSTimeStamp(), 43},
        {TagItem::itemEXIFGPSDateStamp(), 44},
    };
    for (const Kind& k : kinds) {
        EXPECT_EQ(k.item.type().ordinal(), k.ordinal) << k.item.name().rawValue();
        EXPECT_EQ(k.item.arrangement(), TagItem::Arrangement::singleValue) << k.item.name().rawValue();
    }
    EXPECT_EQ(tagName("XMP:Approved").item()->type(), TagType::boolean);
    EXPECT_EQ(tagName("QuickTime:CreateDate").item()->type(), TagType::localDateTime);
    // IPTC digit strings stay text: "01" keeps its zero.
    EXPECT_EQ(TagItem::itemIPTCEditorialUpdate().converter()->stringValueFromStringValue("01"), "01");
    const TagItem& tags = TagItem::itemFileMDItemUserTags();
    EXPECT_EQ(tags.arrangement(), TagItem::Arrangement::dynamicSequence);
    DynamicValue v = tags.nativeValueFromStringValue("Red, Work");
    ASSERT_TRUE(v.arrayValue());
    EXPECT_EQ(v.arrayValue()->size(), 2u);
    EXPECT_EQ(tags.stringValueFromNativeValue(v), "Red,Work");
}

TEST(TagCatalogue, DisplayOrderPutsTheMainFamiliesFirstAndSortsTheRestByText) {
    EXPECT_EQ(TagStream::streamFile.index(), 0);
    EXPECT_EQ(TagStream::streamEXIF.index(), 1); // then IPTC and XMP, as the order checks below say
    EXPECT_EQ(TagStream::streamAFCP.index(), 4);
    EXPECT_EQ(TagStream("NoSuchFamily").index(), std::nullopt);
    std::set<int> indexes;
    for (const TagStream& s : TagStream::allCases())
        indexes.insert(*s.index());
    EXPECT_EQ(indexes.size(), TagStream::allCases().size());
    EXPECT_EQ(*indexes.rbegin(), static_cast<int>(TagStream::allCases().size()) - 1);
    // Catalogue order behind the first four.
    EXPECT_LT(*TagStream::streamAPP8.index(), *TagStream::streamZIP.index());
    const TagStream unknownA("AAA"), unknownZ("zzz");
    EXPECT_TRUE(TagStream::sortWithIndex(TagStream::streamFile, TagStream::streamEXIF));
    EXPECT_FALSE(TagStream::sortWithIndex(TagStream::streamXMP, TagStream::streamIPTC));
    EXPECT_TRUE(TagStream::sortWithIndex(TagStream::streamXMP, TagStream::streamAFCP));
    // Deliberately non-strict between indexed families.
    EXPECT_TRUE(TagStream::sortWithIndex(TagStream::streamEXIF, TagStream::streamEXIF));
    // Text order as soon as one side has no index; equal unknowns are not ordered.
    EXPECT_TRUE(TagStream::sortWithIndex(unknownA, TagStream::streamEXIF));
    EXPECT_FALSE(TagStream::sortWithIndex(TagStream::streamEXIF, unknownA));
    EXPECT_TRUE(TagStream::sortWithIndex(TagStream::streamXMP, unknownZ));
    EXPECT_FALSE(TagStream::sortWithIndex(unknownZ, unknownZ));
}

TEST(TagCatalogue, MakerFamiliesFoldToMakerNotes) {
    const auto& makers = TagStream::makerStreams();
    for (const TagStream* s : {&TagStream::streamCanon, &TagStream::streamNikon, &TagStream::streamSony,
                               &TagStream::streamOlympus, &TagStream::streamCanonRaw})
        EXPECT_NE(std::find(makers.begin(), makers.end(), *s), makers.end()) << s->rawValue();
    EXPECT_TRUE(TagStream::streamCanon.isMakerStream());
    EXPECT_EQ(TagStream::streamCanon.makerFamilyFixed(), TagStream::streamMakerNotes);
    EXPECT_EQ(TagStream::streamEXIF.makerFamilyFixed(), TagStream::streamEXIF);
    EXPECT_FALSE(TagStream::streamMakerNotes.isMakerStream());
    EXPECT_EQ(TagStream::streamMakerNotes.makerFamilyFixed(), TagStream::streamMakerNotes);
    EXPECT_EQ(TagStream("NoSuchFamily").makerFamilyFixed(), TagStream("NoSuchFamily"));

    TagName serial = TagItem::itemNikonSerialNumber().name();
    EXPECT_TRUE(serial.isInMakerStream());
    EXPECT_TRUE(serial.isInG0Stream());
    EXPECT_EQ(serial.makerFamilyFixed().rawValue(), "MakerNotes:SerialNumber");
    EXPECT_EQ(TagItem::itemEXIFArtist().name().makerFamilyFixed(), TagItem::itemEXIFArtist().name());
}

TEST(TagCatalogue, FirstUseFromManyThreadsLoadsOnce) {
    // Each test runs in a process of its own: the threads race the first loads of four families and
    // of the whole list, each of which must happen once (ThreadSanitizer watches the rest).
    const std::pair<const char*, const char*> names[] = {
        {"IPTC", "By-line"}, {"EXIF", "Artist"}, {"XMP", "Subject"}, {"Nikon", "Lens"}};
    std::vector<std::thread> threads;
    std::vector<const TagItem*> seen(8);
    std::vector<size_t> counts(seen.size());
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&, i] {
            const auto& [family, key] = names[i % 4];
            seen[i] = TagCatalogue::shared().find(family, key);
            counts[i] =
                (i % 2 ? TagCatalogue::shared().items() : TagCatalogue::shared().family(family)->items())
                    .size();
        });
    for (auto& t : threads)
        t.join();
    for (size_t i = 0; i < seen.size(); ++i) {
        ASSERT_NE(seen[i], nullptr) << names[i % 4].first;
        EXPECT_EQ(seen[i], seen[i % 4]);
        EXPECT_EQ(seen[i]->key().rawValue(), names[i % 4].second);
        EXPECT_EQ(counts[i], counts[i % 4]);
        // Found alone or in the family's list, an item is one object.
        const auto& list = TagCatalogue::shared().family(names[i % 4].first)->items();
        EXPECT_NE(std::find(list.begin(), list.end(), seen[i]), list.end()) << names[i % 4].first;
    }
    EXPECT_EQ(counts[1], counts[3]) << "the whole list";
    EXPECT_EQ(seen[0], &TagItem::itemIPTCBy_line());
}

TEST(TagCatalogue, AnItemFoundBeforeItsFamilysListIsTheObjectTheListHolds) {
    // Each test runs in a process of its own: no DICOM row has been parsed yet. Lookups find their row
    // alone (the first, the last, one between, and keys before, after and between them that aren't
    // there), then the list is parsed and must hold those very objects.
    const TagCatalogue::Family& dicom = *TagCatalogue::shared().family("DICOM");
    const char* keys[] = {"ACoordOfBottomRightCorner", "ZoomFactor", "PatientAge", "PatientAge"};
    std::vector<const TagItem*> found;
    for (const char* key : keys) {
        found.push_back(dicom.find(key));
        ASSERT_NE(found.back(), nullptr) << key;
        EXPECT_EQ(found.back()->key().rawValue(), key);
        EXPECT_EQ(found.back()->stream().rawValue(), "DICOM");
    }
    EXPECT_EQ(found[2], found[3]) << "a row is parsed once";
    for (const char* missing : {"AAA", "zzz", "PatientAgeX", "Patient", ""})
        EXPECT_EQ(dicom.find(missing), nullptr) << missing;
    const auto& items = dicom.items();
    for (const TagItem* item : found)
        EXPECT_NE(std::find(items.begin(), items.end(), item), items.end()) << item->key().rawValue();
    EXPECT_EQ(dicom.find("PatientAge"), found[2]);
    EXPECT_TRUE(std::is_sorted(items.begin(), items.end(), [](auto* a, auto* b) { return *a < *b; }));
    EXPECT_EQ(std::adjacent_find(items.begin(), items.end(), [](auto* a, auto* b) { return *a == *b; }),
              items.end());
}

// Every constant the library names exists in the catalogue (a missing row throws on first use) and
// is the catalogue's own entry for its family and key, not a copy or a neighbour.
TEST(TagItemConstants, EachConstantIsItsCatalogueRow) {
#define CORVANE_TAG_ITEM(fn, family, key)                                                                    \
    EXPECT_EQ(&TagItem::fn(), TagItem::find(family, key)) << family ":" key;
#include "corvane/tag_value/detail/TagItemConstantList.inc"
#undef CORVANE_TAG_ITEM
}

TEST(CatalogueWithExifTool, KnowsEveryTagExifToolWritesAndReadsBack) {
    test::TemporaryFolder folder;
    fs::path jpeg = test::makeJPEG(folder / "a.jpg");
    test::tagWithExifTool(jpeg,
                          {"-EXIF:Artist=Ann", "-EXIF:DateTimeOriginal=2024:05:01 12:00:00",
                           "-EXIF:GPSLatitude=48.85", "-EXIF:GPSLatitudeRef=N", "-IPTC:Keywords=sea",
                           "-IPTC:Keywords=sun", "-IPTC:By-line=Bob", "-XMP:Subject=sea", "-XMP:Rating=4",
                           "-XMP:CountryCode=FR", "-XMP:CreateDate=2024:05:01 12:00:00+02:00"});
    fs::path mov = test::makeMOV(folder / "b.mov");
    test::tagWithExifTool(mov, {"-QuickTime:Title=Holiday", "-QuickTime:Keyword=sea"});
    Resolution r = resolve({jpeg.string(), mov.string()});
    EXPECT_GT(r.total, 60);
    EXPECT_TRUE(r.unknown.empty()) << r.unknown.size() << " unknown, first " << r.unknown.front();
}

TEST(CatalogueWithExifTool, KnowsTheTagsOfCameraFiles) {
    const fs::path corpus = test::corpusFolder();
    std::vector<std::string> files;
    for (const char* f :
         {"jpeg/exif-samples/Canon_40D.jpg", "jpeg/exif-samples/DSCN0010.jpg", "cr2/exiftool/CanonRaw.cr2",
          "nef/exiftool/Nikon.nef", "mov/exiftool/QuickTime.mov"})
        if (fs::exists(corpus / f)) files.push_back((corpus / f).string());
    if (files.empty()) GTEST_SKIP() << "no camera files under " << corpus;
    Resolution r = resolve(files);
    ASSERT_GT(r.total, 300);
    // Only composite previews that ExifTool files under a maker's preview group stay unknown.
    EXPECT_LE(r.unknown.size(), static_cast<size_t>(r.total / 100)) << "first unknown: " << r.unknown.front();
}
