// `corvane read` and `corvane set`, run as the built program on real files.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using corvane::test::exifToolValue;
using corvane::test::makeJPEG;
using corvane::test::makeMOV;
using corvane::test::TemporaryFolder;

using corvane::test::corvane;
using corvane::test::readText;

nlohmann::json readJSON(const std::vector<std::string>& paths, const TemporaryFolder& scratch,
                        std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"read", "--json"});
    options.insert(options.end(), paths.begin(), paths.end());
    auto run = corvane(options, scratch);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return nlohmann::json::parse(run.out);
}

using FileCommands = corvane::test::CliTest;

TEST_F(FileCommands, setThenReadBackEveryFamily) {
    auto jpeg = makeJPEG(folder / "ünï photo 'q'.jpg");
    auto mov = makeMOV(folder / "clip.mov");
    auto set = corvane({"set", "EXIF:Artist=Zoë — 東京", "XMP:Title=Titre «x»", "IPTC:Caption-Abstract=Ça va",
                        "--", jpeg.string()},
                       scratch);
    ASSERT_EQ(set.exitCode, 0) << set.err;
    EXPECT_NE(set.out.find("1 file updated"), std::string::npos) << set.out;
    auto setMov = corvane({"set", "QuickTime:Title=Фильм", mov.string()}, scratch);
    ASSERT_EQ(setMov.exitCode, 0) << setMov.err;

    auto json = readJSON({jpeg.string(), mov.string()}, scratch);
    ASSERT_TRUE(json.contains(jpeg.string())) << json.dump(1);
    EXPECT_EQ(json[jpeg.string()]["EXIF:Artist"], "Zoë — 東京");
    EXPECT_EQ(json[jpeg.string()]["XMP:Title"], "Titre «x»");
    EXPECT_EQ(json[jpeg.string()]["IPTC:Caption-Abstract"], "Ça va");
    EXPECT_EQ(json[mov.string()]["QuickTime:Title"], "Фильм");

    // The plain form: a header per file, then tab-separated rows.
    auto plain = corvane({"read", jpeg.string()}, scratch);
    ASSERT_EQ(plain.exitCode, 0) << plain.err;
    EXPECT_EQ(plain.out.rfind("======== " + jpeg.string() + "\n", 0), 0u) << plain.out;
    EXPECT_NE(plain.out.find("\nEXIF:Artist\tZoë — 東京\n"), std::string::npos);

    // An empty value clears the tag.
    auto clear = corvane({"set", "EXIF:Artist=", jpeg.string()}, scratch);
    ASSERT_EQ(clear.exitCode, 0) << clear.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "");
}

TEST_F(FileCommands, badTagsAreReportedAndNothingIsWritten) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = readText(jpeg);
    auto unknown = corvane({"set", "EXIF:NoSuchTag=1", "EXIF:Artist=x", jpeg.string()}, scratch);
    EXPECT_NE(unknown.exitCode, 0);
    EXPECT_NE(unknown.err.find("EXIF:NoSuchTag"), std::string::npos) << unknown.err;
    auto readOnly = corvane({"set", "EXIF:A100DataOffset=1", jpeg.string()}, scratch);
    EXPECT_NE(readOnly.exitCode, 0);
    EXPECT_NE(readOnly.err.find("not editable"), std::string::npos) << readOnly.err;
    auto badValue = corvane({"set", "EXIF:Orientation=sideways", jpeg.string()}, scratch);
    EXPECT_NE(badValue.exitCode, 0);
    EXPECT_EQ(readText(jpeg), before);
}

TEST_F(FileCommands, errorsOfSomeFilesDontStopTheOthers) {
    auto good = makeJPEG(folder / "good.jpg");
    auto bad = corvane::test::writeBytes(folder / "bad.jpg", {});
    auto missing = folder / "missing.jpg";
    auto read = corvane({"read", "--json", good.string(), bad.string(), missing.string()}, scratch);
    EXPECT_EQ(read.exitCode, 1);
    EXPECT_NE(read.err.find("bad.jpg"), std::string::npos) << read.err;
    EXPECT_NE(read.err.find("missing.jpg"), std::string::npos) << read.err;
    auto json = nlohmann::json::parse(read.out);
    EXPECT_EQ(json.size(), 1u);
    EXPECT_TRUE(json.contains(good.string()));

    auto set = corvane({"set", "EXIF:Artist=Still written", "--", good.string(), bad.string()}, scratch);
    EXPECT_EQ(set.exitCode, 1);
    EXPECT_EQ(exifToolValue(good, "EXIF:Artist"), "Still written");
}

TEST_F(FileCommands, typedEditOptions) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    corvane::test::tagWithExifTool(jpeg, {"-EXIF:DateTimeOriginal=2020:05:06 10:20:30"});
    auto run = corvane({"set", "--location", "40 26 46.302 N, 79 58 55.903 W", "--shift-dates", "hh: 2",
                        "--rotate", "left", jpeg.string()},
                       scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal"), "2020:05:06 12:20:30");
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLatitude", true)), 40.446195, 1e-5);
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "XMP:GPSLongitude", true)), -79.982195, 1e-5);
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:GPSLongitudeRef", true), "W");
    EXPECT_NE(exifToolValue(jpeg, "EXIF:Orientation", true), "1");

    auto back =
        corvane({"set", "--rotate", "right", "--shift-dates", "SHIFT(hh: -2)", jpeg.string()}, scratch);
    ASSERT_EQ(back.exitCode, 0) << back.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Orientation", true), "1");
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal"), "2020:05:06 10:20:30");

    auto bad = corvane({"set", "--location", "nowhere at all", jpeg.string()}, scratch);
    EXPECT_EQ(bad.exitCode, 2);
    auto badFlip = corvane({"set", "--flip", "diagonal", jpeg.string()}, scratch);
    EXPECT_NE(badFlip.exitCode, 0);
}

TEST_F(FileCommands, foldersRecursiveOrNot) {
    makeJPEG(folder / "top.jpg");
    auto sub = folder.makeSubfolder("sub");
    makeJPEG(sub / "inner.jpg");
    EXPECT_EQ(readJSON({folder.path().string()}, scratch).size(), 1u);
    EXPECT_EQ(readJSON({folder.path().string()}, scratch, {"--recursive"}).size(), 2u);

    auto set = corvane({"set", "--recursive", "EXIF:Artist=Everyone", folder.path().string()}, scratch);
    ASSERT_EQ(set.exitCode, 0) << set.err;
    EXPECT_EQ(exifToolValue(sub / "inner.jpg", "EXIF:Artist"), "Everyone");
    EXPECT_EQ(exifToolValue(folder / "top.jpg", "EXIF:Artist"), "Everyone");
}

TEST_F(FileCommands, everythingAfterTheMarkIsAFile) {
    const std::vector<std::string> names{"XMP:Rights=All rights waived.jpg", "a=b.jpg", "-all=.jpg",
                                         "other.jpg"};
    for (const auto& name : names)
        makeJPEG(folder / name);
    std::vector<std::string> arguments{"set", "XMP:Title=T", "--"};
    arguments.insert(arguments.end(), names.begin(), names.end());
    auto run = corvane(arguments, scratch, folder.path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("4 files updated"), std::string::npos) << run.out;
    for (const auto& name : names) {
        EXPECT_EQ(exifToolValue(folder / name, "XMP:Title"), "T") << name;
        EXPECT_EQ(exifToolValue(folder / name, "XMP:Rights"), "") << name << ": a file name is no edit";
    }
}

TEST_F(FileCommands, theSummaryCountsEachFileAsExifToolReportedIt) {
    auto good = makeJPEG(folder / "good.jpg");
    // Read with a warning, refused by ExifTool at write time: the image data is cut off.
    auto corrupt = makeJPEG(folder / "corrupt.jpg");
    std::string bytes = readText(corrupt);
    bytes.resize(bytes.find("\xFF\xDA"));
    corvane::test::writeBytes(corrupt, std::vector<std::uint8_t>(bytes.begin(), bytes.end()));

    auto run = corvane({"set", "EXIF:Artist=Both", "--", good.string(), corrupt.string()}, scratch);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.out.find("1 file updated, 0 unchanged, 1 failed"), std::string::npos) << run.out;
    EXPECT_NE(run.err.find(corrupt.string() + ": Corrupted JPEG image"), std::string::npos) << run.err;
    EXPECT_EQ(exifToolValue(good, "EXIF:Artist"), "Both");

    // Edits that change nothing in the file are reported as such.
    auto same = corvane({"set", "EXIF:Artist=Both", good.string()}, scratch);
    ASSERT_EQ(same.exitCode, 0) << same.err;
    EXPECT_NE(same.out.find("0 files updated, 1 unchanged"), std::string::npos) << same.out;
    auto mov = makeMOV(folder / "clip.mov");
    auto rotate = corvane({"set", "--rotate", "right", mov.string()}, scratch);
    EXPECT_EQ(rotate.out.find("1 file updated"), std::string::npos) << rotate.out << rotate.err;
}

TEST_F(FileCommands, dateEditionsThatChangeNoFieldAreRefused) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    corvane::test::tagWithExifTool(jpeg, {"-EXIF:DateTimeOriginal=2020:05:06 10:20:30"});
    const std::string before = readText(jpeg);
    for (const std::string edition :
         {"SELECT(DateTimeOriginal)", "SELECT()", "garbage", "YYYY: 1", "hh: 2.5", ""}) {
        auto run = corvane({"set", "--shift-dates", edition, jpeg.string()}, scratch);
        EXPECT_EQ(run.exitCode, 2) << edition;
        EXPECT_NE(run.err.find("is not a date edition: give fields as KEY: NUMBER"), std::string::npos)
            << edition << ": " << run.err;
    }
    EXPECT_EQ(readText(jpeg), before);

    // The same in a preset.
    const auto library = folder / "dates.json";
    auto made =
        corvane({"preset", "make", "-o", library.string(), jpeg.string(), "EXIF:DateTimeOriginal"}, scratch);
    ASSERT_EQ(made.exitCode, 0) << made.err;
    std::string text = readText(library);
    const auto at = text.find("SELECT(");
    ASSERT_NE(at, std::string::npos) << text;
    text.replace(at, text.find('"', at) - at, "SELECT(garbage)");
    corvane::test::writeBytes(library, std::vector<std::uint8_t>(text.begin(), text.end()));
    auto preset = corvane({"set", "--preset", library.string(), jpeg.string()}, scratch);
    EXPECT_EQ(preset.exitCode, 2);
    EXPECT_NE(preset.err.find("SELECT(garbage)"), std::string::npos) << preset.err;
    EXPECT_EQ(readText(jpeg), before);
}

} // namespace
