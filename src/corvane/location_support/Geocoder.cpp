#include "corvane/location_support/Geocoder.hpp"

#include "corvane/location_support/GeoNamesGeocoder.hpp"

#include <mutex>

namespace corvane {

namespace {

struct SharedGeocoder {
    std::mutex mutex;
    bool isSet = false;
    std::shared_ptr<const Geocoder> geocoder;
};

SharedGeocoder& sharedGeocoder() {
    static SharedGeocoder instance;
    return instance;
}

} // namespace

std::shared_ptr<const Geocoder> Geocoder::shared() {
    auto& s = sharedGeocoder();
    std::lock_guard lock(s.mutex);
    if (!s.isSet) {
        // Made on first use only: the database loads lazily anyway, but a host that sets its own
        // geocoder first never pays for the default.
        if (GeoNamesGeocoder::isAvailable()) s.geocoder = std::make_shared<const GeoNamesGeocoder>();
        s.isSet = true;
    }
    return s.geocoder;
}

void Geocoder::setShared(std::shared_ptr<const Geocoder> geocoder) {
    auto& s = sharedGeocoder();
    std::lock_guard lock(s.mutex);
    s.geocoder = std::move(geocoder);
    s.isSet = true;
}

} // namespace corvane
