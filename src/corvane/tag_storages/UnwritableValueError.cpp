#include "corvane/tag_storages/UnwritableValueError.hpp"

namespace corvane {

UnwritableValueError::UnwritableValueError(std::filesystem::path url, std::string reason)
    : Error(url.string() + ": " + reason), url_(std::move(url)), reason_(std::move(reason)) {}

} // namespace corvane
