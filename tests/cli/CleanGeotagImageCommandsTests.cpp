// `corvane clean`, `fetch`, `geotag`, `gps` and `image`, run as the built program on copies of files
// the tests make and of corpus files.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace {

using namespace corvane::test;
using corvane::test::corvane;

using CleanGeotagImageCommands = CliTest;

TEST_F(CleanGeotagImageCommands, cleanRemovesTheChosenFamiliesAndFetchPrintsWhatIsLeft) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    for (const auto& path : {a, b})
        tagWithExifTool(path, {"-EXIF:Artist=Ann\tLee", "-XMP:Title=T", "-IPTC:Keywords=K"});

    auto cleaned = corvane({"clean", "--family", "xmp", "--family", "IPTC", a.string()}, scratch);
    ASSERT_EQ(cleaned.exitCode, 0) << cleaned.err;
    EXPECT_EQ(cleaned.out, a.string() + "\n");
    EXPECT_EQ(exifToolValue(a, "XMP:Title"), "");
    EXPECT_EQ(exifToolValue(a, "IPTC:Keywords"), "");

    auto fetched = corvane({"fetch", "EXIF:Artist", b.string(), a.string()}, scratch);
    ASSERT_EQ(fetched.exitCode, 0) << fetched.err;
    EXPECT_EQ(fetched.out, a.string() + "\tAnn\\tLee\n" + b.string() + "\tAnn\\tLee\n");
    EXPECT_EQ(corvane({"fetch", "XMP:Title", a.string(), b.string()}, scratch).out, b.string() + "\tT\n");

    ASSERT_EQ(corvane({"clean", "--all", b.string()}, scratch).exitCode, 0);
    EXPECT_EQ(exifToolValue(b, "EXIF:Artist"), "");

    EXPECT_EQ(corvane({"clean", "--family", "Nonsense", a.string()}, scratch).exitCode, 2);
    EXPECT_EQ(corvane({"clean", a.string()}, scratch).exitCode, 2);
    EXPECT_EQ(corvane({"fetch", "Artist", a.string()}, scratch).exitCode, 2);
    auto missing = corvane({"fetch", "EXIF:Artist", (folder / "none.jpg").string()}, scratch);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("none.jpg"), std::string::npos) << missing.err;
}

TEST_F(CleanGeotagImageCommands, movieAtomIsRemovedFromMPEG4MoviesOnly) {
    auto mov = makeMOV(folder / "clip.mov");
    const auto before = readText(mov);
    auto run = corvane({"clean", "--movie-atom", mov.string()}, scratch);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("corvane: " + mov.string() + ": "), std::string::npos) << run.err;
    EXPECT_EQ(readText(mov), before);
}

// The corpus's photo taken along its GPX track: its copy loses its position, gets it back from the
// track, and the folder exports as a track that holds it.
TEST_F(CleanGeotagImageCommands, geotagImportGpsAndExportOnTheCorpusPair) {
    const auto pair = corpusFolder() / "geotag-pairs" / "exiv2";
    if (!fs::exists(pair / "FurnaceCreekInn.jpg")) GTEST_SKIP() << "no geotag pair in the corpus at " << pair;
    auto photos = folder.makeSubfolder("photos");
    auto photo = photos / "FurnaceCreekInn.jpg";
    fs::copy_file(pair / "FurnaceCreekInn.jpg", photo);
    fs::permissions(photo, fs::perms::owner_read | fs::perms::owner_write);
    auto track = folder / "TRACK.GPX";
    fs::copy_file(pair / "FurnaceCreekInn.gpx", track);

    auto original = corvane({"gps", photo.string()}, scratch);
    ASSERT_EQ(original.exitCode, 0) << original.err;
    tagWithExifTool(photo, {"-GPS:all="});
    auto none = makeJPEG(photos / "none.jpg");
    EXPECT_EQ(corvane({"gps", photo.string(), none.string()}, scratch).out,
              photo.string() + "\t-\t-\n" + none.string() + "\t-\t-\n");

    // The track's points are in UTC; the camera's clock kept Pacific standard time (UTC-8).
    ::setenv("TZ", "PST8", 1);
    auto imported = corvane({"geotag", "import", "--track", track.string(), photos.string()}, scratch);
    ::unsetenv("TZ");
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    // Back within a few hundred metres of where the camera had put it.
    auto position = corvane({"gps", photo.string()}, scratch).out;
    const auto tab = position.find('\t');
    ASSERT_NE(tab, std::string::npos) << position;
    double latitude = 0, longitude = 0;
    ASSERT_EQ(std::sscanf(position.c_str() + tab, "\t%lf\t%lf", &latitude, &longitude), 2) << position;
    EXPECT_NEAR(latitude, 36.4483, 0.005);
    EXPECT_NEAR(longitude, -116.855, 0.005);

    auto gpx = folder / "trip.gpx";
    auto exported =
        corvane({"geotag", "export", "--format", "gpx", "-o", gpx.string(), photos.string()}, scratch);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    const auto document = readText(gpx);
    EXPECT_NE(document.find("<name>FurnaceCreekInn.jpg</name>"), std::string::npos) << document;
    EXPECT_EQ(document.find("none.jpg"), std::string::npos) << document;

    auto badTrack = corvane({"geotag", "import", "--track", gpx.string() + ".csv", photos.string()}, scratch);
    EXPECT_NE(badTrack.exitCode, 0);
}

TEST_F(CleanGeotagImageCommands, imageThumbnailSetExtractAndRemove) {
    auto photo = makeJPEG(folder / "photo.jpg");
    auto picture = makePNG(folder / "picture.png");

    auto set = corvane({"image", "thumbnail", "--set", picture.string(), photo.string()}, scratch);
    ASSERT_EQ(set.exitCode, 0) << set.err;
    auto out = folder / "out";
    auto extracted = corvane(
        {"image", "extract", "--which", "thumbnail", "--output", out.string(), photo.string()}, scratch);
    ASSERT_EQ(extracted.exitCode, 0) << extracted.err;
    EXPECT_EQ(extracted.out, (out / "photo_thumbnail.jpg").string() + "\n");
    EXPECT_EQ(exifToolValue(out / "photo_thumbnail.jpg", "File:FileType"), "JPEG");

    ASSERT_EQ(corvane({"image", "thumbnail", "--remove", photo.string()}, scratch).exitCode, 0);
    auto gone = corvane({"image", "extract", "--which", "thumbnail", photo.string()}, scratch);
    EXPECT_EQ(gone.exitCode, 1);
    EXPECT_NE(gone.err.find(photo.string() + ": Empty output"), std::string::npos) << gone.err;

    auto text = folder / "notes.txt";
    std::ofstream(text) << "not an image";
    auto notImage = corvane({"image", "thumbnail", "--set", text.string(), photo.string()}, scratch);
    EXPECT_EQ(notImage.exitCode, 1);
    EXPECT_NE(notImage.err.find("notes.txt: Not a JPEG or PNG image"), std::string::npos) << notImage.err;
}

// Raw files of the corpus: each preview extracted beside a copy decodes as a JPEG.
TEST_F(CleanGeotagImageCommands, imageExtractPullsPreviewsOutOfRawFiles) {
    std::vector<fs::path> raws;
    for (const char* format : {"cr2", "nef"}) {
        std::error_code error;
        for (fs::recursive_directory_iterator it(corpusFolder() / format, error), end;
             !error && it != end && raws.size() < 3; it.increment(error))
            if (it->is_regular_file()) raws.push_back(it->path());
    }
    if (raws.empty()) GTEST_SKIP() << "no raw files in the corpus at " << corpusFolder();
    std::vector<std::string> arguments = {"image", "extract", "--which", "preview"};
    for (const auto& raw : raws) {
        auto copy = folder / raw.filename();
        fs::copy_file(raw, copy, fs::copy_options::overwrite_existing);
        arguments.push_back(copy.string());
    }
    auto run = corvane(arguments, scratch);
    EXPECT_NE(run.out, "") << run.err;
    std::size_t start = 0;
    for (auto end = run.out.find('\n'); end != std::string::npos;
         start = end + 1, end = run.out.find('\n', start)) {
        const auto written = run.out.substr(start, end - start);
        EXPECT_TRUE(written.ends_with("_preview.jpg")) << written;
        EXPECT_EQ(exifToolValue(written, "File:FileType"), "JPEG") << written;
    }
}

} // namespace
