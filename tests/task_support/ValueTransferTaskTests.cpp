// The tasks that move values between files, sidecars, tags and CSV tables, on files the tests
// make, read back with ExifTool.
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"
#include "task_support/TaskTestSupport.hpp"

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ExportCSVTableTask.hpp"
#include "corvane/task_support/ExportTagValuesTask.hpp"
#include "corvane/task_support/ImportCSVTableTask.hpp"
#include "corvane/task_support/ImportTagValuesTask.hpp"
#include "corvane/task_support/SyncSidecarFilesTask.hpp"
#include "corvane/task_support/SyncTagValuesTask.hpp"
#include "support/StorageValues.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::tagName;
using namespace corvane::testing;
using test::exifToolValue;
using test::makeJPEG;
using test::tagWithExifTool;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// The tags ExifTool reads in a file, by "Family:Key", in one run.
nlohmann::json tagsOf(const fs::path& file) {
    auto run = test::runExifTool({"-j", "-G", "-sep", ", ", file.string()});
    auto tags = nlohmann::json::parse(run.standardOutput, nullptr, false);
    return tags.is_array() && !tags.empty() ? tags[0] : nlohmann::json::object();
}

std::string tagOf(const nlohmann::json& tags, const std::string& key) {
    auto found = tags.find(key);
    if (found == tags.end()) return {};
    return found->is_string() ? found->get<std::string>() : found->dump();
}

template <class E> std::optional<E> onlyError(const AbstractTask& task) {
    if (task.errors().size() != 1) return std::nullopt;
    return AbstractTask::processError<E>(task.errors().front());
}

class ValueTransferTasks : public ::testing::Test {
protected:
    test::TemporaryFolder folder{"corvane-transfer"};
};

// Which error a bad setting gets is decided by the order of the checks: the first that fails wins,
// and no file is read or written before them.
TEST_F(ValueTransferTasks, badSettingsGetTheirErrorInTheOrderOfTheChecks) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto editors = importFiles(sourcesOf({jpeg}));
    using IE = ImportTagValuesTask::ProcessError;
    auto importing = [&](std::optional<TagStorageSource> source) {
        return performed(ImportTagValuesTask::create({editors, std::move(source)}));
    };
    EXPECT_EQ(onlyError<IE>(*importing(std::nullopt)), IE::sourceURLIsMissing);
    EXPECT_EQ(onlyError<IE>(*importing(TagStorageSource(folder / "a.unknownext"))), IE::sourceTypeIsUnknown);
    EXPECT_EQ(errorTexts(*importing(std::nullopt)).front(), "Sidecar URL is missing");

    using XE = ExportTagValuesTask::ProcessError;
    auto exporting = [&](std::optional<std::string> type) {
        return performed(ExportTagValuesTask::create({editors, std::move(type)}));
    };
    EXPECT_EQ(onlyError<XE>(*exporting(std::nullopt)), XE::sidecarTypeIsMissing);
    EXPECT_EQ(onlyError<XE>(*exporting("jpg")), XE::sidecarTypeIsUnknown);
    EXPECT_EQ(onlyError<XE>(*exporting("nothing")), XE::sidecarTypeIsUnknown);

    using SE = SyncSidecarFilesTask::ProcessError;
    auto syncing = [&](std::optional<std::string> type) {
        SyncSidecarFilesTask::Settings settings(editors, SyncSidecarFilesTask::Action::exportSidecar);
        settings.sidecarType = std::move(type);
        return performed(SyncSidecarFilesTask::create(std::move(settings)));
    };
    EXPECT_EQ(onlyError<SE>(*syncing("nothing")), SE::sidecarTypeIsMissing);
    EXPECT_EQ(onlyError<SE>(*syncing("jpg")), SE::sidecarTypeIsUnknown);

    using TE = ImportCSVTableTask::ProcessError;
    auto table = [&](const std::string& fileName, const std::string& text) {
        const fs::path url = folder / fileName;
        std::ofstream(url) << text;
        return performed(ImportCSVTableTask::create(ImportCSVTableTask::Settings(editors, url)));
    };
    EXPECT_EQ(onlyError<TE>(*performed(ImportCSVTableTask::create({editors, std::nullopt}))),
              TE::sourceIsMissing);
    EXPECT_EQ(onlyError<TE>(*table("t.txt", "File:FileName,File:FilePath\n")), TE::tableTypeIsUnknown);
    EXPECT_EQ(onlyError<TE>(*performed(ImportCSVTableTask::create({editors, folder / "none.csv"}))),
              TE::inputStreamIsMissing);
    EXPECT_EQ(onlyError<TE>(*table("n.csv", "File:FilePath,EXIF:Artist\n")), TE::nameTagIsMissing);
    EXPECT_EQ(onlyError<TE>(*table("p.csv", "File:FileName,EXIF:Artist,Not a tag\n")), TE::pathTagIsMissing);
    EXPECT_EQ(errorTexts(*table("u.txt", "")).front(), "Table type is uknown");

    using XTE = ExportCSVTableTask::ProcessError;
    auto exportTable = [&](std::optional<fs::path> url) {
        return performed(ExportCSVTableTask::create({editors, {}, std::move(url)}));
    };
    EXPECT_EQ(onlyError<XTE>(*exportTable(std::nullopt)), XTE::destinationIsMissing);
    EXPECT_EQ(onlyError<XTE>(*exportTable(folder / "t.txt")), XTE::tableTypeIsUnknown);
    EXPECT_EQ(onlyError<XTE>(*exportTable(folder / "no" / "folder" / "t.csv")), XTE::streamIsMissing);

    // Without ExifTool: the engine is the first check of the sync tasks; the import keeps its own
    // sidecars and takes no media file, which is then an unknown type, not a missing engine.
    {
        EngineGuard guard(EngineOption::coreImage());
        EXPECT_EQ(onlyError<SE>(*syncing("nothing")), SE::engineIsNotAvailable);
        using CE = SyncTagValuesTask::ProcessError;
        EXPECT_EQ(onlyError<CE>(*performed(SyncTagValuesTask::create({editors, {}}))),
                  CE::engineIsNotAvailable);
        EXPECT_EQ(onlyError<IE>(*importing(TagStorageSource(jpeg))), IE::sourceTypeIsUnknown);
        EXPECT_EQ(onlyError<XE>(*exporting("XMP")), XE::sidecarTypeIsUnknown);
        EXPECT_FALSE(ImportTagValuesTask::canImportSource(jpeg));
        EXPECT_TRUE(ImportTagValuesTask::canImportSource(folder / "a.json"));
        EXPECT_EQ(errorTexts(*exporting("JSON")), std::vector<std::string>{});
        EXPECT_TRUE(fs::exists(folder / "a.json"));
        EXPECT_EQ(errorTexts(*importing(TagStorageSource(folder / "a.json"))), std::vector<std::string>{});
    }
    EXPECT_TRUE(fs::exists(jpeg));
    EXPECT_FALSE(editors.front()->isEdited());
}

// A JPEG's tags reach a PNG and a movie through every sidecar format, and ExifTool reads them
// there after the save. A format ExifTool can't make from tags (ICC) is an error naming the
// sidecar, and leaves no file behind.
TEST_F(ValueTransferTasks, aPhotosTagsReachOtherFormatsThroughEverySidecarType) {
    auto jpeg = makeJPEG(folder / "source.jpg");
    tagWithExifTool(
        jpeg, {"-XMP:Title=Zoë's café", "-EXIF:Artist=Ana Lía", "-XMP:Subject=one", "-XMP:Subject=two"});
    auto source = importFiles(sourcesOf({jpeg}));
    ASSERT_EQ(source.size(), 1u);

    for (const std::string type : {"json", "csv", "xmp", "exv", "mie", "exif", "vrd"}) {
        SCOPED_TRACE(type);
        ExportTagValuesTask::Settings exportSettings(source, type);
        exportSettings.destinationURL = folder / ("out-" + type);
        succeeded(ExportTagValuesTask::create(exportSettings));
        const fs::path sidecar = folder / ("out-" + type) / ("source." + type);
        ASSERT_TRUE(fs::exists(sidecar));
        // Only the finished sidecar is left in the folder.
        EXPECT_EQ(std::distance(fs::directory_iterator(sidecar.parent_path()), fs::directory_iterator()), 1);

        auto png = test::makePNG(folder / ("to-" + type + ".png"));
        auto mov = test::makeMOV(folder / ("to-" + type + ".mov"));
        auto targets = importFiles(sourcesOf({png, mov}));
        succeeded(ImportTagValuesTask::create({targets, TagStorageSource(sidecar)}));
        succeeded(SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(targets)));
        const auto pngTags = tagsOf(png);
        if (type == "exif") {
            // An EXIF file holds EXIF alone, which a PNG takes and a movie doesn't.
            EXPECT_EQ(tagOf(pngTags, "EXIF:Artist"), "Ana Lía");
            EXPECT_EQ(tagOf(pngTags, "XMP:Title"), "");
            continue;
        }
        for (const auto& tags : {pngTags, tagsOf(mov)}) {
            EXPECT_EQ(tagOf(tags, "XMP:Title"), "Zoë's café") << tags.dump();
            EXPECT_EQ(tagOf(tags, "XMP:Subject"), "one, two") << tags.dump();
        }
        if (type != "xmp" && type != "vrd") {
            EXPECT_EQ(tagOf(pngTags, "EXIF:Artist"), "Ana Lía");
        }
    }

    // An ICC file is the file's own profile: a file without one gets an error naming the sidecar.
    ExportTagValuesTask::Settings icc(source, "icc");
    icc.destinationURL = folder / "out-icc";
    EXPECT_THAT(errorTexts(*performed(ExportTagValuesTask::create(icc))),
                ElementsAre(HasSubstr((folder / "out-icc" / "source.icc").string())));
    EXPECT_FALSE(fs::exists(folder / "out-icc" / "source.icc"));

    // A file with a profile gives it byte for byte, which ExifTool reads as an ICC file.
    const auto withProfile = test::corpusFolder() / "jpeg" / "exifr" / "f1t.jpg";
    if (!fs::exists(withProfile)) GTEST_SKIP() << "corpus absent: the export of a real profile is not tested";
    fs::copy_file(withProfile, folder / "profiled.jpg");
    ExportTagValuesTask::Settings real(importFiles(sourcesOf({folder / "profiled.jpg"})), "icc");
    real.destinationURL = folder / "out-icc";
    succeeded(ExportTagValuesTask::create(real));
    const auto profile =
        test::runExifTool({"-b", "-ICC_Profile", (folder / "profiled.jpg").string()}).standardOutput;
    EXPECT_EQ(fileBytes(folder / "out-icc" / "profiled.icc"), profile);
    EXPECT_FALSE(
        tagOf(tagsOf(folder / "out-icc" / "profiled.icc"), "ICC_Profile:ProfileDescription").empty());
}

// Into one folder, two files of one base name make one sidecar: the later editor's, every time.
// Beside the files, the sidecar takes the lower-case extension whatever the case of the type.
// An excluded family is left out whatever its tags.
TEST_F(ValueTransferTasks, sidecarNamesAndExclusionsAreDeterministic) {
    auto first = makeJPEG(folder.makeSubfolder("a") / "photo.jpg");
    auto second = makeJPEG(folder.makeSubfolder("b") / "photo.jpg");
    tagWithExifTool(first, {"-XMP:Title=first", "-EXIF:Artist=first"});
    tagWithExifTool(second, {"-XMP:Title=second", "-EXIF:Artist=second", "-IPTC:City=Lyon"});
    auto editors = importFiles(sourcesOf({first, second}));
    for (int round = 0; round < 3; ++round) {
        ExportTagValuesTask::Settings settings(editors, "JSON");
        settings.destinationURL = folder / "together";
        succeeded(ExportTagValuesTask::create(settings));
        EXPECT_NE(fileBytes(folder / "together" / "photo.json").find("second"), std::string::npos);
        EXPECT_EQ(fileBytes(folder / "together" / "photo.json").find("first"), std::string::npos);
    }
    succeeded(ExportTagValuesTask::create(ExportTagValuesTask::Settings({editors[0]}, "XMP")));
    EXPECT_TRUE(fs::exists(folder / "a" / "photo.xmp"));
    EXPECT_FALSE(fs::exists(folder / "a" / "photo.XMP"));

    // The second file's values into the first, without its EXIF family.
    ImportTagValuesTask::Settings settings({editors[0]}, TagStorageSource(second));
    settings.excludedTagStreams = {TagStream::streamEXIF};
    settings.excludedTagNames = {tagName("IPTC:City")};
    succeeded(ImportTagValuesTask::create(settings));
    EXPECT_EQ(editors[0]->currentValue(tagName("XMP:Title")), "second");
    EXPECT_EQ(editors[0]->currentValue(tagName("EXIF:Artist")), "first");
    EXPECT_FALSE(editors[0]->currentValue(tagName("IPTC:City")));
    for (const TagName& edited : editors[0]->writtenTagNames())
        EXPECT_NE(edited.stream(), TagStream::streamFile) << edited.rawValue();
}

// A folder's photos go to XMP sidecars beside them, the sidecars are edited, and the edits come
// back into the photos; the open editors show them. A sidecar of upper-case extension is found,
// a missing one is reported for its own file, and an existing sidecar is never overwritten.
TEST_F(ValueTransferTasks, aFolderSyncsToXMPSidecarsAndBack) {
    std::vector<fs::path> photos;
    for (int i = 0; i < 4; ++i) {
        photos.push_back(makeJPEG(folder / ("p" + std::to_string(i) + ".jpg")));
        tagWithExifTool(photos.back(), {"-XMP:Title=title " + std::to_string(i), "-EXIF:Artist=Ana"});
    }
    auto editors = importFiles(sourcesOf(photos));
    SyncSidecarFilesTask::Settings exportSettings(editors, SyncSidecarFilesTask::Action::exportSidecar);
    exportSettings.sidecarType = "XMP";
    succeeded(SyncSidecarFilesTask::create(exportSettings));
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(exifToolValue(folder / ("p" + std::to_string(i) + ".xmp"), "XMP:Title"),
                  "title " + std::to_string(i));

    // Exporting again would overwrite: ExifTool refuses, and the refusal is the task's error.
    EXPECT_FALSE(performed(SyncSidecarFilesTask::create(exportSettings))->errors().empty());
    EXPECT_EQ(exifToolValue(folder / "p0.xmp", "XMP:Title"), "title 0");

    for (int i = 0; i < 3; ++i)
        tagWithExifTool(folder / ("p" + std::to_string(i) + ".xmp"),
                        {"-XMP:Title=edited " + std::to_string(i)});
    fs::rename(folder / "p1.xmp", folder / "p1.XMP");
    fs::remove(folder / "p3.xmp");

    SyncSidecarFilesTask::Settings importSettings(editors, SyncSidecarFilesTask::Action::importSidecar);
    importSettings.sidecarType = "xmp";
    auto imported = performed(SyncSidecarFilesTask::create(importSettings));
    EXPECT_THAT(errorTexts(*imported), ElementsAre(HasSubstr("p3.jpg")));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(exifToolValue(photos[i], "XMP:Title"), "edited " + std::to_string(i));
        EXPECT_EQ(editors[i]->currentValue(tagName("XMP:Title")), "edited " + std::to_string(i));
    }
    EXPECT_EQ(exifToolValue(photos[3], "XMP:Title"), "title 3");
    EXPECT_EQ(exifToolValue(photos[0], "EXIF:Artist"), "Ana");
    EXPECT_FALSE(fs::exists(folder / "p0.jpg_original"));
}

// Tag copies change file editors in memory only, through the converters, and folders on disk.
TEST_F(ValueTransferTasks, tagCopiesChangeFilesInMemoryAndFoldersOnDisk) {
    auto file = makeJPEG(folder / "file.jpg");
    tagWithExifTool(file, {"-EXIF:DateTimeOriginal=2021:06:01 10:20:30", "-EXIF:Artist=Ana"});
    auto sub = folder.makeSubfolder("folder");
    auto inFolder = makeJPEG(sub / "inside.jpg");
    tagWithExifTool(inFolder, {"-EXIF:DateTimeOriginal=2020:01:02 03:04:05"});
    const std::string before = fileBytes(file);

    auto editors = importFiles(sourcesOf({file}));
    editors.push_back(TagEditor::create(TagStorage(TagStorageSource(sub))));
    std::vector<TagSyncPair> pairs{*TagSyncPair::fromText("EXIF:DateTimeOriginal>XMP:CreateDate"),
                                   *TagSyncPair::fromText("EXIF:Artist>XMP:Creator")};
    auto task = succeeded(SyncTagValuesTask::create(SyncTagValuesTask::Settings(editors, pairs)));
    EXPECT_EQ(task->copyArguments(), (std::vector<std::string>{"-XMP:CreateDate<EXIF:DateTimeOriginal",
                                                               "-XMP:Creator<EXIF:Artist"}));

    EXPECT_EQ(editors[0]->currentValue(tagName("XMP:CreateDate")).value_or("").substr(0, 19),
              "2021:06:01 10:20:30");
    EXPECT_EQ(editors[0]->currentValue(tagName("XMP:Creator")), "Ana");
    EXPECT_TRUE(fileBytes(file) == before) << "a file editor was written to disk";
    EXPECT_EQ(exifToolValue(inFolder, "XMP:CreateDate"), "2020:01:02 03:04:05");
    EXPECT_FALSE(fs::exists(sub / "inside.jpg_original"));

    EXPECT_EQ(TagSyncPair::fromJSON(pairs[0].toJSON()), pairs[0]);
    EXPECT_FALSE(TagSyncPair::fromText("EXIF:Artist"));
}

// Fifty files with lists, dates, empty values, absent values and non-ASCII text go out to one
// table and back unchanged; an edited table then changes exactly its edited cells.
TEST_F(ValueTransferTasks, aTableOfFiftyFilesRoundTripsAndAppliesItsEdits) {
    // Six kinds of file, each copied to make fifty.
    std::vector<fs::path> kinds;
    const fs::path kindsFolder = folder.makeSubfolder("kinds");
    for (int i = 0; i < 6; ++i) {
        kinds.push_back(makeJPEG(kindsFolder / ("k" + std::to_string(i) + ".jpg")));
        std::vector<std::string> tags{"-XMP:Title=Zoë, \"" + std::to_string(i) + "\"\nline",
                                      "-XMP:Subject=a, b", "-XMP:Subject=ç",
                                      "-EXIF:DateTimeOriginal=2020:01:02 03:04:0" + std::to_string(i)};
        if (i % 2) tags.push_back("-EXIF:Artist=");
        if (i % 3) tags.push_back("-EXIF:Artist=Яна");
        tagWithExifTool(kinds.back(), tags);
    }
    std::vector<fs::path> files;
    for (int i = 0; i < 50; ++i) {
        files.push_back(folder / ("f" + std::to_string(i) + ".jpg"));
        fs::copy_file(kinds[static_cast<std::size_t>(i % 6)], files.back());
    }
    auto editors = importFiles(sourcesOf(files));
    ASSERT_EQ(editors.size(), 50u);
    std::vector<const TagItem*> items; // the title twice: a table holds each tag once
    for (const char* tag :
         {"XMP:Title", "XMP:Subject", "EXIF:DateTimeOriginal", "EXIF:Artist", "XMP:Rating", "XMP:Title"})
        items.push_back(TagItem::find(tagName(tag)));
    const fs::path table = folder / "table.csv";
    succeeded(ExportCSVTableTask::create(ExportCSVTableTask::Settings(editors, items, table)));
    const std::string text = fileBytes(table);
    EXPECT_EQ(
        text.substr(0, text.find('\n')),
        "File:FileName,File:FilePath,XMP:Title,XMP:Subject,EXIF:DateTimeOriginal,EXIF:Artist,XMP:Rating");
    EXPECT_NE(text.find("-NoData-"), std::string::npos);

    succeeded(ImportCSVTableTask::create(ImportCSVTableTask::Settings(editors, table)));
    for (const auto& editor : editors)
        EXPECT_FALSE(editor->isEdited()) << editor->pathDescription() << " " << editor->debugDescription();

    // Edit the table: a title, a clear, a value where there was none; a row of a file no editor
    // holds, and a row whose name isn't its path's.
    const std::string f0 = (folder / "f0.jpg").string();
    std::ofstream(table) << "File:FileName,File:FilePath,XMP:Title,EXIF:Artist,XMP:Rating\n"
                         << "f0.jpg," << f0 << ",New title,,3\n"
                         << "f1.jpg," << (folder / "f1.jpg").string() << ",-NoData-,-NoData-,-NoData-\n"
                         << "x.jpg," << (folder / "x.jpg").string() << ",x,x,1\n"
                         << "f2.jpg," << (folder / "f3.jpg").string() << ",wrong,wrong,1\n";
    auto edited = performed(ImportCSVTableTask::create(ImportCSVTableTask::Settings(editors, table)));
    EXPECT_THAT(errorTexts(*edited), ElementsAre(HasSubstr("row 5")));
    auto byName = [&](const std::string& fileName) {
        for (const auto& editor : editors)
            if (editor->source().url().filename() == fileName) return editor;
        return std::shared_ptr<TagEditor>();
    };
    EXPECT_EQ(byName("f0.jpg")->writtenTagNames(),
              (std::vector<TagName>{tagName("XMP:Rating"), tagName("XMP:Title")}));
    EXPECT_EQ(byName("f0.jpg")->currentValue(tagName("XMP:Title")), "New title");
    for (const auto& editor : editors)
        if (editor != byName("f0.jpg")) {
            EXPECT_FALSE(editor->isEdited()) << editor->pathDescription();
        }
}

} // namespace
} // namespace corvane
