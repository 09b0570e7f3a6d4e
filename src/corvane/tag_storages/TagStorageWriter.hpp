#pragma once

#include "corvane/tag_storages/TagStorageProcess.hpp"
#include "corvane/tag_storages/TagStorageWriterSettings.hpp"

#include <concepts>

namespace corvane {

/// An engine that writes the edited values of its storages to their sources. Construct, call
/// `write()` once, discard.
class TagStorageWriter : public TagStorageProcess {
public:
    /// Throws the engine's error when the write fails; sources handled before the failure may have
    /// changed already.
    virtual void write() = 0;
};

/// A concrete writer whose settings record is a writer's settings record.
template <class P>
concept TagStorageWriterType = TagStorageProcessType<P> && std::derived_from<P, TagStorageWriter> &&
    std::derived_from<typename P::ProcessSettings, TagStorageWriterSettings<P>>;

} // namespace corvane
