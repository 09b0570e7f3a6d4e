#include "corvane/task_support/FetchTagValuesTask.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/exiftool_wrapper/ETProcessPool.hpp"
#include "corvane/tag_value/TagStream.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <nlohmann/json.hpp>

#include <unordered_map>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(FetchTagValuesTask::ProcessError error) {
    switch (error) {
    case FetchTagValuesTask::ProcessError::sourcesAreMissing:
        return "Sources are missing";
    case FetchTagValuesTask::ProcessError::completionIsMissing:
        return "Completion is missing";
    case FetchTagValuesTask::ProcessError::outputIsInvalid:
        return "Output is invalid";
    }
    return {};
}

FetchTagValuesTask::FetchTagValuesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<FetchTagValuesTask> FetchTagValuesTask::create(Settings settings) {
    return std::make_shared<FetchTagValuesTask>(std::move(settings));
}

std::string FetchTagValuesTask::title() const {
    return TL("FetchTagValuesTaskTitle");
}

namespace {

// A value as ExifTool prints it: text as it stands, numbers in their JSON text, lists joined.
std::string printedValue(const nlohmann::json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_array()) {
        std::string text;
        for (const auto& item : value)
            text += (text.empty() ? "" : ", ") + printedValue(item);
        return text;
    }
    return value.dump();
}

} // namespace

FetchTagValuesTask::Values FetchTagValuesTask::parseOutput(std::string_view data,
                                                           const std::vector<TagStorageSource>& sources) {
    const auto json = nlohmann::json::parse(data, nullptr, false);
    if (json.is_discarded() || !json.is_array()) throw TaskError<ProcessError>(ProcessError::outputIsInvalid);
    // ExifTool names each file as it was given; the callback gets the caller's URL back.
    std::unordered_map<std::string, fs::path> urls;
    for (const auto& source : sources)
        urls.emplace(source.url().lexically_normal().string(), source.url());
    Values values;
    for (const auto& object : json) {
        if (!object.is_object()) throw TaskError<ProcessError>(ProcessError::outputIsInvalid);
        const auto file = object.find("SourceFile");
        if (file == object.end() || !file->is_string() || object.size() != 2) continue;
        const fs::path path = file->get<std::string>();
        const auto known = urls.find(path.lexically_normal().string());
        for (const auto& [key, value] : object.items())
            if (key != "SourceFile") values[known != urls.end() ? known->second : path] = printedValue(value);
    }
    return values;
}

void FetchTagValuesTask::internProcess() {
    if (!settings_.completion) {
        if (settings_.sources.empty()) throw TaskError<ProcessError>(ProcessError::sourcesAreMissing);
        throw TaskError<ProcessError>(ProcessError::completionIsMissing);
    }
    Values values;
    // Called once, whatever happens below; what the callback throws joins the errors.
    struct Delivery {
        FetchTagValuesTask& task;
        const Values& values;
        ~Delivery() {
            task.failable([this] { task.settings_.completion(values); });
        }
    } delivery{*this, values};
    if (settings_.sources.empty()) throw TaskError<ProcessError>(ProcessError::sourcesAreMissing);

    ETInput input;
    std::string tag = "-"; // appended to: GCC 12 warns, wrongly (-Wrestrict), on "-" + text
    tag += settings_.tagName.rawValue();
    // ExifTool makes its composite tags from the others after reading a file, which is a good part
    // of a small fetch's time: they are made only when the tag asked for is one of them.
    std::vector<std::string> arguments = {"-j", tag};
    if (settings_.tagName.stream() != TagStream::streamComposite)
        arguments.insert(arguments.begin() + 1, "-e");
    input.addArguments(settings_.sources,
                       [&](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
                           // "-m": a file without the tag, or one ExifTool can't read, doesn't fail the
                           // others.
                           maker.ignoreMinorErrors = true;
                           maker.arguments = arguments;
                           maker.password = source.password();
                           maker.url = source.url();
                           // The same command for every file: one ExifTool command reads them all.
                           maker.soloRun = false;
                       });
    // On the library's running ExifTool processes (unless the application switched them off): a
    // host that fetches one value at a time pays no ExifTool start for each.
    const auto output = ETProcess::runOnSharedPool(input);
    failable([&] { output.throwIfErrors(); });
    if (output.data().empty()) return;
    values = parseOutput(output.data(), settings_.sources);
}

} // namespace corvane
