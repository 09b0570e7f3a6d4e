// The cost of Corvane's import and save tasks over plain ExifTool doing the same work.
//
//   exiftool_ratio_bench [FILE_COUNT] [ROUNDS]
//
// Makes FILE_COUNT (default 1000) copies of a tagged JPEG in a temporary folder, then times, ROUNDS
// times each (default 3, best time kept):
//   read:  ImportTagEditorsTask over all files  /  exiftool -s -n -e -g0:1 -j over the same files;
//   write: SaveTagEditorsTask of one edited tag per file  /  exiftool importing the same values
//          from a JSON file (-json=FILE) with the writer's options.
// and prints both ratios. A ratio of 1.10 means Corvane takes 10% longer than ExifTool alone.
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include <nlohmann/json.hpp>

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

// An 8x8 grey baseline JFIF JPEG.
const std::vector<std::uint8_t> sampleJPEG = {
    0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 0x4A, 0x46, 0x49, 0x46, 0x00, 0x01, 0x01, 0x00, 0x00, 0x01,
    0x00, 0x01, 0x00, 0x00, 0xFF, 0xDB, 0x00, 0x43, 0x00, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
    0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
    0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
    0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
    0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0xFF, 0xC0, 0x00, 0x0B, 0x08, 0x00,
    0x08, 0x00, 0x08, 0x01, 0x01, 0x11, 0x00, 0xFF, 0xC4, 0x00, 0x14, 0x00, 0x01, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xC4, 0x00,
    0x14, 0x10, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0xFF, 0xDA, 0x00, 0x08, 0x01, 0x01, 0x00, 0x00, 0x3F, 0x00, 0x3F, 0xFF, 0xD9};

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

// Runs ExifTool with an argument file, reading all its output as the engines do. Throws when it fails.
std::size_t runExifTool(const std::vector<std::string>& arguments, const fs::path& argFile) {
    {
        std::ofstream out(argFile, std::ios::binary | std::ios::trunc);
        for (const auto& argument : arguments)
            out << argument << '\n';
    }
    const std::string command =
        quoted(ETProcess::executableURL().string()) + " -@ " + quoted(argFile.string()) + " 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start exiftool");
    std::size_t total = 0;
    char buffer[1 << 16];
    std::size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
        total += n;
    const int status = pclose(pipe);
    if (status != 0) throw std::runtime_error("exiftool failed with status " + std::to_string(status));
    return total;
}

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

double timed(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return seconds(Clock::now() - start);
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
    const fs::path argFile = folder / "args.txt";
    try {
        // One tagged sample, copied.
        const fs::path sample = folder / "sample.jpg";
        std::ofstream(sample, std::ios::binary)
            .write(reinterpret_cast<const char*>(sampleJPEG.data()),
                   static_cast<std::streamsize>(sampleJPEG.size()));
        runExifTool({"-overwrite_original", "-EXIF:Artist=Sample Artist", "-EXIF:Make=Bench",
                     "-EXIF:Model=Ratio", "-EXIF:DateTimeOriginal=2021:02:03 04:05:06",
                     "-EXIF:GPSLatitude=40.5", "-EXIF:GPSLatitudeRef=N", "-XMP:Title=Sample title",
                     "-XMP:Subject=one", "-XMP:Subject=two", "-IPTC:Keywords=alpha", "-IPTC:Keywords=beta",
                     "-IPTC:Caption-Abstract=A caption", sample.string()},
                    argFile);
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

        // Read. ExifTool gets the reader's own options: short names, raw values, no composite
        // tags, groups of families 0 and 1, JSON.
        std::vector<std::string> readArguments = {"-s", "-n", "-e", "-g0:1", "-j"};
        readArguments.insert(readArguments.end(), {"--"});
        for (const auto& path : paths)
            readArguments.push_back(path.string());
        double corvaneRead = std::numeric_limits<double>::max(), exiftoolRead = corvaneRead;
        std::size_t editorCount = 0;
        for (int round = 0; round < rounds; ++round) {
            exiftoolRead = std::min(exiftoolRead, timed([&] { runExifTool(readArguments, argFile); }));
            corvaneRead = std::min(corvaneRead, timed([&] { editorCount = importAll(sources).size(); }));
        }
        if (editorCount != fileCount) throw std::runtime_error("the import missed files");

        // Write one tag per file, with a new value each round so that every run changes the files.
        const TagName artist = *TagName::fromRawValue("EXIF:Artist");
        const std::string toolkit = KitSettings::shared().xmpToolkit();
        double corvaneWrite = std::numeric_limits<double>::max(), exiftoolWrite = corvaneWrite;
        for (int round = 0; round < rounds; ++round) {
            exiftoolWrite =
                std::min(exiftoolWrite, timed([&] {
                             nlohmann::json records = nlohmann::json::array();
                             for (std::size_t i = 0; i < fileCount; ++i)
                                 records.push_back({{"SourceFile", paths[i].string()},
                                                    {"EXIF:Artist", "ExifTool " + std::to_string(round) +
                                                                        "/" + std::to_string(i)}});
                             const fs::path jsonFile = folder / "import.json";
                             std::ofstream(jsonFile) << records.dump(4);
                             std::vector<std::string> arguments = {"-m",
                                                                   "-overwrite_original",
                                                                   "-G",
                                                                   "-s",
                                                                   "-n",
                                                                   "-f",
                                                                   "-XMP:XMPToolkit=" + toolkit,
                                                                   "-json=" + jsonFile.string(),
                                                                   "--"};
                             for (const auto& path : paths)
                                 arguments.push_back(path.string());
                             runExifTool(arguments, argFile);
                         }));

            auto editors = importAll(sources); // not timed: the save starts from open editors
            for (std::size_t i = 0; i < editors.size(); ++i)
                editors[i]->setValue("Corvane " + std::to_string(round) + "/" + std::to_string(i), artist);
            corvaneWrite =
                std::min(corvaneWrite, timed([&] {
                             auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(editors));
                             task->perform();
                             MainQueue::shared().drain();
                             if (!task->errors().empty())
                                 throw std::runtime_error("save failed: " + task->errorListDescription());
                         }));
        }

        std::printf("files: %zu, rounds: %d (best of each)\n", fileCount, rounds);
        std::printf("read   corvane %.3f s   exiftool %.3f s   ratio %.3f\n", corvaneRead, exiftoolRead,
                    corvaneRead / exiftoolRead);
        std::printf("write  corvane %.3f s   exiftool %.3f s   ratio %.3f\n", corvaneWrite, exiftoolWrite,
                    corvaneWrite / exiftoolWrite);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "exiftool_ratio_bench: %s\n", e.what());
        fs::remove_all(folder);
        return 1;
    }
    fs::remove_all(folder);
    return 0;
}
