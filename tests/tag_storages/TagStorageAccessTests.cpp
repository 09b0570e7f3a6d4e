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

    const TagStorageSource moved = asset.withURL("/photos/copy.heic");
    EXPECT_EQ(moved.url(), std::filesystem::path("/photos/copy.heic"));
    EXPECT_FALSE(moved.isAsset());
    EXPECT_EQ(moved.password(), "secret");

    const TagStorageSource unlocked = asset.withPassword(std::nullopt);
    EXPECT_EQ(unlocked.url(), asset.url());
    EXPECT_FALSE(unlocked.isAsset());
    EXPECT_FALSE(unlocked.password().has_value());
    EXPECT_NE(unlocked, asset);
    EXPECT_EQ(asset, TagStorageSource("/tmp/IMG_1.HEIC", AssetHandle("A1/L0/001"), std::string("secret")));
}

// A folder, the File family of any format and a format not in the table give every right.
TEST(TagStorageAccess, FoldersFileTagsAndUnknownFormatsAreRWC) {
    TagStorage folder = storageAt("/photos/trip");
    for (const TagStream& stream : {TagStream::streamEXIF, TagStream::streamQuickTime, TagStream::streamZIP})
        EXPECT_EQ(folder.access(TagName(stream, TagKey("Anything"))), TagAccess::rwc) << stream.rawValue();
    EXPECT_TRUE(folder.canEditValue(artist()));
    EXPECT_TRUE(folder.canEditValue(TagItem::itemQuickTimeTitle().name()));
    EXPECT_EQ(folder.mediaType(), MediaType::typeFolder());

    TagStorage mp3 = storageAt("/photos/clip.mp3"); // a read-only format
    EXPECT_EQ(mp3.access(TagItem::itemFileFileModifyDate().name()), TagAccess::rwc);
    EXPECT_EQ(mp3.access(TagName(TagStream::streamID3, TagKey("Title"))), TagAccess::r);

    TagStorage unknown = storageAt("/photos/data.qqq");
    EXPECT_FALSE(unknown.mediaType().has_value());
    EXPECT_EQ(unknown.access(byLine()), TagAccess::rwc);
    EXPECT_TRUE(unknown.canEditValue(byLine()));
}

TEST(TagStorageAccess, TagsOutsideTheCatalogueOrNotWritableAreNeverEditable) {
    const TagName unknown(TagStream::streamEXIF, TagKey("NotInTheCatalogue"));
    for (const char* path : {"/photos/trip", "/photos/shot.jpg"}) {
        TagStorage storage = storageAt(path);
        storage.setOriginalValue("x", unknown);
        EXPECT_FALSE(storage.canEditValue(unknown)) << path;
        EXPECT_FALSE(storage.setValue("y", unknown)) << path;
        EXPECT_FALSE(storage.isEdited());
        const TagName& composite = TagItem::itemCompositeImageWidth().name();
        ASSERT_FALSE(TagItem::itemCompositeImageWidth().isWritable());
        EXPECT_FALSE(storage.setValue("10", composite)) << path;
    }
}

TEST(TagStorageAccess, DeclaredAccessOfTheFormatDecides) {
    TagStorage jpeg = storageAt("/photos/shot.JpG"); // extension looked up upper-cased
    EXPECT_EQ(jpeg.access(artist()), TagAccess::rwc);
    EXPECT_TRUE(jpeg.canEditValue(artist()));
    EXPECT_TRUE(jpeg.setValue("Ann", artist())) << "creating a tag of an rwc family";

    // HEIC: ICC_Profile is rw, so only a tag the file holds may change.
    TagStorage heic = storageAt("/photos/shot.heic");
    const TagName description = TagName(TagStream::streamICC_Profile, TagKey("ProfileDescription"));
    EXPECT_EQ(heic.access(description), TagAccess::rw);

    // 3FR: EXIF read only, even for a tag the file holds.
    TagStorage raw = storageAt("/photos/shot.3fr");
    raw.setOriginalValue("Ann", artist());
    EXPECT_EQ(raw.access(artist()), TagAccess::r);
    EXPECT_TRUE(raw.canReadValue(artist()));
    EXPECT_FALSE(raw.canEditValue(artist()));
    EXPECT_FALSE(raw.setValue("Bob", artist()));
    EXPECT_EQ(raw.originalValue(artist()), "Ann");
}

TEST(TagStorageAccess, UndeclaredFamilyFallsBackOnWhatTheFileHolds) {
    // HEIC declares no IPTC: a tag the file holds can be read and changed, any other only read.
    TagStorage heic = storageAt("/photos/shot.heic");
    EXPECT_EQ(heic.access(byLine()), TagAccess::r);
    EXPECT_TRUE(heic.canReadValue(byLine()));
    EXPECT_FALSE(heic.canEditValue(byLine()));
    EXPECT_FALSE(heic.setValue("Ed", byLine())) << "creating IPTC in HEIC is refused";

    heic.setOriginalValue("Ed", byLine());
    EXPECT_EQ(heic.access(byLine()), TagAccess::rw);
    EXPECT_TRUE(heic.canEditValue(byLine()));
    EXPECT_TRUE(heic.setValue("Flo", byLine()));
    EXPECT_EQ(heic.currentValue(byLine()), "Flo");

    // A format with no family at all never answers n either.
    TagStorage bmp = storageAt("/photos/shot.bmp");
    EXPECT_EQ(bmp.access(artist()), TagAccess::r);
    EXPECT_TRUE(bmp.canReadValue(artist()));
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
