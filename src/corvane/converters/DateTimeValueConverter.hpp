#pragma once

#include "corvane/converters/ValueConverter.hpp"

#include <string>

namespace corvane {

// Date, time and date-and-time tags. One reader accepts every shape that date
// tags are written in (see typedValueFromStringValue); `dateFormat` is only the
// shape written back. Text uses the locale "en_US_POSIX" and the Gregorian
// calendar in the process's time zone.
class DateTimeValueConverter : public TypedValueConverter<Date> {
public:
    explicit DateTimeValueConverter(std::string format = "yyyy:MM:dd HH:mm:ss")
        : dateFormat_(std::move(format)) {}

    const std::string& dateFormat() const { return dateFormat_; }
    void setDateFormat(std::string format) { dateFormat_ = std::move(format); }

    // Ignores dateFormat. After removing every ":" and "_" and trimming, the
    // length decides the shape: 2 "HH", 4 "yyyy", 6 "HHmmss", 8 "yyyyMMdd",
    // 11 "HHmmss" with a zone, 14 "yyyyMMddHHmmss", 15 "yyyyMMdd HHmmss", 16 the
    // same with a character cut off (a "Z": read as local time), 20 with a
    // zone, 22 with seven characters cut off (a fraction). A missing date is
    // today; anything else, or a field out of range, yields nothing.
    std::optional<Date> typedValueFromStringValue(const OptionalString& value) const override;
    std::optional<Date> typedValueFromNativeValue(const DynamicValue& value) const override;
    // The date in dateFormat; "ZZZZZ" writes "+02:00", or "Z" at zero offset.
    OptionalString stringValueFromTypedValue(const std::optional<Date>& value) const override;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    // ExifTool gets the input as typed, unparsed.
    DynamicValue exifToolValueFromStringValue(const OptionalString& value) const override;

    // Parses `text` whole with a fixed pattern (strict: out-of-range fields
    // fail) and formats with one; both in "en_US_POSIX" and the current zone.
    static std::optional<Date> parse(const std::string& text, const std::string& pattern);
    static std::string format(Date date, const std::string& pattern);

private:
    std::string dateFormat_;
};

} // namespace corvane
