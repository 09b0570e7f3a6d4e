#pragma once

#include "corvane/converters/ValueConverter.hpp"

#include <string>

namespace corvane {

/// Date, time and date-and-time tags. One reader accepts every shape that date
/// tags are written in (see typedValueFromStringValue); `dateFormat` is only the
/// shape written back. Text uses the locale "en_US_POSIX" and the Gregorian
/// calendar in the process's time zone.
class DateTimeValueConverter : public TypedValueConverter<Date> {
public:
    /// The clock a date is written on. `processZone`: the process's time zone, whatever
    /// the date was read with. `own`: a date read with an offset (or a local time the
    /// zone skips) keeps its own wall clock, so that a value written back is the value
    /// read, on any machine. `ownWithZone`: the same, and the offset and the fraction
    /// digits the text had are written too, even where dateFormat has no zone
    /// ("23:37:53-04:00" stays so): for tags whose text holds them.
    enum class Clock { processZone, own, ownWithZone };

    /// A converter of `format` (an ICU date pattern), on the process's clock or as `clock` says.
    ///@{
    explicit DateTimeValueConverter(std::string format = "yyyy:MM:dd HH:mm:ss")
        : dateFormat_(std::move(format)) {}
    DateTimeValueConverter(std::string format, Clock clock) : dateFormat_(std::move(format)), clock_(clock) {}
    ///@}

    /// The ICU date pattern of the tag's text.
    ///@{
    const std::string& dateFormat() const { return dateFormat_; }
    void setDateFormat(std::string format) { dateFormat_ = std::move(format); }
    ///@}

    /// Ignores dateFormat. After removing every ":" and "_" and trimming, reads
    /// "yyyyMMdd HHmmss" (or without the blank, or without the seconds), a date
    /// "yyyyMMdd", a year "yyyy", a time "HHmmss" or an hour "HH"; where there is
    /// a time, a fraction of a second and a zone ("Z" is UTC, "+0200") may follow.
    /// Other texts go by their length: 16 or 22 characters are cut to the first
    /// 15. A missing date is today; a field out of range yields nothing. A zone
    /// read becomes the date's own offset; a local time that the process's zone
    /// skips is read with the offset before the change, kept as its own.
    std::optional<Date> typedValueFromStringValue(const OptionalString& value) const override;
    std::optional<Date> typedValueFromNativeValue(const DynamicValue& value) const override;
    /// The date in dateFormat, on the converter's clock; "ZZZZZ" writes "+02:00", or
    /// "Z" at zero offset.
    OptionalString stringValueFromTypedValue(const std::optional<Date>& value) const override;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    /// ExifTool gets the input as typed, unparsed.
    DynamicValue exifToolValueFromStringValue(const OptionalString& value) const override;

    /// Parses `text` whole with a fixed pattern (strict: out-of-range fields
    /// fail) and formats with one; both in "en_US_POSIX" and the current zone.
    static std::optional<Date> parse(const std::string& text, const std::string& pattern);
    static std::string format(Date date, const std::string& pattern); ///< see `parse`
    /// The same on the date's own clock when it has one ("ZZZZZ" writes its own offset),
    /// with that many digits of the second's fraction after the seconds.
    static std::string formatOnOwnClock(Date date, const std::string& pattern, int fractionDigits);

private:
    std::string dateFormat_;
    Clock clock_ = Clock::processZone;
};

} // namespace corvane
