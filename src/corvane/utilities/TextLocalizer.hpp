#pragma once

#include "corvane/utilities/LocalizerArgument.hpp"
#include "corvane/utilities/LocalizerString.hpp"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Request-style localisation: set the key, optionally a table and up to four
/// arguments, then ask for the text. Asking without a key, or with five or
/// more arguments, is a programming fault that stops the process.
class TextLocalizer {
public:
    TextLocalizer() = default;
    /// A request for `key`.
    explicit TextLocalizer(LocalizerString key) : key_(std::move(key)) {}

    /// Set the key, the table (the default table unless set), add one argument, set all arguments;
    /// each gives the request back, for chaining.
    ///@{
    TextLocalizer& string(LocalizerString key);
    TextLocalizer& table(std::string table);
    TextLocalizer& argument(LocalizerArgument argument);
    TextLocalizer& arguments(std::vector<LocalizerArgument> arguments);
    ///@}

    /// The text of the key in the user's language, arguments put in; the key itself when no table
    /// has it.
    std::string localized() const;

private:
    std::optional<LocalizerString> key_;
    std::string table_;
    std::vector<LocalizerArgument> args_;
};

} // namespace corvane
