// Tag sets as stored in user defaults, written back when read.

#include "FuzzInput.hpp"

#include "corvane/tag_set/TagSet.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readAndWriteBack<TagSet>(fuzz::text(data, size));
    return 0;
}
