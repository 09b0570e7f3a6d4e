// What a storage offers the engines: file resources, file-system attributes, and the files a
// writer must touch.

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include "ReadBack.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;

const TagName& createDate() {
    return TagItem::itemFileFileCreateDate().name();
}
const TagName& modifyDate() {
    return TagItem::itemFileFileModifyDate().name();
}

// The file's own resources as the reader completes them from the source are the reader's test.
TEST(TagStorageResources, FinderResourcesRoundTripThroughTheStorage) {
    TagStorage storage(TagStorageSource("/photos/trip/IMG_1.JPG"));
    FinderResources read;
    read.setCreateDate(Date(1714564800)); // 2024-05-01 12:00:00 UTC
    read.setFinderTags(std::vector<std::string>{"Red", "Blue"});
    storage.storeFinderResourcesValues(read);
    // The name's parts are stored too; an absent date is stored empty.
    const test::Values expected{{"File:FileName", "IMG_1.JPG"},
                                {"File:Directory", "/photos/trip"},
                                {"File:FilePath", "/photos/trip/IMG_1.JPG"},
                                {"File:FileModifyDate", ""}};
    EXPECT_EQ(test::valuesOf(storage, expected), expected);
    const DynamicValue created = storage.currentNativeValue(TagItem::itemFileFileCreateDate());
    ASSERT_NE(created.dateValue(), nullptr) << storage.originalValues().at(createDate());
    EXPECT_EQ(*created.dateValue(), Date(1714564800));

    // Nothing written, or a date that converts to none: nothing to write back.
    EXPECT_TRUE(storage.prepareFinderResourcesValues().isEmpty());
    for (const char* unreadable : {"", "not a date"}) {
        ASSERT_TRUE(storage.setValue(unreadable, createDate()));
        EXPECT_TRUE(storage.prepareFinderResourcesValues().isEmpty()) << unreadable;
    }
    storage.setValue(std::nullopt, createDate());

    // One written attribute brings all three current values along.
    const std::string modified = storage.originalValues().at(createDate());
    ASSERT_TRUE(storage.setValue(modified, modifyDate()));
    const FinderResources toWrite = storage.prepareFinderResourcesValues();
    EXPECT_EQ(toWrite.createDate(), Date(1714564800));
    EXPECT_EQ(toWrite.modifyDate(), Date(1714564800));
    EXPECT_EQ(toWrite.finderTags(), (std::vector<std::string>{"Red", "Blue"}));
}

class WriterFiles : public ::testing::Test {
protected:
    void SetUp() override {
        root_ = temporaryURL("");
        for (const char* name :
             {"a.jpg", "b.NEF", "c.txt", "noext", ".hidden.jpg", "sub/d.jpg", "sub/e.heic"}) {
            fs::create_directories((root_ / name).parent_path());
            std::ofstream(root_ / name) << "x";
        }
        savedTypes_ = KitSettings::shared().supportedFileTypes();
    }
    void TearDown() override {
        KitSettings::shared().setSupportedFileTypes(savedTypes_);
        std::error_code error;
        fs::remove_all(root_, error);
    }
    std::vector<std::string> names(const std::vector<fs::path>& urls) const {
        std::vector<std::string> result;
        for (const fs::path& url : urls)
            result.push_back(url.lexically_relative(fs::canonical(root_)).string());
        return result;
    }
    fs::path root_;
    MediaType::Set savedTypes_;
};

using Names = std::vector<std::string>;

TEST_F(WriterFiles, AFileOrAssetIsOneURLAFolderItsSupportedFilesWithRecursionAndFilter) {
    TagStorage file(TagStorageSource(root_ / "a.jpg"));
    EXPECT_EQ(file.listWriterFileURLs(), std::vector<fs::path>{root_ / "a.jpg"});
    TagStorage asset(TagStorageSource(root_ / "a.jpg", AssetHandle("ABC/L0/001")));
    EXPECT_EQ(asset.listWriterFileURLs(), std::vector<fs::path>{asset.temporaryURL()});

    TagStorage folder{TagStorageSource(root_)};
    EXPECT_EQ(names(folder.listWriterFileURLs()), (Names{"a.jpg", "b.NEF"})) << "no TXT type, no extension";

    folder.setRecurseSubfolders(true);
    EXPECT_EQ(names(folder.listWriterFileURLs()), (Names{"a.jpg", "b.NEF", "sub/d.jpg", "sub/e.heic"}));

    folder.setFilePathFilter(ETPathFilter{"jpg"});
    EXPECT_EQ(names(folder.listWriterFileURLs()), (Names{"a.jpg", "sub/d.jpg"}));

    folder.setFilePathFilter(ETPathFilter());
    EXPECT_EQ(names(folder.listWriterFileURLs()), (Names{"a.jpg", "b.NEF", "sub/d.jpg", "sub/e.heic"}))
        << "an empty filter restricts nothing";

    KitSettings::shared().setSupportedFileTypes({MediaType::typeHEIC(), MediaType::typeNEF()});
    EXPECT_EQ(names(folder.listWriterFileURLs()), (Names{"b.NEF", "sub/e.heic"})) << "the supported types";
}

} // namespace
} // namespace corvane
