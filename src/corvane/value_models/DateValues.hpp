#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateComponents.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

/// A set of date fields any of which may be absent. A date edition reads it as
/// absolute values (select, update) or as offsets (shift).
class DateValues {
public:
    /// The fields, each absent unless given: absolute values or offsets, as the edition uses them.
    ///@{
    std::optional<int64_t> day;
    std::optional<int64_t> month;
    std::optional<int64_t> year;
    std::optional<int64_t> hour;
    std::optional<int64_t> minute;
    std::optional<int64_t> second;
    ///@}

    DateValues() = default;
    /// All six fields of the date by the Gregorian calendar; none for nothing.
    explicit DateValues(const std::optional<Date>& date);
    /// Reads the text form "YY: 2021, hh: 8". Never fails: unknown keys and
    /// pieces without a colon are skipped, unreadable numbers unset their field.
    static DateValues fromDescription(const std::optional<std::string>& description);

    /// The present fields in the order year to second, "YY: 2021, hh: 8".
    std::string description() const;
    bool isEmpty() const; ///< no field is present

    /// What the calendar builds from the present fields alone; nothing if it can't.
    std::optional<Date> date() const;
    /// The present fields over those of `date`.
    std::optional<Date> updateDate(const std::optional<Date>& date) const;
    /// `date` moved by the present fields as calendar offsets.
    std::optional<Date> shiftDate(const std::optional<Date>& date) const;

    /// The present fields as calendar components.
    DateComponents dateComponents() const;

    friend bool operator==(const DateValues&, const DateValues&) = default;
};

} // namespace corvane
