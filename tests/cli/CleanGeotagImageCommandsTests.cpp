// `corvane clean`, `fetch`, `geotag`, `gps` and `image`, run as the built program on files the tests
// make and on a copy of a corpus file.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace {

using namespace corvane::test;

using CleanGeotagImageCommands = CliTest;

TEST_F(CleanGeotagImageCommands, cleanRemovesTheChosenFamiliesAndFetchPrintsWhatIsLeft) {
    auto a = makeJPEG(folder / "a.jpg");
    auto b = makeJPEG(folder / "b.jpg");
    for (const auto& path : {a, b})
        tagWithExifTool(path, {"-EXIF:Artist=Ann\tLee", "-XMP:Title=T", "-IPTC:Keywords=K"});

    EXPECT_EQ(cliOK({"clean", "--family", "xmp", "--family", "IPTC", a.string()}).out, a.string() + "\n");
    EXPECT_EQ(exifToolValue(a, "XMP:Title"), "");
    EXPECT_EQ(exifToolValue(a, "IPTC:Keywords"), "");

    EXPECT_EQ(cliOK({"fetch", "EXIF:Artist", b.string(), a.string()}).out,
              a.string() + "\tAnn\\tLee\n" + b.string() + "\tAnn\\tLee\n");

    cliOK({"clean", "--all", b.string()});
    EXPECT_EQ(exifToolValue(b, "EXIF:Artist"), "");

    cliExits(2, {"clean", "--family", "Nonsense", a.string()});
    cliExits(2, {"clean", a.string()});
    cliExits(2, {"fetch", "Artist", a.string()});
    EXPECT_THAT(cliExits(1, {"fetch", "EXIF:Artist", (folder / "none.jpg").string()}).err,
                HasSubstr("none.jpg"));
}

TEST_F(CleanGeotagImageCommands, movieAtomIsRemovedFromMPEG4MoviesOnly) {
    auto mov = makeMOV(folder / "clip.mov");
    const auto before = fileBytes(mov);
    EXPECT_THAT(cliExits(1, {"clean", "--movie-atom", mov.string()}).err,
                HasSubstr("corvane: " + mov.string() + ": "));
    EXPECT_EQ(fileBytes(mov), before);
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

    cliOK({"gps", photo.string()});
    tagWithExifTool(photo, {"-GPS:all="});
    auto none = makeJPEG(photos / "none.jpg");
    EXPECT_EQ(cli({"gps", photo.string(), none.string()}).out,
              photo.string() + "\t-\t-\n" + none.string() + "\t-\t-\n");

    {
        // The track's points are in UTC; the camera's clock kept Pacific standard time (UTC-8).
        ScopedEnvironment zone("TZ", "PST8");
        cliOK({"geotag", "import", "--track", track.string(), photos.string()});
    }
    // Back within a few hundred metres of where the camera had put it.
    auto position = cli({"gps", photo.string()}).out;
    const auto tab = position.find('\t');
    ASSERT_NE(tab, std::string::npos) << position;
    double latitude = 0, longitude = 0;
    ASSERT_EQ(std::sscanf(position.c_str() + tab, "\t%lf\t%lf", &latitude, &longitude), 2) << position;
    EXPECT_NEAR(latitude, 36.4483, 0.005);
    EXPECT_NEAR(longitude, -116.855, 0.005);

    auto gpx = folder / "trip.gpx";
    cliOK({"geotag", "export", "--format", "gpx", "-o", gpx.string(), photos.string()});
    const auto document = fileBytes(gpx);
    EXPECT_THAT(document, HasSubstr("<name>FurnaceCreekInn.jpg</name>"));
    EXPECT_THAT(document, Not(HasSubstr("none.jpg")));

    EXPECT_NE(cli({"geotag", "import", "--track", gpx.string() + ".csv", photos.string()}).exitCode, 0);
}

TEST_F(CleanGeotagImageCommands, imageThumbnailSetExtractAndRemove) {
    auto photo = makeJPEG(folder / "photo.jpg");
    auto picture = makePNG(folder / "picture.png");

    cliOK({"image", "thumbnail", "--set", picture.string(), photo.string()});
    auto out = folder / "out";
    EXPECT_EQ(
        cliOK({"image", "extract", "--which", "thumbnail", "--output", out.string(), photo.string()}).out,
        (out / "photo_thumbnail.jpg").string() + "\n");

    cliOK({"image", "thumbnail", "--remove", photo.string()});
    EXPECT_THAT(cliExits(1, {"image", "extract", "--which", "thumbnail", photo.string()}).err,
                HasSubstr(photo.string() + ": no thumbnail image in the file (Empty output)"));

    auto text = folder / "notes.txt";
    writeText(text, "not an image");
    EXPECT_THAT(cliExits(1, {"image", "thumbnail", "--set", text.string(), photo.string()}).err,
                HasSubstr("notes.txt: Not a JPEG or PNG image"));
}

} // namespace
