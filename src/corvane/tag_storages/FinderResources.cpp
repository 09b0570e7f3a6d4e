#include "corvane/tag_storages/FinderResources.hpp"

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/utilities/FileError.hpp"

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>

namespace corvane {

namespace {

std::error_code lastError() {
    return std::error_code(errno, std::generic_category());
}

bool isNoAttributeError(int error) {
    // ENODATA: no such attribute; ENOTSUP: a volume without extended attributes,
    // which simply has none to read.
    return error == ENODATA || error == ENOTSUP || error == EOPNOTSUPP;
}

Date dateFromTimestamp(int64_t seconds, uint32_t nanoseconds) {
    return Date(static_cast<double>(seconds) + static_cast<double>(nanoseconds) / 1e9);
}

timespec timespecFromDate(Date date) {
    double seconds = std::floor(date.timeIntervalSince1970());
    long long nanoseconds = std::llround((date.timeIntervalSince1970() - seconds) * 1e9);
    if (nanoseconds >= 1000000000LL) {
        seconds += 1;
        nanoseconds -= 1000000000LL;
    }
    timespec ts{};
    ts.tv_sec = static_cast<time_t>(seconds);
    ts.tv_nsec = static_cast<long>(nanoseconds);
    return ts;
}

// The value of an extended attribute; nothing when the file has none of that
// name or its volume keeps none. Other failures throw.
std::optional<std::string> readAttribute(const std::filesystem::path& url, const char* name) {
    for (;;) {
        ssize_t size = ::getxattr(url.c_str(), name, nullptr, 0);
        if (size < 0) {
            if (isNoAttributeError(errno)) return std::nullopt;
            throw FileError(url, std::string("Cannot read the attribute ") + name, lastError());
        }
        std::string value(static_cast<size_t>(size), '\0');
        ssize_t got = ::getxattr(url.c_str(), name, value.data(), value.size());
        if (got >= 0) {
            value.resize(static_cast<size_t>(got));
            return value;
        }
        // The value grew between the two calls: ask again.
        if (errno == ERANGE) continue;
        if (isNoAttributeError(errno)) return std::nullopt;
        throw FileError(url, std::string("Cannot read the attribute ") + name, lastError());
    }
}

std::error_code storeAttribute(const std::filesystem::path& url, const char* name, const std::string& value) {
    if (::setxattr(url.c_str(), name, value.data(), value.size(), 0) == 0) return {};
    return lastError();
}

std::error_code removeAttribute(const std::filesystem::path& url, const char* name) {
    if (::removexattr(url.c_str(), name) == 0 || errno == ENODATA) return {};
    return lastError();
}

template <typename Int> bool parseDigits(std::string_view text, Int& out) {
    if (text.empty()) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return std::from_chars(text.data(), text.data() + text.size(), out).ec == std::errc();
}

} // namespace

void FinderResources::read(const std::filesystem::path& url) {
    std::optional<Date> modified;
    std::optional<Date> born;
    struct statx info {};
    // A fresh call on the path each time: the kernel keeps no stale value for us.
    if (::statx(AT_FDCWD, url.c_str(), AT_STATX_SYNC_AS_STAT, STATX_MTIME | STATX_BTIME, &info) == 0) {
        if (info.stx_mask & STATX_MTIME)
            modified = dateFromTimestamp(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
        if (info.stx_mask & STATX_BTIME)
            born = dateFromTimestamp(info.stx_btime.tv_sec, info.stx_btime.tv_nsec);
    } else if (errno == ENOSYS) {
        // A kernel or sandbox without statx: plain stat, with no birth time.
        struct stat plain {};
        if (::stat(url.c_str(), &plain) != 0)
            throw FileError(url, "Cannot read the file's attributes", lastError());
        modified = dateFromTimestamp(plain.st_mtim.tv_sec, static_cast<uint32_t>(plain.st_mtim.tv_nsec));
    } else {
        throw FileError(url, "Cannot read the file's attributes", lastError());
    }

    std::optional<Date> created = born;
    if (auto stored = readAttribute(url, creationDateAttribute))
        if (auto date = decodeDate(*stored)) created = date;

    std::optional<std::vector<std::string>> tags;
    if (auto stored = readAttribute(url, tagsAttribute)) tags = decodeTags(*stored);

    if (created) createDate_ = created;
    if (modified) modifyDate_ = modified;
    if (tags) finderTags_ = std::move(tags);
}

void FinderResources::write(const std::filesystem::path& url) const {
    std::optional<FileError> firstFailure;
    auto note = [&](const char* what, std::error_code error) {
        if (error && !firstFailure) firstFailure.emplace(url, what, error);
    };

    if (createDate_)
        note("Cannot store the creation date in the attribute user.corvane.creationdate",
             storeAttribute(url, creationDateAttribute, encodeDate(*createDate_)));
    if (finderTags_) {
        std::string text = encodeTags(*finderTags_);
        if (text.empty())
            note("Cannot remove the Finder tags of the attribute user.xdg.tags",
                 removeAttribute(url, tagsAttribute));
        else
            note("Cannot store the Finder tags in the attribute user.xdg.tags",
                 storeAttribute(url, tagsAttribute, text));
    }
    // Last, since storing attributes changes the file's status time only, never its mtime.
    if (modifyDate_) {
        timespec times[2];
        times[0].tv_sec = 0;
        times[0].tv_nsec = UTIME_OMIT; // access time untouched
        times[1] = timespecFromDate(*modifyDate_);
        if (::utimensat(AT_FDCWD, url.c_str(), times, 0) != 0)
            note("Cannot set the modification date", lastError());
    }
    if (firstFailure) throw *firstFailure;
}

std::string FinderResources::encodeTags(const std::vector<std::string>& tags) {
    std::string text;
    for (const std::string& tag : tags) {
        if (trimAsciiWhiteSpace(tag).empty()) continue; // cannot be told from a separator
        if (!text.empty()) text += ',';
        for (char c : tag) {
            if (c == ',' || c == '\\') text += '\\';
            text += c;
        }
    }
    return text;
}

std::vector<std::string> FinderResources::decodeTags(std::string_view text) {
    std::vector<std::string> tags;
    std::string current;
    auto flush = [&] {
        std::string_view tag = trimAsciiWhiteSpace(current);
        if (!tag.empty()) tags.emplace_back(tag);
        current.clear();
    };
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size() && (text[i + 1] == ',' || text[i + 1] == '\\')) {
            current += text[++i];
        } else if (c == ',') {
            flush();
        } else {
            current += c;
        }
    }
    flush();
    return tags;
}

std::string FinderResources::encodeDate(Date date) {
    using namespace std::chrono;
    // Whole microseconds: all that a Date holds reliably at present-day values.
    long long micros = std::llround(date.timeIntervalSince1970() * 1e6);
    sys_time<microseconds> time{microseconds(micros)};
    sys_days day = floor<days>(time);
    year_month_day ymd{day};
    hh_mm_ss<microseconds> clock{time - day};
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d.%06lldZ",
                  static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
                  static_cast<unsigned>(ymd.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
                  static_cast<long long>(clock.subseconds().count()));
    return buffer;
}

std::optional<Date> FinderResources::decodeDate(std::string_view text) {
    using namespace std::chrono;
    text = trimAsciiWhiteSpace(text);
    // YYYY-MM-DDTHH:MM:SS[.fraction](Z|+HH:MM|-HH:MM)
    if (text.size() < 20 || text[4] != '-' || text[7] != '-' || (text[10] != 'T' && text[10] != ' ') ||
        text[13] != ':' || text[16] != ':')
        return std::nullopt;
    int y = 0;
    unsigned mo = 0, d = 0;
    int h = 0, mi = 0, s = 0;
    if (!parseDigits(text.substr(0, 4), y) || !parseDigits(text.substr(5, 2), mo) ||
        !parseDigits(text.substr(8, 2), d) || !parseDigits(text.substr(11, 2), h) ||
        !parseDigits(text.substr(14, 2), mi) || !parseDigits(text.substr(17, 2), s))
        return std::nullopt;
    year_month_day ymd{year(y), month(mo), day(d)};
    if (!ymd.ok() || h > 23 || mi > 59 || s > 60) return std::nullopt;

    std::string_view rest = text.substr(19);
    double fraction = 0;
    if (!rest.empty() && rest.front() == '.') {
        size_t digits = 1;
        while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9')
            ++digits;
        if (digits == 1) return std::nullopt;
        // Up to nanoseconds; further digits are below what a Date holds.
        long long units = 0;
        double scale = 1;
        for (size_t i = 1; i < digits && i <= 9; ++i, scale *= 10)
            units = units * 10 + (rest[i] - '0');
        fraction = static_cast<double>(units) / scale;
        rest.remove_prefix(digits);
    }
    int offsetSeconds = 0;
    if (rest == "Z") {
        offsetSeconds = 0;
    } else if (rest.size() == 6 && (rest[0] == '+' || rest[0] == '-') && rest[3] == ':') {
        int oh = 0, om = 0;
        if (!parseDigits(rest.substr(1, 2), oh) || !parseDigits(rest.substr(4, 2), om) || oh > 23 || om > 59)
            return std::nullopt;
        offsetSeconds = (oh * 3600 + om * 60) * (rest[0] == '-' ? -1 : 1);
    } else {
        return std::nullopt;
    }
    long long dayNumber = sys_days(ymd).time_since_epoch().count();
    long long whole = dayNumber * 86400LL + h * 3600LL + mi * 60LL + s - offsetSeconds;
    return Date(static_cast<double>(whole) + fraction);
}

} // namespace corvane
