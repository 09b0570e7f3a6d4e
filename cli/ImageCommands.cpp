// `corvane image`: embedded images of files, extracted, replaced or removed.
#include "Commands.hpp"
#include "StorageReading.hpp"

#include "corvane/exiftool_wrapper/ETEmbeddedImageReader.hpp"
#include "corvane/exiftool_wrapper/ETEmbeddedImageWriter.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/task_support/FileExportImagesTask.hpp"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

namespace corvane::cli {

namespace fs = std::filesystem;

namespace {

// The files among the paths, each as a source; others are reported.
std::vector<TagStorageSource> fileSources(const std::vector<std::string>& paths, Reporter& reporter) {
    std::vector<TagStorageSource> sources;
    for (const auto& path : paths) {
        std::error_code error;
        if (fs::is_regular_file(path, error))
            sources.emplace_back(path);
        else
            reporter.fileError(path, fs::exists(path, error) ? "Not a file" : "No such file");
    }
    return sources;
}

int extractImages(const std::string& which, const std::string& output,
                  const std::vector<std::string>& paths) {
    Reporter reporter;
    FileExportImagesTask::Settings settings;
    settings.source = *ETEmbeddedImageReader::imageSourceNamed(which);
    if (!output.empty()) {
        fs::create_directories(output);
        settings.destinationURL = fs::path(output);
    }
    // ExifTool reads the images itself: editors that aren't read are enough.
    for (auto& source : fileSources(paths, reporter))
        settings.editors.push_back(ETTagEditor::create(TagStorage(std::move(source))));
    if (!settings.editors.empty()) {
        auto task = FileExportImagesTask::create(std::move(settings));
        runTask(task, "Extracting", reporter);
        // ExifTool prints nothing for an image the file doesn't hold: the library's "Empty output"
        // is told as what it means here, naming the image asked for.
        const std::string empty(message(ETEmbeddedImageReader::ReadError::emptyOutput));
        for (const auto& error : task->errors()) {
            try {
                std::rethrow_exception(error);
            } catch (const FileExportImagesTask::FileException& e) {
                const std::string_view what = e.what();
                if (!what.ends_with(empty) || what.size() == empty.size()) {
                    reporter.error(e.what());
                    continue;
                }
                // Appended to: GCC 12 warns, wrongly (-Wrestrict), on "no " + text.
                std::string reason = "no ";
                reason += which;
                reason += " image in the file (";
                reason += empty;
                reporter.fileError(e.url(), reason + ")");
            } catch (const std::exception& e) {
                reporter.error(e.what());
            }
        }
        auto written = task->exportedFiles();
        std::sort(written.begin(), written.end());
        for (const auto& url : written)
            std::cout << url.string() << "\n";
    }
    return reporter.errorCount() ? 1 : 0;
}

int writeThumbnails(const std::string& imagePath, const std::vector<std::string>& paths) {
    Reporter reporter;
    ETEmbeddedImageWriter writer;
    if (!imagePath.empty()) {
        writer.image = Image::fromFile(imagePath);
        if (!writer.image) {
            reporter.fileError(imagePath, "Not a JPEG or PNG image");
            return 1;
        }
    }
    writer.storageSources = fileSources(paths, reporter);
    if (writer.storageSources.empty()) return 1;
    try {
        writer.write();
    } catch (const ETOutputException& e) {
        bool named = false;
        for (const auto& error : e.fileErrors())
            if (error.path) {
                reporter.fileError(*error.path, error.text);
                named = true;
            }
        if (!named) reporter.error(e.details());
    } catch (const std::exception& e) {
        reporter.error(e.what());
    }
    return reporter.errorCount() ? 1 : 0;
}

} // namespace

void addImageCommands(CLI::App& app, int& exitCode) {
    auto* image =
        app.add_subcommand("image", "Extract embedded images, or replace or remove EXIF thumbnails");
    image->require_subcommand(1);

    struct ExtractOptions {
        std::string which = "preview", output;
        std::vector<std::string> paths;
    };
    auto ext = std::make_shared<ExtractOptions>();
    auto* extract = image->add_subcommand(
        "extract", "Write an embedded image of each file as NAME_thumbnail.jpg, NAME_preview.jpg or "
                   "NAME_jpgfromraw.jpg, and print the paths written");
    extract->add_option("--which", ext->which, "thumbnail, preview (default) or jpgfromraw")
        ->check(CLI::IsMember({"thumbnail", "preview", "jpgfromraw"}));
    extract->add_option("--output", ext->output, "Folder for the images (default: beside each file)");
    extract->add_option("PATH", ext->paths, "Files")->required();
    extract->callback([ext, &exitCode] { exitCode = extractImages(ext->which, ext->output, ext->paths); });

    struct ThumbnailOptions {
        std::string image;
        bool remove = false;
        std::vector<std::string> paths;
    };
    auto thumb = std::make_shared<ThumbnailOptions>();
    auto* thumbnail = image->add_subcommand(
        "thumbnail",
        "Replace the EXIF thumbnail of files with an image (re-encoded smaller when it doesn't fit the "
        "EXIF segment), or remove it");
    auto* set = thumbnail->add_option("--set", thumb->image, "A JPEG or PNG image")->check(CLI::ExistingFile);
    auto* remove = thumbnail->add_flag("--remove", thumb->remove, "Remove the thumbnail");
    set->excludes(remove);
    thumbnail->add_option("PATH", thumb->paths, "Files")->required();
    thumbnail->callback([thumb, &exitCode] {
        if (thumb->image.empty() && !thumb->remove) {
            std::cerr << "corvane: image thumbnail: say what to do: --set IMAGE or --remove\n";
            exitCode = 2;
            return;
        }
        exitCode = writeThumbnails(thumb->image, thumb->paths);
    });
}

} // namespace corvane::cli
