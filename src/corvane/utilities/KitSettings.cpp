#include "corvane/utilities/KitSettings.hpp"

#include "corvane/Version.hpp"

#include <algorithm>
#include <thread>

namespace corvane {

namespace {
std::size_t processorCount() {
    return std::max(1u, std::thread::hardware_concurrency());
}
} // namespace

KitSettings& KitSettings::shared() {
    // Built once, thread-safely, on first use; lives as long as the process.
    static auto* settings = new KitSettings();
    return *settings;
}

KitSettings::KitSettings()
    : nonAtomicUndoManager_(std::make_shared<UndoManager>()),
      nonAtomicUserDefaults_(UserDefaults::standardShared()),
      // Every metadata writer records itself in the files it writes.
      nonAtomicXMPToolkit_(std::string("Corvane ") + CORVANE_VERSION),
      nonAtomicExifToolProcessCount_(processorCount()), nonAtomicExifToolBatchSplit_(processorCount()) {}

MediaType::Set KitSettings::supportedFileTypes() const {
    auto types = atomic_.read([&] { return nonAtomicSupportedFileTypes_; });
    return types ? std::move(*types) : MediaType::types(MediaKind::allCases());
}

void KitSettings::setSupportedFileTypes(MediaType::Set types) {
    atomic_.write([&] { nonAtomicSupportedFileTypes_ = std::move(types); });
}

std::shared_ptr<UndoManager> KitSettings::undoManager() const {
    return atomic_.read([&] { return nonAtomicUndoManager_; });
}

void KitSettings::setUndoManager(std::shared_ptr<UndoManager> manager) {
    atomic_.write([&] { nonAtomicUndoManager_ = std::move(manager); });
}

std::shared_ptr<UserDefaults> KitSettings::userDefaults() const {
    return atomic_.read([&] { return nonAtomicUserDefaults_; });
}

void KitSettings::setUserDefaults(std::shared_ptr<UserDefaults> defaults) {
    if (!defaults) defaults = UserDefaults::standardShared();
    atomic_.write([&] { nonAtomicUserDefaults_ = std::move(defaults); });
}

EngineOption KitSettings::engineOption() const {
    return atomic_.read([&] { return nonAtomicEngineOption_; });
}

void KitSettings::setEngineOption(EngineOption option) {
    option = option.intersection(availableEngineOption());
    atomic_.write([&] { nonAtomicEngineOption_ = option; });
}

EngineOption KitSettings::availableEngineOption() {
#ifdef CORVANE_HAVE_EXIV2
    return EngineOption::all();
#else
    return EngineOption::all().subtracting(EngineOption::coreImage());
#endif
}

std::vector<std::string> KitSettings::extraArguments() const {
    return atomic_.read([&] { return nonAtomicExtraArguments_; });
}

void KitSettings::setExtraArguments(std::vector<std::string> arguments) {
    atomic_.write([&] { nonAtomicExtraArguments_ = std::move(arguments); });
}

std::string KitSettings::xmpToolkit() const {
    return atomic_.read([&] { return nonAtomicXMPToolkit_; });
}

void KitSettings::setXmpToolkit(std::string toolkit) {
    atomic_.write([&] { nonAtomicXMPToolkit_ = std::move(toolkit); });
}

std::size_t KitSettings::exifToolProcessCount() const {
    return atomic_.read([&] { return nonAtomicExifToolProcessCount_; });
}

void KitSettings::setExifToolProcessCount(std::size_t count) {
    atomic_.write([&] { nonAtomicExifToolProcessCount_ = count; });
}

std::size_t KitSettings::exifToolBatchSplit() const {
    return atomic_.read([&] { return nonAtomicExifToolBatchSplit_; });
}

void KitSettings::setExifToolBatchSplit(std::size_t count) {
    atomic_.write([&] { nonAtomicExifToolBatchSplit_ = count; });
}

std::filesystem::path KitSettings::localizationDirectory() const {
    return atomic_.read([&] { return nonAtomicLocalizationDirectory_; });
}

void KitSettings::setLocalizationDirectory(std::filesystem::path directory) {
    atomic_.write([&] { nonAtomicLocalizationDirectory_ = std::move(directory); });
}

std::string KitSettings::localizationLanguage() const {
    return atomic_.read([&] { return nonAtomicLocalizationLanguage_; });
}

void KitSettings::setLocalizationLanguage(std::string language) {
    atomic_.write([&] { nonAtomicLocalizationLanguage_ = std::move(language); });
}

} // namespace corvane
