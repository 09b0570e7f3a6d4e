#include "corvane/tag_value/TagType.hpp"

#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/CountryValueConverter.hpp"
#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/converters/NoneValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/SIntValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UDoubleValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"

#include <array>
#include <string>
#include <unordered_map>

namespace corvane {

namespace {

// Raw values in ordinal order: ExifTool's type names, and the catalogue's own
// names for the kinds it assigns (dates, times, Booleans, country codes).
constexpr std::array<std::string_view, TagType::caseCount> rawValues = {
    "?",          "undef",       "binary",      "int8u",     "int16u",      "datetime",    "localdatetime",
    "date",       "int32u",      "int64u",      "int8s",     "rational32u", "rational64u", "int16s",
    "fixed16u",   "fixed32u",    "int32s",      "int16uRev", "int64s",      "rational32s", "rational64s",
    "fixed16s",   "fixed32s",    "int32uRev",   "float",     "unsigned",    "digits",      "rational",
    "ifd",        "ifd64",       "double",      "real",      "extended",    "integer",     "var_int16u",
    "signed",     "lang-alt",    "struct",      "boolean",   "null",        "countrycode", "iptcdate",
    "iptctime",   "partialtime", "partialdate", "utf8",      "Unicode",     "unicode",     "pstring",
    "var_string", "var_pstr32",  "var_ustr32",  "var_ue7",   "vt_filetime", "longstring",  "string",
    "Rect",       "Point",       "Int16Data",   "Rgn",       "Polygon",     "Arc",         "RGBColor",
    "Int32uData", "PixPat",      "resize",      "Int8uText", "GUID",        "BitsRgn#",    "BitsRect#",
    "Unknown",
};

constexpr bool inSet(int ordinal, std::initializer_list<int> set) {
    for (int o : set)
        if (o == ordinal) return true;
    return false;
}

// The ordinals that hold signed numbers; the converters choose by it.
constexpr std::initializer_list<int> signedOrdinals = {10, 13, 16, 18, 19, 20, 21, 22, 24, 30, 31, 33, 35};

} // namespace

std::string_view TagType::rawValue() const {
    return rawValues[ordinal()];
}

std::optional<TagType> TagType::fromRawValue(std::string_view raw) {
    static const std::unordered_map<std::string_view, Case> byRaw = [] {
        std::unordered_map<std::string_view, Case> map;
        for (int i = 0; i < caseCount; ++i)
            map.emplace(rawValues[i], static_cast<Case>(i));
        return map;
    }();
    auto it = byRaw.find(raw);
    if (it == byRaw.end()) return std::nullopt;
    return TagType(it->second);
}

const std::vector<TagType>& TagType::allCases() {
    static const std::vector<TagType> all = [] {
        std::vector<TagType> v;
        for (int i = 0; i < caseCount; ++i)
            v.emplace_back(static_cast<Case>(i));
        return v;
    }();
    return all;
}

bool TagType::isSigned() const {
    return inSet(ordinal(), signedOrdinals);
}

bool TagType::isShortString() const {
    // Text of bounded length: ExifTool's string encodings, IPTC's digit
    // strings (leading zeros matter, "01"), and XMP's language alternatives.
    switch (case_) {
    case digits:
    case langAlt:
    case utf8:
    case Unicode:
    case unicode:
    case pstring:
    case varString:
    case varPStr32:
    case varUStr32:
        return true;
    default:
        return false;
    }
}

bool TagType::isFloat() const {
    switch (case_) {
    case rational32u:
    case rational64u:
    case rational32s:
    case rational64s:
    case fixed16u:
    case fixed32u:
    case fixed16s:
    case fixed32s:
    case float32:
    case float64:
    case rational:
    case real:
    case extended:
        return true;
    default:
        return false;
    }
}

bool TagType::isInteger() const {
    switch (case_) {
    case int8u:
    case int16u:
    case int32u:
    case int64u:
    case int8s:
    case int16s:
    case int32s:
    case int64s:
    case int16uRev:
    case int32uRev:
    case unsignedInt:
    case integer:
    case signedInt:
    case varInt16u:
        return true;
    default:
        return false;
    }
}

bool TagType::isDateTimeOrPartial() const {
    switch (case_) {
    case dateTime:
    case localDateTime:
    case dateTimeZone:
    case date:
    case time:
    case partialTime:
    case partialDate:
        return true;
    default:
        return false;
    }
}

bool TagType::isSupported() const {
    return isShortString() || isNumber() || isDateTimeOrPartial() || case_ == longString || case_ == string ||
           case_ == boolean || case_ == countryCode;
}

ValueConverterRef TagType::converter() const {
    // One shared converter per case, built once: converter() never allocates.
    static const std::array<ValueConverterRef, caseCount> converters = [] {
        auto stringConverter = std::make_shared<const StringValueConverter>();
        auto sDouble = std::make_shared<const SDoubleValueConverter>();
        auto uDouble = std::make_shared<const UDoubleValueConverter>();
        auto sInt = std::make_shared<const SIntValueConverter>();
        auto uInt = std::make_shared<const UIntValueConverter>();
        // A tag's value keeps its own clock: written back as read, whatever the machine's zone.
        // QuickTime and XMP dates may also carry a zone, a fraction or only some fields, IPTC times
        // a zone, GPS times a fraction: they keep what the file wrote. EXIF dates and dates alone
        // hold none of these.
        using Clock = DateTimeValueConverter::Clock;
        auto dateTimeConverter =
            std::make_shared<const DateTimeValueConverter>("yyyy:MM:dd HH:mm:ss", Clock::own);
        auto localConverter =
            std::make_shared<const DateTimeValueConverter>("yyyy:MM:dd HH:mm:ss", Clock::ownWithZone);
        auto zonedConverter =
            std::make_shared<const DateTimeValueConverter>("yyyy:MM:dd HH:mm:ssZZZZZ", Clock::ownWithZone);
        auto dateConverter = std::make_shared<const DateTimeValueConverter>("yyyy:MM:dd", Clock::own);
        auto timeConverter = std::make_shared<const DateTimeValueConverter>("HH:mm:ss", Clock::ownWithZone);
        auto boolConverter = std::make_shared<const BoolValueConverter>();
        auto countryConverter = std::make_shared<const CountryValueConverter>();
        auto noneConverter = std::make_shared<const NoneValueConverter>();

        std::array<ValueConverterRef, caseCount> table;
        for (int i = 0; i < caseCount; ++i) {
            TagType type(static_cast<Case>(i));
            bool isSigned = type.isSigned();
            ValueConverterRef c;
            if (type.isShortString() || type.rawValue() == "longstring")
                c = stringConverter;
            else if (type.isFloat())
                c = isSigned ? ValueConverterRef(sDouble) : ValueConverterRef(uDouble);
            else if (type.isInteger())
                c = isSigned ? ValueConverterRef(sInt) : ValueConverterRef(uInt);
            else {
                switch (i) {
                case 5:
                    c = dateTimeConverter;
                    break;
                case 6:
                    c = localConverter;
                    break;
                case 7:
                    c = zonedConverter;
                    break;
                case 38:
                    c = boolConverter;
                    break;
                case 40:
                    c = countryConverter;
                    break;
                case 41:
                case 44:
                    c = dateConverter;
                    break;
                case 42:
                case 43:
                    c = timeConverter;
                    break;
                case 55:
                    c = stringConverter;
                    break;
                default:
                    c = noneConverter;
                    break;
                }
            }
            table[i] = std::move(c);
        }
        return table;
    }();
    return converters[ordinal()];
}

} // namespace corvane
