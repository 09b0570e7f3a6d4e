#include "corvane/tag_storages/detail/ImageSource.hpp"

#include "corvane/csv_support/TextEncoding.hpp"

#include "corvane/tag_storages/detail/Exiv2Library.hpp"
#include "corvane/tag_storages/detail/ImagePropertyTable.hpp"

#include <exiv2/exiv2.hpp>
#include <exiv2/webpimage.hpp>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace corvane::detail {

namespace {

// A rational as a decimal of ten significant digits: the precision at which ExifTool hands out
// rationals, so that both engines give the same canonical value.
double rationalValue(const Exiv2::Rational& r) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", static_cast<double>(r.first) / static_cast<double>(r.second));
    return std::strtod(text, nullptr);
}

// Text as exiv2 holds it, up to the first NUL (fixed-size EXIF strings are padded with them).
std::string trimmedText(std::string text) {
    if (const auto nul = text.find('\0'); nul != std::string::npos) text.erase(nul);
    return text;
}

std::string withoutTrailing(std::string text, const char* characters) {
    text.erase(text.find_last_not_of(characters) + 1);
    return text;
}

std::string rawBytes(const Exiv2::Value& value) {
    std::string bytes(static_cast<std::size_t>(value.size()), '\0');
    value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
    return bytes;
}

// "Photographer\0Editor\0" as two lines, each without trailing blanks; " \0Editor\0" when only
// the editor is named.
DynamicValue copyright(const Exiv2::Value& value) {
    std::string bytes = rawBytes(value);
    const auto first = bytes.find('\0');
    if (first == std::string::npos) return bytes;
    std::string editor = bytes.substr(first + 1);
    editor = withoutTrailing(trimmedText(std::move(editor)), " ");
    std::string text = withoutTrailing(bytes.substr(0, first), " ");
    if (!editor.empty()) text += "\n" + editor;
    return text;
}

std::string twoDigits(long value) {
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "%02ld", value);
    return buffer;
}

bool isRational(Exiv2::TypeId type) {
    return type == Exiv2::unsignedRational || type == Exiv2::signedRational;
}

bool isFloating(Exiv2::TypeId type) {
    return type == Exiv2::tiffFloat || type == Exiv2::tiffDouble;
}

bool isInteger(Exiv2::TypeId type) {
    switch (type) {
    case Exiv2::unsignedByte:
    case Exiv2::unsignedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedByte:
    case Exiv2::signedShort:
    case Exiv2::signedLong:
    case Exiv2::tiffIfd:
    case Exiv2::undefined:
        return true;
    default:
        return false;
    }
}

DynamicValue numberAt(const Exiv2::Value& value, long i) {
    const Exiv2::TypeId type = value.typeId();
    if (isRational(type)) return rationalValue(value.toRational(i));
    if (isFloating(type)) return static_cast<double>(value.toFloat(i));
    return static_cast<int64_t>(value.toLong(i));
}

DynamicValue numbers(const Exiv2::Value& value, bool alwaysArray) {
    const long count = value.count();
    if (count == 1 && !alwaysArray) return numberAt(value, 0);
    DynamicArray array;
    array.reserve(static_cast<std::size_t>(count));
    for (long i = 0; i < count; ++i)
        array.push_back(numberAt(value, i));
    return array;
}

DynamicValue byteText(const Exiv2::Value& value) {
    return trimmedText(rawBytes(value));
}

// Unsigned decimal degrees of degrees, minutes and seconds.
DynamicValue gpsCoordinate(const Exiv2::Value& value) {
    if (value.count() < 3 || !isRational(value.typeId())) return {};
    return rationalValue(value.toRational(0)) + rationalValue(value.toRational(1)) / 60.0 +
           rationalValue(value.toRational(2)) / 3600.0;
}

// "HH:mm:ss", with the fraction of the seconds when there is one.
DynamicValue gpsTime(const Exiv2::Value& value) {
    if (value.count() < 3 || !isRational(value.typeId())) return {};
    const double hours = rationalValue(value.toRational(0));
    const double minutes = rationalValue(value.toRational(1));
    const double seconds = rationalValue(value.toRational(2));
    if (!(hours >= 0 && minutes >= 0 && seconds >= 0 && hours < 100 && minutes < 100 && seconds < 100))
        return {};
    std::string text =
        twoDigits(static_cast<long>(hours)) + ":" + twoDigits(static_cast<long>(minutes)) + ":";
    const double whole = static_cast<double>(static_cast<long>(seconds));
    text += twoDigits(static_cast<long>(seconds));
    if (seconds != whole) {
        char fraction[32];
        std::snprintf(fraction, sizeof fraction, "%.6g", seconds - whole);
        // "0.5" gives ".5".
        text += std::string(fraction).substr(1);
    }
    return text;
}

DynamicValue iptcDate(const Exiv2::Value& value) {
    const auto* date = dynamic_cast<const Exiv2::DateValue*>(&value);
    if (!date) return trimmedText(value.toString());
    const auto& d = date->getDate();
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d:%02d:%02d", d.year, d.month, d.day);
    return std::string(buffer);
}

DynamicValue iptcTime(const Exiv2::Value& value) {
    const auto* time = dynamic_cast<const Exiv2::TimeValue*>(&value);
    if (!time) return trimmedText(value.toString());
    const auto& t = time->getTime();
    const bool west = t.tzHour < 0 || t.tzMinute < 0;
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d%c%02d:%02d", t.hour, t.minute, t.second,
                  west ? '-' : '+', std::abs(t.tzHour), std::abs(t.tzMinute));
    return std::string(buffer);
}

// "24/1 70/1 0/0 0/0" as "24 70 undef undef"; a piece that isn't a rational is kept as it stands.
DynamicValue xmpRationals(const Exiv2::Value& value) {
    std::istringstream pieces(value.toString());
    std::string text;
    for (std::string piece; pieces >> piece;) {
        long long numerator = 0, denominator = 0;
        char slash = 0;
        std::istringstream parts(piece);
        if (parts >> numerator >> slash >> denominator && slash == '/' && parts.eof()) {
            char number[40];
            std::snprintf(number, sizeof number, "%.10g",
                          static_cast<double>(numerator) / static_cast<double>(denominator));
            piece = denominator == 0 ? std::string("undef") : std::string(number);
        }
        text += (text.empty() ? "" : " ") + piece;
    }
    if (text.empty()) return {};
    return text;
}

// The text of a comment, without its character code and padding. exiv2 gives a comment value
// where the file declares the type, plain bytes elsewhere.
DynamicValue comment(const Exiv2::Value& value) {
    std::string text;
    if (value.typeId() == Exiv2::asciiString) {
        // Some writers store the text as plain ASCII, without a character code.
        text = value.toString();
    } else if (const auto* known = dynamic_cast<const Exiv2::CommentValue*>(&value)) {
        text = known->comment();
    } else {
        const std::string bytes = rawBytes(value);
        Exiv2::CommentValue decoded;
        decoded.read(reinterpret_cast<const Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()),
                     Exiv2::littleEndian);
        text = decoded.comment();
    }
    return withoutTrailing(trimmedText(std::move(text)), " ");
}

DynamicValue apex(const Exiv2::Value& value, PropertyShape shape) {
    if (value.count() != 1 || !isRational(value.typeId())) return {};
    const double apexValue = rationalValue(value.toRational(0));
    if (shape == PropertyShape::apexAperture) return std::pow(2.0, apexValue / 2);
    // A shutter speed beyond any camera's (or no number at all) stands for no exposure time.
    return std::isfinite(apexValue) && std::fabs(apexValue) < 100 ? std::pow(2.0, -apexValue) : 0.0;
}

// The value of an XMP property: text, an array of text, or the default language's text.
DynamicValue xmpValue(const Exiv2::Value& value) {
    switch (value.typeId()) {
    case Exiv2::langAlt: {
        const auto& alternatives = static_cast<const Exiv2::LangAltValue&>(value).value_;
        if (alternatives.empty()) return {};
        auto it = alternatives.find("x-default");
        return (it != alternatives.end() ? it : alternatives.begin())->second;
    }
    case Exiv2::xmpBag:
    case Exiv2::xmpSeq:
    case Exiv2::xmpAlt: {
        StringArray array;
        for (long i = 0; i < value.count(); ++i)
            array.push_back(value.toString(i));
        return array;
    }
    default:
        return value.toString();
    }
}

DynamicValue automaticValue(const Exiv2::Value& value, bool alwaysArray) {
    const Exiv2::TypeId type = value.typeId();
    if (type == Exiv2::comment) return static_cast<const Exiv2::CommentValue&>(value).comment();
    if (type == Exiv2::asciiString || type == Exiv2::string || type == Exiv2::date || type == Exiv2::time)
        return trimmedText(value.toString());
    if (type >= Exiv2::xmpText && type <= Exiv2::langAlt) return xmpValue(value);
    // Binary blocks (a maker note exiv2 couldn't decode, pattern tables) stay out: no tag takes
    // them, and copying them out would cost more than the whole read.
    if (value.count() == 0 || (type == Exiv2::undefined && value.count() > 64)) return {};
    if (isRational(type) || isFloating(type) || isInteger(type)) return numbers(value, alwaysArray);
    return trimmedText(value.toString());
}

DynamicValue propertyValue(const Exiv2::Value& value, PropertyShape shape) {
    switch (shape) {
    case PropertyShape::automatic:
        return automaticValue(value, false);
    case PropertyShape::numberArray:
        return automaticValue(value, true);
    case PropertyShape::byteText:
        return byteText(value);
    case PropertyShape::paddedText:
        return withoutTrailing(trimmedText(value.toString()), " \t\r\n\v\f");
    case PropertyShape::copyright:
        return copyright(value);
    case PropertyShape::comment:
        return comment(value);
    case PropertyShape::apexAperture:
    case PropertyShape::apexShutterSpeed:
        return apex(value, shape);
    case PropertyShape::gpsCoordinate:
        return gpsCoordinate(value);
    case PropertyShape::gpsTime:
        return gpsTime(value);
    case PropertyShape::exifDate:
    case PropertyShape::exifDay:
        return trimmedText(value.toString());
    case PropertyShape::iptcDate:
        return iptcDate(value);
    case PropertyShape::iptcTime:
        return iptcTime(value);
    case PropertyShape::xmpRationals:
        return xmpRationals(value);
    }
    return {};
}

void store(PropertyDictionary& properties, const ImagePropertyRow& row, DynamicValue value) {
    if (value.isNothing()) return;
    // The first datum of a key wins: IFD0 before the others in raw formats.
    properties[std::string(row.dictionary)].try_emplace(std::string(row.property), std::move(value));
}

template <class Data> void copyTagged(PropertyDictionary& properties, const Data& data) {
    for (const auto& datum : data) {
        const ImagePropertyRow* row = findImageProperty(datum.key());
        if (row) store(properties, *row, propertyValue(datum.value(), row->shape));
    }
}

bool declaresUTF8(const Exiv2::IptcData& data) {
    auto it = data.findKey(Exiv2::IptcKey("Iptc.Envelope.CharacterSet"));
    return it != data.end() && it->value().toString() == "\x1b%G";
}

// IPTC text is UTF-8 where the file says so, and Windows Latin otherwise (what IPTC written
// without a declaration holds in practice, and what ExifTool assumes too).
DynamicValue iptcText(DynamicValue value, bool utf8) {
    const auto* text = value.stringValue();
    if (utf8 || !text) return value;
    if (std::all_of(text->begin(), text->end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return value;
    return TextEncoding::windowsCP1252().decode(*text).value_or(*text);
}

// IPTC datasets that may repeat (keywords, by-lines) gather into one array of text.
void copyIptc(PropertyDictionary& properties, const Exiv2::IptcData& data) {
    const bool utf8 = declaresUTF8(data);
    std::map<const ImagePropertyRow*, StringArray> repeated;
    for (const auto& datum : data) {
        const ImagePropertyRow* row = findImageProperty(datum.key());
        if (!row) continue;
        DynamicValue value = iptcText(propertyValue(datum.value(), row->shape), utf8);
        if (!Exiv2::IptcDataSets::dataSetRepeatable(datum.tag(), datum.record()))
            store(properties, *row, std::move(value));
        else if (const auto* text = value.stringValue())
            repeated[row].push_back(*text);
    }
    for (auto& [row, values] : repeated)
        store(properties, *row, std::move(values));
}

} // namespace

ImageSource::ImageSource(std::filesystem::path url, std::shared_ptr<Exiv2::Image> image)
    : url_(std::move(url)), image_(std::move(image)) {}

std::optional<ImageSource> ImageSource::createWithURL(const std::filesystem::path& url) {
    prepareExiv2Library();
    try {
        std::shared_ptr<Exiv2::Image> image(Exiv2::ImageFactory::open(url.string(), false).release());
        if (!image) return std::nullopt;
        image->readMetadata();
        return ImageSource(url, std::move(image));
    } catch (const std::exception&) {
        // exiv2 throws for a missing file, an unknown format and a damaged one alike.
        return std::nullopt;
    }
}

std::optional<ImageType> ImageSource::type() const {
    const int format = image_->imageType();
    if (format == Exiv2::ImageType::none) return std::nullopt;
    // exiv2 opens TIFF-based raw files (NEF, DNG, ARW, PEF, ...) as TIFF: the name tells them apart.
    std::string extension = url_.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const bool isWritable =
        format == Exiv2::ImageType::jpeg || format == Exiv2::ImageType::exv ||
        format == Exiv2::ImageType::png || format == Exiv2::ImageType::webp ||
        format == Exiv2::ImageType::jp2 ||
        (format == Exiv2::ImageType::tiff && (extension == ".tif" || extension == ".tiff"));
    return ImageType{format, isWritable};
}

std::optional<PropertyDictionary> ImageSource::copyProperties() const {
    try {
        PropertyDictionary properties;
        copyTagged(properties, image_->exifData());
        copyIptc(properties, image_->iptcData());
        copyTagged(properties, image_->xmpData());
        return properties;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace corvane::detail
