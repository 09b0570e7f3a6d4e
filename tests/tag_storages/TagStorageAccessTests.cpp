// Access rights of a storage: folder and File family, the format table, and the fallback for
// families a format doesn't declare.

#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TagStorage storageAt(const char* path) {
    return TagStorage(TagStorageSource(path));
}

const TagName& artist() {
    return TagItem::itemEXIFArtist().name();
}
const TagName& byLine() {
    return TagItem::itemIPTCBy_line().name();
}

TEST(TagStorageSource, FolderAssetAndCopies) {
    const TagStorageSource asset("/tmp/IMG_1.HEIC", AssetHandle("A1/L0/001"), std::string("secret"));
    EXPECT_TRUE(asset.isAsset());
    EXPECT_FALSE(asset.isFolder());
    EXPECT_TRUE(TagStorageSource("/photos/trip").isFolder());
    EXPECT_TRUE(TagStorageSource("/photos/.config").isFolder()) << "a leading dot is no extension";
    // A copy elsewhere, or with another password, is a plain file.
    EXPECT_EQ(asset.withURL("/photos/copy.heic"),
              TagStorageSource("/photos/copy.heic", std::nullopt, std::string("secret")));
    EXPECT_EQ(asset.withPassword(std::nullopt), TagStorageSource("/tmp/IMG_1.HEIC"));
}

// The access of a tag in a storage, with or without a value in the file, and whether an edit is
// taken: canEditValue and setValue agree, and a refused edit leaves the value as it was. A folder,
// the File family of any format and a format not in the table give every right; a family the format
// doesn't declare may change only where the file holds it; a format never answers n.
TEST(TagStorageAccess, FormatsFamiliesAndValuesInTheFileDecide) {
    const TagName unknown(TagStream::streamEXIF, TagKey("NotInTheCatalogue"));
    const TagName composite = TagItem::itemCompositeImageWidth().name(); // not writable
    const TagName quickTimeTitle = TagItem::itemQuickTimeTitle().name();
    const TagName profile(TagStream::streamICC_Profile, TagKey("ProfileDescription"));
    struct Case {
        const char* path;
        TagName tag;
        bool held; // the file has a value
        std::optional<TagAccess> access;
        std::optional<bool> editable;
    };
    const std::vector<Case> cases{
        {"/photos/trip", artist(), false, TagAccess::rwc, true},
        {"/photos/trip", quickTimeTitle, false, TagAccess::rwc, true},
        {"/photos/trip", TagName(TagStream::streamZIP, TagKey("Any")), false, TagAccess::rwc, std::nullopt},
        {"/photos/trip", unknown, true, std::nullopt, false},
        {"/photos/trip", composite, false, std::nullopt, false},
        {"/photos/clip.mp3", TagItem::itemFileFileModifyDate().name(), false, TagAccess::rwc, std::nullopt},
        {"/photos/clip.mp3", TagName(TagStream::streamID3, TagKey("Title")), false, TagAccess::r,
         std::nullopt},
        {"/photos/data.qqq", byLine(), false, TagAccess::rwc, true},
        {"/photos/shot.JpG", artist(), false, TagAccess::rwc, true}, // extension looked up upper-cased
        {"/photos/shot.jpg", unknown, true, std::nullopt, false},
        {"/photos/shot.jpg", composite, false, std::nullopt, false},
        {"/photos/shot.heic", profile, false, TagAccess::rw, std::nullopt},
        {"/photos/shot.3fr", artist(), true, TagAccess::r, false},   // EXIF read only, even where held
        {"/photos/shot.heic", byLine(), false, TagAccess::r, false}, // HEIC declares no IPTC
        {"/photos/shot.heic", byLine(), true, TagAccess::rw, true},
        {"/photos/shot.bmp", artist(), false, TagAccess::r, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.path) + " " + c.tag.rawValue() + (c.held ? " held" : ""));
        TagStorage storage = storageAt(c.path);
        if (c.held) storage.setOriginalValue("Ann", c.tag);
        if (c.access) {
            EXPECT_EQ(storage.access(c.tag), *c.access);
            EXPECT_TRUE(storage.canReadValue(c.tag));
        }
        if (!c.editable) continue;
        EXPECT_EQ(storage.canEditValue(c.tag), *c.editable);
        const std::optional<std::string> before = storage.currentValue(c.tag);
        EXPECT_EQ(storage.setValue("Bob", c.tag), *c.editable);
        EXPECT_EQ(storage.isEdited(), *c.editable);
        EXPECT_EQ(storage.currentValue(c.tag), *c.editable ? std::optional<std::string>("Bob") : before);
    }
    EXPECT_EQ(storageAt("/photos/trip").mediaType(), MediaType::typeFolder());
    EXPECT_FALSE(storageAt("/photos/data.qqq").mediaType().has_value());
}

TEST(TagStorageAccess, DescriptionsShowFolderSuffixAndHome) {
    const char* home = std::getenv("HOME");
    ASSERT_NE(home, nullptr);
    const std::string homePath = std::string(home);

    TagStorage file(TagStorageSource(homePath + "/Pictures/shot.jpg"));
    EXPECT_EQ(file.pathDescription(), "~/Pictures/shot.jpg");
    EXPECT_EQ(file.nameDescription(), "shot.jpg");

    TagStorage folder(TagStorageSource("/srv/photos/trip/"));
    EXPECT_EQ(folder.pathDescription(), "/srv/photos/trip/*");
    EXPECT_EQ(folder.nameDescription(), "trip/*");
    folder.setRecurseSubfolders(true);
    folder.setFilePathFilter(ETPathFilter{"jpg", "nef"});
    EXPECT_EQ(folder.pathDescription(), "/srv/photos/trip/**.JPG|NEF");
    EXPECT_EQ(folder.nameDescription(), "trip/**.JPG|NEF");
    folder.setRecurseSubfolders(false);
    folder.setFilePathFilter(ETPathFilter());
    EXPECT_EQ(folder.nameDescription(), "trip/*") << "an empty filter adds nothing";
}

} // namespace
} // namespace corvane
