// Photos profile libraries as found on disk, written back when read.

#include "FuzzInput.hpp"

#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readAndWriteBack<PhotosRemoteProfileFile>(fuzz::text(data, size));
    return 0;
}
