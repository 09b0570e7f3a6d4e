#include "corvane/tag_storages/detail/Exiv2Library.hpp"

#include <exiv2/exiv2.hpp>

#include <mutex>

namespace corvane::detail {

namespace {

// The lock the XMP toolkit takes around its shared state; it lives as long as the process.
std::recursive_mutex& xmpMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

void lockXmp(void* data, bool lock) {
    auto* mutex = static_cast<std::recursive_mutex*>(data);
    if (lock)
        mutex->lock();
    else
        mutex->unlock();
}

} // namespace

void prepareExiv2Library() {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::LogMsg::setHandler(nullptr);
        Exiv2::XmpParser::initialize(lockXmp, &xmpMutex());
#ifdef EXV_ENABLE_BMFF
        Exiv2::enableBMFF(true);
#endif
    });
}

} // namespace corvane::detail
