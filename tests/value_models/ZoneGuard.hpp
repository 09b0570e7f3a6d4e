#pragma once

#include <unicode/timezone.h>

#include <memory>

// Sets the process's time zone for one test and puts the previous one back.
class ZoneGuard {
public:
    explicit ZoneGuard(const char* zone) : saved_(icu::TimeZone::createDefault()) {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(zone));
    }
    ~ZoneGuard() { icu::TimeZone::adoptDefault(saved_.release()); }
    ZoneGuard(const ZoneGuard&) = delete;
    ZoneGuard& operator=(const ZoneGuard&) = delete;

private:
    std::unique_ptr<icu::TimeZone> saved_;
};
