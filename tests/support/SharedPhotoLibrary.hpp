#pragma once

#include "corvane/photos_library/PhotoLibrary.hpp"

#include <memory>
#include <utility>

namespace corvane::test {

// Installs a photo library as the process's shared one for as long as the object lives, then puts
// back the one before it, whatever way the test ends.
class SharedPhotoLibrary {
public:
    explicit SharedPhotoLibrary(std::shared_ptr<PhotoLibrary> library) {
        PhotoLibrary::setShared(std::move(library));
    }
    ~SharedPhotoLibrary() { PhotoLibrary::setShared(previous_); }
    SharedPhotoLibrary(const SharedPhotoLibrary&) = delete;
    SharedPhotoLibrary& operator=(const SharedPhotoLibrary&) = delete;

private:
    std::shared_ptr<PhotoLibrary> previous_ = PhotoLibrary::shared();
};

} // namespace corvane::test
