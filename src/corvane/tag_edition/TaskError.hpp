#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace corvane {

// The exception that carries one case of a task's `ProcessError` enumeration. `what()` is the
// case's English message as it stands (it is not localised); the enumeration provides it through
// a `message(E)` function found by argument-dependent lookup.
//
//     enum class ProcessError { fileIsNotSupported };
//     std::string_view message(ProcessError);
//     throw TaskError(ProcessError::fileIsNotSupported);
template <class E> class TaskError : public std::runtime_error {
public:
    explicit TaskError(E error) : std::runtime_error(std::string(message(error))), error_(error) {}

    E error() const { return error_; }

private:
    E error_;
};

} // namespace corvane
