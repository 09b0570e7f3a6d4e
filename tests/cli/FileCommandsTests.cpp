// `corvane read` and `corvane set`, run as the built program on real files, through either engine.
#include "cli/CliRun.hpp"
#include "support/SampleFiles.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace corvane::test;

class FileCommands : public CliTest {
protected:
    // The values as stored, by file path.
    nlohmann::json readJSON(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"read", "--json", "--raw"});
        nlohmann::json byPath = nlohmann::json::object();
        for (auto& record : nlohmann::json::parse(cliOK(arguments).out))
            byPath[record.at("SourceFile").get<std::string>()] = record;
        return byPath;
    }
};

TEST_F(FileCommands, setThenReadBackEveryFamily) {
    auto jpeg = makeJPEG(folder / "ünï photo 'q'.jpg");
    auto mov = makeMOV(folder / "clip.mov");
    // A language of an alternative text is a tag of its own under ExifTool's name for it.
    EXPECT_THAT(cliOK({"set", "EXIF:Artist=Zoë — 東京", "XMP:Title-de-CH=Quadrat «x»",
                       "IPTC:Caption-Abstract=Ça va", "--", jpeg.string()})
                    .out,
                HasSubstr("1 file updated"));
    cliOK({"set", "QuickTime:Title=Фильм", mov.string()});

    auto json = readJSON({jpeg.string(), mov.string()});
    EXPECT_EQ(json[jpeg.string()]["EXIF:Artist"], "Zoë — 東京");
    EXPECT_EQ(json[jpeg.string()]["XMP:Title-de-CH"], "Quadrat «x»");
    EXPECT_EQ(json[jpeg.string()]["IPTC:Caption-Abstract"], "Ça va");
    EXPECT_EQ(json[mov.string()]["QuickTime:Title"], "Фильм");

    // An empty value clears the tag.
    cliOK({"set", "EXIF:Artist=", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "");
}

// Bare, case-insensitive names; a dry run that shows each change and writes nothing; the
// modification date kept on request.
TEST_F(FileCommands, setByBareNamesDryRunAndModificationDate) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto mov = makeMOV(folder / "b.mov");
    tagWithExifTool(jpeg, {"-EXIF:Orientation=1", "-n"});
    const std::string before = fileBytes(jpeg);
    const auto movBefore = fileBytes(mov);

    const auto dry =
        cliOK({"set", "--dry-run", "artist=Ann", "ORIENTATION=6", "--", jpeg.string(), mov.string()}).out;
    EXPECT_THAT(dry, HasSubstr(jpeg.string() + ": EXIF:Artist: (none) \u2192 Ann\n"));
    EXPECT_THAT(dry,
                HasSubstr(jpeg.string() + ": EXIF:Orientation: Horizontal (normal) \u2192 Rotate 90 CW\n"));
    // A movie takes the bare name in the family it can write.
    EXPECT_THAT(dry, HasSubstr(mov.string() + ": XMP:Artist: (none) \u2192 Ann\n"));
    EXPECT_EQ(fileBytes(jpeg), before);
    EXPECT_EQ(fileBytes(mov), movBefore);

    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(24 * 400);
    fs::last_write_time(jpeg, old);
    cliOK({"set", "-P", "artist=Ann", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "Ann");
    EXPECT_EQ(fs::last_write_time(jpeg), old);
    cliOK({"set", "Artist=Bo", jpeg.string()});
    EXPECT_NE(fs::last_write_time(jpeg), old);

    // A maker-notes name several makers share: the user must say which.
    EXPECT_THAT(cliExits(2, {"set", "ShutterCount=3", jpeg.string()}).err, HasSubstr("Nikon:ShutterCount"));
}

// EXIF edits take the values they replace from the in-process engine for JPEG files, from ExifTool
// for the others; either way a file that holds every value already is left as it was, to the byte
// and to its modification date, and a folder is taken as its files of a format read.
TEST_F(FileCommands, setWritesOnlyTheFilesThatChange) {
    fs::create_directories(folder / "sub");
    const auto holds = makeJPEG(folder / "holds.jpg");
    const auto differs = makeJPEG(folder / "differs.JPEG");
    const auto png = makePNG(folder / "p.png");
    const auto deep = makeJPEG(folder / "sub" / "deep.jpg");
    writeText(folder / "notes.txt", "x");
    std::vector<std::string> set = {"set"}, tagging;
    for (const std::string value : {"EXIF:Artist=Ann", "EXIF:ExposureTime=1/500", "EXIF:FNumber=2.8",
                                    "EXIF:DateTimeOriginal=2020:05:06 10:20:30", "EXIF:GPSAltitude=35.5",
                                    "EXIF:ExposureCompensation=-0.7", "EXIF:UserComment=Hello"}) {
        set.push_back(value);
        tagging.push_back("-" + value);
    }
    for (const auto& file : {holds, differs, png, deep})
        tagWithExifTool(file, tagging);
    tagWithExifTool(differs, {"-EXIF:Artist=Bo"});
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(24 * 400);
    std::map<fs::path, std::string> before;
    for (const auto& file : {holds, png, deep}) {
        fs::last_write_time(file, old);
        before[file] = fileBytes(file);
    }

    set.push_back(folder.path().string());
    auto run = cliOK(set);
    EXPECT_THAT(run.out, HasSubstr("1 file updated, 2 unchanged"));
    EXPECT_THAT(run.err,
                HasSubstr((folder / "notes.txt").string() + ": skipped: File format is not supported"));
    EXPECT_EQ(exifToolValue(differs, "EXIF:Artist"), "Ann");
    EXPECT_EQ(exifToolValue(differs, "EXIF:UserComment"), "Hello");
    for (const auto& [file, bytes] : before) {
        EXPECT_EQ(fileBytes(file), bytes) << file;
        EXPECT_EQ(fs::last_write_time(file), old) << file;
    }

    set.insert(set.begin() + 1, "-r");
    EXPECT_THAT(cliOK(set).out, HasSubstr("0 files updated, 4 unchanged"));
    EXPECT_EQ(fileBytes(deep), before[deep]);
}

// A file that fails to read is named with its reason and gives 1; the others are still read (the
// summary test has the same for writing).
TEST_F(FileCommands, errorsOfSomeFilesDontStopTheOthers) {
    auto good = makeJPEG(folder / "good.jpg");
    auto bad = writeBytes(folder / "bad.jpg", {});
    auto missing = folder / "missing.jpg";
    auto read = cliExits(1, {"read", "--json", good.string(), bad.string(), missing.string()});
    EXPECT_THAT(read.err, HasSubstr("bad.jpg"));
    EXPECT_THAT(read.err, HasSubstr("corvane: " + missing.string() + ": No such file or directory\n"));
    auto json = nlohmann::json::parse(read.out);
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0].at("SourceFile"), good.string());
}

TEST_F(FileCommands, typedEditOptions) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    tagWithExifTool(jpeg, {"-EXIF:DateTimeOriginal=2020:05:06 10:20:30"});
    cliOK({"set", "--location", "40 26 46.302 N, 79 58 55.903 W", "--shift-dates", "hh: 2", "--rotate",
           "left", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal"), "2020:05:06 12:20:30");
    // Where a position goes is the location test's; here, that the option is applied with the others.
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "XMP:GPSLongitude", true)), -79.982195, 1e-5);
    EXPECT_NE(exifToolValue(jpeg, "EXIF:Orientation", true), "1");

    cliOK({"set", "--rotate", "right", "--shift-dates", "SHIFT(hh: -2)", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Orientation", true), "1");
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal"), "2020:05:06 10:20:30");
    EXPECT_NE(cli({"set", "--flip", "diagonal", jpeg.string()}).exitCode, 0);
}

TEST_F(FileCommands, everythingAfterTheMarkIsAFile) {
    const std::vector<std::string> names{"XMP:Rights=All rights waived.jpg", "a=b.jpg", "-all=.jpg",
                                         "other.jpg"};
    std::vector<std::string> arguments{"set", "XMP:Title=T", "--"};
    for (const auto& name : names) {
        makeJPEG(folder / name);
        arguments.push_back(name);
    }
    auto run = cli(arguments, folder.path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("4 files updated"));
    for (const auto& name : names) {
        EXPECT_EQ(exifToolValue(folder / name, "XMP:Title"), "T") << name;
        EXPECT_EQ(exifToolValue(folder / name, "XMP:Rights"), "") << name << ": a file name is no edit";
    }
}

// The summary counts each file as the save task's outcomes give it; the file that fails is named
// with ExifTool's reason and the others are written.
TEST_F(FileCommands, theSummaryCountsEachFileAsExifToolReportedIt) {
    auto good = makeJPEG(folder / "good.jpg");
    // Read with a warning, refused by ExifTool at write time: the image data is cut off.
    auto corrupt = makeJPEG(folder / "corrupt.jpg");
    std::string bytes = fileBytes(corrupt);
    writeText(corrupt, bytes.substr(0, bytes.find("\xFF\xDA")));

    auto run = cliExits(1, {"set", "EXIF:Artist=Both", "--", good.string(), corrupt.string()});
    EXPECT_THAT(run.out, HasSubstr("1 file updated, 0 unchanged, 1 failed"));
    EXPECT_THAT(run.err, HasSubstr(corrupt.string() + ": Corrupted JPEG image"));
    EXPECT_EQ(exifToolValue(good, "EXIF:Artist"), "Both");
    auto mov = makeMOV(folder / "clip.mov");
    EXPECT_THAT(cli({"set", "--rotate", "right", mov.string()}).out, Not(HasSubstr("1 file updated")));
}

// A date edition must change some field, typed or in a preset; one that doesn't is refused and
// writes nothing.
TEST_F(FileCommands, dateEditionsThatChangeNoFieldAreRefused) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    tagWithExifTool(jpeg, {"-EXIF:DateTimeOriginal=2020:05:06 10:20:30"});
    const std::string before = fileBytes(jpeg);
    for (const std::string edition :
         {"SELECT(DateTimeOriginal)", "SELECT()", "garbage", "YYYY: 1", "hh: 2.5", ""})
        EXPECT_THAT(cliExits(2, {"set", "--shift-dates", edition, jpeg.string()}).err,
                    HasSubstr("is not a date edition: give fields as KEY: NUMBER"));

    const auto library = folder / "dates.json";
    cliOK({"preset", "make", "-o", library.string(), jpeg.string(), "EXIF:DateTimeOriginal"});
    std::string text = fileBytes(library);
    const auto at = text.find("SELECT(");
    ASSERT_NE(at, std::string::npos) << text;
    writeText(library, text.replace(at, text.find('"', at) - at, "SELECT(garbage)"));
    EXPECT_THAT(cliExits(2, {"set", "--preset", library.string(), jpeg.string()}).err,
                HasSubstr("SELECT(garbage)"));
    EXPECT_EQ(fileBytes(jpeg), before);
}

// A tag that can't be set, or a value it can't hold, is refused with exit code 2, naming the tag
// and why; nothing of the command is written, not even its good edits. Which values a tag holds,
// and the text written for them, is the value checker's test.
TEST_F(FileCommands, setChecksTagsAndValues) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = fileBytes(jpeg);
    const std::pair<std::string, std::string> refused[] = {
        {"EXIF:NoSuchTag=1", "EXIF:NoSuchTag"},
        // A language of a tag that doesn't exist is an unknown tag.
        {"XMP:NoSuchTitle-de=x", "unknown tag"},
        {"EXIF:A100DataOffset=1", "not editable"},
        {"EXIF:Orientation=99", "one of"},
        {"EXIF:ISO=infinity", "not a finite number"},
    };
    for (const auto& [assignment, why] : refused) {
        const auto err = cliExits(2, {"set", "EXIF:Artist=x", assignment, jpeg.string()}).err;
        EXPECT_THAT(err, HasSubstr(assignment.substr(0, assignment.find('='))));
        EXPECT_THAT(err, HasSubstr(why));
    }
    EXPECT_EQ(fileBytes(jpeg), before);

    cliOK({"set", "EXIF:ExposureTime=1/500", "XMP:DateCreated=2024:01:02 03:04:05.25+02:00", jpeg.string()});
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:ExposureTime", true), "0.002");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:DateCreated", true), "2024:01:02 03:04:05.25+02:00");
}

// A list item may hold a comma: with --list-separator the value splits on another text, without
// it such an item is given in double quotes. Either way each item reaches the file whole, and
// reads back whole; a tag of one value isn't split.
TEST_F(FileCommands, listItemsHoldingCommas) {
    const auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = fileBytes(jpeg);
    auto withEdits = [&](std::vector<std::string> command) {
        command.insert(command.end(), {"--list-separator", ";", "XMP:Subject=Smith, John;Paris",
                                       "keywords= a ; ;b,c ", "EXIF:Artist=A;B", jpeg.string()});
        return command;
    };
    EXPECT_THAT(cliOK(withEdits({"set", "--dry-run"})).out,
                HasSubstr(": XMP:Subject: (none) \u2192 \"Smith, John\",Paris\n"));
    EXPECT_EQ(fileBytes(jpeg), before);

    cliOK(withEdits({"set"}));
    auto written = [&] {
        const auto exiftool =
            runExifTool({"-j", "-XMP:Subject", "-IPTC:Keywords", "-EXIF:Artist", jpeg.string()});
        return nlohmann::json::parse(exiftool.standardOutput).at(0);
    };
    auto file = written();
    EXPECT_EQ(file.at("Subject"), nlohmann::json::array({"Smith, John", "Paris"}));
    EXPECT_EQ(file.at("Keywords"), nlohmann::json::array({"a", "b,c"}));
    EXPECT_EQ(file.at("Artist"), "A;B");
    EXPECT_EQ(readJSON({jpeg.string()})[jpeg.string()]["XMP:Subject"],
              nlohmann::json::array({"Smith, John", "Paris"}));

    cliOK({"set", "XMP:Subject=\"x, y\",z,say \"hi\"", jpeg.string()});
    EXPECT_EQ(written().at("Subject"), nlohmann::json::array({"x, y", "z", "say \"hi\""}));
    EXPECT_THAT(cliExits(2, {"set", "--list-separator", "", "XMP:Subject=a", jpeg.string()}).err,
                HasSubstr("separator"));
}

// A position is written only when it reads whole and in range, not through one of the parser's
// kept quirks, and is refused quickly however long the text; the position written is printed.
TEST_F(FileCommands, setLocationWritesOnlyWhatWasTyped) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    const std::string before = fileBytes(jpeg);
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& text :
         std::vector<std::string>{"nowhere at all", "40 26 46, -79 58 56", "40 26 46 N 79 58 56 W extra",
                                  "40.5, 200", "95.0, 10.0",
                                  // These once made the parser run for minutes.
                                  "10 00 10.4" + std::string(40, ' ') + ".0   N",
                                  std::string(320, '9') + ", 1", std::string(4096, ' ') + "1"})
        EXPECT_THAT(cliExits(2, {"set", "--location", text, jpeg.string()}).err, HasSubstr(text));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_EQ(fileBytes(jpeg), before);

    EXPECT_THAT(cliOK({"set", "--location", "40°26′46″N 79°58′56″W", jpeg.string()}).out,
                HasSubstr("position 40.44611111, -79.98222222"));
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLatitude", true)), 40.446111, 1e-5);
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:GPSLongitudeRef", true), "W");

    cliOK({"set", "--location", "51.48, 0", jpeg.string()});
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLatitude", true)), 51.48, 1e-6);
    EXPECT_NEAR(std::stod(exifToolValue(jpeg, "EXIF:GPSLongitude", true)), 0.0, 1e-9);
}

// Every file given or found in a folder (and its subfolders with --recursive) is shown or reported:
// a name that isn't valid UTF-8 is read and written like any other, a folder's file of a format not
// read is named on standard error, and a file named alone is read whenever ExifTool reads it.
TEST_F(FileCommands, everyFileIsShownOrReported) {
    const fs::path latin1 = folder / std::string("caf\xe9.jpg");
    makeJPEG(latin1);
    tagWithExifTool(latin1, {"-EXIF:Artist=Latin"});
    makeJPEG(folder / "plain.jpg");
    const auto inner = makeJPEG(folder.makeSubfolder("sub") / "inner.jpg");
    writeText(folder / "notes.txt", "hi");
    // A track log: no format of the media table, but ExifTool reads it.
    const fs::path track = folder / "walk.gpx";
    writeText(track, "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\"><trk><name>Walk</name>"
                     "</trk></gpx>\n");

    auto run = cliOK({"read", "--json", folder.path().string()});
    auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json.size(), 2u) << run.out;
    bool sawLatin1 = false;
    for (const auto& tags : json)
        if (tags.contains("EXIF:Artist")) sawLatin1 = tags["EXIF:Artist"] == "Latin";
    EXPECT_TRUE(sawLatin1) << run.out;
    EXPECT_THAT(run.err, HasSubstr("notes.txt: skipped"));
    EXPECT_THAT(run.err, HasSubstr("walk.gpx: skipped"));
    EXPECT_EQ(
        nlohmann::json::parse(cliOK({"read", "--json", "--recursive", folder.path().string()}).out).size(),
        3u);

    EXPECT_THAT(cliOK({"read", latin1.string()}).out, HasSubstr("EXIF:Artist\tLatin"));
    // A file named alone is read by ExifTool when the media table doesn't list its format.
    EXPECT_THAT(cliOK({"read", track.string()}).out, HasSubstr("XMP:GpxTrkName\tWalk"));

    // And written, named alone or found in its folder.
    EXPECT_THAT(cliOK({"set", "EXIF:Artist=Written", latin1.string()}).out, HasSubstr("1 file updated"));
    EXPECT_EQ(exifToolValue(latin1, "EXIF:Artist"), "Written");
    // Read and set gather their files alike: the folder's files without subfolders is the read's check.
    cliOK({"set", "--recursive", "XMP:Title=Everyone", folder.path().string()});
    EXPECT_EQ(exifToolValue(inner, "XMP:Title"), "Everyone");
}

// Dates are shown as the file holds them whatever the machine's zone, and a shift moves their wall
// clock and keeps their own offset (a date and its time moving together: the editors' tests).
TEST_F(FileCommands, datesKeepTheirOwnClock) {
    auto jpeg = makeJPEG(folder / "a.jpg");
    auto mov = makeMOV(folder / "b.mov");
    tagWithExifTool(jpeg, {"-EXIF:DateTimeOriginal=2023:03:12 02:30:00",
                           "-XMP:DateCreated=2023:05:06 11:25:40.5+03:00",
                           "-XMP:MetadataDate=2023:05:06 11:25+03:00"});
    tagWithExifTool(mov, {"-Keys:CreationDate=2023:05:06 11:25:40+03:00"});
    nlohmann::json json;
    {
        // 02:30 on that day doesn't exist in New York: the clocks went from 02:00 to 03:00.
        ScopedEnvironment zone("TZ", "America/New_York");
        json = readJSON({jpeg.string(), mov.string()});
        EXPECT_THAT(cliOK({"set", "--shift-dates", "hh: 1", jpeg.string(), mov.string()}).out,
                    HasSubstr("2 files updated"));
    }
    EXPECT_EQ(json[jpeg.string()]["EXIF:DateTimeOriginal"], "2023:03:12 02:30:00");
    EXPECT_EQ(json[jpeg.string()]["XMP:DateCreated"], "2023:05:06 11:25:40.5+03:00");
    EXPECT_EQ(json[jpeg.string()]["XMP:MetadataDate"], "2023:05:06 11:25:00+03:00");
    EXPECT_EQ(json[mov.string()]["QuickTime:CreationDate"], "2023:05:06 11:25:40+03:00");

    EXPECT_EQ(exifToolValue(jpeg, "EXIF:DateTimeOriginal", true), "2023:03:12 03:30:00");
    EXPECT_EQ(exifToolValue(jpeg, "XMP:DateCreated", true), "2023:05:06 12:25:40.5+03:00");
    EXPECT_EQ(exifToolValue(mov, "Keys:CreationDate", true), "2023:05:06 12:25:40+03:00");
}

// `set` of named tags reads only those tags and the ones the writer consults: what it writes, and
// what it finds there is nothing to change, are what a read of every tag gives.
TEST_F(FileCommands, namedTagsKeepTheIPTCCharacterSetAndDigestAndAnEqualValueChangesNothing) {
    // Latin IPTC text without a declared character set, and a digest of the IPTC.
    const auto file = makeJPEG(folder / "latin.jpg");
    tagWithExifTool(file, {"-charset", "iptc=Latin", "-IPTC:By-line=J\xc3\xbcrgen", "-EXIF:Artist=Ann",
                           "-overwrite_original"});
    tagWithExifTool(file, {"-Photoshop:IPTCDigest=new", "-overwrite_original"});
    ASSERT_EQ(exifToolValue(file, "IPTC:CodedCharacterSet"), "");
    ASSERT_FALSE(exifToolValue(file, "Photoshop:IPTCDigest").empty());

    EXPECT_THAT(cliOK({"set", "IPTC:Caption-Abstract=Neu", "EXIF:Artist=Bo", "--", file.string()}).out,
                HasSubstr("1 file updated, 0 unchanged"));
    // The file's other IPTC text went over to UTF-8 with the declaration, unchanged in meaning.
    EXPECT_EQ(exifToolValue(file, "IPTC:CodedCharacterSet"), "UTF8");
    EXPECT_EQ(exifToolValue(file, "IPTC:By-line"), "J\xc3\xbcrgen");
    EXPECT_EQ(exifToolValue(file, "IPTC:Caption-Abstract"), "Neu");
    EXPECT_EQ(exifToolValue(file, "EXIF:Artist"), "Bo");
    // The digest describes the IPTC as written.
    EXPECT_EQ(exifToolValue(file, "Photoshop:IPTCDigest"), exifToolValue(file, "File:CurrentIPTCDigest"));

    // The values the file holds: nothing to write, the file as it was.
    const std::string before = fileBytes(file);
    EXPECT_THAT(cliOK({"set", "IPTC:Caption-Abstract=Neu", "Artist=Bo", "--", file.string()}).out,
                HasSubstr("0 files updated, 1 unchanged"));
    EXPECT_EQ(fileBytes(file), before);
}

// `--engine`: the same commands through the in-process engine or through ExifTool.
TEST_F(FileCommands, readAndSetThroughEitherEngine) {
#ifndef CORVANE_HAVE_EXIV2
    GTEST_SKIP() << "built without exiv2: no in-process engine";
#endif
    const auto jpeg = makeJPEG(folder / "photo.jpg");
    const auto tiff = makeTIFF(folder / "scan.tif");
    const auto bad = writeBytes(folder / "bad.jpg", {0xFF, 0xD8, 0xFF});

    auto set = cliExits(1, {"--engine", "image-io", "set", "EXIF:Artist=In process", "IPTC:Keywords=a,b",
                            "--", jpeg.string(), tiff.string(), bad.string()});
    // The damaged file gives its own error, with its name; the others are written.
    EXPECT_THAT(set.err, HasSubstr("bad.jpg: Source is invalid"));
    EXPECT_THAT(set.out, HasSubstr("2 files updated"));
    EXPECT_EQ(exifToolValue(jpeg, "EXIF:Artist"), "In process");
    EXPECT_EQ(exifToolValue(tiff, "IPTC:Keywords"), "a, b");

    const auto fast =
        nlohmann::json::parse(cliOK({"--engine", "image-io", "read", "--json", jpeg.string()}).out)[0];
    const auto full =
        nlohmann::json::parse(cliOK({"--engine", "exiftool", "read", "--json", jpeg.string()}).out)[0];
    EXPECT_EQ(fast.at("EXIF:Artist"), "In process");
    EXPECT_EQ(fast.at("IPTC:Keywords"), nlohmann::json::array({"a", "b"}));
    // The in-process engine reads fewer tags; those it reads agree with ExifTool.
    EXPECT_LT(fast.size(), full.size());
    for (const auto& [tag, value] : fast.items()) {
        if (tag.rfind("File:", 0) != 0) {
            EXPECT_EQ(value, full.contains(tag) ? full.at(tag) : nlohmann::json()) << tag;
        }
    }
}

} // namespace
