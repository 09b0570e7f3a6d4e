// The in-process engine against ExifTool, on the same files and the same tags, in one run.
//
//   image_io_ratio_bench [CORPUS_FOLDER] [ROUNDS]
//
// CORPUS_FOLDER defaults to $CORVANE_CORPUS; ROUNDS (at least 3) to 5. Rounds alternate the two
// engines, and each figure is the median of its rounds.
//   read:  the corpus's clean JPEGs and TIFFs (those ExifTool reads without error or warning),
//          through the in-process reader / through one "exiftool -j -n" run asking for the same tags
//          (those with an image I/O name); and the two import tasks, which differ in what they
//          read (ExifTool reads every tag), for the user's view of it;
//   write: one tag (EXIF:Artist) to 300 JPEG copies, through the save task with in-process
//          editors / with ExifTool editors;
// then the agreement of the two readers on the corpus's JPEG, TIFF, PNG, HEIC, DNG, CR2 and NEF
// files: for every tag both read, the share of equal values after the converters, and the list of
// the others.
#ifdef CORVANE_HAVE_EXIV2

#include "BenchSupport.hpp"

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_storages/CGTagStorageReader.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include "support/EngineAgreement.hpp"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace corvane;
using Clock = std::chrono::steady_clock;

using bench::median;
using bench::timed;

// "-EXIF:Artist" and the like: every catalogue tag that has an image I/O name.
std::vector<std::string> mappedTagArguments() {
    std::set<std::string> tags;
    for (const auto& row : TagNameMapping::etcgMapping())
        if (!row.et.isEmpty() && row.et.stream() != TagStream::streamFile)
            tags.insert("-" + row.et.rawValue());
    return {tags.begin(), tags.end()};
}

template <class Task> std::shared_ptr<Task> performed(std::shared_ptr<Task> task) {
    task->perform();
    MainQueue::shared().drain();
    return task;
}

void useEngine(EngineOption option) {
    KitSettings::shared().setEngineOption(option);
}

std::size_t importCount(const std::vector<TagStorageSource>& sources, EngineOption engine) {
    useEngine(engine);
    auto task = performed(ImportTagEditorsTask::create(ImportTagEditorsTask::Settings(sources)));
    return task->importedEditors().size();
}

void printRatio(const char* label, double imageIO, double exifTool) {
    std::printf("%-34s in process %8.3f s   exiftool %8.3f s   %6.1fx faster\n", label, imageIO, exifTool,
                exifTool / imageIO);
}

void benchRead(const fs::path& corpus, int rounds) {
    const auto files = test::corpusFiles(corpus, {"jpeg", "tiff"}, true);
    std::vector<TagStorageSource> sources;
    std::vector<std::string> arguments = {"-j", "-n", "-G0", "-s", "-e", "-m"};
    const auto tags = mappedTagArguments();
    arguments.insert(arguments.end(), tags.begin(), tags.end());
    arguments.push_back("--");
    for (const auto& file : files) {
        sources.emplace_back(file);
        arguments.push_back(file.string());
    }
    std::vector<double> reader, exifTool, importIO, importET;
    for (int round = 0; round < rounds; ++round) {
        reader.push_back(timed([&] {
            for (const auto& source : sources) {
                // One reader per file, as the import task runs it, errors counted as reads.
                try {
                    CGTagStorageReader(CGTagStorageReader::Settings({source})).readStorages();
                } catch (const std::exception&) {
                }
            }
        }));
        exifTool.push_back(timed([&] { bench::runExifTool(arguments); }));
        importIO.push_back(timed([&] { importCount(sources, EngineOption::coreImage()); }));
        importET.push_back(timed([&] { importCount(sources, EngineOption::exifTool()); }));
    }
    std::printf(
        "read: %zu clean JPEG and TIFF files of the corpus, %zu tags asked of ExifTool, median of %d\n",
        files.size(), tags.size(), rounds);
    printRatio("  reader vs exiftool, same tags", median(reader), median(exifTool));
    printRatio("  import task vs import task", median(importIO), median(importET));
}

void benchWrite(int rounds, const fs::path& scratch) {
    const fs::path folder = scratch / "write";
    fs::create_directories(folder);
    // An 8x8 grey baseline JPEG, tagged by ExifTool, copied 300 times.
    const fs::path sample = folder / "sample.jpg";
    bench::writeSampleJPEG(sample);
    bench::runExifTool({"-overwrite_original", "-EXIF:Make=Bench", "-EXIF:Artist=Sample", "-XMP:Title=Sample",
                        "-IPTC:Keywords=alpha", sample.string()});
    std::vector<TagStorageSource> sources;
    for (int i = 0; i < 300; ++i) {
        const fs::path copy = folder / ("img_" + std::to_string(i) + ".jpg");
        fs::copy_file(sample, copy);
        sources.emplace_back(copy);
    }
    const TagName artist = *TagName::fromRawValue("EXIF:Artist");
    auto save = [&](bool inProcess, const std::string& value) {
        useEngine(inProcess ? EngineOption::coreImage() : EngineOption::exifTool());
        std::vector<std::shared_ptr<TagEditor>> editors;
        for (const auto& source : sources) {
            TagStorage storage(source);
            storage.unsafeSetValue(value, artist);
            editors.push_back(inProcess
                                  ? std::shared_ptr<TagEditor>(CGTagEditor::create(std::move(storage)))
                                  : std::shared_ptr<TagEditor>(ETTagEditor::create(std::move(storage))));
        }
        return timed([&] {
            auto task = performed(SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(editors)));
            if (!task->errors().empty())
                throw std::runtime_error("save failed: " + task->errorListDescription());
        });
    };
    std::vector<double> imageIO, exifTool;
    for (int round = 0; round < rounds; ++round) {
        imageIO.push_back(save(true, "In process " + std::to_string(round)));
        exifTool.push_back(save(false, "ExifTool " + std::to_string(round)));
    }
    std::printf("write: one tag to %zu JPEG copies through the save task, median of %d\n", sources.size(),
                rounds);
    printRatio("  save task vs save task", median(imageIO), median(exifTool));
}

void printAgreement(const fs::path& corpus) {
    const auto files = test::corpusFiles(corpus, {"jpeg", "tiff", "png", "heic", "dng", "cr2", "nef"}, false);
    useEngine(EngineOption::all());
    const auto agreement = test::compareEngines(files);
    std::printf("agreement: %zu files, %zu tags read by both, %.2f %% equal after the converters\n",
                files.size(), agreement.compared, 100 * agreement.ratio());
    for (const auto& d : agreement.disagreements)
        std::printf("  differs  %s %s: exiftool \"%s\", in process \"%s\"\n", d.file.filename().c_str(),
                    d.tag.rawValue().c_str(), d.exifTool.c_str(), d.imageIO.c_str());
    std::vector<std::pair<std::size_t, TagName>> missed;
    std::size_t missedCount = 0;
    for (const auto& [tag, count] : agreement.missed) {
        missed.emplace_back(count, tag);
        missedCount += count;
    }
    std::sort(missed.rbegin(), missed.rend());
    std::printf("  %zu values of tags with an image I/O name read by ExifTool only; by tag:\n", missedCount);
    for (const auto& [count, tag] : missed)
        std::printf("  only exiftool %4zu %s\n", count, tag.rawValue().c_str());
    for (const auto& [file, error] : agreement.unreadable)
        std::printf("  unread   %s: %s\n", file.filename().c_str(), error.c_str());
}

} // namespace

int main(int argc, char** argv) {
    const char* env = std::getenv("CORVANE_CORPUS");
    const fs::path corpus = argc > 1 ? fs::path(argv[1]) : env ? fs::path(env) : fs::path();
    const int rounds = argc > 2 ? std::max(3, std::atoi(argv[2])) : 5;
    if (corpus.empty() || !fs::exists(corpus / "INDEX.tsv")) {
        std::fprintf(stderr, "usage: image_io_ratio_bench CORPUS_FOLDER [ROUNDS] (or set CORVANE_CORPUS)\n");
        return 2;
    }
    MainQueue::shared().registerCurrentThreadAsMain();
    const fs::path scratch =
        fs::temp_directory_path() / ("corvane-image-io-bench-" + std::to_string(getpid()));
    fs::create_directories(scratch);
    const EngineOption saved = KitSettings::shared().engineOption();
    int status = 0;
    try {
        benchRead(corpus, rounds);
        benchWrite(rounds, scratch);
        printAgreement(corpus);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "image_io_ratio_bench: %s\n", e.what());
        status = 1;
    }
    KitSettings::shared().setEngineOption(saved);
    fs::remove_all(scratch);
    return status;
}

#else

#include <cstdio>

int main() {
    std::fprintf(stderr,
                 "image_io_ratio_bench: built without exiv2, there is no in-process engine to measure\n");
    return 2;
}

#endif
