// Runs through persistent ExifTool processes: the same outcomes as a process per run, nothing of one
// run reaching the next, and no process lost, stuck or left behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

#include "corvane/exiftool_wrapper/ETCoordinateReader.hpp"
#include "corvane/exiftool_wrapper/ETEmbeddedImageReader.hpp"
#include "corvane/exiftool_wrapper/ETEmbeddedImageWriter.hpp"
#include "corvane/exiftool_wrapper/ETMetadataCleaner.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/ETProcessPool.hpp"
#include "corvane/exiftool_wrapper/detail/ETStayOpenProcess.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/task_support/FetchTagValuesTask.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

using namespace corvane;
using namespace corvane::test;

namespace {

using Paths = std::vector<std::filesystem::path>;

ETInput groupsOf(const Paths& files, const std::function<void(ETInput::ArgumentsMaker&)>& set) {
    ETInput input;
    input.addArguments(files, [&](const std::filesystem::path& url, ETInput::ArgumentsMaker& maker) {
        maker.url = url;
        set(maker);
    });
    return input;
}

ETInput readInput(const Paths& files, std::vector<std::string> arguments = {"-j", "-G", "-EXIF:Artist"}) {
    return groupsOf(files, [&](ETInput::ArgumentsMaker& m) {
        m.arguments = arguments;
        m.soloRun = false;
    });
}

// A run that holds ExifTool for `seconds` (an "-if" condition is Perl code).
ETInput stallingInput(const std::filesystem::path& file, int seconds) {
    return readInput({file}, {"-if", "sleep " + std::to_string(seconds) + "; 1", "-j"});
}

nlohmann::json records(const ETOutput& output) {
    return nlohmann::json::parse(output.data());
}

// One tag of one file, through the library's fetch task.
FetchTagValuesTask::Values fetchedValues(const std::filesystem::path& file, const std::string& tag) {
    FetchTagValuesTask::Values values;
    FetchTagValuesTask::create({{TagStorageSource(file)},
                                *TagName::fromRawValue(tag),
                                [&](const auto& fetched) { values = fetched; }})
        ->perform();
    return values;
}

bool processEnded(pid_t pid) {
    // Gone, or a zombie that nobody waits for yet.
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), {});
    const auto close = text.rfind(')');
    return text.empty() || (close != std::string::npos && text.substr(close + 2, 1) == "Z");
}

bool waitForEnd(pid_t pid) {
    for (int i = 0; i < 500 && !processEnded(pid); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return processEnded(pid);
}

// Gives `file` an artist through `process`, written in place.
ETOutput writeArtistInPlace(ETProcess& process, const std::filesystem::path& file,
                            const std::string& artist) {
    return process.execute(groupsOf({file}, [&](auto& m) {
        m.arguments = {"-EXIF:Artist=" + artist};
        m.overwriteInPlace = true;
    }));
}

// Several commands in one run: a read of `a` and of a missing file, then the file type of `b`.
ETInput severalCommands(const std::filesystem::path& a, const std::filesystem::path& missing,
                        const std::filesystem::path& b) {
    auto input = readInput({a, missing});
    input.addGroup([&] {
        ETInput::ArgumentsMaker m;
        m.arguments = {"-j", "-FileType"};
        m.rawValues = true;
        m.url = b;
        return m;
    }());
    return input;
}

// An "exiftool" in `folder` that notes its process id, which the real one then keeps, and the ids
// it noted, in order.
std::filesystem::path startNotingExifTool(const TemporaryFolder& folder) {
    const auto script = folder / "exiftool";
    std::ofstream(script) << "#!/bin/sh\necho $$ >> '" << (folder / "starts").string()
                          << "'\nexec /usr/bin/exiftool \"$@\"\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    return script;
}

std::vector<pid_t> notedStarts(const TemporaryFolder& folder) {
    std::ifstream in(folder / "starts");
    std::vector<pid_t> ids;
    for (pid_t id; in >> id;)
        ids.push_back(id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

} // namespace

TEST(ETProcessPool, RunsInputsInARowOnOneProcessLikeSeparateProcessesAndLeaksNoOption) {
    TemporaryFolder folder;
    const auto a = makeJPEG(folder / "a.jpg");
    const auto b = makeJPEG(folder / "b.jpg");
    std::filesystem::create_directories(folder / "sub");
    const auto nested = makeJPEG(folder / "sub" / "c.jpg");
    makePNG(folder / "sub" / "d.png");
    auto pool = std::make_shared<ETProcessPool>(1);
    ETProcess process;
    process.setPool(pool);

    // Several commands in one run, a missing file among them: the same as a process of its own.
    const auto input = severalCommands(a, folder / "missing.jpg", b);
    const auto alone = ETProcess::run(input);
    const auto pooled = process.execute(input);
    EXPECT_EQ(pooled.data(), alone.data());
    EXPECT_EQ(pooled.messages(), alone.messages());
    EXPECT_EQ(pooled.exitStatus(), alone.exitStatus());
    EXPECT_EQ(pooled.exitStatus(), 1);
    EXPECT_DOUBLE_EQ(pooled.progress(), 1.0);
    ASSERT_EQ(pool->processIDs().size(), 1u);
    const pid_t pid = pool->processIDs().front();

    // Overwriting in place, then a plain write: ExifTool keeps its "_original" copy again.
    struct stat before {};
    ::stat(a.c_str(), &before);
    EXPECT_NO_THROW(writeArtistInPlace(process, a, "in place").throwIfErrors());
    struct stat after {};
    ::stat(a.c_str(), &after);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_NO_THROW(process.execute(groupsOf({b}, [](auto& m) { m.arguments = {"-EXIF:Artist=copy kept"}; }))
                        .throwIfErrors());
    EXPECT_TRUE(std::filesystem::exists(folder / "b.jpg_original"));
    EXPECT_EQ(exifToolValue(a, "EXIF:Artist"), "in place");

    // Recursion and an extension filter, then neither.
    const auto countFiles = [&](bool recurse) {
        auto output = process.execute(groupsOf({folder.path()}, [&](auto& m) {
            m.arguments = {"-j", "-FileName"};
            if (recurse) {
                m.recurseSubfolders = true;
                m.filePathFilter = ETPathFilter({"png"});
            }
        }));
        EXPECT_NO_THROW(output.throwIfErrors());
        return records(output).size();
    };
    EXPECT_EQ(countFiles(true), 1u);  // sub/d.png only
    EXPECT_EQ(countFiles(false), 2u); // a.jpg, b.jpg: no recursion, every type again

    // An API setting of one run doesn't reach the next.
    const auto missingValue = [&](bool set) {
        auto output = process.execute(readInput(
            {nested}, set ? std::vector<std::string>{"-j", "-f", "-api", "MissingTagValue=gone", "-XMP:Title"}
                          : std::vector<std::string>{"-j", "-f", "-XMP:Title"}));
        return records(output).at(0).at("Title").get<std::string>();
    };
    EXPECT_EQ(missingValue(true), "gone");
    EXPECT_EQ(missingValue(false), "-");
    EXPECT_EQ(pool->processIDs(), std::vector<pid_t>{pid});
}

TEST(ETProcessPool, AProcessNotKeptEndsAfterItsRunWithTheSameOutcome) {
    TemporaryFolder folder;
    const auto a = makeJPEG(folder / "a.jpg");
    const auto b = makeJPEG(folder / "b.jpg");
    const auto input = severalCommands(a, folder / "missing.jpg", b);
    const auto alone = ETProcess::run(input);
    const auto savedExecutable = ETProcess::executableURL();
    ETProcess::setExecutableURL(startNotingExifTool(folder));
    auto pool = std::make_shared<ETProcessPool>(1);
    pool->setKeepsProcesses(false);
    ETProcess process;
    process.setPool(pool);

    // Several commands, a missing file among them: told to end after the last, ExifTool gives what a
    // process of its own gives, status included.
    const auto last = process.execute(input);
    EXPECT_EQ(last.data(), alone.data());
    EXPECT_EQ(last.messages(), alone.messages());
    EXPECT_EQ(last.exitStatus(), 1);
    EXPECT_DOUBLE_EQ(last.progress(), 1.0);
    EXPECT_TRUE(pool->processIDs().empty());
    // A write in place, then a read: each on a process of its own, which has ended.
    EXPECT_NO_THROW(writeArtistInPlace(process, a, "last run").throwIfErrors());
    EXPECT_EQ(records(process.execute(readInput({a}))).at(0).at("EXIF:Artist"), "last run");
    const auto starts = notedStarts(folder);
    EXPECT_EQ(starts.size(), 3u);
    for (const pid_t id : starts)
        EXPECT_TRUE(waitForEnd(id)) << id;
    EXPECT_FALSE(std::filesystem::exists(folder / "a.jpg_original"));

    // Kept again: the process of the next run stays for the one after.
    pool->setKeepsProcesses(true);
    EXPECT_NO_THROW(process.execute(readInput({a})).throwIfErrors());
    EXPECT_EQ(pool->processIDs().size(), 1u);
    ETProcess::setExecutableURL(savedExecutable);
}

TEST(ETProcessPool, AProcessKilledBetweenOrDuringRunsIsReplaced) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    auto pool = std::make_shared<ETProcessPool>(1);
    ETProcess process;
    process.setPool(pool);
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    const pid_t first = pool->processIDs().at(0);

    // Between runs: the next run doesn't notice.
    ::kill(first, SIGKILL);
    ASSERT_TRUE(waitForEnd(first));
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    const pid_t second = pool->processIDs().at(0);
    EXPECT_NE(second, first);

    // During a run: that run fails as such, the next works.
    std::thread killer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        ::kill(second, SIGKILL);
    });
    const auto killed = process.execute(stallingInput(file, 30));
    killer.join();
    EXPECT_EQ(killed.processError(), ETOutputError::abnormalTermination);
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    const pid_t third = pool->processIDs().at(0);
    EXPECT_NE(third, second);

    // Stopped by the pool while idle: it ends, and the next run starts another.
    pool->stopIdleProcesses();
    EXPECT_TRUE(pool->processIDs().empty());
    EXPECT_TRUE(waitForEnd(third));
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    EXPECT_NE(pool->processIDs().at(0), third);
}

TEST(ETProcessPool, AStalledRunHitsItsTimeLimitAndItsProcessIsReplaced) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    auto pool = std::make_shared<ETProcessPool>(1);
    ETProcess process;
    process.setPool(pool);
    auto input = stallingInput(file, 30);
    input.timeLimit = std::chrono::milliseconds(500);
    const auto start = std::chrono::steady_clock::now();
    const auto output = process.execute(input);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(output.processError(), ETOutputError::timedOut);
    EXPECT_TRUE(pool->processIDs().empty());
    // The stalled process's late answer can't be taken for the next run's.
    const auto next = process.execute(readInput({file}, {"-j", "-FileType"}));
    ASSERT_NO_THROW(next.throwIfErrors());
    EXPECT_EQ(records(next).at(0).at("FileType"), "JPEG");
}

TEST(ETProcessPool, ACancelledWriteReportsEveryFileItWrote) {
    TemporaryFolder folder;
    const auto original = makeJPEG(folder / "original.jpg");
    Paths files;
    for (int i = 0; i < 300; ++i) {
        files.push_back(folder / ("f" + std::to_string(i) + ".jpg"));
        std::filesystem::copy_file(original, files.back());
    }
    auto pool = std::make_shared<ETProcessPool>(1);
    ETProcess process;
    process.setPool(pool);
    auto input = groupsOf(files, [](ETInput::ArgumentsMaker& m) {
        m.arguments = {"-EXIF:Artist=Cut"};
        m.overwriteInPlace = true;
        m.soloRun = false;
    });
    // A handler slow to return, as one that redraws a window: ExifTool goes on writing meanwhile,
    // and the files it finishes before it takes the stop are among those reported.
    bool asked = false;
    input.onProgressHandler = [&](ETProcess& p) {
        if (asked || p.progress() <= 0) return;
        asked = true;
        p.cancel();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    };
    const auto output = process.execute(input);
    ASSERT_EQ(output.processError(), ETOutputError::cancelled);
    ASSERT_LE(output.unfinishedFiles().size(), 1u);

    const auto written = records(ETProcess::run(readInput(files, {"-j", "-EXIF:Artist"})));
    const auto& started = output.startedFiles();
    std::size_t writtenCount = 0;
    for (const auto& record : written) {
        const std::filesystem::path file = record.at("SourceFile").get<std::string>();
        const bool wasWritten = record.contains("Artist");
        const bool reported = std::find(started.begin(), started.end(), file) != started.end();
        const bool unfinished = !output.unfinishedFiles().empty() && output.unfinishedFiles()[0] == file;
        writtenCount += wasWritten;
        EXPECT_TRUE(!wasWritten || reported) << file << " was written but reported as not";
        EXPECT_TRUE(!reported || unfinished || wasWritten) << file << " was reported written but is not";
    }
    EXPECT_GT(writtenCount, 1u) << "files were written while the handler held the run";
    EXPECT_LT(writtenCount, files.size());
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path()))
        ++entries;
    EXPECT_EQ(entries, files.size() + 1) << "no temporary file is left";
}

TEST(ETProcessPool, AnIdleProcessThatNoLongerAnswersIsReplacedBeforeItTakesARun) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    auto pool = std::make_shared<ETProcessPool>(1);
    pool->setIdleCheckAfter(std::chrono::milliseconds(0));
    ETProcess process;
    process.setPool(pool);
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    // Checked and still answering: kept.
    const pid_t first = pool->processIDs().at(0);
    ASSERT_NO_THROW(process.execute(readInput({file})).throwIfErrors());
    ASSERT_EQ(pool->processIDs().at(0), first);

    // Alive but stopped: the run would wait for its time limit on it.
    ::kill(first, SIGSTOP);
    auto input = readInput({file}, {"-j", "-FileType"});
    input.timeLimit = std::chrono::seconds(20);
    const auto start = std::chrono::steady_clock::now();
    const auto output = process.execute(input);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    ASSERT_NO_THROW(output.throwIfErrors());
    EXPECT_EQ(records(output).at(0).at("FileType"), "JPEG");
    EXPECT_NE(pool->processIDs().at(0), first);
    EXPECT_TRUE(waitForEnd(first));
}

// The processes a prestart began are the ones that take the runs after it: none is started twice,
// and a start that fails costs the run nothing but its own error.
TEST(ETProcessPool, PrestartedAndHandedOverProcessesTakeTheRunsThatFollow) {
    TemporaryFolder folder;
    const auto script = startNotingExifTool(folder);
    auto starts = [&] { return notedStarts(folder); };
    auto& settings = KitSettings::shared();
    const auto savedSplit = settings.exifToolBatchSplit();
    const auto savedExecutable = ETProcess::executableURL();
    settings.setExifToolBatchSplit(2);
    ETProcess::setExecutableURL(script);
    Paths files;
    for (int i = 0; i < 40; ++i)
        files.push_back(makeJPEG(folder / ("f" + std::to_string(i) + ".jpg")));

    auto pool = std::make_shared<ETProcessPool>(2);
    ETProcess process;
    process.setPool(pool);
    pool->prestart(1);
    pool->prestart(1); // one is on its way already
    ASSERT_NO_THROW(process.execute(readInput({files[0]})).throwIfErrors());
    EXPECT_EQ(starts().size(), 1u);
    // A batch split in two takes the idle process and one more.
    pool->prestart(files.size());
    const auto batch = process.execute(readInput(files));
    ASSERT_NO_THROW(batch.throwIfErrors());
    EXPECT_EQ(records(batch).size(), files.size());
    auto ids = pool->processIDs();
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, starts());
    EXPECT_EQ(ids.size(), 2u);

    // A prestart that fails: the run says why, and the pool still has its room for the next one.
    auto single = std::make_shared<ETProcessPool>(1);
    process.setPool(single);
    ETProcess::setExecutableURL(folder / "missing");
    single->prestart(1);
    EXPECT_EQ(process.execute(readInput({files[0]})).processError(), ETOutputError::executableNotFound);
    ETProcess::setExecutableURL(script);
    EXPECT_NO_THROW(process.execute(readInput({files[0]})).throwIfErrors());
    EXPECT_EQ(starts().size(), 3u);

    // A process its caller started (as the program's launcher does) takes the runs that follow, and
    // none other starts; one started as another program than the pool's, or beyond its size, is
    // stopped instead.
    auto adopting = std::make_shared<ETProcessPool>(1);
    process.setPool(adopting);
    auto handOver = [&](ETProcessPool& pool, const std::string& executable) {
        int error = 0;
        auto started = detail::ETStayOpenProcess::start(script, error);
        EXPECT_NE(started, nullptr) << error;
        const pid_t pid = started->pid;
        const bool adopted =
            pool.adoptStartedProcess(pid, started->in, started->out, started->err, executable);
        started->pid = started->in = started->out = started->err = -1;
        return std::pair(pid, adopted);
    };
    const auto [adoptedID, adopted] = handOver(*adopting, script.string());
    EXPECT_TRUE(adopted);
    EXPECT_NO_THROW(process.execute(readInput({files[0]})).throwIfErrors());
    EXPECT_EQ(adopting->processIDs(), std::vector<pid_t>{adoptedID});
    EXPECT_EQ(starts().size(), 4u);
    for (auto [pool, executable] : {std::pair(adopting, script.string()),
                                    std::pair(std::make_shared<ETProcessPool>(1), std::string("exiftool"))}) {
        const auto [pid, taken] = handOver(*pool, executable);
        EXPECT_FALSE(taken);
        EXPECT_TRUE(waitForEnd(pid));
    }
    EXPECT_EQ(adopting->processIDs(), std::vector<pid_t>{adoptedID});

    ETProcess::setExecutableURL(savedExecutable);
    settings.setExifToolBatchSplit(savedSplit);
}

TEST(ETProcessPool, ABatchSplitAcrossProcessesGivesWhatOneRunGives) {
    TemporaryFolder folder;
    const auto tagged = makeJPEG(folder / "tagged.jpg");
    tagWithExifTool(tagged, {"-EXIF:Artist=Ann", "-overwrite_original"});
    Paths files;
    for (int i = 0; i < 60; ++i) {
        files.push_back(folder / ("f" + std::to_string(i) + ".jpg"));
        std::filesystem::copy_file(tagged, files.back());
    }
    // Errors in pieces run by different processes stay with their files.
    files[5] = folder / "missing-5.jpg";
    files[50] = folder / "missing-50.jpg";
    auto input = readInput(files, {"-j", "-EXIF:Artist"});
    std::vector<double> progress;
    input.onProgressHandler = [&](ETProcess& p) { progress.push_back(p.progress()); };

    const auto alone = ETProcess::run(input);
    auto pool = std::make_shared<ETProcessPool>(2);
    ETProcess process;
    process.setPool(pool);
    auto& settings = KitSettings::shared();
    const auto savedSplit = settings.exifToolBatchSplit();
    settings.setExifToolBatchSplit(2);
    progress.clear();
    const auto split = process.execute(input);

    EXPECT_EQ(pool->processIDs().size(), 2u) << "both processes took a share";
    EXPECT_EQ(records(split), records(alone));
    EXPECT_EQ(split.messages(), alone.messages());
    ASSERT_EQ(split.errors().size(), 2u);
    EXPECT_EQ(split.errors()[0].path, files[5]);
    EXPECT_EQ(split.errors()[1].path, files[50]);
    EXPECT_EQ(split.exitStatus(), alone.exitStatus());
    EXPECT_THROW(split.throwIfErrors(), ETOutputException);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    ASSERT_FALSE(progress.empty());
    EXPECT_DOUBLE_EQ(progress.back(), 1.0);

    // A cancel ends the split run with the error of a cancelled run, before it has read all its
    // files, and the pool runs the next input.
    Paths many;
    for (int i = 0; i < 600; ++i) {
        many.push_back(folder / ("m" + std::to_string(i) + ".jpg"));
        std::filesystem::copy_file(tagged, many.back());
    }
    auto large = readInput(many, {"-j", "-EXIF:Artist"});
    std::thread canceller;
    large.onProgressHandler = [&](ETProcess& p) {
        if (!canceller.joinable() && p.progress() > 0) canceller = std::thread([&p] { p.cancel(); });
    };
    const auto cancelled = process.execute(large);
    canceller.join();
    settings.setExifToolBatchSplit(savedSplit);
    EXPECT_EQ(cancelled.processError(), ETOutputError::cancelled);
    EXPECT_LT(cancelled.startedFiles().size(), many.size());
    EXPECT_FALSE(process.isRunning());
    EXPECT_EQ(records(process.execute(readInput({files[0]}, {"-j", "-EXIF:Artist"}))).size(), 1u);
}

TEST(ETProcessPool, ASaveSplitAcrossProcessesWritesAndReportsWhatOneRunDoes) {
    namespace fs = std::filesystem;
    TemporaryFolder folder;
    const auto tagged = makeJPEG(folder / "tagged.jpg");
    tagWithExifTool(tagged, {"-EXIF:Artist=Ann", "-overwrite_original"});
    const std::string notAnImage = "not an image, though named .jpg";
    const std::string attribute = "Red\n";
    auto& settings = KitSettings::shared();
    const auto savedCount = settings.exifToolProcessCount();
    const auto savedSplit = settings.exifToolBatchSplit();

    // The same 60 files in two folders, read on one process: in each share a file that can't be
    // written (5 and 50), one left as it is (20), one with an extended
    // attribute (40).
    settings.setExifToolProcessCount(1);
    std::map<std::string, std::vector<TagStorage>> storages;
    for (const std::string name : {"one", "split"}) {
        const auto dir = folder.makeSubfolder(name);
        std::vector<TagStorageSource> sources;
        for (int i = 0; i < 60; ++i) {
            sources.emplace_back(dir / ("f" + std::to_string(i) + ".jpg"));
            fs::copy_file(tagged, sources.back().url());
        }
        auto read = ETTagStorageReader(ETTagStorageReader::Settings(sources)).readStorages();
        for (int i = 0; i < 60; ++i) {
            auto storage = read.at(sources[i].url());
            // Clearing a tag that the file doesn't hold leaves it unchanged.
            if (i == 20)
                storage.setWrittenValues({{*TagName::fromRawValue("EXIF:Copyright"), ""}});
            else
                storage.setWrittenValues(
                    {{*TagName::fromRawValue("EXIF:Artist"), "Bo " + std::to_string(i)}});
            storages[name].push_back(std::move(storage));
        }
        writeBytes(sources[5].url(), std::vector<std::uint8_t>(notAnImage.begin(), notAnImage.end()));
        writeBytes(sources[50].url(), std::vector<std::uint8_t>(notAnImage.begin(), notAnImage.end()));
        ::setxattr(sources[40].url().c_str(), "user.xdg.tags", attribute.data(), attribute.size(), 0);
    }

    // A fresh pool of two: the first save takes one process, the split one both.
    settings.setExifToolProcessCount(2);
    struct Save {
        std::vector<ETTagStorageWriter::FileOutcome> outcomes;
        std::vector<double> progress;
        bool failed = false;
    };
    auto save = [&](const std::string& name, std::size_t split) {
        settings.setExifToolBatchSplit(split);
        Save result;
        ETTagStorageWriter::Settings writerSettings(storages[name]);
        writerSettings.setOnProgressHandler(
            [&](ETTagStorageWriter& writer) { result.progress.push_back(writer.progress()); });
        ETTagStorageWriter writer(writerSettings);
        try {
            writer.write();
        } catch (const ETOutputException&) {
            result.failed = true;
        }
        result.outcomes = writer.outcomes();
        return result;
    };
    const Save one = save("one", 1);
    EXPECT_EQ(ETProcessPool::shared()->processIDs().size(), 1u);
    const Save split = save("split", 2);
    EXPECT_EQ(ETProcessPool::shared()->processIDs().size(), 2u) << "the save took both processes";
    settings.setExifToolBatchSplit(savedSplit);
    settings.setExifToolProcessCount(savedCount);

    EXPECT_TRUE(one.failed);
    EXPECT_TRUE(split.failed);
    EXPECT_TRUE(std::is_sorted(split.progress.begin(), split.progress.end()));
    ASSERT_EQ(one.outcomes.size(), 60u);
    ASSERT_EQ(split.outcomes.size(), 60u);
    using Status = ETTagStorageWriter::FileOutcome::Status;
    for (std::size_t i = 0; i < 60; ++i) {
        const auto& a = one.outcomes[i];
        const auto& b = split.outcomes[i];
        const auto name = "f" + std::to_string(i) + ".jpg";
        EXPECT_EQ(b.url, folder / "split" / name);
        EXPECT_EQ(b.status, a.status) << name;
        EXPECT_EQ(b.reason, a.reason) << name;
        EXPECT_EQ(b.warnings, a.warnings) << name;
        EXPECT_EQ(fileBytes(b.url), fileBytes(a.url)) << name;
        const auto expected = i == 5 || i == 50 ? Status::failed
                              : i == 20         ? Status::unchanged
                                                : Status::written;
        EXPECT_EQ(b.status, expected) << name;
    }
    // A file that failed is as it was; no temporary file is left; the attribute stays.
    EXPECT_EQ(fileBytes(folder / "split" / "f50.jpg"), notAnImage);
    EXPECT_EQ(exifToolValue(folder / "split" / "f59.jpg", "EXIF:Artist"), "Bo 59");
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder / "split"))
        ++entries;
    EXPECT_EQ(entries, 60u);
    char buffer[16] = {};
    const auto size =
        ::getxattr((folder / "split" / "f40.jpg").c_str(), "user.xdg.tags", buffer, sizeof buffer);
    if (size >= 0) {
        EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(size)), attribute);
    }
}

TEST(ETProcessPool, TheLibrarysPoolFollowsTheSettingsAndItsReadersAndWritersShareIt) {
    auto& settings = KitSettings::shared();
    const auto saved = settings.exifToolProcessCount();
    settings.setExifToolProcessCount(3);
    const auto pool = ETProcessPool::shared();
    ASSERT_TRUE(pool);
    EXPECT_EQ(pool->size(), 3u);
    EXPECT_EQ(ETProcessPool::shared(), pool);
    settings.setExifToolProcessCount(0);
    EXPECT_FALSE(ETProcessPool::shared());
    settings.setExifToolProcessCount(1);
    const auto single = ETProcessPool::shared();
    ASSERT_TRUE(single);
    EXPECT_NE(single, pool);

    // A read and a write of a file: one ExifTool.
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    ETTagStorageReader::Settings readSettings({TagStorageSource(file)});
    auto storages = ETTagStorageReader(readSettings).readStorages();
    ASSERT_EQ(storages.size(), 1u);
    const auto pid = single->processIDs().at(0);
    auto storage = storages.begin()->second;
    storage.setWrittenValues({{*TagName::fromRawValue("EXIF:Artist"), "Pooled"}});
    ETTagStorageWriter(ETTagStorageWriter::Settings({storage})).write();
    EXPECT_EQ(single->processIDs(), std::vector<pid_t>{pid});
    EXPECT_EQ(exifToolValue(file, "EXIF:Artist"), "Pooled");
    settings.setExifToolProcessCount(saved);
}

// ExifTool behind a script that counts its starts, for as long as it lives.
class CountedExifTool {
public:
    explicit CountedExifTool(const std::filesystem::path& folder)
        : starts_(folder / "starts.txt"), saved_(ETProcess::executableURL()) {
        const auto script = folder / "counting-exiftool";
        std::ofstream(script) << "#!/bin/sh\necho >> '" << starts_.string() << "'\nexec '" << saved_.string()
                              << "' \"$@\"\n";
        std::filesystem::permissions(script, std::filesystem::perms::owner_all);
        ETProcess::setExecutableURL(script);
    }
    ~CountedExifTool() { ETProcess::setExecutableURL(saved_); }
    long starts() const {
        std::ifstream counted(starts_);
        return std::count(std::istreambuf_iterator<char>(counted), {}, '\n');
    }

private:
    std::filesystem::path starts_, saved_;
};

TEST(ETProcessPool, PositionsAndTagsFetchedOneAtATimeStartExifToolOnce) {
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    tagWithExifTool(file, {"-GPSLatitude=12.5", "-GPSLatitudeRef=S", "-GPSLongitude=3.25",
                           "-GPSLongitudeRef=E", "-overwrite_original"});
    CountedExifTool exiftool(folder.path());
    for (int i = 0; i < 3; ++i) {
        ETCoordinateReader reader;
        reader.storageSources = {TagStorageSource(file)};
        const auto positions = reader.read();
        ASSERT_EQ(positions.size(), 1u);
        ASSERT_TRUE(positions[0]);
        EXPECT_DOUBLE_EQ(positions[0]->latitude().value(), -12.5);
        // The library's one-tag fetch runs on the same processes.
        EXPECT_EQ(fetchedValues(file, "EXIF:GPSLatitudeRef"), (FetchTagValuesTask::Values{{file, "South"}}));
    }
    EXPECT_EQ(exiftool.starts(), 1) << "one pooled ExifTool for the six reads";
}

// Thumbnails written and read, and a clean, run one after the other on the library's processes:
// one ExifTool start, and no option of one run (writing in place, clearing every tag) reaching the
// next.
TEST(ETProcessPool, ThumbnailsAndCleansShareOneProcessAndKeepTheirOwnOptions) {
    TemporaryFolder folder;
    const auto a = makeJPEG(folder / "a.jpg");
    const auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(b, {"-EXIF:Artist=B", "-overwrite_original"});
    const auto thumbnail = Image::fromFile(makePNG(folder / "thumb.png"));
    CountedExifTool exiftool(folder.path());

    ETEmbeddedImageWriter inPlace;
    inPlace.image = thumbnail;
    inPlace.storageSources = {TagStorageSource(a)};
    inPlace.write();
    EXPECT_FALSE(std::filesystem::exists(folder / "a.jpg_original"));
    ETEmbeddedImageReader reader;
    reader.imageSource = ETEmbeddedImageReader::ImageSource::thumbnail;
    reader.storageSource = TagStorageSource(a);
    EXPECT_EQ(reader.read().width(), 1);
    ETMetadataCleaner cleaner;
    cleaner.storageSources = {TagStorageSource(a)};
    cleaner.clean();
    EXPECT_THROW(reader.read(), ETEmbeddedImageReader::ReadException);

    ETEmbeddedImageWriter keepingOriginal = inPlace;
    keepingOriginal.overwriteInPlace = false;
    keepingOriginal.storageSources = {TagStorageSource(b)};
    keepingOriginal.write();
    EXPECT_TRUE(std::filesystem::exists(folder / "b.jpg_original"));
    EXPECT_EQ(fetchedValues(b, "EXIF:Artist"), (FetchTagValuesTask::Values{{b, "B"}}));
    EXPECT_EQ(exiftool.starts(), 1) << "one pooled ExifTool for the six runs";
}

// Run under ThreadSanitizer by the lead.
TEST(ETProcessPool, EightThreadsShareAPool) {
    TemporaryFolder folder;
    auto pool = std::make_shared<ETProcessPool>(2);
    Paths files;
    for (int t = 0; t < 8; ++t) {
        files.push_back(makeJPEG(folder / ("f" + std::to_string(t) + ".jpg")));
        tagWithExifTool(files.back(), {"-EXIF:Artist=thread " + std::to_string(t), "-overwrite_original"});
    }
    std::vector<std::string> failures(8);
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&, t] {
            ETProcess process;
            process.setPool(pool);
            for (int round = 0; round < 4; ++round) {
                const auto output = process.execute(readInput({files[t]}));
                try {
                    output.throwIfErrors();
                    const auto artist = records(output).at(0).at("EXIF:Artist").get<std::string>();
                    if (artist != "thread " + std::to_string(t)) failures[t] = "got " + artist;
                } catch (const std::exception& e) {
                    failures[t] = e.what();
                }
            }
        });
    for (auto& thread : threads)
        thread.join();
    for (int t = 0; t < 8; ++t)
        EXPECT_EQ(failures[t], "") << "thread " << t;
    EXPECT_LE(pool->processIDs().size(), 2u);
}

TEST(ETProcessPool, NoExifToolOutlivesAKilledProgram) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "ThreadSanitizer can't follow a forked child of a program with threads";
#endif
    TemporaryFolder folder;
    const auto file = makeJPEG(folder / "a.jpg");
    int report[2];
    ASSERT_EQ(::pipe(report), 0);
    const pid_t program = ::fork();
    if (program == 0) {
        ::close(report[0]);
        auto pool = std::make_shared<ETProcessPool>(1);
        ETProcess process;
        process.setPool(pool);
        process.execute(readInput({file}));
        const pid_t exifTool = pool->processIDs().empty() ? -1 : pool->processIDs().front();
        (void)!::write(report[1], &exifTool, sizeof exifTool);
        ::pause();
        ::_exit(0);
    }
    ::close(report[1]);
    pid_t exifTool = -1;
    ASSERT_EQ(::read(report[0], &exifTool, sizeof exifTool), static_cast<ssize_t>(sizeof exifTool));
    ::close(report[0]);
    ASSERT_GT(exifTool, 0);
    EXPECT_FALSE(processEnded(exifTool));
    ::kill(program, SIGKILL);
    ::waitpid(program, nullptr, 0);
    EXPECT_TRUE(waitForEnd(exifTool));
}
