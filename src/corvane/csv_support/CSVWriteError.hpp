#pragma once

#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Failures of CSVWriter; the message of each case is its text.
enum class CSVWriteError { cannotOpenFile, cannotReadFile, cannotWriteStream };

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CSVWriteError error);

/// Thrown by CSVWriter; `what()` is the message of the case.
using CSVWriteException = CaseException<CSVWriteError>;

} // namespace corvane
