#pragma once

#include <filesystem>

namespace corvane::test {

// The shared camera corpus: $CORVANE_CORPUS (ctest sets it), else ../shared/corpus beside the
// source tree. The folder may be absent; tests over it skip with a message then.
std::filesystem::path corpusFolder();

} // namespace corvane::test
