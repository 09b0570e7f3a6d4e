// The cost of Corvane's import and save tasks over plain ExifTool doing the same work.
//
//   exiftool_ratio_bench [FILE_COUNT] [ROUNDS]
//
// Makes FILE_COUNT (default 1000) copies of a tagged JPEG in a temporary folder, then times, ROUNDS
// times each (default 3, best time kept):
//   read:  ImportTagEditorsTask over all files  /  the plain command a user would run for the same
//          records, "exiftool -j -g0:1 FILES";
//   write: SaveTagEditorsTask of one edited tag per file  /  "exiftool -json=FILE FILES" importing
//          the same values.
// and prints both ratios. A ratio of 1.10 means Corvane takes 10% longer than ExifTool alone.
// Corvane's own runs add options: "-s -n -e" (short names, raw values, no composite tags) and
// "-progress" with echoed markers to read; "-m -overwrite_original -G -s -n -f -XMP:XMPToolkit="
// and the same progress options to write. A second line per direction gives the ratio against
// ExifTool run with those options too (without the progress options), so that neither the user's
// command nor Corvane's choice of options hides a cost.
#include "BenchSupport.hpp"

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include <nlohmann/json.hpp>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace corvane;
using Clock = std::chrono::steady_clock;

using bench::runExifTool;

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

double seconds(const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
}

// Processor time of this process and of its children that have ended, user and system.
double processorTime() {
    rusage self{}, children{};
    getrusage(RUSAGE_SELF, &self);
    getrusage(RUSAGE_CHILDREN, &children);
    return seconds(self.ru_utime) + seconds(self.ru_stime) + seconds(children.ru_utime) +
           seconds(children.ru_stime);
}

// Wall-clock and processor time of a piece of work. On a shared machine the wall clock also counts
// waiting for a processor; the processor time doesn't.
struct Cost {
    double wall = std::numeric_limits<double>::max();
    double cpu = std::numeric_limits<double>::max();

    void keepBest(const Cost& other) {
        wall = std::min(wall, other.wall);
        cpu = std::min(cpu, other.cpu);
    }
};

Cost timed(const std::function<void()>& work) {
    const auto start = Clock::now();
    const double cpuStart = processorTime();
    work();
    return {seconds(Clock::now() - start), processorTime() - cpuStart};
}

void printRatio(const char* label, const Cost& corvane, const Cost& exiftool) {
    std::printf("%s corvane %.3f s (cpu %.3f s)   exiftool %.3f s (cpu %.3f s)   ratio %.3f (cpu %.3f)\n",
                label, corvane.wall, corvane.cpu, exiftool.wall, exiftool.cpu, corvane.wall / exiftool.wall,
                corvane.cpu / exiftool.cpu);
}

std::vector<std::shared_ptr<TagEditor>> importAll(const std::vector<TagStorageSource>& sources) {
    auto task = ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(sources));
    task->perform();
    MainQueue::shared().drain();
    if (!task->errors().empty()) throw std::runtime_error("import failed: " + task->errorListDescription());
    return task->importedEditors();
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t fileCount = argc > 1 ? std::stoul(argv[1]) : 1000;
    const int rounds = argc > 2 ? std::max(1, std::stoi(argv[2])) : 3;
    MainQueue::shared().registerCurrentThreadAsMain();

    const fs::path folder = fs::temp_directory_path() / ("corvane-ratio-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    try {
        // One tagged sample, copied.
        const fs::path sample = folder / "sample.jpg";
        bench::writeSampleJPEG(sample);
        runExifTool({"-overwrite_original", "-EXIF:Artist=Sample Artist", "-EXIF:Make=Bench",
                     "-EXIF:Model=Ratio", "-EXIF:DateTimeOriginal=2021:02:03 04:05:06",
                     "-EXIF:GPSLatitude=40.5", "-EXIF:GPSLatitudeRef=N", "-XMP:Title=Sample title",
                     "-XMP:Subject=one", "-XMP:Subject=two", "-IPTC:Keywords=alpha", "-IPTC:Keywords=beta",
                     "-IPTC:Caption-Abstract=A caption", sample.string()});
        const fs::path files = folder / "files";
        fs::create_directories(files);
        std::vector<fs::path> paths;
        std::vector<TagStorageSource> sources;
        for (std::size_t i = 0; i < fileCount; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "img_%05zu.jpg", i);
            paths.push_back(files / name);
            fs::copy_file(sample, paths.back());
            sources.emplace_back(paths.back());
        }

        // Read: the user's plain command, and the same with the reader's options.
        std::vector<std::string> plainRead = {"-j", "-g0:1", "--"};
        std::vector<std::string> optionRead = {"-s", "-n", "-e", "-g0:1", "-j", "--"};
        for (const auto& path : paths) {
            plainRead.push_back(path.string());
            optionRead.push_back(path.string());
        }
        Cost corvaneRead, exiftoolRead, exiftoolOptionRead;
        std::size_t editorCount = 0;
        for (int round = 0; round < rounds; ++round) {
            exiftoolRead.keepBest(timed([&] { runExifTool(plainRead); }));
            exiftoolOptionRead.keepBest(timed([&] { runExifTool(optionRead); }));
            corvaneRead.keepBest(timed([&] { editorCount = importAll(sources).size(); }));
        }
        if (editorCount != fileCount) throw std::runtime_error("the import missed files");

        // Write one tag per file, with a new value each run so that every run changes the files.
        const TagName artist = *TagName::fromRawValue("EXIF:Artist");
        const std::string toolkit = KitSettings::shared().xmpToolkit();
        const fs::path jsonFile = folder / "import.json";
        auto exiftoolWrite = [&](const std::string& label, std::vector<std::string> options) {
            return timed([&] {
                nlohmann::json records = nlohmann::json::array();
                for (std::size_t i = 0; i < fileCount; ++i)
                    records.push_back({{"SourceFile", paths[i].string()},
                                       {"EXIF:Artist", label + "/" + std::to_string(i)}});
                std::ofstream(jsonFile) << records.dump(4);
                options.push_back("-json=" + jsonFile.string());
                options.push_back("--");
                for (const auto& path : paths)
                    options.push_back(path.string());
                runExifTool(options);
            });
        };
        Cost corvaneWrite, exiftoolWriteTime, exiftoolOptionWrite;
        for (int round = 0; round < rounds; ++round) {
            const std::string r = std::to_string(round);
            // Plain ExifTool keeps "_original" copies: removed before each run, as a user would.
            for (const auto& path : paths)
                fs::remove(fs::path(path.string() + "_original"));
            exiftoolWriteTime.keepBest(exiftoolWrite("ExifTool " + r, {}));
            for (const auto& path : paths)
                fs::remove(fs::path(path.string() + "_original"));
            exiftoolOptionWrite.keepBest(
                exiftoolWrite("Options " + r, {"-m", "-overwrite_original", "-G", "-s", "-n", "-f",
                                               "-XMP:XMPToolkit=" + toolkit}));

            auto editors = importAll(sources); // not timed: the save starts from open editors
            for (std::size_t i = 0; i < editors.size(); ++i)
                editors[i]->setValue("Corvane " + r + "/" + std::to_string(i), artist);
            corvaneWrite.keepBest(timed([&] {
                auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(editors));
                task->perform();
                MainQueue::shared().drain();
                if (!task->errors().empty())
                    throw std::runtime_error("save failed: " + task->errorListDescription());
            }));
        }

        std::printf("files: %zu, rounds: %d (best of each)\n", fileCount, rounds);
        printRatio("read  (exiftool -j -g0:1)                ", corvaneRead, exiftoolRead);
        printRatio("read  (exiftool with the reader's options)", corvaneRead, exiftoolOptionRead);
        printRatio("write (exiftool -json=FILE)               ", corvaneWrite, exiftoolWriteTime);
        printRatio("write (exiftool with the writer's options)", corvaneWrite, exiftoolOptionWrite);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "exiftool_ratio_bench: %s\n", e.what());
        fs::remove_all(folder);
        return 1;
    }
    fs::remove_all(folder);
    return 0;
}
