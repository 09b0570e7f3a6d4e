#pragma once

#include "corvane/utilities/Error.hpp"

#include <filesystem>
#include <string>

namespace corvane {

/// A file left as it was because an edited value can't be written as it stands: a number that
/// isn't finite ("inf", "nan", "1e999"), an integer its tag can't hold, a GPS position off the
/// globe. `what()` is "PATH: TAG: REASON", as in
/// "/photos/a.jpg: EXIF:GPSLatitude: \"inf\" is not a finite number".
class UnwritableValueError : public Error {
public:
    /// The file, and "TAG: REASON".
    UnwritableValueError(std::filesystem::path url, std::string reason);
    /// The file that holds the value.
    const std::filesystem::path& url() const { return url_; }
    /// "TAG: REASON".
    const std::string& reason() const { return reason_; }

private:
    std::filesystem::path url_;
    std::string reason_;
};

} // namespace corvane
