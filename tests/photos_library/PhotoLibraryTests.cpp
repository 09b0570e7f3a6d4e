// Replacing edited assets in a photo library, on both backends, with the real ExifTool.
#include "task_support/TaskTestSupport.hpp"

#include "corvane/photos_library/FolderPhotoLibrary.hpp"
#include "corvane/photos_library/MemoryPhotoLibrary.hpp"
#include "corvane/photos_scripting/PhotosAppAuthorizer.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/task_support/FileExportToPhotosTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/KitDebugger.hpp"
#include "support/SampleFiles.hpp"
#include "support/SharedPhotoLibrary.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace corvane {
namespace {

using namespace corvane::testing;
using test::exifToolValue;
using test::makeJPEG;
using test::makeMOV;
using test::tagName;
using test::tagWithExifTool;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

std::shared_ptr<TagEditor> assetEditor(PhotoLibrary& library, const std::string& identifier) {
    const auto assets = library.fetchAssets({identifier});
    const auto urls = library.urls(assets);
    return importFiles({TagStorageSource(urls.at(identifier), assets.at(0))}).at(0);
}

std::shared_ptr<SaveTagEditorsTask> save(std::shared_ptr<TagEditor> editor) {
    return performed(SaveTagEditorsTask::create(SaveTagEditorsTask::Settings({std::move(editor)})));
}

// Whatever step of the replacement fails, no asset is lost: the old asset stays until the new one
// exists, and the new one holds the edit.
TEST(PhotoLibrary, replacingAnAssetLosesNothingWhateverStepFails) {
    using Step = MemoryPhotoLibrary::Step;
    const std::vector<std::optional<Step>> steps = {std::nullopt, Step::createAssets, Step::deleteAssets,
                                                    Step::fetch, Step::urls};
    for (const auto& failing : steps) {
        SCOPED_TRACE(failing ? static_cast<int>(*failing) : -1);
        TemporaryFolder folder;
        auto library = std::make_shared<MemoryPhotoLibrary>(folder.makeSubfolder("library"));
        test::SharedPhotoLibrary guard(library);
        const auto original = makeJPEG(folder / "photo.jpg");
        tagWithExifTool(original, {"-EXIF:Artist=Before"});
        const std::string oldID = library->addAsset(original);
        const fs::path oldFile = library->assets().at(0).file;

        auto editor = assetEditor(*library, oldID);
        editor->setValue(std::string("After"), tagName("EXIF:Artist"));
        library->failAt(failing);
        auto task = save(editor);

        const auto assets = library->assets();
        const bool oldKept = std::any_of(assets.begin(), assets.end(),
                                         [&](const auto& a) { return a.localIdentifier == oldID; });
        if (oldKept) {
            EXPECT_EQ(exifToolValue(oldFile, "EXIF:Artist"), "Before");
        }
        for (const auto& asset : assets) {
            if (asset.localIdentifier == oldID) continue;
            EXPECT_EQ(exifToolValue(asset.file, "EXIF:Artist"), "After");
        }
        EXPECT_FALSE(fs::exists(editor->temporaryURL())) << "the temporary copy is removed";

        if (!failing) {
            EXPECT_TRUE(task->errors().empty()) << task->errorListDescription();
            EXPECT_EQ(library->journal(), (std::vector<std::string>{"create MEM-2", "delete MEM-1"}));
            ASSERT_EQ(assets.size(), 1u);
            EXPECT_EQ(editor->source().asset()->localIdentifier(), "MEM-2");
            EXPECT_EQ(editor->source().url(), assets[0].file);
        } else {
            EXPECT_EQ(task->errors().size(), 1u);
            // Creation failed: only the old asset. Any later step: the new asset exists.
            EXPECT_EQ(assets.size(), *failing == Step::deleteAssets ? 2u : 1u);
            EXPECT_EQ(oldKept, *failing == Step::createAssets || *failing == Step::deleteAssets);
            EXPECT_EQ(editor->source().asset()->localIdentifier(), oldID)
                << "the editor moves only once all went well";
        }
    }
}

// A refused library is the save task's to report (its tests check that nothing is written, and the
// authorizer's test below that a refused library says so); the library's part is to run no change
// for editors that are no assets.
TEST(PhotoLibrary, noAssetEditorRunsNoChangeBlock) {
    TemporaryFolder folder;
    auto library = std::make_shared<MemoryPhotoLibrary>(folder.makeSubfolder("library"));
    library->updateAndReplaceAssets({importFiles(sourcesOf({makeJPEG(folder / "plain.jpg")})).at(0)});
    EXPECT_TRUE(library->journal().empty());
}

// The new asset's date and position, from the tags in the order the library takes them.
TEST(PhotoLibrary, creationDateAndLocationComeFromTheTagsInOrder) {
    TemporaryFolder folder;
    MemoryPhotoLibrary library(folder.makeSubfolder("library"));
    library.setClock([] { return Date(1'000'000); });
    auto editorOf = [&](const std::vector<std::string>& arguments) {
        const auto file = makeJPEG(folder / ("f" + std::to_string(arguments.size()) + ".jpg"));
        if (!arguments.empty()) tagWithExifTool(file, arguments);
        return importFiles(sourcesOf({file})).at(0);
    };
    auto both =
        editorOf({"-EXIF:DateTimeOriginal=2020:05:06 07:08:09", "-EXIF:CreateDate=2021:01:01 00:00:00",
                  "-EXIF:GPSLatitude=48.5", "-EXIF:GPSLatitudeRef=S", "-EXIF:GPSLongitude=2.25",
                  "-EXIF:GPSLongitudeRef=E", "-EXIF:GPSAltitude=120", "-EXIF:GPSAltitudeRef=0",
                  "-EXIF:GPSDateStamp=2020:05:06", "-EXIF:GPSTimeStamp=05:08:09"});
    EXPECT_EQ(PhotoLibrary::creationDate(*both), EXIFAccessor(*both).exifDateTimeOriginal());
    const auto location = library.location(*both);
    ASSERT_TRUE(location);
    EXPECT_EQ(location->coordinate, (LocationCoordinate2D{-48.5, 2.25}));
    EXPECT_DOUBLE_EQ(location->altitude, 120);
    EXPECT_NE(location->timestamp, Date(1'000'000)) << "the GPS stamp, not the clock";

    auto createOnly = editorOf({"-EXIF:CreateDate=2021:01:01 00:00:00"});
    EXPECT_EQ(PhotoLibrary::creationDate(*createOnly), EXIFAccessor(*createOnly).exifCreateDate());
    EXPECT_FALSE(library.location(*createOnly));

    // No date tag: the file's creation date; a QuickTime position alone still gives a location,
    // stamped by the clock.
    auto none = editorOf({});
    none->setValue(std::string("2019:02:03 04:05:06+00:00"), tagName("File:FileCreateDate"));
    EXPECT_EQ(PhotoLibrary::creationDate(*none), Date(1549166706));
    auto movie = importFiles(sourcesOf({makeMOV(folder / "clip.mov")})).at(0);
    movie->setValue(std::string("+40.5000-073.2500/"), tagName("QuickTime:GPSCoordinates"));
    EXPECT_EQ(library.location(*movie), (PlatformLocation{{40.5, -73.25}, 0, 0, 0, Date(1'000'000)}));
}

// The folder library on a temporary root, with its own Trash.
class FolderLibrary : public ::testing::Test {
protected:
    void SetUp() override {
        // GIO reads XDG_DATA_HOME once per process: every test of this program shares one Trash.
        static TemporaryFolder dataHome;
        ::setenv("XDG_DATA_HOME", dataHome.path().c_str(), 1);
        trash = dataHome / "Trash" / "files";
        root = folder.makeSubfolder("Pictures");
        library = std::make_shared<FolderPhotoLibrary>(root);
        PhotoLibrary::setShared(library);
    }
    void TearDown() override { PhotoLibrary::setShared(nullptr); }

    std::shared_ptr<FileExportToPhotosTask> add(const std::vector<fs::path>& files) {
        return performed(FileExportToPhotosTask::create(FileExportToPhotosTask::Settings(files)));
    }

    TemporaryFolder folder;
    fs::path root, trash;
    std::shared_ptr<FolderPhotoLibrary> library;
};

TEST_F(FolderLibrary, addsUnderTheMonthWithoutOverwritingAndReportsOtherFiles) {
    const auto photo = makeJPEG(folder / "photo.jpg");
    const auto clip = makeMOV(folder / "clip.mov");
    fs::last_write_time(photo, fs::file_time_type::clock::now());
    std::ofstream(folder / "notes.txt") << "not a picture";

    auto task = add({photo, folder / "notes.txt", clip, photo, folder / "missing.jpg"});
    EXPECT_EQ(task->errors().size(), 2u) << task->errorListDescription();
    const auto created = task->createdAssets();
    ASSERT_EQ(created.size(), 3u);
    EXPECT_EQ(fs::path(created[0]).filename(), "photo.jpg");
    EXPECT_EQ(fs::path(created[2]).filename(), "photo (2).jpg");
    EXPECT_EQ(fs::path(created[0]).parent_path().parent_path().string().size(), 4u) << created[0]; // YYYY/MM
    EXPECT_EQ(library->allAssets().size(), 3u);
    EXPECT_EQ(fileBytes(root / created[0]), fileBytes(photo));

    // No such folder: no access, nothing added.
    PhotoLibrary::setShared(std::make_shared<FolderPhotoLibrary>(folder / "absent"));
    auto refused = add({photo});
    ASSERT_EQ(refused->errors().size(), 1u);
    EXPECT_EQ(errorTexts(*refused)[0], "Unauthorized access");
    EXPECT_FALSE(fs::exists(folder / "absent"));
}

TEST_F(FolderLibrary, anEditedAssetIsAddedUnderItsDateAndTheOldOneGoesToTheTrash) {
    const auto photo = makeJPEG(folder / "photo.jpg");
    tagWithExifTool(photo, {"-EXIF:DateTimeOriginal=2019:07:14 10:00:00"});
    fs::create_directories(root / "old");
    fs::copy_file(photo, root / "old" / "photo.jpg");
    // A file of the same name already in the month: never overwritten.
    fs::create_directories(root / "2019" / "07");
    std::ofstream(root / "2019" / "07" / "photo.jpg") << "someone else's";

    auto editor = assetEditor(*library, "old/photo.jpg");
    editor->setValue(std::string("Edited"), tagName("EXIF:Artist"));
    auto task = save(editor);
    ASSERT_TRUE(task->errors().empty()) << task->errorListDescription();

    EXPECT_EQ(editor->source().asset()->localIdentifier(), "2019/07/photo (2).jpg");
    EXPECT_EQ(exifToolValue(root / "2019/07/photo (2).jpg", "EXIF:Artist"), "Edited");
    EXPECT_EQ(fileBytes(root / "2019/07/photo.jpg"), "someone else's");
    EXPECT_FALSE(fs::exists(root / "old" / "photo.jpg"));
#ifdef CORVANE_HAVE_GIO
    bool inTrash = false;
    for (const auto& entry : fs::directory_iterator(trash))
        inTrash |= entry.path().filename().string().starts_with("photo") &&
                   exifToolValue(entry.path(), "EXIF:Artist").empty();
    EXPECT_TRUE(inTrash) << "the old asset is in the Trash, unedited";
#endif
    EXPECT_FALSE(fs::exists(editor->temporaryURL()));
    EXPECT_EQ(library->fetchAssets({"../photo.jpg", "/etc/passwd", "2019/07/photo (2).jpg"}).size(), 1u);
}

TEST(PhotosAppAuthorizer, asksTheLibraryAndLogsTheStatus) {
    TemporaryFolder folder;
    ASSERT_TRUE(KitDebugger::shared().enableLog(folder / "debug.log"));
    EXPECT_FALSE(PhotosAppAuthorizer::perform()) << "no photo library";
    auto library = std::make_shared<MemoryPhotoLibrary>(folder.path());
    test::SharedPhotoLibrary guard(library);
    EXPECT_TRUE(PhotosAppAuthorizer::perform());
    library->setAuthorized(false);
    EXPECT_FALSE(PhotosAppAuthorizer::perform());
    KitDebugger::shared().disableLog();
    EXPECT_THAT(fileBytes(folder / "debug.log"), AllOf(HasSubstr("Asking  for Photos authorization: -600"),
                                                       HasSubstr("Asking  for Photos authorization: 0"),
                                                       HasSubstr("Asking  for Photos authorization: -1743")));
}

} // namespace
} // namespace corvane
