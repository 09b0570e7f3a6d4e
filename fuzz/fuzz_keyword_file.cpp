// Keyword libraries as found on disk or in user defaults, written back when read.

#include "FuzzInput.hpp"

#include "corvane/keyword_support/KeywordFile.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readAndWriteBack<KeywordFile>(fuzz::text(data, size));
    return 0;
}
