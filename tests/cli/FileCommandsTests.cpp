// `corvane read` and `corvane set`, run as the built program on real files.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
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

// The values as stored, by file path.
nlohmann::json readJSON(const std::vector<std::string>& paths, const TemporaryFolder& scratch,
                        std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"read", "--json", "--raw"});
    options.insert(options.end(), paths.begin(), paths.end());
    auto run = corvane(options, scratch);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    nlohmann::json byPath = nlohmann::json::object();
    for (auto& record : nlohmann::json::parse(run.out))
        byPath[record.at("SourceFile").get<std::string>()] = record;
    return byPath;
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

// Bare, case-insensitive names; a dry run that shows each change and writes nothing; the
// modification date kept on request.
TEST_F(FileCommands, setByBareNamesDryRunAndModificationDate) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto mov = makeMOV(folder / "b.mov");
    corvane::test::tagWithExifTool(jpeg, {"-EXIF:Orientation=1", "-n"});
    const std::string before = readText(jpeg);
    const auto movBefore = readText(mov);

    auto dry = corvane({"set", "--dry-run", "artist=Ann", "ORIENTATION=6", "--", jpeg.string(), mov.string()},
                       scratch);
    ASSERT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_NE(dry.out.find(jpeg.string() + ": EXIF:Artist: (none) \u2192 Ann\n"), std::string::npos)
        << dry.out;
    EXPECT_NE(dry.out.find(jpeg.string() + ": EXIF:Orientation: Horizontal (normal) \u2192 Rotate 90 CW\n"),
              std::string::npos)
        << dry.out;
    // A movie takes the bare name in the family it can write.
    EXPECT_NE(dry.out.find(mov.string() + ": XMP:Artist: (none) \u2192 Ann\n"), std::string::npos) << dry.out;
    EXPECT_EQ(readText(jpeg), before);
    EXPECT_EQ(readText(mov), movBefore);

    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(24 * 400);
    fs::last_write_time(jpeg, old);
    auto kept = corvane({"set", "-P", "artist=Ann", jpeg.string()}, scratch);
    ASSERT_EQ(kept.exitCode, 0) << kept.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "Ann");
    EXPECT_EQ(fs::last_write_time(jpeg), old);
    auto moved = corvane({"set", "Artist=Bo", jpeg.string()}, scratch);
    ASSERT_EQ(moved.exitCode, 0) << moved.err;
    EXPECT_NE(fs::last_write_time(jpeg), old);

    // A maker-notes name several makers share: the user must say which.
    auto ambiguous = corvane({"set", "ShutterCount=3", jpeg.string()}, scratch);
    EXPECT_EQ(ambiguous.exitCode, 2);
    EXPECT_NE(ambiguous.err.find("Nikon:ShutterCount"), std::string::npos) << ambiguous.err;
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
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0].at("SourceFile"), good.string());

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

// Values typed for a tag go through its converter and are checked against what the tag holds;
// refused ones name the tag and the value and leave the file as it was.
TEST_F(FileCommands, setChecksValuesAgainstTheTag) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = readText(jpeg);
    const std::pair<std::string, std::string> refused[] = {
        {"EXIF:DateTimeOriginal=2024:01:02 03:04:05+02:00", "time zone"}, // EXIF dates hold no zone
        {"EXIF:DateTimeOriginal=2024:01:02", "date and time"},
        {"EXIF:Orientation=99", "one of"},
        {"EXIF:GPSLatitude=123", "degrees"},
        {"IPTC:ObjectName=" + std::string(300, 'x'), "64 bytes"},
        {"EXIF:LensInfo=24 70 2.8", "4 values"},
        {"EXIF:SubjectArea=10 x 20", "element"},
    };
    for (const auto& [assignment, why] : refused) {
        auto run = corvane({"set", assignment, jpeg.string()}, scratch);
        EXPECT_EQ(run.exitCode, 2) << assignment;
        const std::string tag = assignment.substr(0, assignment.find('='));
        EXPECT_NE(run.err.find(tag), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(why), std::string::npos) << run.err;
    }
    EXPECT_EQ(readText(jpeg), before);

    // The usual notations are read: a fraction for a real number, a choice by its value.
    auto run =
        corvane({"set", "EXIF:ExposureTime=1/500", "EXIF:Orientation=6", "EXIF:SubjectArea=10 20 30 40",
                 "XMP:DateCreated=2024:01:02 03:04:05.25+02:00", jpeg.string()},
                scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:ExposureTime", true), "0.002");
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Orientation", true), "6");
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:SubjectArea", true), "10 20 30 40");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:DateCreated", true), "2024:01:02 03:04:05.25+02:00");
}

// A position is written only when it reads whole and in range, not through one of the parser's
// kept quirks; the position written is printed.
// A list item may hold a comma: with --list-separator the value splits on another text, without
// it such an item is given in double quotes. Either way each item reaches the file whole, and
// reads back whole; a tag of one value isn't split.
TEST_F(FileCommands, listItemsHoldingCommas) {
    const auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = readText(jpeg);
    const std::vector<std::string> edits{
        "--list-separator", ";",          "XMP:Subject=Smith, John;Paris", "keywords= a ; ;b,c ",
        "EXIF:Artist=A;B",  jpeg.string()};
    std::vector<std::string> dryRun{"set", "--dry-run"};
    dryRun.insert(dryRun.end(), edits.begin(), edits.end());
    auto dry = corvane(dryRun, scratch);
    ASSERT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_NE(dry.out.find(": XMP:Subject: (none) \u2192 \"Smith, John\",Paris\n"), std::string::npos)
        << dry.out;
    EXPECT_EQ(readText(jpeg), before);

    std::vector<std::string> set{"set"};
    set.insert(set.end(), edits.begin(), edits.end());
    auto run = corvane(set, scratch);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    auto written = [&] {
        const auto exiftool = corvane::test::runExifTool(
            {"-j", "-XMP:Subject", "-IPTC:Keywords", "-EXIF:Artist", jpeg.string()});
        return nlohmann::json::parse(exiftool.standardOutput).at(0);
    };
    auto file = written();
    EXPECT_EQ(file.at("Subject"), nlohmann::json::array({"Smith, John", "Paris"}));
    EXPECT_EQ(file.at("Keywords"), nlohmann::json::array({"a", "b,c"}));
    EXPECT_EQ(file.at("Artist"), "A;B");
    auto json = readJSON({jpeg.string()}, scratch);
    EXPECT_EQ(json[jpeg.string()]["XMP:Subject"], nlohmann::json::array({"Smith, John", "Paris"}));

    auto quoted = corvane({"set", "XMP:Subject=\"x, y\",z,say \"hi\"", jpeg.string()}, scratch);
    ASSERT_EQ(quoted.exitCode, 0) << quoted.err;
    EXPECT_EQ(written().at("Subject"), nlohmann::json::array({"x, y", "z", "say \"hi\""}));

    auto empty = corvane({"set", "--list-separator", "", "XMP:Subject=a", jpeg.string()}, scratch);
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_NE(empty.err.find("separator"), std::string::npos) << empty.err;
}

TEST_F(FileCommands, setLocationWritesOnlyWhatWasTyped) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = readText(jpeg);
    for (const char* text :
         {"40 26 46, -79 58 56", "40 26 46 N 79 58 56 W extra", "40.5, 200", "95.0, 10.0"}) {
        auto run = corvane({"set", "--location", text, jpeg.string()}, scratch);
        EXPECT_EQ(run.exitCode, 2) << text;
        EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
    }
    EXPECT_EQ(readText(jpeg), before);

    auto primes = corvane({"set", "--location", "40°26′46″N 79°58′56″W", jpeg.string()}, scratch);
    ASSERT_EQ(primes.exitCode, 0) << primes.err;
    EXPECT_NE(primes.out.find("position 40.44611111, -79.98222222"), std::string::npos) << primes.out;
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLatitude", true)), 40.446111, 1e-5);
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:GPSLongitudeRef", true), "W");

    auto greenwich = corvane({"set", "--location", "51.48, 0", jpeg.string()}, scratch);
    ASSERT_EQ(greenwich.exitCode, 0) << greenwich.err;
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLatitude", true)), 51.48, 1e-6);
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLongitude", true)), 0.0, 1e-9);
}

// Every file given or found in a folder is shown or reported: a name that isn't valid UTF-8 is
// read and written like any other, a folder's file of a format not read is named on standard error,
// and a file named alone is read whenever ExifTool reads it.
TEST_F(FileCommands, everyFileIsShownOrReported) {
    const fs::path latin1 = folder / std::string("caf\xe9.jpg");
    makeJPEG(latin1);
    corvane::test::tagWithExifTool(latin1, {"-EXIF:Artist=Latin"});
    makeJPEG(folder / "plain.jpg");
    corvane::test::writeBytes(folder / "notes.txt", {'h', 'i'});
    // A track log: no format of the media table, but ExifTool reads it.
    const std::string gpx =
        "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\"><trk><name>Walk</name>"
        "</trk></gpx>\n";
    const fs::path track = corvane::test::writeBytes(folder / "walk.gpx", {gpx.begin(), gpx.end()});

    auto run = corvane({"read", "--json", folder.path().string()}, scratch);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json.size(), 2u) << run.out;
    bool sawLatin1 = false;
    for (const auto& tags : json)
        if (tags.contains("EXIF:Artist")) sawLatin1 = tags["EXIF:Artist"] == "Latin";
    EXPECT_TRUE(sawLatin1) << run.out;
    EXPECT_NE(run.err.find("notes.txt: skipped"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("walk.gpx: skipped"), std::string::npos) << run.err;

    auto direct = corvane({"read", latin1.string()}, scratch);
    EXPECT_EQ(direct.exitCode, 0) << direct.err;
    EXPECT_NE(direct.out.find("EXIF:Artist\tLatin"), std::string::npos) << direct.out;

    // A file named alone is read by ExifTool when the media table doesn't list its format.
    auto log = corvane({"read", track.string()}, scratch);
    EXPECT_EQ(log.exitCode, 0) << log.err;
    EXPECT_NE(log.out.find("XMP:GpxTrkName\tWalk"), std::string::npos) << log.out;

    // And written, named alone or found in its folder.
    auto set = corvane({"set", "EXIF:Artist=Written", latin1.string()}, scratch);
    EXPECT_EQ(set.exitCode, 0) << set.err;
    EXPECT_NE(set.out.find("1 file updated"), std::string::npos) << set.out;
    EXPECT_EQ(exifToolValue(latin1, "EXIF:Artist"), "Written");
    auto folderSet = corvane({"set", "XMP:Title=Both", folder.path().string()}, scratch);
    EXPECT_EQ(folderSet.exitCode, 0) << folderSet.err;
    EXPECT_EQ(exifToolValue(latin1, "XMP:Title"), "Both");
}

// Dates are shown as the file holds them whatever the machine's zone, and a shift moves their
// wall clock and keeps their own offset; a date and its time move together.
TEST_F(FileCommands, datesKeepTheirOwnClock) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto mov = makeMOV(folder / "b.mov");
    corvane::test::tagWithExifTool(
        jpeg, {"-EXIF:DateTimeOriginal=2023:03:12 02:30:00", "-IPTC:DigitalCreationDate=2023:05:06",
               "-IPTC:DigitalCreationTime=23:37:53-04:00", "-XMP:DateCreated=2023:05:06 11:25:40.5+03:00",
               "-XMP:MetadataDate=2023:05:06 11:25+03:00"});
    corvane::test::tagWithExifTool(mov, {"-Keys:CreationDate=2023:05:06 11:25:40+03:00"});
    // 02:30 on that day doesn't exist in New York: the clocks went from 02:00 to 03:00.
    const char* savedZone = std::getenv("TZ");
    const std::string saved = savedZone ? savedZone : "";
    setenv("TZ", "America/New_York", 1);
    auto json = readJSON({jpeg.string(), mov.string()}, scratch);
    auto shift = corvane({"set", "--shift-dates", "hh: 1", jpeg.string(), mov.string()}, scratch);
    savedZone ? setenv("TZ", saved.c_str(), 1) : unsetenv("TZ");

    EXPECT_EQ(json[jpeg.string()]["EXIF:DateTimeOriginal"], "2023:03:12 02:30:00");
    EXPECT_EQ(json[jpeg.string()]["IPTC:DigitalCreationTime"], "23:37:53-04:00");
    EXPECT_EQ(json[jpeg.string()]["XMP:DateCreated"], "2023:05:06 11:25:40.5+03:00");
    EXPECT_EQ(json[jpeg.string()]["XMP:MetadataDate"], "2023:05:06 11:25:00+03:00");
    EXPECT_EQ(json[mov.string()]["QuickTime:CreationDate"], "2023:05:06 11:25:40+03:00");

    ASSERT_EQ(shift.exitCode, 0) << shift.err;
    EXPECT_NE(shift.out.find("2 files updated"), std::string::npos) << shift.out;
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal", true), "2023:03:12 03:30:00");
    EXPECT_EQ(exifToolValue(jpeg, "IPTC:DigitalCreationDate", true), "2023:05:07");
    EXPECT_EQ(exifToolValue(jpeg, "IPTC:DigitalCreationTime", true), "00:37:53-04:00");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:DateCreated", true), "2023:05:06 12:25:40.5+03:00");
    EXPECT_EQ(exifToolValue(mov, "Keys:CreationDate", true), "2023:05:06 12:25:40+03:00");
}

// A language of an alternative text is a tag of its own under ExifTool's name for it: read, and
// written where the text is writable; a language of a tag that doesn't exist is an unknown tag.
TEST_F(FileCommands, languagesOfAlternativeTextsAreTagsOfTheirOwn) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto set = corvane({"set", "XMP:Title=Square", "XMP:Title-de-CH=Quadrat", jpeg.string()}, scratch);
    ASSERT_EQ(set.exitCode, 0) << set.err;
    EXPECT_EQ(exifToolValue(jpeg, "XMP:Title-de-CH"), "Quadrat");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:Title"), "Square");

    auto read = corvane({"read", jpeg.string()}, scratch);
    EXPECT_NE(read.out.find("XMP:Title-de-CH\tQuadrat"), std::string::npos) << read.out;
    auto unknown = corvane({"set", "XMP:NoSuchTitle-de=x", jpeg.string()}, scratch);
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.err.find("unknown tag"), std::string::npos) << unknown.err;
}

} // namespace
