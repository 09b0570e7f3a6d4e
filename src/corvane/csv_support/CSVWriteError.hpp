#pragma once

#include <stdexcept>
#include <string_view>

namespace corvane {

// Failures of CSVWriter; the message of each case is its text.
enum class CSVWriteError { cannotOpenFile, cannotReadFile, cannotWriteStream };

std::string_view message(CSVWriteError error);

// Thrown by CSVWriter; `what()` is the message of the case.
class CSVWriteException : public std::runtime_error {
public:
    explicit CSVWriteException(CSVWriteError error)
        : std::runtime_error(std::string(message(error))), error_(error) {}
    CSVWriteError error() const { return error_; }

private:
    CSVWriteError error_;
};

} // namespace corvane
