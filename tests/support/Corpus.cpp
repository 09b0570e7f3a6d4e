#include "support/Corpus.hpp"

#include <cstdlib>

namespace corvane::test {

std::filesystem::path corpusFolder() {
    if (const char* env = std::getenv("CORVANE_CORPUS")) return env;
    return std::filesystem::path(CORVANE_SOURCE_DIR) / "../shared/corpus";
}

} // namespace corvane::test
