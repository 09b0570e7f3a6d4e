#pragma once

#include "corvane/tag_storages/TagStorageProcessSettings.hpp"

namespace corvane {

/// The settings record of a writing engine; it has no requirement of its own.
template <class ParentProcess>
class TagStorageWriterSettings : public TagStorageProcessSettings<ParentProcess> {};

} // namespace corvane
