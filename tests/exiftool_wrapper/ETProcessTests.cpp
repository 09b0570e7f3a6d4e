#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/utilities/KitDebugger.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

using namespace corvane;
using namespace corvane::test;
using ::testing::HasSubstr;

namespace {

using Paths = std::vector<std::filesystem::path>;

// One reader-style group per file, as the storage reader builds them.
ETInput readInput(const Paths& files, std::vector<std::string> extra = {"-g0:1", "-j"},
                  bool ignoreMinor = false) {
    ETInput input;
    input.addArguments(files, [&](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
        maker.arguments = extra;
        maker.ignoreMinorErrors = ignoreMinor;
        maker.url = url;
        maker.soloRun = false;
    });
    return input;
}

ETInput writeInput(const Paths& files, const std::vector<std::string>& assignments,
                   bool ignoreMinor = false) {
    ETInput input;
    input.addArguments(files, [&](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
        maker.arguments = assignments;
        maker.overwriteOriginal = true;
        maker.ignoreMinorErrors = ignoreMinor;
        maker.url = url;
    });
    return input;
}

// Bytes that no reader takes for a file format.
std::vector<std::uint8_t> noise() {
    std::vector<std::uint8_t> bytes(300);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 37 + 11);
    return bytes;
}

std::size_t openFileCount() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                                  std::filesystem::directory_iterator()));
}

nlohmann::json parse(const ETOutput& output) {
    return nlohmann::json::parse(output.data());
}

// Each message as "path: text", for comparing a list whole.
std::vector<std::string> described(const std::vector<ETFileMessage>& messages) {
    std::vector<std::string> texts;
    for (const auto& m : messages)
        texts.push_back(m.path.value_or("").string() + ": " + m.text);
    return texts;
}

// "SourceFile" -> record.
std::map<std::string, nlohmann::json> bySource(const nlohmann::json& array) {
    std::map<std::string, nlohmann::json> out;
    for (const auto& o : array)
        out[o.at("SourceFile").get<std::string>()] = o;
    return out;
}

} // namespace

// The processes this one started that still exist (zombies included): pooled ExifTool processes of
// earlier tests may be among them, so tests compare the set before and after.
std::set<pid_t> childProcesses() {
    std::set<pid_t> children;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream stat(entry.path() / "stat");
        std::string line;
        std::getline(stat, line);
        // "pid (command) state ppid ...": the command may hold blanks and parentheses.
        const auto close = line.rfind(')');
        if (close == std::string::npos) continue;
        std::istringstream rest(line.substr(close + 1));
        char state = 0;
        pid_t parent = 0;
        if (rest >> state >> parent && parent == getpid()) children.insert(std::stoi(name));
    }
    return children;
}

TEST(ETProcess, ReadsAndWritesFilesWithDifficultNames) {
    TemporaryFolder folder;
    // Blanks, quotes, dashes (a minus sign too), comment marks, line breaks, shell characters and
    // non-ASCII letters (\x64\x65 is "de").
    const std::vector<std::string> names = {
        "with blank.jpg",     "quote's \"double\".jpg",
        "-leading dash.jpg",  "\xE2\x88\x92minus sign.jpg",
        " leading blank.jpg", "trailing blank .jpg",
        "#hash.jpg",          "\xC3\xBCnic\xC3\xB8\x64\x65 \xE6\x97\xA5.jpg",
        "line\nbreak.jpg",    "cash $HOME @at\nand break.jpg",
        "back\\slash.jpg",    "a - b.jpg"};
    Paths files;
    for (const auto& n : names)
        files.push_back(makeJPEG(folder / n));
    // Values that an argument file would trim or split must arrive as they are.
    const std::string artist = "  Ann \"Bee\" $HOME @x \\ #1";
    ETOutput written =
        ETProcess::run(writeInput(files, {"-EXIF:Artist= " + artist, "-XMP-dc:Title=line\nbreak  "}));
    ASSERT_NO_THROW(written.throwIfErrors()) << written.errorText();
    EXPECT_THAT(written.data(), HasSubstr("1 image files updated"));
    EXPECT_EQ(written.data().find("========"), std::string::npos);

    auto read = ETProcess::run(readInput(files));
    ASSERT_NO_THROW(read.throwIfErrors()) << read.errorText();
    const auto records = bySource(parse(read));
    ASSERT_EQ(records.size(), files.size()) << read.data();
    for (const auto& f : files) {
        SCOPED_TRACE(f.string());
        ASSERT_TRUE(records.contains(f.string()));
        const auto& r = records.at(f.string());
        EXPECT_EQ(r.at("EXIF:IFD0").at("Artist"), " " + artist);
        EXPECT_EQ(r.at("XMP:XMP-dc").at("Title"), "line\nbreak  ");
    }
}

// Groups with other options run as commands of their own in the same process, their records joined
// in one JSON array in order.
TEST(ETProcess, JoinsTheGroupsOfOneRunInOneJSONArray) {
    TemporaryFolder folder;
    auto input = readInput({makeJPEG(folder / "a.jpg"), makePNG(folder / "b.png")}, {"-j", "-FileType"});
    input.addArguments(Paths{makeTIFF(folder / "c.tif"), makeMOV(folder / "d.mov")},
                       [](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
                           maker.arguments = {"-j", "-FileType"};
                           maker.rawValues = true;
                           maker.url = url;
                       });
    auto output = ETProcess::run(input);
    ASSERT_NO_THROW(output.throwIfErrors());
    std::vector<std::string> records;
    for (const auto& record : parse(output))
        records.push_back(record.value("FileType", ""));
    EXPECT_THAT(records, ::testing::ElementsAre("JPEG", "PNG", "TIFF", "MOV"));
}

TEST(ETProcess, MapsFlagsToExifToolOptions) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "gps.jpg");
    tagWithExifTool(file,
                    {"-GPSLatitude=54.5", "-GPSLatitudeRef=S", "-GPSLongitude=10.25", "-GPSLongitudeRef=E"});
    ETInput input;
    input.addArguments(Paths{file}, [](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
        maker.rawLocation = true;
        maker.shortTags = true;
        maker.language = ETLanguage::de;
        maker.arguments = {"-j", "-Composite:GPSLatitude", "-EXIF:GPSLatitudeRef", "-Composite:ImageSize"};
        maker.url = url;
    });
    auto output = ETProcess::run(input);
    ASSERT_NO_THROW(output.throwIfErrors());
    const auto record = parse(output).at(0);
    EXPECT_DOUBLE_EQ(record.at("GPSLatitude").get<double>(), -54.5); // "-54.50000000", a number in JSON
    EXPECT_EQ(record.at("GPSLatitudeRef"), "Südliche Breite");       // -lang de
    EXPECT_EQ(record.at("ImageSize"), "8x8");

    // The flags no other run here shows, before the group's own arguments.
    ETInput::ArgumentsMaker maker;
    maker.noComposite = maker.correction = true;
    maker.arguments = {"-j"};
    EXPECT_EQ(maker.commandArguments(), (std::vector<std::string>{"-e", "-F", "-j"}));
}

// Progress moves file by file, writes and reads alike, between one start and one end report.
// JSON output asks for ExifTool's window-title progress, which leaves its output buffered: the title
// reports don't reach the output or the error text. One file's long text makes the read's output
// far larger than a pipe's buffer: the run must not stall on it.
TEST(ETProcess, ReportsProgressAsFilesAreDone) {
    TemporaryFolder folder;
    Paths files;
    for (int i = 0; i < 30; ++i)
        files.push_back(makeJPEG(folder / ("f" + std::to_string(i) + ".jpg")));
    const std::string description(300000, 'x');
    tagWithExifTool(files.back(), {"-XMP-dc:Description=" + description});
    for (const bool reading : {false, true}) {
        SCOPED_TRACE(reading ? "read" : "write");
        auto input = reading ? readInput(files)
                             : writeInput(Paths(files.begin(), files.begin() + 6), {"-EXIF:Artist=P"});
        std::vector<double> seen;
        int starts = 0, ends = 0;
        input.onStartHandler = [&](ETProcess&) { ++starts; };
        input.onProgressHandler = [&](ETProcess& p) { seen.push_back(p.progress()); };
        input.onEndHandler = [&](ETProcess& p) {
            ++ends;
            EXPECT_TRUE(p.output().isFinished());
        };
        ETProcess process;
        const auto output = process.execute(input);
        ASSERT_NO_THROW(output.throwIfErrors()) << output.errorText();
        EXPECT_EQ(starts, 1);
        EXPECT_EQ(ends, 1);
        // Reports may arrive in bursts on a busy machine; at least one comes before the end.
        ASSERT_GE(seen.size(), 2u);
        EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
        EXPECT_GT(seen.front(), 0.0);
        EXPECT_LT(seen.front(), 1.0);
        EXPECT_DOUBLE_EQ(seen.back(), 1.0);
        EXPECT_DOUBLE_EQ(process.progress(), 1.0);
        EXPECT_EQ(output.errorText().find('\x1b'), std::string::npos);
        EXPECT_EQ(output.joinUnknownErrors(), std::nullopt);
        if (reading) {
            const auto records = parse(output);
            ASSERT_EQ(records.size(), files.size());
            EXPECT_EQ(records.back().at("XMP:XMP-dc").at("Description"), description);
        }
    }
    EXPECT_EQ(exifToolValue(files[5], "EXIF:Artist"), "P");
}

// Groups that import from one JSON file share a command: each file gets its own record, and a file
// that fails is reported under its path and doesn't stop the others.
TEST(ETProcess, GroupsImportingFromOneFileShareACommand) {
    TemporaryFolder folder;
    Paths files;
    for (int i = 0; i < 5; ++i)
        files.push_back(makeJPEG(folder / ("f" + std::to_string(i) + ".jpg")));
    files[2] = writeBytes(folder / "broken - f2.jpg", noise());
    const auto other = makeJPEG(folder / "other.jpg");

    auto records = nlohmann::json::array();
    for (std::size_t i = 0; i < files.size(); ++i)
        records.push_back({{"SourceFile", files[i].string()}, {"EXIF:Artist", "A" + std::to_string(i)}});
    const auto json = folder / "values.json";
    std::ofstream(json) << records.dump();
    const auto otherJSON = folder / "other.json";
    std::ofstream(otherJSON)
        << nlohmann::json::array({{{"SourceFile", other.string()}, {"EXIF:Artist", "O"}}}).dump();

    auto input = writeInput(files, {"-json=" + json.string()}, true);
    // Another import file: a command of its own.
    input.addGroup(writeInput({other}, {"-json=" + otherJSON.string()}, true).groups().front());
    const auto output = ETProcess::run(input);

    const auto& arguments = output.arguments();
    EXPECT_EQ(std::count(arguments.begin(), arguments.end(), "-json=" + json.string()), 1);
    EXPECT_EQ(std::count(arguments.begin(), arguments.end(), "-execute"), 1);
    for (std::size_t i : {0u, 1u, 3u, 4u})
        EXPECT_EQ(exifToolValue(files[i], "EXIF:Artist"), "A" + std::to_string(i)) << i;
    EXPECT_EQ(exifToolValue(other, "EXIF:Artist"), "O");
    EXPECT_THAT(described(output.errors()), ::testing::ElementsAre(files[2].string() + ": Not a valid JPG"))
        << output.errorText();
    EXPECT_THROW(output.throwIfErrors(), ETOutputException);
}

// Each error names its file, however the name reads; a minor one fails the run, and leaves the file
// as it was, unless minor errors are ignored, which lets an unreadable or slightly damaged file go,
// not a missing one.
TEST(ETProcess, ErrorsCarryTheirPathsAndMinorOnesPassWhenIgnored) {
    TemporaryFolder folder;
    const auto good = makeJPEG(folder / "good.jpg");
    const auto missing = folder / "gone - really.jpg";
    const auto garbage = writeBytes(folder / "noise\nname.jpg", noise());
    const auto output = ETProcess::run(readInput({good, missing, garbage}));
    EXPECT_THAT(described(output.errors()), ::testing::ElementsAre(missing.string() + ": File not found",
                                                                   garbage.string() + ": File format error"))
        << output.errorText();
    EXPECT_THROW(output.throwIfErrors(), ETOutputException);
    EXPECT_EQ(bySource(parse(output)).size(), 2u);
    EXPECT_EQ(output.joinUnknownErrors(), std::nullopt);

    const auto lenient = ETProcess::run(readInput({good, garbage}, {"-j"}, true));
    EXPECT_NO_THROW(lenient.throwIfErrors());
    EXPECT_THAT(described(lenient.excusedErrors()),
                ::testing::ElementsAre(garbage.string() + ": File format error"));
    EXPECT_THROW(ETProcess::run(readInput({missing}, {"-j"}, true)).throwIfErrors(), ETOutputException);

    const auto strict = makeJPEGWithMinorExifDefect(folder / "strict - copy.jpg");
    const auto tolerated = makeJPEGWithMinorExifDefect(folder / "tolerated.jpg");
    const std::string strictBytes = fileBytes(strict);
    try {
        ETProcess::run(writeInput({strict}, {"-EXIF:Copyright=C"})).throwIfErrors();
        FAIL() << "no error";
    } catch (const ETOutputException& e) {
        EXPECT_EQ(e.error(), ETOutputError::exifToolErrors);
        EXPECT_STREQ(e.what(), "ExifTool reported errors");
        EXPECT_THAT(described(e.fileErrors()),
                    ::testing::ElementsAre(strict.string() + ": Incorrect EXIF segment identifier"));
        EXPECT_TRUE(e.fileErrors().at(0).minor);
    }
    EXPECT_EQ(fileBytes(strict), strictBytes);
    const auto passed = ETProcess::run(writeInput({tolerated}, {"-EXIF:Copyright=C"}, true));
    EXPECT_NO_THROW(passed.throwIfErrors());
    EXPECT_THAT(described(passed.warnings()),
                ::testing::ElementsAre(tolerated.string() + ": Incorrect EXIF segment identifier"));
    EXPECT_EQ(exifToolValue(tolerated, "EXIF:Copyright"), "C");
}

// A run stopped by its time limit or cancelled from another thread ends at once, closes its pipes,
// leaves no child, and lets ExifTool clean up: no temporary file of its blocks the next write.
TEST(ETProcess, ARunStoppedByItsTimeLimitOrCancelledCleansUp) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    auto input = writeInput(Paths(400, file), {"-EXIF:Artist=slow"});
    input.timeLimit = std::chrono::milliseconds(400);
    const auto openFiles = openFileCount();
    const auto children = childProcesses();
    const auto start = std::chrono::steady_clock::now();
    const auto output = ETProcess::run(input);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(output.processError(), ETOutputError::timedOut);
    EXPECT_EQ(openFileCount(), openFiles); // pipes closed, argument files removed
    EXPECT_EQ(childProcesses(), children);
    EXPECT_LT(output.progress(), 1.0);
    try {
        output.throwIfErrors();
        FAIL() << "no error";
    } catch (const ETOutputException& e) {
        EXPECT_STREQ(e.what(), "ExifTool did not finish in time");
    }
    // What a stopped ExifTool (or perl) printed may follow.
    EXPECT_EQ(output.joinUnknownErrors().value_or("").rfind("ExifTool did not finish in time", 0), 0u);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.jpg_exiftool_tmp"));
    EXPECT_NO_THROW(ETProcess::run(writeInput({file}, {"-EXIF:Artist=next"})).throwIfErrors());

    input.timeLimit.reset();
    ETProcess process;
    std::thread canceller;
    input.onProgressHandler = [&](ETProcess& p) {
        if (!canceller.joinable()) canceller = std::thread([&p] { p.cancel(); });
    };
    EXPECT_EQ(process.execute(input).processError(), ETOutputError::cancelled);
    canceller.join();
    EXPECT_FALSE(process.isRunning());
    EXPECT_FALSE(std::filesystem::exists(folder / "a.jpg_exiftool_tmp"));
}

TEST(ETProcess, FailsCleanlyWithoutExecutableAndRunsNothingForNoGroups) {
    const auto previous = ETProcess::executableURL();
    ETProcess::setExecutableURL("/nonexistent/exiftool");
    const auto output = ETProcess::run(readInput({"/tmp/x.jpg"}));
    ETProcess::setExecutableURL(previous);
    EXPECT_EQ(output.processError(), ETOutputError::executableNotFound);
    EXPECT_THROW(output.throwIfErrors(), ETOutputException);

    int ends = 0;
    ETInput empty;
    empty.onEndHandler = [&](ETProcess&) { ++ends; };
    const auto none = ETProcess::run(empty);
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(none.arguments().empty());
    EXPECT_DOUBLE_EQ(none.progress(), 1.0);
    EXPECT_NO_THROW(none.throwIfErrors());
}

TEST(ETProcess, MasksPasswordsInItsArgumentsAndInTheTrafficItLogs) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    const auto log = folder / "debug.log";
    ASSERT_TRUE(KitDebugger::shared().enableLog(log));
    ETInput input;
    input.addArguments(Paths{file}, [](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
        maker.password = "hunter2";
        maker.arguments = {"-j", "-FileType"};
        maker.url = url;
    });
    input.onEndHandler = [](ETProcess& p) { p.debugProcessOutputIfEnabled(); };
    const auto output = ETProcess::run(input);
    KitDebugger::shared().disableLog();
    EXPECT_NO_THROW(output.throwIfErrors());
    EXPECT_THAT(output.arguments(), ::testing::Contains("-password"));
    EXPECT_THAT(output.arguments(), ::testing::Not(::testing::Contains("hunter2")));
    std::ifstream in(log);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    EXPECT_THAT(text,
                ::testing::AllOf(HasSubstr("EXIFTOOL ARGS -progress:%r -api LargeFileSupport=1 "
                                           "-password ******** -j -FileType " +
                                           file.string()),
                                 HasSubstr("EXIFTOOL ERR Error: \n"), HasSubstr("EXIFTOOL OUT Output: [{"),
                                 HasSubstr("\"FileType\": \"JPEG\""), ::testing::Not(HasSubstr("hunter2"))));
}
