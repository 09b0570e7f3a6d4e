// `corvane clean` and `corvane fetch`: removing metadata families or the iTunes movie atom from
// files, and reading one tag of many files.
#include "Commands.hpp"
#include "StorageReading.hpp"

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/task_support/CleanTagValuesTask.hpp"
#include "corvane/task_support/DeleteItunMoviTask.hpp"
#include "corvane/task_support/FetchTagValuesTask.hpp"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// A usage error: said on standard error, exit status 2.
int usage(const std::string& text) {
    std::cerr << "corvane: " << text << "\n";
    return 2;
}

// The families the names stand for, case ignored; nothing when a name is unknown.
std::optional<std::vector<TagStream>> familiesNamed(const std::vector<std::string>& names) {
    std::vector<TagStream> streams;
    for (const auto& name : names) {
        const auto& all = TagStream::allCases();
        const auto found = std::find_if(all.begin(), all.end(), [&](const TagStream& stream) {
            return lowercased(stream.rawValue()) == lowercased(name);
        });
        if (found == all.end()) return std::nullopt;
        streams.push_back(*found);
    }
    return streams;
}

int cleanFamilies(const std::vector<std::string>& paths, std::vector<TagStream> streams) {
    Reporter reporter;
    auto editors = importEditors(collectSources(paths, false, reporter), false, reporter);
    if (!editors.empty()) {
        CleanTagValuesTask::Settings settings;
        settings.editors = editors;
        settings.streams = std::move(streams);
        auto task = CleanTagValuesTask::create(std::move(settings));
        runTask(task, "Cleaning", reporter);
        const auto failed = reportTaskErrors(*task, reporter);
        for (const auto& editor : editors)
            if (!failed.contains(pathKey(editor->source().url())))
                std::cout << editor->source().url().string() << "\n";
    }
    return reporter.errorCount() ? 1 : 0;
}

int cleanMovieAtom(const std::vector<std::string>& paths) {
    Reporter reporter;
    // AtomicParsley reads the files itself: editors that aren't read are enough.
    std::vector<std::shared_ptr<TagEditor>> editors;
    for (const auto& source : collectSources(paths, false, reporter))
        if (!source.isFolder()) editors.push_back(ETTagEditor::create(TagStorage(source)));
    if (!editors.empty()) {
        auto task = DeleteItunMoviTask::create({editors, std::nullopt});
        runTask(task, "Removing the movie atom", reporter);
        reportTaskErrors(*task, reporter);
        auto changed = task->changedFiles();
        std::sort(changed.begin(), changed.end());
        for (const auto& url : changed)
            std::cout << url.string() << "\n";
    }
    return reporter.errorCount() ? 1 : 0;
}

// A value on one line: backslash, tab and line breaks escaped as \\, \t, \n and \r.
std::string oneLine(const std::string& value) {
    std::string text;
    for (char c : value) {
        switch (c) {
        case '\\':
            text += "\\\\";
            break;
        case '\t':
            text += "\\t";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\r':
            text += "\\r";
            break;
        default:
            text += c;
        }
    }
    return text;
}

int fetch(const std::string& tag, const std::vector<std::string>& paths) {
    const auto tagName = TagName::fromRawValue(tag);
    if (!tagName) return usage("fetch: a tag is written FAMILY:NAME, as EXIF:Artist");
    Reporter reporter;
    FetchTagValuesTask::Settings settings;
    for (const auto& path : paths) {
        std::error_code error;
        if (fs::exists(path, error))
            settings.sources.emplace_back(path);
        else
            reporter.fileError(path, "No such file or folder");
    }
    if (!settings.sources.empty()) {
        settings.tagName = *tagName;
        FetchTagValuesTask::Values values;
        settings.completion = [&values](const FetchTagValuesTask::Values& fetched) { values = fetched; };
        auto task = FetchTagValuesTask::create(std::move(settings));
        runTask(task, "Fetching", reporter);
        reportTaskErrors(*task, reporter);
        for (const auto& [url, value] : values)
            std::cout << url.string() << "\t" << oneLine(value) << "\n";
    }
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addCleanCommands(CLI::App& app, int& exitCode) {
    struct CleanOptions {
        std::vector<std::string> families;
        std::vector<std::string> paths;
        bool all = false;
        bool movieAtom = false;
    };
    auto options = std::make_shared<CleanOptions>();
    auto* clean = app.add_subcommand(
        "clean", "Remove metadata families, or the iTunes movie atom, from files in place");
    auto* family =
        clean->add_option("--family", options->families,
                          "A metadata family to remove (EXIF, XMP, IPTC, GPS...); may be repeated");
    auto* all = clean->add_flag("--all", options->all, "Remove every metadata family a file can be without");
    auto* movie =
        clean->add_flag("--movie-atom", options->movieAtom,
                        "Remove the iTunes movie description atom from MPEG-4 movies (AtomicParsley)");
    family->excludes(all)->excludes(movie);
    all->excludes(movie);
    clean->add_option("PATH", options->paths, "Files (a folder: its files)")->required();
    clean->callback([options, &exitCode] {
        if (options->movieAtom) {
            exitCode = cleanMovieAtom(options->paths);
            return;
        }
        if (options->all) {
            exitCode = cleanFamilies(options->paths, TagStream::allCases());
            return;
        }
        if (options->families.empty()) {
            exitCode = usage("clean: say what to remove: --family, --all or --movie-atom");
            return;
        }
        auto families = familiesNamed(options->families);
        if (!families) {
            exitCode = usage("clean: unknown metadata family (see corvane tags for the families)");
            return;
        }
        exitCode = cleanFamilies(options->paths, std::move(*families));
    });

    struct FetchOptions {
        std::string tag;
        std::vector<std::string> paths;
    };
    auto fetchOptions = std::make_shared<FetchOptions>();
    auto* fetchCmd = app.add_subcommand(
        "fetch", "Print one tag of many files, one \"PATH<TAB>VALUE\" line per file that has it, as ExifTool "
                 "prints the value (tabs and line breaks escaped as \\t, \\n)");
    fetchCmd->add_option("TAG", fetchOptions->tag, "The tag, as EXIF:Artist")->required();
    fetchCmd->add_option("PATH", fetchOptions->paths, "Files or folders")->required();
    fetchCmd->callback(
        [fetchOptions, &exitCode] { exitCode = fetch(fetchOptions->tag, fetchOptions->paths); });
}

} // namespace corvane::cli
