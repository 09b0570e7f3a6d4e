// Original, written and current values: the setters' results and the invariants they keep.

#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include "ReadBack.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

const TagName& artist() {
    return TagItem::itemEXIFArtist().name();
}
const TagName& copyright() {
    return TagItem::itemEXIFCopyright().name();
}
const TagName& byLine() {
    return TagItem::itemIPTCBy_line().name();
}

TagStorage fileStorage() {
    TagStorage storage(TagStorageSource("/photos/shot.jpg"));
    storage.setOriginalValue("Ann", artist());
    return storage;
}

TagStorage folderStorage() {
    return TagStorage(TagStorageSource("/photos/trip"));
}

TEST(TagStorageValues, SettingTheFileValueAgainOrARestoreRemovesTheEdit) {
    TagStorage storage = fileStorage();
    EXPECT_TRUE(storage.setValue("Bob", artist()));
    EXPECT_TRUE(storage.isValueEdited(artist()));
    EXPECT_FALSE(storage.setValue("Bob", artist())) << "same written value again";
    EXPECT_TRUE(storage.setValue("Ann", artist())) << "back to the file's value";
    EXPECT_FALSE(storage.isEdited());
    EXPECT_FALSE(storage.setValue("Ann", artist()));

    // A restore takes the edit back.
    storage.setValue("Bob", artist());
    EXPECT_TRUE(storage.setValue(std::nullopt, artist()));
    EXPECT_EQ(storage.currentValue(artist()), "Ann");
    EXPECT_FALSE(storage.isEdited());
    // A restore on a tag with neither value nor edit changes nothing.
    EXPECT_FALSE(storage.setValue(std::nullopt, copyright()));
    // A restore of an unedited tag that has a value in the file reports a change (a restore is
    // never compared with the file's value), and still leaves nothing edited.
    EXPECT_TRUE(storage.setValue(std::nullopt, artist()));
    EXPECT_FALSE(storage.isEdited());
}

TEST(TagStorageValues, CurrentValueIsTheEditElseTheOriginalAndTagListsAreSortedAndUnited) {
    TagStorage storage = fileStorage();
    storage.setOriginalValue("Ed", byLine());
    EXPECT_EQ(storage.currentValue(copyright()), std::nullopt);
    EXPECT_TRUE(storage.setValue("Bob", artist()));
    EXPECT_EQ(storage.currentValue(artist()), "Bob");
    // A new tag is an edit without an original.
    EXPECT_TRUE(storage.setValue("(c)", copyright()));
    EXPECT_FALSE(storage.originalValues().contains(copyright()));
    EXPECT_EQ(storage.currentValue(copyright()), "(c)");
    EXPECT_EQ(storage.currentTagNames(), (std::vector<TagName>{artist(), copyright(), byLine()}));
    EXPECT_EQ(storage.originalTagNames(), (std::vector<TagName>{artist(), byLine()}));
    EXPECT_EQ(storage.writtenTagNames(), (std::vector<TagName>{artist(), copyright()}));
    EXPECT_EQ(storage.debugDescription(), "EXIF:Artist:Bob\nEXIF:Copyright:(c)\nIPTC:By-line:Ed\n");
    // A clear of a known tag is an edit to "".
    EXPECT_TRUE(storage.setValue("", artist()));
    EXPECT_EQ(storage.writtenValue(artist()), "");
    EXPECT_EQ(storage.currentValue(artist()), "");
}

TEST(TagStorageValues, ClearingAnUnknownTagIsANoOpOnAFileButAnEditOnAFolderWithoutValue) {
    TagStorage file = fileStorage();
    EXPECT_TRUE(file.setValue("", copyright()));
    EXPECT_FALSE(file.isValueEdited(copyright()));
    EXPECT_FALSE(file.isEdited());

    TagStorage folder = folderStorage();
    EXPECT_TRUE(folder.setValue("", copyright()));
    EXPECT_EQ(folder.writtenValue(copyright()), "");
    EXPECT_TRUE(folder.isEdited());
    EXPECT_FALSE(folder.setValue("", copyright())) << "already cleared";
    // Empty strings are no values of their family.
    folder.setOriginalValue("", byLine());
    EXPECT_FALSE(folder.hasValues(TagStream::streamEXIF));
    EXPECT_FALSE(folder.hasValues(TagStream::streamIPTC));
    folder.setValue("Ed", byLine());
    EXPECT_TRUE(folder.hasValues(TagStream::streamIPTC));
    EXPECT_FALSE(folder.hasValues(TagStream::streamXMP));
}

TEST(TagStorageValues, SetOriginalValueKeepsInvariants) {
    TagStorage storage(TagStorageSource("/photos/shot.jpg"));
    EXPECT_FALSE(storage.setOriginalValue(std::nullopt, artist())) << "nothing to remove";
    EXPECT_FALSE(storage.setOriginalValue("", artist())) << "an empty value in a file is no value";
    EXPECT_TRUE(storage.originalStreams().empty());

    EXPECT_TRUE(storage.setOriginalValue("Ann", artist()));
    EXPECT_TRUE(storage.originalStreams().contains(TagStream::streamEXIF));
    EXPECT_FALSE(storage.setOriginalValue("Ann", artist())) << "unchanged";

    // A pending edit equal to the new original becomes the original.
    storage.setValue("Bob", artist());
    EXPECT_TRUE(storage.setOriginalValue("Bob", artist()));
    EXPECT_FALSE(storage.isValueEdited(artist()));

    // A differing edit stays, and so does one when the original goes away.
    storage.setValue("Cid", artist());
    EXPECT_TRUE(storage.setOriginalValue("Dan", artist()));
    EXPECT_EQ(storage.writtenValue(artist()), "Cid");
    EXPECT_TRUE(storage.setOriginalValue(std::nullopt, artist()));
    EXPECT_FALSE(storage.originalValues().contains(artist()));
    EXPECT_EQ(storage.writtenValue(artist()), "Cid");

    // An empty original stored from a read is no value to remove; a folder keeps it as its value.
    storage.store(DynamicValue(std::string()), TagItem::itemEXIFCopyright());
    ASSERT_EQ(storage.originalValues().at(copyright()), "");
    EXPECT_FALSE(storage.setOriginalValue(std::nullopt, copyright()));
    TagStorage folder = folderStorage();
    EXPECT_TRUE(folder.setOriginalValue("", artist()));
    EXPECT_FALSE(folder.setValue("", artist())) << "equal to the original";
}

TEST(TagStorageValues, UnsafeSettersSkipAccessAndComparison) {
    TagStorage storage = fileStorage();
    const TagName unknown(TagStream::streamEXIF, TagKey("NotInTheCatalogue"));
    EXPECT_TRUE(storage.unsafeSetValue("x", unknown));
    EXPECT_TRUE(storage.unsafeSetValue("Ann", artist()));
    EXPECT_EQ(storage.writtenValue(artist()), "Ann") << "no comparison with the original";
    EXPECT_TRUE(storage.unsafeSetValue(std::nullopt, artist()));
    EXPECT_FALSE(storage.isValueEdited(artist()));
    EXPECT_TRUE(storage.unsafeSetValue(std::nullopt, artist())) << "always true";

    // Taking over another storage's current values makes each an edit.
    TagStorage other(TagStorageSource("/photos/other.jpg"));
    other.setOriginalValue("Ann", artist()); // same as ours: still becomes an edit
    other.setOriginalValue("Old", copyright());
    other.setValue("New", copyright());       // its current value is the written one
    storage.unsafeSetValue("Kept", byLine()); // not named by the other storage
    storage.unsafeSetValues(other);
    EXPECT_EQ(storage.writtenValue(artist()), "Ann");
    EXPECT_EQ(storage.writtenValue(copyright()), "New");
    EXPECT_EQ(storage.writtenValue(byLine()), "Kept");
    EXPECT_EQ(storage.originalValues().size(), 1u);
}

TEST(TagStorageValues, FlushChangesFoldsEditsIntoOriginals) {
    TagStorage storage = fileStorage();
    storage.setOriginalValue("Old", byLine());
    storage.setOriginalValue("(c)", copyright());
    storage.setValue(" Bob \n", artist());
    storage.setValue(" \t\n", byLine()); // blank: stored as any string
    storage.setValue("", copyright());   // clear
    storage.setValue("Headline", TagItem::itemXMPHeadline().name());
    EXPECT_EQ(storage.writtenValue(byLine()), " \t\n");

    EXPECT_EQ(storage.flushChanges(),
              (std::vector<TagName>{artist(), copyright(), byLine(), TagItem::itemXMPHeadline().name()}));
    EXPECT_FALSE(storage.isEdited());
    // The value is kept untrimmed; blank and cleared values leave no original.
    const test::Values expected{{"EXIF:Artist", " Bob \n"},
                                {"IPTC:By-line", {}},
                                {"EXIF:Copyright", {}},
                                {"XMP:Headline", "Headline"}};
    EXPECT_EQ(test::valuesOf(storage, expected), expected);
    EXPECT_TRUE(storage.flushChanges().empty());

    storage.setValue("\u00a0\u2003", artist()); // no-break and em spaces are blank too
    storage.flushChanges();
    EXPECT_FALSE(storage.originalValues().contains(artist()));
}

TEST(TagStorageValues, ReloadKeepsPendingEditsEvenWhenNowEqual) {
    TagStorage storage = fileStorage();
    storage.setOriginalValue("Old", copyright());
    storage.setValue("Bob", artist());

    TagStorage reread(TagStorageSource("/photos/shot.jpg"));
    reread.setOriginalValue("Bob", artist());
    reread.setOriginalValue("Ed", byLine());

    const std::vector<TagName> names = storage.reloadValues(reread);
    const std::vector<TagName> expected{artist(), copyright(), artist(), byLine()};
    EXPECT_EQ(names, expected);
    EXPECT_EQ(storage.originalValues(), reread.originalValues());
    EXPECT_EQ(storage.originalStreams(), reread.originalStreams());
    EXPECT_EQ(storage.writtenValue(artist()), "Bob") << "the edit stays although equal";
}

TEST(TagStorageValues, CleanStorageRemovesStreamsFromBothDictionaries) {
    TagStorage storage = fileStorage();
    storage.setOriginalValue("Ed", byLine());
    storage.setValue("(c)", copyright());
    storage.setValue("Headline", TagItem::itemXMPHeadline().name());

    const std::vector<TagName> removed = storage.cleanStorage({TagStream::streamEXIF, TagStream::streamIPTC});
    const std::vector<TagName> expected{artist(), copyright(), byLine()};
    EXPECT_EQ(removed, expected);
    EXPECT_EQ(storage.currentTagNames(), std::vector<TagName>{TagItem::itemXMPHeadline().name()});
    EXPECT_TRUE(storage.cleanStorage({}).empty());
}

// A copy shares its storage's temporary URL: the asset save's test reads what the writer wrote to its
// copy at the editor's URL.
TEST(TagStorageValues, CopiesAreSnapshotsAndEachStorageHasItsOwnTemporaryURL) {
    TagStorage storage(TagStorageSource("/photos/shot.JPG"));
    EXPECT_EQ(storage.temporaryURL().extension(), ".JPG");
    EXPECT_NE(storage.temporaryURL(), TagStorage(TagStorageSource("/photos/shot.JPG")).temporaryURL());
    TagStorage snapshot = storage;
    storage.setValue("Bob", artist());
    EXPECT_FALSE(snapshot.isEdited());
}

} // namespace
} // namespace corvane
