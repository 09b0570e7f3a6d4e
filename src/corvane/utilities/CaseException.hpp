#pragma once

#include <stdexcept>
#include <string>

namespace corvane {

// The exception thrown for a case of an error enumeration: `what()` is the
// case's message, from the `message(Error)` function declared beside the
// enumeration (found by argument-dependent lookup), and `error()` the case.
template <typename Error> class CaseException : public std::runtime_error {
public:
    explicit CaseException(Error error) : std::runtime_error(std::string(message(error))), error_(error) {}
    Error error() const { return error_; }

private:
    Error error_;
};

} // namespace corvane
