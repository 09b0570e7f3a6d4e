// The tasks that change files directly or read them fast: cleaning, fetching, geotagging and
// extracting embedded images, on files the tests make.
#include "TaskTestSupport.hpp"

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/task_support/CleanTagValuesTask.hpp"
#include "corvane/task_support/FetchTagValuesTask.hpp"
#include "corvane/task_support/FileExportImagesTask.hpp"
#include "corvane/task_support/FolderExportGeotagTask.hpp"
#include "corvane/task_support/FolderImportGeotagTask.hpp"
#include "support/SampleFiles.hpp"
#include "support/StorageValues.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Unwritable.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::tagName;
using namespace corvane::testing;

std::shared_ptr<ETTagEditor> folderEditor(const fs::path& folder) {
    return ETTagEditor::create(TagStorage(TagStorageSource(folder)));
}

TEST(CleanTagValuesTaskTest, RemovesOneFamilyOrAllFromFilesAndEditorsAndAFailureNothing) {
    test::TemporaryFolder folder;
    std::vector<fs::path> photos;
    for (const char* name : {"a.jpg", "b.jpg"}) {
        photos.push_back(test::makeJPEG(folder / name));
        test::tagWithExifTool(photos.back(), {"-EXIF:Artist=A", "-XMP:Title=T", "-IPTC:Keywords=K"});
    }
    auto editors = importFiles(sourcesOf(photos));
    ASSERT_EQ(editors.size(), 2u);

    succeeded(CleanTagValuesTask::create({{editors[0]}, {TagStream("XMP")}, {}, {}}));
    EXPECT_EQ(test::exifToolValue(photos[0], "XMP:Title"), "");
    EXPECT_EQ(test::exifToolValue(photos[0], "EXIF:Artist"), "A");
    EXPECT_EQ(test::exifToolValue(photos[0], "IPTC:Keywords"), "K");
    EXPECT_FALSE(editors[0]->currentValue(tagName("XMP:Title")));
    EXPECT_EQ(editors[0]->currentValue(tagName("EXIF:Artist")), "A");
    EXPECT_EQ(test::exifToolValue(photos[1], "XMP:Title"), "T");

    EXPECT_EQ(CleanTagValuesTask::cleanArguments(TagStream::allCases()), std::vector<std::string>{"-All="});
    performed(CleanTagValuesTask::create({{editors[1]}, TagStream::allCases(), {}, {}}));
    for (const char* name :
         {"EXIF:Artist", "XMP:Title", "IPTC:Keywords"}) // the file's are the cleaner's test
        EXPECT_FALSE(editors[1]->currentValue(tagName(name))) << name;
    // The file system's values stay in the editor, as they do in the file.
    EXPECT_TRUE(editors[1]->currentValue(tagName("File:FileName")));

    // A failed run leaves the editors as the files are.
    std::shared_ptr<CleanTagValuesTask> failed;
    {
        test::Unwritable locked(photos[0]);
        if (!locked.ok()) GTEST_SKIP() << "this volume can't make a file unwritable";
        failed = performed(CleanTagValuesTask::create({{editors[0]}, {TagStream("IPTC")}, {}, {}}));
    }
    EXPECT_FALSE(failed->errors().empty());
    EXPECT_EQ(test::exifToolValue(photos[0], "IPTC:Keywords"), "K");
    EXPECT_EQ(editors[0]->currentValue(tagName("IPTC:Keywords")), "K");
}

TEST(FetchTagValuesTaskTest, DeliversTheValuesOfFilesThatHaveTheTagOnce) {
    test::TemporaryFolder folder;
    const auto tagged = test::makeJPEG(folder / "tagged.jpg");
    test::tagWithExifTool(tagged,
                          {"-EXIF:Artist=Ann", "-EXIF:FNumber=2.8", "-XMP:Subject=one", "-XMP:Subject=two"});
    const auto bare = test::makeJPEG(folder / "bare.jpg");
    int calls = 0;
    FetchTagValuesTask::Values values;
    auto fetch = [&](const char* name, std::vector<fs::path> paths) {
        calls = 0;
        values.clear();
        return performed(
            FetchTagValuesTask::create({sourcesOf(paths), tagName(name), [&](const auto& fetched) {
                                            ++calls;
                                            values = fetched;
                                        }}));
    };
    fetch("EXIF:Artist", {tagged, bare, folder / "missing.jpg"});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(values, (FetchTagValuesTask::Values{{tagged, "Ann"}}));
    fetch("EXIF:FNumber", {tagged});
    EXPECT_EQ(values.at(tagged), "2.8");
    fetch("XMP:Subject", {tagged});
    EXPECT_EQ(values.at(tagged), "one, two");
    // ExifTool makes composite tags only when asked to: a fetch of one must ask.
    fetch("Composite:ImageSize", {tagged});
    EXPECT_FALSE(values.at(tagged).empty());

    auto task = fetch("EXIF:Artist", {});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{"Sources are missing"});
    task = performed(FetchTagValuesTask::create({sourcesOf({tagged}), tagName("EXIF:Artist"), nullptr}));
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{"Completion is missing"});
    EXPECT_THROW(FetchTagValuesTask::parseOutput("{\"SourceFile\": \"x\"}", {}), Error);
}

// A track of two points twenty minutes apart (ExifTool interpolates within half an hour), climbing
// north-east.
fs::path writeTrack(const fs::path& path) {
    std::ofstream(path) << R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="test" xmlns="http://www.topografix.com/GPX/1/1"><trk><trkseg>
<trkpt lat="45.0" lon="6.0"><ele>1000</ele><time>2024-06-01T10:00:00Z</time></trkpt>
<trkpt lat="45.1" lon="6.2"><ele>1200</ele><time>2024-06-01T10:20:00Z</time></trkpt>
</trkseg></trk></gpx>
)";
    return path;
}

fs::path photoTakenAt(const fs::path& path, const std::string& dateTime) {
    test::makeJPEG(path);
    test::tagWithExifTool(path, {"-DateTimeOriginal=" + dateTime});
    return path;
}

double number(const fs::path& path, const char* name) {
    const auto text = test::exifToolValue(path, name, true);
    return text.empty() ? 999 : std::stod(text);
}

// The TZ variable for one test: ExifTool reads the photos' times in the zone it inherits.
struct TZGuard {
    std::optional<std::string> saved;
    explicit TZGuard(const char* zone) {
        if (const char* old = std::getenv("TZ")) saved = old;
        ::setenv("TZ", zone, 1);
    }
    ~TZGuard() { saved ? ::setenv("TZ", saved->c_str(), 1) : ::unsetenv("TZ"); }
};

TEST(FolderImportGeotagTaskTest, InterpolatesTheTrackAtEachPhotosShiftedTime) {
    TZGuard zone("UTC");
    test::TemporaryFolder folder;
    const auto photos = folder.makeSubfolder("trip");
    const auto half = photoTakenAt(photos / "half.jpg", "2024:06:01 10:09:00");
    const auto quarter = photoTakenAt(photos / "quarter.jpg", "2024:06:01 10:04:00");
    const auto late = photoTakenAt(photos / "late.jpg", "2024:06:01 18:00:00");
    const auto track = writeTrack(folder / "TRACK.GPX");
    // ExifTool puts the modification time back to the second.
    const auto seconds = [](const fs::path& path) {
        return std::chrono::floor<std::chrono::seconds>(fs::last_write_time(path));
    };
    const auto modified = seconds(half);

    // The camera was a minute behind.
    succeeded(FolderImportGeotagTask::create({folderEditor(photos), track, "+0:01:00", {}}));
    EXPECT_NEAR(number(half, "Composite:GPSLatitude"), 45.05, 1e-5);
    EXPECT_NEAR(number(half, "Composite:GPSLongitude"), 6.1, 1e-5);
    EXPECT_NEAR(number(quarter, "Composite:GPSLatitude"), 45.025, 1e-5);
    EXPECT_NEAR(number(quarter, "Composite:GPSAltitude"), 1050, 1e-2);
    EXPECT_EQ(test::exifToolValue(late, "GPS:GPSLatitude"), "");
    EXPECT_EQ(seconds(half), modified);

    auto errorOf = [](FolderImportGeotagTask::Settings settings) {
        auto texts = errorTexts(*performed(FolderImportGeotagTask::create(std::move(settings))));
        return texts.empty() ? std::string() : texts.front();
    };
    EXPECT_EQ(errorOf({folderEditor(photos), folder / "track.csv", {}, {}}), "Geotag file is not supported");
    EXPECT_EQ(errorOf({folderEditor(photos), std::nullopt, {}, {}}), "Geotag file is missing");
    EXPECT_EQ(errorOf({folderEditor(half), track, {}, {}}), "Editor is not a folder");
}

// The points of a GPX or KML document: "name lat lon time" for each, in order.
std::vector<std::string> points(const std::string& document) {
    std::vector<std::string> found;
    const std::regex gpx(R"re(<trkpt lat="([-0-9.]+)" lon="([-0-9.]+)">\s*(?:<ele>[^<]*</ele>\s*)?)re"
                         R"re((?:<time>([^<]*)</time>\s*)?<name>([^<]*)</name>)re");
    const std::regex kml(R"re(<name>([^<]*)</name>\s*(?:<TimeStamp><when>([^<]*)</when></TimeStamp>\s*)?)re"
                         R"re(<Point><coordinates>([-0-9.]+),([-0-9.]+)</coordinates>)re");
    for (std::sregex_iterator it(document.begin(), document.end(), gpx), end; it != end; ++it)
        found.push_back((*it)[4].str() + " " + (*it)[1].str() + " " + (*it)[2].str() + " " + (*it)[3].str());
    for (std::sregex_iterator it(document.begin(), document.end(), kml), end; it != end; ++it)
        found.push_back((*it)[1].str() + " " + (*it)[4].str() + " " + (*it)[3].str() + " " + (*it)[2].str());
    return found;
}

bool wellFormed(const fs::path& path) {
    const std::string command = "xmllint --noout '" + path.string() + "' 2>/dev/null";
    return std::system(command.c_str()) == 0;
}

TEST(FolderExportGeotagTaskTest, WritesTheFilesWithAPositionInTimeOrder) {
    test::TemporaryFolder folder;
    const auto photos = folder.makeSubfolder("trip");
    const auto later = test::makeJPEG(photos / "a <later> & co.jpg");
    test::tagWithExifTool(later, {"-GPSLatitude=45.1", "-GPSLatitudeRef=N", "-GPSLongitude=6.2",
                                  "-GPSLongitudeRef=W", "-GPSDateStamp=2024:06:01", "-GPSTimeStamp=11:00:00",
                                  "-GPSAltitude=1200"});
    const auto earlier = test::makeJPEG(photos / "b.jpg");
    test::tagWithExifTool(earlier,
                          {"-GPSLatitude=45", "-GPSLatitudeRef=S", "-GPSLongitude=6", "-GPSLongitudeRef=E",
                           "-GPSDateStamp=2024:06:01", "-GPSTimeStamp=10:00:00"});
    test::makeJPEG(photos / "c.jpg");
    // A file ExifTool can't read is reported and left out; the others are written.
    test::writeBytes(photos / "d.jpg", {0xFF, 0xD8, 0x00});

    for (auto format : {FolderExportGeotagTask::Format::gpx, FolderExportGeotagTask::Format::kml}) {
        const auto output = folder / ("trip." + FolderExportGeotagTask::rawValue(format));
        auto task = performed(FolderExportGeotagTask::create({folderEditor(photos), output, format, {}}));
        const auto errors = errorTexts(*task);
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_NE(errors.front().find("ExifTool"), std::string::npos) << errors.front();
        const auto document = testing::fileBytes(output);
        EXPECT_TRUE(wellFormed(output)) << document;
        EXPECT_EQ(points(document), (std::vector<std::string>{"b.jpg -45 6 2024-06-01T10:00:00Z",
                                                              "a &lt;later&gt; &amp; co.jpg 45.1 -6.2 "
                                                              "2024-06-01T11:00:00Z"}))
            << document;

        // A folder without files still gives a document.
        const auto empty = folder.makeSubfolder("empty");
        const auto emptyOutput = folder / ("empty." + FolderExportGeotagTask::rawValue(format));
        performed(FolderExportGeotagTask::create({folderEditor(empty), emptyOutput, format, {}}));
        EXPECT_TRUE(wellFormed(emptyOutput)) << testing::fileBytes(emptyOutput);
    }
    auto task = performed(FolderExportGeotagTask::create({folderEditor(photos), std::nullopt, {}, {}}));
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{"Output URL is missing"});
}

TEST(FileExportImagesTaskTest, WritesEachImageBesideItsFileOrIntoTheFolder) {
    test::TemporaryFolder folder;
    const auto with = test::makeJPEG(folder / "with.jpg");
    test::tagWithExifTool(with, {"-ThumbnailImage<=" + test::makeJPEG(folder / "thumb.jpeg").string()});
    const auto without = test::makeJPEG(folder / "without.jpg");
    auto editors = importFiles(sourcesOf({with, without}));
    const auto thumbnail = ETEmbeddedImageReader::ImageSource::thumbnail;

    auto task = performed(FileExportImagesTask::create({editors, thumbnail, std::nullopt}));
    const auto exported = folder / "with_thumbnail.jpg";
    EXPECT_EQ(task->exportedFiles(), std::vector<fs::path>{exported});
    EXPECT_EQ(testing::fileBytes(exported), testing::fileBytes(folder / "thumb.jpeg"));
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{without.string() + ": Empty output"});

    const auto out = folder.makeSubfolder("out");
    performed(FileExportImagesTask::create({{editors[0]}, thumbnail, out}));
    EXPECT_TRUE(fs::exists(out / "with_thumbnail.jpg"));

    task =
        performed(FileExportImagesTask::create({{editors[0], folderEditor(folder.path())}, thumbnail, out}));
    EXPECT_EQ(errorTexts(*task), std::vector<std::string>{"Folder editor is not supported"});
}

} // namespace
} // namespace corvane
