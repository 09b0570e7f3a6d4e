#pragma once

#include <stdexcept>

namespace corvane {

/// The base of every exception the library throws, so that a host can catch them in one place.
/// `what()` is the error's English message, as the error's type defines it; it is not localised.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace corvane
