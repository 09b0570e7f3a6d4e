#pragma once

#include "corvane/utilities/CaseException.hpp"

namespace corvane {

/// The exception that carries one case of a task's `ProcessError` enumeration: the library's
/// one exception for error enumerations. `what()` is the case's English message as it stands (it
/// is not localised); the enumeration provides it through a `message(E)` function found by
/// argument-dependent lookup.
///
///     enum class ProcessError { fileIsNotSupported };
///     std::string_view message(ProcessError);
///     throw TaskError<ProcessError>(ProcessError::fileIsNotSupported);
template <class E> using TaskError = CaseException<E>;

} // namespace corvane
