// Corvane's persistent ExifTool processes against ExifTool started by hand, on the same files.
//
//   exiftool_pool_bench [CORPUS_FOLDER] [ROUNDS] [COUNTS] [SINGLE_ROUNDS]
//
// Copies the corpus's clean JPEGs (those that ExifTool reads without an error or a warning and
// writes back strictly; CORPUS_FOLDER defaults to $CORVANE_CORPUS) to N files, for each N of COUNTS
// (default 1,300,1000), then times both sides of each comparison ROUNDS times (default 3) for a
// batch and SINGLE_ROUNDS times (default three times ROUNDS) for a single file, whose tenths of a
// second vary more from run to run. The sides alternate which goes first. It prints the median of
// each side with its fastest and slowest round, and the ratio of the medians (below 1: Corvane is
// faster) with the lowest and highest ratio of one round's pair:
//   read     `corvane read --json FILES`  /  `exiftool -j -g0:1 -n -s -e -m FILES`; beside them, in the
//            same rounds, that ExifTool command run by hand on the pool's number of processes at once,
//            each on an equal share of the files: what the machine's processors allow any driver of
//            ExifTool, whose ratio to ExifTool alone bounds Corvane's
//   save     `corvane set EXIF:Artist=V -- FILES`  /  `exiftool` with the writer's arguments
//            (-G -s -n -f -XMP:XMPToolkit=... -json=FILE -overwrite_original_in_place FILES)
//   api read an import through the library (no program start-up, the pool warm, the batch split
//            across the pool's processes, then on one process)  /  the same `exiftool` read
// and, on one file, the small job:
//   one tag  the library's fetch task reading EXIF:Artist on its warm pool  /  `exiftool -EXIF:Artist FILE`
// Every run changes the files' values, so that every save really writes.
#include "BenchSupport.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/ETProcessPool.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/task_support/FetchTagValuesTask.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#ifndef CORVANE_CLI_PATH
#error "CORVANE_CLI_PATH must name the built corvane program"
#endif

namespace {

namespace fs = std::filesystem;
using namespace corvane;
using Clock = std::chrono::steady_clock;

using bench::median;
using bench::timed;

// Times both sides `rounds` times, alternating which goes first, and prints the medians with
// the spread of the rounds: each side's fastest and slowest, and the ratio's lowest and highest
// over the rounds' pairs. A reference, when given, is timed in the same rounds and printed after,
// with its ratio to ExifTool's median and Corvane's ratio to it.
void compare(const char* label, std::size_t files, int rounds, const std::function<void(int)>& corvane,
             const std::function<void(int)>& exiftool, const std::function<void(int)>& reference = {}) {
    std::vector<double> ours, theirs, references, ratios;
    for (int round = 0; round < rounds; ++round) {
        auto runReference = [&] {
            if (reference) references.push_back(timed([&] { reference(round); }));
        };
        if (round % 2) {
            runReference();
            ours.push_back(timed([&] { corvane(round); }));
            theirs.push_back(timed([&] { exiftool(round); }));
        } else {
            theirs.push_back(timed([&] { exiftool(round); }));
            ours.push_back(timed([&] { corvane(round); }));
            runReference();
        }
        ratios.push_back(ours.back() / theirs.back());
    }
    const double a = median(ours), b = median(theirs);
    const auto [ourMin, ourMax] = std::minmax_element(ours.begin(), ours.end());
    const auto [theirMin, theirMax] = std::minmax_element(theirs.begin(), theirs.end());
    const auto [ratioMin, ratioMax] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("%-34s N=%-5zu rounds %-2d corvane %8.4f s [%.4f-%.4f]   exiftool %8.4f s [%.4f-%.4f]   "
                "ratio %.3f [%.3f-%.3f]\n",
                label, files, rounds, a, *ourMin, *ourMax, b, *theirMin, *theirMax, a / b, *ratioMin,
                *ratioMax);
    if (reference) {
        const double r = median(references);
        const auto [referenceMin, referenceMax] = std::minmax_element(references.begin(), references.end());
        std::printf("%-34s N=%-5zu rounds %-2d by hand %8.4f s [%.4f-%.4f]   ratio to exiftool %.3f   "
                    "corvane to it %.3f\n",
                    "  (exiftool by hand, in parallel)", files, rounds, r, *referenceMin, *referenceMax,
                    r / b, a / r);
    }
    std::fflush(stdout);
}

// The clean JPEGs of the corpus, from its index.
std::vector<fs::path> cleanJPEGs(const fs::path& corpus) {
    std::ifstream index(corpus / "INDEX.tsv");
    if (!index) throw std::runtime_error("no INDEX.tsv in " + corpus.string());
    std::vector<fs::path> files;
    std::string line;
    std::getline(index, line); // the header
    while (std::getline(index, line)) {
        std::vector<std::string> cells;
        std::stringstream in(line);
        for (std::string cell; std::getline(in, cell, '\t');)
            cells.push_back(cell);
        cells.resize(21);
        // dest, ..., file_type (5), ..., write_test_strict (9), ..., error (19), warning (20)
        if (cells[5] == "JPEG" && cells[9] == "True" && cells[19].empty() && cells[20].empty())
            files.push_back(corpus / cells[0]);
    }
    if (files.empty()) throw std::runtime_error("the corpus index lists no clean JPEG");
    return files;
}

// Those of the files that ExifTool also writes an EXIF tag into: a file that one side can't write
// would fail the comparison, not measure it.
std::vector<fs::path> writableJPEGs(const std::vector<fs::path>& files, const fs::path& folder) {
    const fs::path probes = folder / "probes";
    fs::create_directories(probes);
    std::vector<std::string> arguments = {
        "-m", "-overwrite_original", "-EXIF:Artist=probe", "-efile", (folder / "failed.txt").string(), "--"};
    for (std::size_t i = 0; i < files.size(); ++i) {
        arguments.push_back((probes / (std::to_string(i) + ".jpg")).string());
        fs::copy_file(files[i], arguments.back());
    }
    try {
        bench::runExifTool(arguments);
    } catch (const std::exception&) {
        // Its status says that some failed: they are listed.
    }
    std::ifstream failedList(folder / "failed.txt");
    std::vector<std::string> failed;
    for (std::string line; std::getline(failedList, line);)
        failed.push_back(line);
    std::vector<fs::path> writable;
    for (std::size_t i = 0; i < files.size(); ++i)
        if (std::find(failed.begin(), failed.end(), (probes / (std::to_string(i) + ".jpg")).string()) ==
            failed.end())
            writable.push_back(files[i]);
    fs::remove_all(probes);
    return writable;
}

// Runs a program with the arguments on its command line and its output drained; throws when it fails.
void runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    std::string command;
    bench::appendQuoted(command, program);
    for (const auto& argument : arguments) {
        command.push_back(' ');
        bench::appendQuoted(command, argument);
    }
    command.append(" 2>/dev/null");
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start " + program);
    char buffer[1 << 16];
    while (fread(buffer, 1, sizeof buffer, pipe) > 0) {
    }
    if (pclose(pipe) != 0) throw std::runtime_error(program + " failed");
}

std::vector<std::string> withFiles(std::vector<std::string> arguments, const std::vector<fs::path>& files) {
    for (const auto& file : files)
        arguments.push_back(file.string());
    return arguments;
}

void benchmarkBatch(const std::vector<fs::path>& originals, std::size_t count, int rounds,
                    const fs::path& folder) {
    const fs::path copies = folder / ("n" + std::to_string(count));
    fs::create_directories(copies);
    std::vector<fs::path> files;
    for (std::size_t i = 0; i < count; ++i) {
        files.push_back(copies / ("img_" + std::to_string(i) + ".jpg"));
        fs::copy_file(originals[i % originals.size()], files.back());
    }
    const auto exiftool = ETProcess::executableURL().string();
    const auto plainRead = withFiles({"-j", "-g0:1", "-n", "-s", "-e", "-m", "--"}, files);
    auto exiftoolRead = [&](int) { runProgram(exiftool, plainRead); };

    // The same command on an equal share of the files for each of the pool's processes, all at once.
    const std::size_t processes = std::min(KitSettings::shared().exifToolProcessCount(), count);
    auto byHand = [&](int) {
        std::vector<std::thread> runs;
        std::vector<std::exception_ptr> failures(processes);
        for (std::size_t k = 0; k < processes; ++k)
            runs.emplace_back([&, k] {
                std::vector<std::string> arguments = {"-j", "-g0:1", "-n", "-s", "-e", "-m", "--"};
                for (std::size_t i = k * count / processes; i < (k + 1) * count / processes; ++i)
                    arguments.push_back(files[i].string());
                try {
                    runProgram(exiftool, arguments);
                } catch (...) {
                    failures[k] = std::current_exception();
                }
            });
        for (auto& run : runs)
            run.join();
        for (const auto& failure : failures)
            if (failure) std::rethrow_exception(failure);
    };

    compare(
        "read (program)", count, rounds,
        [&](int) {
            runProgram(CORVANE_CLI_PATH, withFiles({"read", "--json", "--"}, files));
        },
        exiftoolRead, processes > 1 ? std::function<void(int)>(byHand) : std::function<void(int)>());

    const fs::path json = folder / "import.json";
    compare(
        "save (program)", count, rounds,
        [&](int round) {
            runProgram(CORVANE_CLI_PATH,
                       withFiles({"set", "EXIF:Artist=Corvane " + std::to_string(round), "--"}, files));
        },
        [&](int round) {
            nlohmann::json records = nlohmann::json::array();
            for (const auto& file : files)
                records.push_back(
                    {{"SourceFile", file.string()}, {"EXIF:Artist", "ExifTool " + std::to_string(round)}});
            std::ofstream(json) << records.dump();
            runProgram(exiftool, withFiles({"-G", "-s", "-n", "-f", "-m",
                                            "-XMP:XMPToolkit=" + KitSettings::shared().xmpToolkit(),
                                            "-json=" + json.string(), "-overwrite_original_in_place", "--"},
                                           files));
        });

    std::vector<TagStorageSource> sources(files.begin(), files.end());
    auto libraryRead = [&](int) {
        ETTagStorageReader::Settings settings(sources);
        settings.setupDefaultBannedValues();
        settings.setEnableRawValues(true);
        settings.setEnableShortTags(true);
        settings.setDisableComposite(true);
        settings.setIgnoreMinorErrors(true);
        if (ETTagStorageReader(settings).readStorages().size() != files.size())
            throw std::runtime_error("the library's read missed files");
    };
    libraryRead(0); // the pool's processes start here, not in the timed runs
    auto& kit = KitSettings::shared();
    const auto split = kit.exifToolBatchSplit();
    compare("read (library, split)", count, rounds, libraryRead, exiftoolRead);
    kit.setExifToolBatchSplit(1);
    compare("read (library, one process)", count, rounds, libraryRead, exiftoolRead);
    kit.setExifToolBatchSplit(split);
    fs::remove_all(copies);
}

void benchmarkOneTag(const fs::path& original, int rounds, const fs::path& folder) {
    const fs::path file = folder / "one.jpg";
    fs::copy_file(original, file);
    bench::runExifTool({"-overwrite_original", "-EXIF:Artist=One tag", file.string()});
    const auto exiftool = ETProcess::executableURL().string();
    // Through the library's task for it, which runs on the library's pool.
    const auto fetch = [&] {
        FetchTagValuesTask::Values values;
        auto task = FetchTagValuesTask::create({{TagStorageSource(file)},
                                                *TagName::fromRawValue("EXIF:Artist"),
                                                [&](const auto& fetched) { values = fetched; }});
        task->perform();
        if (!task->errors().empty() || values.begin() == values.end() || values.begin()->second != "One tag")
            throw std::runtime_error("no value");
    };
    fetch(); // warm
    // Each side fetches the tag 20 times a round.
    compare(
        "one tag (library, warm pool; x20)", 1, rounds,
        [&](int) {
            for (int i = 0; i < 20; ++i)
                fetch();
        },
        [&](int) {
            for (int i = 0; i < 20; ++i)
                runProgram(exiftool, {"-EXIF:Artist", file.string()});
        });
}

} // namespace

int main(int argc, char** argv) {
    const char* fromEnvironment = std::getenv("CORVANE_CORPUS");
    const fs::path corpus = argc > 1 ? fs::path(argv[1]) : fs::path(fromEnvironment ? fromEnvironment : "");
    const int rounds = argc > 2 ? std::max(1, std::stoi(argv[2])) : 3;
    std::vector<std::size_t> counts = {1, 300, 1000};
    if (argc > 3) {
        counts.clear();
        std::stringstream in(argv[3]);
        for (std::string n; std::getline(in, n, ',');)
            counts.push_back(std::stoul(n));
    }
    const int singleRounds = argc > 4 ? std::max(1, std::stoi(argv[4])) : 3 * rounds;
    const auto roundsFor = [&](std::size_t count) { return count == 1 ? singleRounds : rounds; };
    if (corpus.empty() || !fs::exists(corpus / "INDEX.tsv")) {
        std::printf("exiftool_pool_bench: skipped, no corpus (give its folder or set CORVANE_CORPUS)\n");
        return 0;
    }
    const fs::path folder = fs::temp_directory_path() / ("corvane-pool-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    try {
        const auto originals = writableJPEGs(cleanJPEGs(corpus), folder);
        std::printf(
            "%zu clean, writable JPEGs; %d rounds a batch, %d for one file, medians [fastest-slowest]; "
            "pool of %zu processes\n",
            originals.size(), rounds, singleRounds, KitSettings::shared().exifToolProcessCount());
        // How long each part took, so that a run of other counts or rounds can be planned.
        auto reportDuration = [](const std::string& part, Clock::time_point start) {
            std::printf("  (%s took %.0f s)\n", part.c_str(),
                        std::chrono::duration<double>(Clock::now() - start).count());
            std::fflush(stdout);
        };
        for (auto count : counts) {
            const auto start = Clock::now();
            benchmarkBatch(originals, count, roundsFor(count), folder);
            reportDuration("N=" + std::to_string(count), start);
        }
        const auto start = Clock::now();
        benchmarkOneTag(originals.front(), singleRounds, folder);
        reportDuration("one tag", start);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "exiftool_pool_bench: %s\n", e.what());
        fs::remove_all(folder);
        return 1;
    }
    fs::remove_all(folder);
    return 0;
}
