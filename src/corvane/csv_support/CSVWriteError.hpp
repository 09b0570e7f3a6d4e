#pragma once

#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Failures of CSVWriter; the message of each case is its text.
enum class CSVWriteError { cannotOpenFile, cannotReadFile, cannotWriteStream };

std::string_view message(CSVWriteError error);

/// Thrown by CSVWriter; `what()` is the message of the case.
using CSVWriteException = CaseException<CSVWriteError>;

} // namespace corvane
