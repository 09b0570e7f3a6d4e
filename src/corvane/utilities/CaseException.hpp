#pragma once

#include "corvane/utilities/Error.hpp"

#include <string>

namespace corvane {

/// The exception thrown for a case of an error enumeration: `what()` is the
/// case's message, from the `message(E)` function declared beside the
/// enumeration (found by argument-dependent lookup), and `error()` the case.
template <typename E> class CaseException : public Error {
public:
    /// The exception of `error`, its `what()` the case's message.
    explicit CaseException(E error) : Error(std::string(message(error))), error_(error) {}
    /// The case.
    E error() const { return error_; }

private:
    E error_;
};

} // namespace corvane
