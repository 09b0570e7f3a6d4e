#include "corvane/photos_scripting/PhotosAppAuthorizer.hpp"

#include "corvane/photos_library/PhotoLibrary.hpp"
#include "corvane/utilities/KitDebugger.hpp"

#include <mutex>
#include <string>
#include <utility>

namespace corvane {

namespace {

std::mutex& probeMutex() {
    static std::mutex mutex;
    return mutex;
}

PhotosAppAuthorizer::Probe& installedProbe() {
    static PhotosAppAuthorizer::Probe probe;
    return probe;
}

int defaultStatus() {
    const auto library = PhotoLibrary::shared();
    if (!library) return PhotosAppAuthorizer::noLibraryStatus;
    return library->requestAuthorization() ? 0 : PhotosAppAuthorizer::refusedStatus;
}

} // namespace

void PhotosAppAuthorizer::setProbe(Probe probe) {
    std::lock_guard lock(probeMutex());
    installedProbe() = std::move(probe);
}

bool PhotosAppAuthorizer::perform() {
    Probe probe;
    {
        std::lock_guard lock(probeMutex());
        probe = installedProbe();
    }
    const int status = probe ? probe() : defaultStatus();
    KitDebugger::shared().log([&] { return "Asking  for Photos authorization: " + std::to_string(status); });
    return status == 0;
}

} // namespace corvane
