#include "corvane/sidecar_support/SidecarReader.hpp"

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

#include <system_error>

namespace corvane {

SidecarReader::Values SidecarReader::readContentsOf(const std::filesystem::path& url) const {
    try {
        return readData(readFileBytes(url));
    } catch (const JSONNestingError&) {
        throw JSONNestingError(url.string());
    }
}

std::unique_ptr<SidecarReader> SidecarReader::forPathExtension(std::string_view pathExtension) {
    const std::optional<SidecarFormat> format = sidecarFormat(pathExtension);
    if (format == SidecarFormat::json) return std::make_unique<JSONSidecarReader>();
    if (format == SidecarFormat::csv) return std::make_unique<CSVSidecarReader>();
    return nullptr;
}

namespace {

// Whether the sidecar's value differs from what the storage holds. Compared as the sidecar holds
// them: the current value exported and read back (a number to the sidecar's precision, a value the
// sidecar can't hold as nothing), or the two as typed values.
bool differs(const TagStorage& storage, const TagName& name, const std::string& value) {
    const auto current = storage.currentValue(name);
    if (current == value) return false;
    if (!current) return true;
    const auto converter = JSONSidecarWriter::converter(name);
    const DynamicValue native = converter->nativeValueFromStringValue(*current);
    return converter->stringValueFromNativeValue(native).value_or(std::string()) != value &&
           toJson(native) != toJson(converter->nativeValueFromStringValue(value));
}

} // namespace

SidecarReader::Values SidecarReader::changesTo(const TagStorage& storage, const Values& values,
                                               std::vector<TagName>* refused) {
    Values changes;
    for (const auto& [name, value] : values) {
        if (name.stream() == TagStream::streamFile || !differs(storage, name, value)) continue;
        if (storage.canEditValue(name))
            changes.emplace(name, value);
        else if (refused)
            refused->push_back(name);
    }
    return changes;
}

SidecarReader::Values SidecarReader::readSidecar(const std::filesystem::path& url) {
    auto reader = forPathExtension(url.extension().string());
    if (!reader) throw NotASidecarError(url);
    return reader->readContentsOf(url);
}

} // namespace corvane
