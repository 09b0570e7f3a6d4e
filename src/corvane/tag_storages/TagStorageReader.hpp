#pragma once

#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageProcess.hpp"
#include "corvane/tag_storages/TagStorageReaderSettings.hpp"

#include <concepts>
#include <filesystem>
#include <unordered_map>

namespace corvane {

/// The storages of a read, by the URL of their source.
using TagStorageMap = std::unordered_map<std::filesystem::path, TagStorage>;

/// An engine that reads the storages of its sources. Construct, call `readStorages()` once, discard.
class TagStorageReader : public TagStorageProcess {
public:
    /// One storage per source that could be read. Throws the engine's error when the read fails as a
    /// whole; no partial result is delivered then.
    virtual TagStorageMap readStorages() = 0;
};

/// A concrete reader whose settings record is a reader's settings record.
template <class P>
concept TagStorageReaderType = TagStorageProcessType<P> && std::derived_from<P, TagStorageReader> &&
    std::derived_from<typename P::ProcessSettings, TagStorageReaderSettings<P>>;

} // namespace corvane
