// Tag sets: the built-in lists, the JSON forms (current, older, and which error a set that fits
// neither reports), the file wrapper, and the manager's editing, notifications and persistence.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/tag_set/TagSetFile.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/ScratchDefaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <thread>

namespace corvane {
namespace {

using Domain = TagSetManager::Domain;
using json = nlohmann::ordered_json;
using I = TagItem;

std::pair<std::size_t, std::size_t> sectionsAndNames(const TagSet& set) {
    const auto sections = std::count_if(set.entries().begin(), set.entries().end(),
                                        [](const auto& e) { return e.isSection(); });
    return {static_cast<std::size_t>(sections), set.entries().size() - static_cast<std::size_t>(sections)};
}

TagName unknownTag() {
    return TagName(TagStream::streamEXIF, TagKey("NotInTheCatalogue"));
}

TEST(TagSetTest, BuiltInListsAndTheirPopularItems) {
    EXPECT_EQ(sectionsAndNames(TagSet::forImages()), std::make_pair(std::size_t{11}, std::size_t{73}));
    EXPECT_EQ(sectionsAndNames(TagSet::forVideos()), std::make_pair(std::size_t{5}, std::size_t{31}));
    EXPECT_EQ(TagSet::forImages().tagItems().size(), 73u) << "every built-in tag is in the catalogue";

    const auto& images = TagSet::popularImageTagItems();
    const auto& all = TagSet::popularFileTagItems();
    EXPECT_EQ(images.size(), 73u);
    EXPECT_TRUE(std::is_sorted(images.begin(), images.end(), [](auto a, auto b) { return *a < *b; }));
    // File names, dates and XMP dates are in both lists.
    EXPECT_EQ(all.size(), 73u + 31u - 7u);
    EXPECT_TRUE(std::adjacent_find(all.begin(), all.end()) == all.end());
}

TEST(TagSetTest, CurrentAndOlderFormsReadAndASetThatFitsNeitherReportsTheOlderReadersError) {
    const TagSet set({TagSection("Camera"), I::itemEXIFMake().name(), unknownTag()});
    EXPECT_EQ(set.toJSON(), json::parse(R"({"entries": [{"type": "section", "value": "Camera"},
        {"type": "name", "value": "EXIF:Make"}, {"type": "name", "value": "EXIF:NotInTheCatalogue"}]})"));
    EXPECT_EQ(TagSet::fromJSONData(set.jsonData()), set);
    EXPECT_EQ(set.tagItems(), std::unordered_set<const TagItem*>{&I::itemEXIFMake()});
    EXPECT_EQ(TagSet::fromJSONData(R"({"entries": [{"type": "SECTION", "value": "A"}, {"type": "Name",
        "value": "XMP:Subject"}]})"),
              TagSet({TagSection("A"), I::itemXMPSubject().name()}))
        << "types are compared lowercased";
    // The older form: families in order, their headings prefixed with the family.
    const auto older = TagSet::fromJSONData(R"({
        "XMP": [{"type": "Sec", "value": "Camera"}, {"type": "key", "value": "Subject"}],
        "EXIF": [{"type": "KEY", "value": "Make"}, {"type": "sec", "value": "Dates"}]})");
    EXPECT_EQ(older, TagSet({I::itemEXIFMake().name(), TagSection("EXIF Dates"), TagSection("XMP Camera"),
                             I::itemXMPSubject().name()}));
    EXPECT_EQ(TagSet::IndexedEntry(TagSection("Dates")).toJSON(),
              json::parse(R"({"type": "sec", "value": "Dates"})"));
    // One bad entry in the current form: the older reader's complaint about the first entry
    // surfaces, not the bad entry's.
    EXPECT_THAT(
        [] {
            TagSet::fromJSONData(
                R"({"entries": [{"type": "section", "value": "A"}, {"type": "bogus", "value": "x"}]})");
        },
        testing::Throws<TagSet::IndexedEntry::CodingError>(
            testing::Property(&TagSet::IndexedEntry::CodingError::type, "section")));
    EXPECT_THROW(TagSet::fromJSONData(R"({"EXIF": [{"type": "name", "value": "EXIF:Make"}]})"),
                 TagSet::IndexedEntry::CodingError);
    EXPECT_THROW(TagSet::fromJSONData("[1, 2]"), TagSet::DecodingError);
    EXPECT_THROW(TagSet::fromJSONData("{not json"), Error);
}

// The empty description written for none, and a file of the older form, are the tag set command's test.
TEST(TagSetTest, FileOpensBareSetsAndRoundTrips) {
    const TagSet set({TagSection("Camera"), I::itemEXIFMake().name()});
    const auto bare = TagSetFile::fromJSONData(set.jsonData());
    EXPECT_EQ(bare.description(), std::nullopt);
    EXPECT_EQ(bare.tagSet(), set);

    test::TemporaryFolder folder;
    TagSetFile("mine", set).exportTo(folder / "set.json");
    EXPECT_EQ(TagSetFile::fromJSONURL(folder / "set.json"), TagSetFile("mine", set));
    EXPECT_THROW(TagSetFile::fromJSONURL(folder / "missing.json"), FileError);
}

// --- The manager

class TagSetManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        MainQueue::shared().registerCurrentThreadAsMain();
        for (bool isWill : {true, false})
            subscribers.push_back(NotificationCenter::defaultCenter().subscribe(
                std::string(isWill ? TagSetManager::willEditSetsNotification
                                   : TagSetManager::didEditSetsNotification),
                &manager, [this, isWill](const Notification& note) {
                    auto domain = TagSetManager::domain(note);
                    ASSERT_TRUE(domain.has_value());
                    events.push_back(std::string(isWill ? "will " : "did ") +
                                     std::string(TagSetManager::label(*domain)) +
                                     (isMainThread() ? "" : " off main"));
                }));
    }

    std::vector<TagSet::FlatEntry> entries(Domain domain = Domain::application) {
        return manager.tagSet(domain).entries();
    }

    test::ScratchDefaults scratch;
    TagSetManager manager;
    std::vector<std::string> events;
    std::vector<NoteSubscriber> subscribers;
};

// Where a moved block lands is the array moves' test; here, that each edit reaches the set.
TEST_F(TagSetManagerTest, EditsPostTheirPairAndFollowTheirIndexRules) {
    using E = TagSet::FlatEntry;
    const E a = TagSection("A"), make = I::itemEXIFMake().name(), model = I::itemEXIFModel().name(),
            artist = I::itemEXIFArtist().name();
    manager.append(Domain::application, {a, make, model, artist});
    EXPECT_EQ(events, (std::vector<std::string>{"will Application", "did Application"}));
    events.clear();

    manager.append(Domain::application, {});
    manager.insert(Domain::application, {}, 0);
    manager.remove(Domain::application, {});
    manager.move(Domain::application, {}, 0);
    EXPECT_TRUE(events.empty()) << "empty changes return at once";

    manager.rename(Domain::application, 1, "Not a section");
    manager.rename(Domain::application, 9, "Past the end");
    EXPECT_EQ(entries(), (std::vector<E>{a, make, model, artist}));
    EXPECT_EQ(events.size(), 4u) << "renames that change nothing still post";
    manager.rename(Domain::application, 0, "B");
    manager.move(Domain::application, {0, 2}, 4); // B and Model to the end, in order
    EXPECT_EQ(entries(), (std::vector<E>{make, artist, TagSection("B"), model}));
    manager.moveUp(Domain::application, 3);
    manager.moveDown(Domain::application, 0);
    manager.replace(Domain::application, a, 3);
    manager.remove(Domain::application, {1, 2});
    manager.insert(Domain::application, {model}, 1);
    EXPECT_EQ(entries(), (std::vector<E>{artist, model, a}));
    EXPECT_TRUE(entries(Domain::photosExtension).empty()) << "domains are apart";
    EXPECT_EQ(TagSetManager::domain(Notification("X")), std::nullopt);
}

TEST_F(TagSetManagerTest, EditsFromAnotherThreadPostOnTheMainThread) {
    std::atomic<bool> done{false};
    std::thread editor([&] {
        manager.append(Domain::photosExtension, {I::itemEXIFMake().name()});
        done = true;
    });
    EXPECT_TRUE(MainQueue::shared().runUntil([&] { return done.load(); }, std::chrono::seconds(10)));
    editor.join();
    EXPECT_EQ(events, (std::vector<std::string>{"will PhotosExtension", "did PhotosExtension"}));
}

// A set saved to disk and read by the next run is the tag set command's test.
TEST_F(TagSetManagerTest, ReloadSaveAndRestoreGoThroughTheUserDefaults) {
    const TagSet mine({TagSection("Mine"), unknownTag()});
    manager.registerDefault(Domain::application, TagSet::forImages());
    manager.save(Domain::application);
    EXPECT_FALSE(KitSettings::shared().userDefaults()->contains("QRVTagSetApplication")) << "no user set yet";

    manager.reload(Domain::application);
    EXPECT_EQ(manager.tagSet(Domain::application), TagSet::forImages()) << "nothing stored: the default";
    KitSettings::shared().userDefaults()->set("QRVTagSetApplication", "");
    manager.reload(Domain::application);
    EXPECT_EQ(manager.tagSet(Domain::application), TagSet::forImages()) << "empty data counts as nothing";

    manager.edit(Domain::application, [&](TagSet) { return mine; });
    manager.save(Domain::application);
    manager.restore(Domain::application);
    EXPECT_EQ(manager.tagSet(Domain::application), TagSet::forImages());
    manager.reload(Domain::application);
    EXPECT_EQ(manager.tagSet(Domain::application), mine) << "an unknown tag survives a save and reload";

    events.clear();
    KitSettings::shared().userDefaults()->set("QRVTagSetApplication", R"({"entries": 3})");
    EXPECT_THROW(manager.reload(Domain::application), TagSet::DecodingError);
    EXPECT_EQ(manager.tagSet(Domain::application), mine);
    EXPECT_TRUE(events.empty()) << "a failed reload posts nothing";

    manager.restore(Domain::photosExtension);
    EXPECT_TRUE(manager.tagSet(Domain::photosExtension).isEmpty()) << "no default registered";
}

} // namespace
} // namespace corvane
