#pragma once

#include "corvane/tag_storages/TagStorageProcessSettings.hpp"

#include <concepts>

namespace corvane {

/// A storage engine: an object made for one job from a settings record, run once, reporting
/// through the record's callbacks. Tasks hold engines of either family through the interfaces
/// that refine this one.
class TagStorageProcess {
public:
    virtual ~TagStorageProcess() = default;

    /// Share of the job done, 0...1; may be read from any thread.
    virtual double progress() const = 0;

protected:
    TagStorageProcess() = default;
    /// Engines are copied with their settings.
    ///@{
    TagStorageProcess(const TagStorageProcess&) = default;
    TagStorageProcess& operator=(const TagStorageProcess&) = default;
    ///@}
};

/// What a concrete engine `P` adds to the interface: its settings type `P::ProcessSettings`, a
/// settings record whose callbacks take a `P`, and the record through `settings()`.
template <class P>
concept TagStorageProcessType = std::derived_from<P, TagStorageProcess> &&
    std::derived_from<typename P::ProcessSettings, TagStorageProcessSettings<P>> &&
    requires(const P& process) {
    { process.settings() } -> std::convertible_to<const typename P::ProcessSettings&>;
};

} // namespace corvane
