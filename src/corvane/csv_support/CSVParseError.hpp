#pragma once

#include "corvane/utilities/Error.hpp"

#include <string>
#include <utility>

namespace corvane {

/// A failure of the CSV state machine. `what()` is the message.
class CSVParseError : public Error {
public:
    /// A malformed text, or a misplaced quotation mark.
    enum class Case { generic, quotation };

    /// An error of each kind with its message.
    ///@{
    static CSVParseError generic(std::string message) {
        return CSVParseError(Case::generic, std::move(message));
    }
    static CSVParseError quotation(std::string message) {
        ///@}
        return CSVParseError(Case::quotation, std::move(message));
    }

    /// The kind; the message (the same as `what()`).
    ///@{
    Case kind() const { return case_; }
    std::string message() const { return what(); }
    ///@}

private:
    CSVParseError(Case c, std::string message) : Error(std::move(message)), case_(c) {}

    Case case_;
};

} // namespace corvane
