#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

class ValueConverter;
using ValueConverterRef = std::shared_ptr<const ValueConverter>;

/// The type of one value of a tag: ExifTool's format names, plus the date,
/// time, Boolean and country kinds that the catalogue assigns to known tags.
/// The ordinals are fixed: converters choose by them (signed set, date kinds).
class TagType {
public:
    /// The types, by fixed ordinal; the comments give ExifTool's name where it isn't the case's
    /// own.
    enum Case : uint8_t {
        unknown = 0,       ///< "?"
        undef = 1,         ///< "undef"
        binary = 2,        ///< "binary"
        int8u = 3,         ///< "int8u"
        int16u = 4,        ///< "int16u"
        dateTime = 5,      ///< "datetime": EXIF date and time, no zone
        localDateTime = 6, ///< "localdatetime": QuickTime date and time, no zone
        dateTimeZone = 7,  ///< "date": XMP and file dates, with zone
        int32u = 8,
        int64u = 9,
        int8s = 10,
        rational32u = 11,
        rational64u = 12,
        int16s = 13,
        fixed16u = 14,
        fixed32u = 15,
        int32s = 16,
        int16uRev = 17,
        int64s = 18,
        rational32s = 19,
        rational64s = 20,
        fixed16s = 21,
        fixed32s = 22,
        int32uRev = 23,
        float32 = 24,     ///< "float"
        unsignedInt = 25, ///< "unsigned"
        digits = 26,
        rational = 27,
        ifd = 28,
        ifd64 = 29,
        float64 = 30, ///< "double"
        real = 31,
        extended = 32,
        integer = 33,
        varInt16u = 34, ///< "var_int16u"
        signedInt = 35, ///< "signed"
        langAlt = 36,   ///< "lang-alt"
        structure = 37, ///< "struct"
        boolean = 38,
        null = 39,
        countryCode = 40, ///< "countrycode"
        date = 41,        ///< "iptcdate": date only
        time = 42,        ///< "iptctime": time only
        partialTime = 43, ///< "partialtime": GPS time stamp
        partialDate = 44, ///< "partialdate": GPS date stamp
        utf8 = 45,
        Unicode = 46,
        unicode = 47,
        pstring = 48,
        varString = 49,  ///< "var_string"
        varPStr32 = 50,  ///< "var_pstr32"
        varUStr32 = 51,  ///< "var_ustr32"
        varUE7 = 52,     ///< "var_ue7"
        vtFiletime = 53, ///< "vt_filetime"
        longString = 54, ///< "longstring"
        string = 55,
        rect = 56,       ///< "Rect"
        point = 57,      ///< "Point"
        int16Data = 58,  ///< "Int16Data"
        rgn = 59,        ///< "Rgn"
        polygon = 60,    ///< "Polygon"
        arc = 61,        ///< "Arc"
        rgbColor = 62,   ///< "RGBColor"
        int32uData = 63, ///< "Int32uData"
        pixPat = 64,     ///< "PixPat"
        resize = 65,
        int8uText = 66,   ///< "Int8uText"
        guid = 67,        ///< "GUID"
        bitsRgn = 68,     ///< "BitsRgn#"
        bitsRect = 69,    ///< "BitsRect#"
        unknownName = 70, ///< "Unknown"
    };
    /// The number of cases, one more than the last ordinal.
    static constexpr int caseCount = 71;

    constexpr TagType() = default;
    /// The type of this case.
    constexpr TagType(Case c) : case_(c) {}

    /// The case, and its ordinal.
    ///@{
    constexpr Case value() const { return case_; }
    constexpr int ordinal() const { return static_cast<int>(case_); }
    ///@}
    /// The name as the catalogue and ExifTool write it ("int16u", "datetime").
    std::string_view rawValue() const;
    /// The type of a raw name; nothing for an unknown one.
    static std::optional<TagType> fromRawValue(std::string_view raw);
    /// Every case, in ordinal order.
    static const std::vector<TagType>& allCases();

    /// The signed set of the converters: ordinals 10, 13, 16, 18-22, 24, 30, 31, 33, 35.
    bool isSigned() const;
    /// Text of bounded length: ExifTool's string encodings, IPTC's digit strings (where leading
    /// zeros matter) and XMP's language alternatives.
    bool isShortString() const;
    /// Rationals, fixed-point and floating-point numbers.
    bool isFloat() const;
    /// Integers of every width and sign.
    bool isInteger() const;
    /// A float or an integer.
    bool isNumber() const { return isFloat() || isInteger(); }
    /// A date, a time, a date-time, or a GPS date or time stamp.
    bool isDateTimeOrPartial() const;
    /// A type that some converter other than NoneValueConverter handles.
    bool isSupported() const;

    /// The converter of one value of this type.
    ValueConverterRef converter() const;

    /// Same case.
    friend constexpr bool operator==(TagType a, TagType b) { return a.case_ == b.case_; }

private:
    Case case_ = unknown;
};

} // namespace corvane
