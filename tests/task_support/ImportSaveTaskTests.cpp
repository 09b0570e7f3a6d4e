// Import and save tasks on real files with the real ExifTool.
#include "TaskTestSupport.hpp"

#include "corvane/photos_library/MemoryPhotoLibrary.hpp"
#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/SampleFiles.hpp"
#include "support/SharedPhotoLibrary.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Unwritable.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using namespace corvane::testing;
using test::exifToolValue;
using test::makeJPEG;
using test::makeMOV;
using test::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::StartsWith;
namespace fs = std::filesystem;
using test::tagName;

std::shared_ptr<SaveTagEditorsTask> save(std::vector<std::shared_ptr<TagEditor>> editors,
                                         std::optional<bool> ignoreMinorErrors = {}) {
    SaveTagEditorsTask::Settings settings(std::move(editors));
    settings.ignoreMinorErrors = ignoreMinorErrors;
    return performed(SaveTagEditorsTask::create(std::move(settings)));
}

class ImportSaveTasks : public ::testing::Test {
protected:
    TemporaryFolder folder;
};

// One save writes every editor of a batch, photos of every difficult name beside a movie, and
// flushes the editors before the write, so the saved values become their originals. The values of
// every family, clears and character sets are the writer's own tests.
TEST_F(ImportSaveTasks, aBatchOfDifficultNamesIsSavedFlushedAndReadBack) {
    const std::vector<std::string> names = {"with space.jpg",    "-leading-dash.jpg",  "quote'\"both.jpg",
                                            "ünïcødé 東京.jpg",  "semi;amp&pipe|.jpg", "dollar $HOME `x`.jpg",
                                            "back\\slash.jpg",   "line\nbreak.jpg",    "UPPER.JPG",
                                            "percent%20=eq.jpg", "#hash*star?.jpg",    "tab\there.jpg",
                                            "clip.mov"};
    std::vector<fs::path> paths;
    for (const auto& name : names)
        paths.push_back(name.ends_with(".mov") ? makeMOV(folder / name) : makeJPEG(folder / name));
    test::tagWithExifTool(paths[0], {"-EXIF:Copyright=Someone"});
    const auto tagOf = [](const fs::path& path) {
        return tagName(path.extension() == ".mov" ? "QuickTime:Title" : "EXIF:Artist");
    };
    const auto valueOf = [](const fs::path& path) { return "Zoë — " + path.filename().string(); };

    auto editors = importFiles(sourcesOf(paths));
    ASSERT_EQ(editors.size(), names.size());
    for (const auto& editor : editors) {
        editor->setValue(valueOf(editor->source().url()), tagOf(editor->source().url()));
        if (editor->source().url() == paths[0])
            editor->setValue(std::string("   "), tagName("EXIF:Copyright"));
    }
    succeeded(save(editors));
    for (const auto& editor : editors) {
        EXPECT_FALSE(editor->isEdited()) << editor->source().url();
        EXPECT_EQ(editor->originalValue(tagOf(editor->source().url())), valueOf(editor->source().url()));
        EXPECT_FALSE(editor->originalValue(tagName("EXIF:Copyright"))) << "a blank value removes the tag";
    }
    EXPECT_EQ(exifToolValue(paths[0], "EXIF:Copyright"), "");
    for (const auto& editor : importFiles(sourcesOf(paths)))
        EXPECT_EQ(editor->originalValue(tagOf(editor->source().url())), valueOf(editor->source().url()))
            << editor->source().url();
}

TEST_F(ImportSaveTasks, corruptFileInABatch) {
    auto good1 = makeJPEG(folder / "good1.jpg");
    auto good2 = makeJPEG(folder / "good2.jpg");
    // ExifTool reads damaged JPEG data with warnings only; an empty file is an error of the file.
    auto bad = test::writeBytes(folder / "bad.jpg", {});

    // Strict: one process for the batch, so one error and no editor at all.
    auto strict = performed(
        ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(sourcesOf({good1, bad, good2}))));
    EXPECT_EQ(strict->errors().size(), 1u);
    EXPECT_TRUE(strict->importedEditors().empty());

    // Ignoring minor errors: no error, and the good files come in with their tags.
    ImportTagEditorsTask::Settings lenientSettings(sourcesOf({good1, bad, good2}));
    lenientSettings.ignoreMinorErrors = true;
    auto lenient = succeeded(ImportTagEditorsTask::create(lenientSettings));
    std::vector<fs::path> urls;
    for (const auto& editor : sortedEditors(*lenient))
        if (editor->originalValue(tagName("File:FileType")) == "JPEG") urls.push_back(editor->source().url());
    EXPECT_EQ(urls, (std::vector<fs::path>{good1, good2}));

    // Saving: the task passes its setting to the writer (whose tests check the file either way).
    auto defect = test::makeJPEGWithMinorExifDefect(folder / "defect.jpg");
    auto editors = importFiles(sourcesOf({good1, defect}));
    ASSERT_EQ(editors.size(), 2u);
    for (const auto& editor : editors)
        editor->setValue(std::string("Strict"), tagName("EXIF:Artist"));
    auto strictSave = save(editors, false);
    EXPECT_THAT(errorTexts(*strictSave), ElementsAre(StartsWith(defect.string() + ": "))) << "names the file";
    // The edits aren't put back after a failed write.
    EXPECT_FALSE(editors[1]->isEdited());

    for (const auto& editor : editors)
        editor->setValue(std::string("Lenient"), tagName("EXIF:Artist"));
    succeeded(save(editors)); // absent counts as true when saving
    // A file that reads but fails to write, among others that are written: the summary test of
    // `corvane set` checks the task's outcome of each file and its error.
}

TEST_F(ImportSaveTasks, readOnlyFileEndsWithAnErrorAndStaysUnchanged) {
    auto sub = folder.makeSubfolder("locked");
    auto locked = makeJPEG(sub / "locked.jpg");
    auto editors = importFiles(sourcesOf({locked}));
    ASSERT_EQ(editors.size(), 1u);
    const std::string before = fileBytes(locked);
    {
        test::Unwritable guard(locked);
        if (!guard.ok()) GTEST_SKIP() << "can't make a file read-only on this volume";
        editors[0]->setValue(std::string("Nobody"), tagName("EXIF:Artist"));
        EXPECT_THAT(errorTexts(*save(editors)), ElementsAre(StartsWith(locked.string() + ": ")))
            << "names the file";
        EXPECT_EQ(fileBytes(locked), before);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(sub), fs::directory_iterator()), 1)
        << "no temporary file of ExifTool's is left behind";
}

// A photo library that authorises or refuses, and counts the requests.
class RecordingLibrary : public MemoryPhotoLibrary {
public:
    explicit RecordingLibrary(bool authorise)
        : MemoryPhotoLibrary(fs::temp_directory_path()), authorise_(authorise) {}
    bool requestAuthorization() override {
        ++authorizationRequests;
        return authorise_;
    }
    // The replacement itself is the photo library's test.
    void updateAndReplaceAssets(const std::vector<std::shared_ptr<TagEditor>>&) override {}
    int authorizationRequests = 0;

private:
    bool authorise_;
};

TEST_F(ImportSaveTasks, assetEditorsNeedThePhotoLibrary) {
    auto assetFile = makeJPEG(folder / "asset.jpg");
    auto plainFile = makeJPEG(folder / "plain.jpg");
    const std::string assetBytes = fileBytes(assetFile), plainBytes = fileBytes(plainFile);

    auto makeEditors = [&] {
        auto asset = ETTagEditor::create(TagStorage(TagStorageSource(assetFile, AssetHandle("ASSET-1"))));
        auto plain = importFiles(sourcesOf({plainFile})).at(0);
        asset->setValue(std::string("Asset artist"), tagName("EXIF:Artist"));
        plain->setValue(std::string("Plain artist"), tagName("EXIF:Artist"));
        return std::vector<std::shared_ptr<TagEditor>>{plain, asset};
    };

    for (bool present : {false, true}) {
        test::SharedPhotoLibrary guard(present ? std::make_shared<RecordingLibrary>(false) : nullptr);
        auto editors = makeEditors();
        auto task = save(editors);
        ASSERT_EQ(errorTexts(*task), std::vector<std::string>{"Unauthorized access"});
        EXPECT_EQ(AbstractTask::processError<SaveTagEditorsTask::ProcessError>(task->errors()[0]),
                  SaveTagEditorsTask::ProcessError::unauthorizedAccess);
        EXPECT_TRUE(fileBytes(assetFile) == assetBytes && fileBytes(plainFile) == plainBytes)
            << "nothing written";
        EXPECT_TRUE(editors[0]->isEdited() && editors[1]->isEdited()) << "nothing flushed";
    }

    // An authorised library is asked once; the asset is written in a copy, the plain file in place.
    auto library = std::make_shared<RecordingLibrary>(true);
    test::SharedPhotoLibrary guard(library);
    auto editors = makeEditors();
    succeeded(save(editors));
    EXPECT_EQ(library->authorizationRequests, 1);
    EXPECT_EQ(exifToolValue(editors[1]->temporaryURL(), "EXIF:Artist"), "Asset artist");
    EXPECT_EQ(fileBytes(assetFile), assetBytes); // the asset's own file isn't written in place
    EXPECT_EQ(exifToolValue(plainFile, "EXIF:Artist"), "Plain artist");
    fs::remove(editors[1]->temporaryURL());
}

TEST_F(ImportSaveTasks, unsupportedEditorsMissingEnginesAndEmptyLists) {
    auto file = makeJPEG(folder / "a.jpg");
    const std::string bytes = fileBytes(file);
    auto none = [&] {
        EngineGuard noEngine{EngineOption()};
        return performed(ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(sourcesOf({file}))));
    }();
    EXPECT_EQ(errorTexts(*none), std::vector<std::string>{"Engine is not available"});
    EXPECT_TRUE(none->importedEditors().empty());

    auto et = importFiles(sourcesOf({file})).at(0);
    auto plain = TagEditor::create(et->storage());
    et->setValue(std::string("X"), tagName("EXIF:Artist"));
    plain->setValue(std::string("Y"), tagName("EXIF:Artist"));

    auto task = save({et, plain});
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{"Editor is not supported"});
    EXPECT_TRUE(et->isEdited());
    EXPECT_EQ(fileBytes(file), bytes);

    succeeded(save({}));

#ifdef CORVANE_HAVE_EXIV2
    // Both engines' editors in one save: each group through its own engine.
    auto other = makeJPEG(folder / "b.jpg");
    auto cg = CGTagEditor::create(importFiles(sourcesOf({other})).at(0)->storage());
    cg->setValue(std::string("In process"), tagName("EXIF:Artist"));
    succeeded(save({cg, et}));
    EXPECT_EQ(exifToolValue(other, "EXIF:Artist"), "In process");
    EXPECT_EQ(exifToolValue(file, "EXIF:Artist"), "X");
#endif
}

TEST_F(ImportSaveTasks, folderImport) {
    makeJPEG(folder / "top.jpg");
    makeMOV(folder / "movie.mov");
    test::writeBytes(folder / "notes.unknownext", {'x'});
    makeJPEG(folder / ".hidden.jpg");
    auto sub = folder.makeSubfolder("sub/deeper");
    makeJPEG(sub / "deep.jpg");
    makeJPEG(folder / "sub" / "mid.jpg");

    auto urls = [](const std::shared_ptr<ImportTagEditorsTask>& task) {
        std::vector<std::string> names;
        for (const auto& editor : sortedEditors(*task))
            names.push_back(editor->source().url().filename().string());
        return names;
    };
    auto run = [&](std::optional<bool> unfold, std::optional<bool> recursive,
                   std::optional<MediaType::Set> allowed = std::nullopt) {
        ImportTagEditorsTask::Settings settings({TagStorageSource(folder.path())});
        settings.unfoldFolders = unfold;
        settings.unfoldRecursively = recursive;
        settings.allowedTypes = std::move(allowed);
        return succeeded(ImportTagEditorsTask::create(std::move(settings)));
    };

    EXPECT_EQ(urls(run(true, std::nullopt)), (std::vector<std::string>{"movie.mov", "top.jpg"}));
    EXPECT_EQ(urls(run(true, true)),
              (std::vector<std::string>{"movie.mov", "deep.jpg", "mid.jpg", "top.jpg"}));
    EXPECT_EQ(urls(run(true, true, MediaType::Set{MediaType::typeMOV()})),
              (std::vector<std::string>{"movie.mov"}));
    // Folder not unfolded: one empty folder editor, also when no format is allowed.
    for (auto allowed : {std::optional<MediaType::Set>(), std::optional<MediaType::Set>(MediaType::Set{})}) {
        auto folderTask = run(std::nullopt, true, allowed);
        ASSERT_EQ(folderTask->importedEditors().size(), 1u);
        EXPECT_TRUE(folderTask->importedEditors()[0]->isFolder());
    }
    // Unfolded with nothing allowed: nothing, and no error.
    EXPECT_TRUE(run(true, true, MediaType::Set{})->importedEditors().empty());
    // What a folder import takes is what can be imported one by one.
    EXPECT_TRUE(ImportTagEditorsTask::canImportEditor(folder / "a.MoV"));
    EXPECT_FALSE(ImportTagEditorsTask::canImportEditor(folder / "notes.unknownext"));
    EXPECT_FALSE(ImportTagEditorsTask::canImportEditor(folder / "sub"));
}

TEST_F(ImportSaveTasks, sourceEditorsAreReloadedAndKeepTheirEdits) {
    auto file = makeJPEG(folder / "a.jpg");
    auto editor = importFiles(sourcesOf({file})).at(0);
    editor->setValue(std::string("Pending"), tagName("XMP:Title"));
    test::tagWithExifTool(file, {"-EXIF:Artist=Changed outside"});

    ImportTagEditorsTask::Settings settings(sourcesOf({file}));
    settings.sourceEditors = {editor};
    auto task = succeeded(ImportTagEditorsTask::create(std::move(settings)));
    EXPECT_EQ(editor->originalValue(tagName("EXIF:Artist")), "Changed outside");
    EXPECT_EQ(editor->writtenValue(tagName("XMP:Title")), "Pending");
}

#ifdef CORVANE_HAVE_EXIV2
// The in-process engine on the task's eight-wide queue: every file is read into its own editor, a
// file that can't be read costs only its own error, and the editors are saved in process.
TEST_F(ImportSaveTasks, inProcessEngineImportsAndSavesFileByFile) {
    // One ExifTool run gives each file its own name as its artist.
    std::vector<fs::path> files;
    std::vector<std::string> tagging = {"-overwrite_original", "-EXIF:Artist<FileName"};
    for (int i = 0; i < 12; ++i) {
        files.push_back(makeJPEG(folder / ("f" + std::to_string(10 + i) + ".jpg")));
        tagging.push_back(files.back().string());
    }
    ASSERT_EQ(test::runExifTool(tagging).exitCode, 0);
    const auto corrupt = test::writeBytes(folder / "corrupt.jpg", {0xFF, 0xD8, 0xFF, 0xE1, 0x00});
    auto sources = sourcesOf(files);
    sources.emplace_back(corrupt);
    sources.emplace_back(folder.path());

    EngineGuard inProcess{EngineOption::coreImage()};
    auto task = performed(ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(sources)));
    auto editors = sortedEditors(*task);
    std::vector<std::optional<std::string>> read;
    for (auto& editor : editors) {
        read.push_back(editor->originalValue(tagName("EXIF:Artist")));
        editor->setValue("Saved " + editor->source().url().stem().string(), tagName("EXIF:Artist"));
    }
    auto saving = save(editors);

    // The folder can't be opened by this engine, nor the damaged file; the others are read.
    auto errors = errorTexts(*task);
    std::sort(errors.begin(), errors.end());
    EXPECT_EQ(errors, (std::vector<std::string>{"File is not supported", "Source is invalid"}));
    EXPECT_DOUBLE_EQ(task->progress(), 1.0);
    ASSERT_EQ(editors.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_TRUE(std::dynamic_pointer_cast<CGTagEditor>(editors[i])) << files[i];
        EXPECT_EQ(read[i], files[i].filename().string());
        EXPECT_EQ(editors[i]->originalValue(tagName("EXIF:Artist")), "Saved " + files[i].stem().string());
        EXPECT_EQ(exifToolValue(files[i], "EXIF:Artist"), "Saved " + files[i].stem().string());
    }
    EXPECT_TRUE(saving->errors().empty()) << saving->errorListDescription();
}
#endif

} // namespace
} // namespace corvane
