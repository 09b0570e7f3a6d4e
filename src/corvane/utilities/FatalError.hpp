#pragma once

#include <string_view>

namespace corvane {

/// Stops the process on a programming fault, with the message on standard error.
[[noreturn]] void fatalError(std::string_view message);

} // namespace corvane
