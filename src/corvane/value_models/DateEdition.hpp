#pragma once

#include "corvane/utilities/CaseException.hpp"
#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateValues.hpp"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace corvane {

/// A user's batch change of a date, stored, shown and applied as a small
/// command: "SELECT(YY: 2021)", "UPDATE(...)", "SHIFT(hh: 2)", "RESTORE()",
/// "REMOVE()".
class DateEdition {
public:
    /// Replace the date by exactly the given fields.
    struct Select {
        DateValues values; ///< the fields to set; the others are dropped
        friend bool operator==(const Select&, const Select&) = default;
    };
    /// Overwrite the given fields, keep the others from the old date.
    struct Update {
        DateValues values; ///< the fields to overwrite
        friend bool operator==(const Update&, const Update&) = default;
    };
    /// Add the given fields as offsets.
    struct Shift {
        DateValues values; ///< the offsets to add (negative moves back)
        friend bool operator==(const Shift&, const Shift&) = default;
    };
    /// Keep the date as it is.
    struct Restore {
        friend bool operator==(const Restore&, const Restore&) = default;
    };
    /// Delete the date.
    struct Remove {
        friend bool operator==(const Remove&, const Remove&) = default;
    };
    /// The five commands.
    using Case = std::variant<Select, Update, Shift, Restore, Remove>;

    /// Why a text can't be read as an edition; `message` gives the text.
    ///@{
    enum class DecodingError { notParsableInput };
    static std::string_view message(DecodingError error);
    ///@}

    /// Thrown when a JSON value can't be read as an edition.
    using DecodingException = CaseException<DecodingError>;

    /// An edition of this command.
    ///@{
    DateEdition(Case value) : value_(std::move(value)) {}
    template <class T>
    requires std::is_constructible_v<Case, T> DateEdition(T value) : value_(std::move(value)) {}
    ///@}
    /// An edition of each command.
    ///@{
    static DateEdition select(DateValues values) { return Select{std::move(values)}; }
    static DateEdition update(DateValues values) { return Update{std::move(values)}; }
    static DateEdition shift(DateValues values) { return Shift{std::move(values)}; }
    static DateEdition restore() { return Restore{}; }
    static DateEdition remove() { return Remove{}; }
    ///@}

    /// Reads the text form; the keyword is case-insensitive, the keys inside are
    /// not. Nothing for nothing or an unreadable text.
    static std::optional<DateEdition> fromDescription(const std::optional<std::string>& description);

    /// The command.
    const Case& value() const { return value_; }
    /// The field values of select, update and shift; nothing for the others.
    const DateValues* values() const;

    /// The text form ("SHIFT(hh: 2)"), which `fromDescription` reads back.
    std::string description() const;
    /// The command name in the user's language, then the values in brackets.
    std::string localizedDescription() const;

    /// The edited date: nothing means the date is removed.
    std::optional<Date> apply(const std::optional<Date>& date) const;

    friend bool operator==(const DateEdition&, const DateEdition&) = default;

private:
    Case value_;
};

/// The message of a decoding error, as the case exception asks for it.
inline std::string_view message(DateEdition::DecodingError error) {
    return DateEdition::message(error);
}

} // namespace corvane

namespace nlohmann {
/// Lets nlohmann::json read and write a `DateEdition`. JSON form: the description as one string.
/// Reading throws DateEdition::DecodingException for a string that isn't an edition, and nlohmann's
/// type error for a value that isn't a string.
template <> struct adl_serializer<corvane::DateEdition> {
    /// Reads and writes the description.
    ///@{
    static corvane::DateEdition from_json(const json& j);
    static void to_json(json& j, const corvane::DateEdition& e);
    ///@}
};
} // namespace nlohmann
