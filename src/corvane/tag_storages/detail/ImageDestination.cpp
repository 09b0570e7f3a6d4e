#include "corvane/tag_storages/detail/ImageDestination.hpp"

#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/csv_support/TextEncoding.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_storages/detail/Exiv2Library.hpp"
#include "corvane/tag_storages/detail/ImagePropertyTable.hpp"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace corvane::detail {

namespace {

// A value the file's format can't take: the write fails as a whole, and the file stays as it was.
struct UnwritableValue : std::runtime_error {
    explicit UnwritableValue(std::string_view key) : std::runtime_error(std::string(key)) {}
};

std::vector<DynamicValue> elementsOf(const DynamicValue& value) {
    if (const auto* array = value.arrayValue()) return *array;
    if (const auto* strings = value.stringArrayValue()) return {strings->begin(), strings->end()};
    return {value};
}

std::optional<double> numberOf(const DynamicValue& value) {
    if (const auto* d = value.doubleValue()) return *d;
    if (const auto* i = value.intValue()) return static_cast<double>(*i);
    if (const auto* u = value.uintValue()) return static_cast<double>(*u);
    if (const auto* n = value.numberValue()) return n->doubleValue();
    if (const auto* b = value.boolValue()) return *b ? 1.0 : 0.0;
    if (const auto* s = value.stringValue()) {
        char* end = nullptr;
        const double d = std::strtod(s->c_str(), &end);
        if (!s->empty() && end == s->c_str() + s->size()) return d;
    }
    return std::nullopt;
}

// The pattern a date takes in a property of this shape.
const char* datePattern(PropertyShape shape) {
    switch (shape) {
    case PropertyShape::exifDay:
        return "yyyy:MM:dd";
    case PropertyShape::iptcDate:
        return "yyyy-MM-dd";
    case PropertyShape::iptcTime:
        return "HH:mm:ssZZZZZ";
    case PropertyShape::gpsTime:
        return "HH:mm:ss";
    case PropertyShape::exifDate:
        return "yyyy:MM:dd HH:mm:ss";
    default:
        return "yyyy-MM-dd'T'HH:mm:ssZZZZZ";
    }
}

std::string textOf(const DynamicValue& value, PropertyShape shape) {
    if (const auto* s = value.stringValue()) return *s;
    if (const auto* date = value.dateValue())
        return DateTimeValueConverter::format(*date, datePattern(shape));
    if (const auto* d = value.doubleValue()) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.17g", *d);
        return buffer;
    }
    if (const auto* n = value.numberValue(); n && n->isReal()) return textOf(n->doubleValue(), shape);
    return value.description();
}

// The closest fraction with a numerator and a denominator that fit in 32 bits, by continued
// fractions: 0.004 gives 1/250, 2.8 gives 14/5.
std::string rationalText(double x, bool isSigned) {
    const double limit =
        isSigned ? std::numeric_limits<int32_t>::max() : std::numeric_limits<uint32_t>::max();
    if (!std::isfinite(x) || std::fabs(x) > limit || (!isSigned && x < 0)) return {};
    const bool negative = x < 0;
    double rest = std::fabs(x);
    long long h0 = 0, h1 = 1, k0 = 1, k1 = 0;
    for (int step = 0; step < 40; ++step) {
        const double a = std::floor(rest);
        const double h2 = a * static_cast<double>(h1) + static_cast<double>(h0);
        const double k2 = a * static_cast<double>(k1) + static_cast<double>(k0);
        if (h2 > limit || k2 > limit) break;
        h0 = h1, h1 = static_cast<long long>(h2);
        k0 = k1, k1 = static_cast<long long>(k2);
        const double fraction = rest - a;
        if (fraction < 1e-12 || std::fabs(static_cast<double>(h1) / static_cast<double>(k1) - std::fabs(x)) <=
                                    1e-15 * std::fabs(x))
            break;
        rest = 1.0 / fraction;
    }
    if (k1 == 0) return {};
    std::string text = negative ? "-" : ""; // appended to: GCC 12 warns, wrongly (-Wrestrict), on "-" + text
    text += std::to_string(h1);
    text += '/';
    text += std::to_string(k1);
    return text;
}

// Degrees, minutes and seconds of unsigned decimal degrees; seconds to the millionth.
std::string gpsCoordinateText(double degrees) {
    degrees = std::fabs(degrees);
    long long micro = std::llround(degrees * 3600.0 * 1e6);
    const long long d = micro / 3600000000LL;
    micro -= d * 3600000000LL;
    const long long m = micro / 60000000LL;
    micro -= m * 60000000LL;
    return std::to_string(d) + "/1 " + std::to_string(m) + "/1 " + std::to_string(micro) + "/1000000";
}

// Hours, minutes and seconds of "HH:mm:ss" (a fraction of seconds allowed).
std::string gpsTimeText(const std::string& text) {
    int hours = 0, minutes = 0;
    double seconds = 0;
    if (std::sscanf(text.c_str(), "%d:%d:%lf", &hours, &minutes, &seconds) != 3) return {};
    return std::to_string(hours) + "/1 " + std::to_string(minutes) + "/1 " +
           std::to_string(std::llround(seconds * 1000)) + "/1000";
}

bool isASCII(const std::string& text) {
    for (unsigned char c : text)
        if (c >= 0x80) return false;
    return true;
}

// The text exiv2 reads into a value of this type, for one property.
std::string exifText(Exiv2::TypeId type, const ImagePropertyRow& row, const DynamicValue& value) {
    const auto elements = elementsOf(value);
    std::string text;
    auto append = [&text](const std::string& piece) {
        if (piece.empty()) throw std::invalid_argument("empty piece");
        if (!text.empty()) text += ' ';
        text += piece;
    };
    if (row.shape == PropertyShape::gpsCoordinate) {
        auto degrees = numberOf(elements.front());
        if (!degrees) return {};
        return gpsCoordinateText(*degrees);
    }
    if (row.shape == PropertyShape::gpsTime) return gpsTimeText(textOf(elements.front(), row.shape));
    if (row.shape == PropertyShape::apexAperture || row.shape == PropertyShape::apexShutterSpeed) {
        // The APEX value of an f-number or of an exposure time in seconds.
        auto number = numberOf(elements.front());
        if (!number || *number <= 0) return {};
        const double apex =
            row.shape == PropertyShape::apexAperture ? 2 * std::log2(*number) : -std::log2(*number);
        return rationalText(apex, type == Exiv2::signedRational);
    }
    switch (type) {
    case Exiv2::asciiString: {
        std::string ascii = textOf(elements.front(), row.shape);
        // The editor's notice follows the photographer's after a NUL.
        if (row.shape == PropertyShape::copyright) std::replace(ascii.begin(), ascii.end(), '\n', '\0');
        return ascii;
    }
    case Exiv2::comment: {
        const std::string comment = textOf(elements.front(), row.shape);
        return (isASCII(comment) ? "charset=Ascii " : "charset=Unicode ") + comment;
    }
    case Exiv2::undefined:
        if (row.shape == PropertyShape::byteText) {
            for (unsigned char c : textOf(elements.front(), row.shape))
                append(std::to_string(c));
            return text;
        }
        [[fallthrough]];
    case Exiv2::unsignedByte:
    case Exiv2::unsignedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedByte:
    case Exiv2::signedShort:
    case Exiv2::signedLong:
        for (const auto& element : elements) {
            auto number = numberOf(element);
            if (!number) return {};
            append(std::to_string(std::llround(*number)));
        }
        return text;
    case Exiv2::unsignedRational:
    case Exiv2::signedRational:
        for (const auto& element : elements) {
            auto number = numberOf(element);
            if (!number) return {};
            append(rationalText(*number, type == Exiv2::signedRational));
        }
        return text;
    case Exiv2::tiffFloat:
    case Exiv2::tiffDouble:
        for (const auto& element : elements) {
            auto number = numberOf(element);
            if (!number) return {};
            append(textOf(*number, row.shape));
        }
        return text;
    default:
        return textOf(elements.front(), row.shape);
    }
}

void setExif(Exiv2::ExifData& data, const ImagePropertyRow& row, const DynamicValue& value) {
    const Exiv2::ExifKey key{std::string(row.exiv2Key)};
    for (auto it = data.findKey(key); it != data.end(); it = data.findKey(key))
        data.erase(it);
    if (value.isNothing()) return;
    if (elementsOf(value).empty()) throw UnwritableValue(row.exiv2Key);
    // A comment is written with its character code, whatever type the tag table gives it.
    const Exiv2::TypeId type = row.shape == PropertyShape::comment ? Exiv2::comment : key.defaultTypeId();
    std::string text;
    try {
        text = exifText(type, row, value);
    } catch (const std::invalid_argument&) {
        throw UnwritableValue(row.exiv2Key);
    }
    auto exifValue = Exiv2::Value::create(type);
    if ((text.empty() && type != Exiv2::asciiString) || exifValue->read(text) != 0)
        throw UnwritableValue(row.exiv2Key);
    data.add(key, exifValue.get());
}

// IPTC dates and times as exiv2 reads them: "yyyy-MM-dd" and "HH:mm:ss+hh:mm".
std::string iptcText(const DynamicValue& value, PropertyShape shape) {
    std::string text = textOf(value, shape);
    if (shape == PropertyShape::iptcDate && text.size() == 10 && text[4] == ':' && text[7] == ':')
        text[4] = text[7] = '-';
    if (shape == PropertyShape::iptcTime && text.size() == 8) text += "+00:00";
    return text;
}

bool declaresUTF8(const Exiv2::IptcData& data) {
    auto it = data.findKey(Exiv2::IptcKey("Iptc.Envelope.CharacterSet"));
    return it != data.end() && it->value().toString() == "\x1b%G";
}

// Declares the IPTC text UTF-8. Text already there without a declaration is Windows Latin (as the
// reader takes it), and is converted first so that declaring UTF-8 changes none of its values.
void declareUTF8(Exiv2::IptcData& data) {
    if (declaresUTF8(data)) return;
    for (auto& datum : data) {
        if (datum.typeId() != Exiv2::string) continue;
        const std::string text = datum.value().toString();
        if (isASCII(text)) continue;
        if (auto decoded = TextEncoding::windowsCP1252().decode(text)) datum.setValue(*decoded);
    }
    data["Iptc.Envelope.CharacterSet"] = "\x1b%G";
}

void setIptc(Exiv2::IptcData& data, const ImagePropertyRow& row, const DynamicValue& value) {
    const Exiv2::IptcKey key{std::string(row.exiv2Key)};
    for (auto it = data.findKey(key); it != data.end(); it = data.findKey(key))
        data.erase(it);
    if (value.isNothing()) return;
    const auto elements = elementsOf(value);
    if (elements.empty()) throw UnwritableValue(row.exiv2Key);
    std::vector<std::string> texts;
    for (const auto& element : elements)
        texts.push_back(iptcText(element, row.shape));
    if (!std::all_of(texts.begin(), texts.end(), isASCII)) declareUTF8(data);
    const Exiv2::TypeId type = Exiv2::IptcDataSets::dataSetType(key.tag(), key.record());
    for (const auto& text : texts) {
        auto iptcValue = Exiv2::Value::create(type);
        if (iptcValue->read(text) != 0) throw UnwritableValue(row.exiv2Key);
        data.add(key, iptcValue.get());
    }
}

// "24 70 undef undef" (or the numbers themselves) as "24/1 70/1 0/0 0/0"; empty when a piece
// isn't a number.
std::string xmpRationalsText(const std::vector<DynamicValue>& elements) {
    std::vector<DynamicValue> pieces;
    for (const auto& element : elements) {
        if (const auto* text = element.stringValue()) {
            std::istringstream words(*text);
            for (std::string word; words >> word;)
                pieces.emplace_back(word);
        } else {
            pieces.push_back(element);
        }
    }
    std::string result;
    for (const auto& piece : pieces) {
        const auto* word = piece.stringValue();
        auto number = numberOf(piece);
        const std::string rational = word && *word == "undef" ? std::string("0/0")
                                     : number                 ? rationalText(*number, true)
                                                              : std::string();
        if (rational.empty()) return {};
        result += (result.empty() ? "" : " ") + rational;
    }
    return result;
}

// A property inside a structure ("Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiAdrCity") needs the
// structure itself.
void addXmpParents(Exiv2::XmpData& data, const std::string& key) {
    const auto slash = key.find('/');
    if (slash == std::string::npos) return;
    const Exiv2::XmpKey parent(key.substr(0, slash));
    if (data.findKey(parent) != data.end()) return;
    Exiv2::XmpTextValue structure;
    structure.setXmpStruct();
    data.add(parent, &structure);
}

void setXmp(Exiv2::XmpData& data, const ImagePropertyRow& row, const DynamicValue& value) {
    const std::string keyText(row.exiv2Key);
    const Exiv2::XmpKey key(keyText);
    if (auto it = data.findKey(key); it != data.end()) data.erase(it);
    if (value.isNothing()) return;
    const auto elements = elementsOf(value);
    const Exiv2::TypeId type = Exiv2::XmpProperties::propertyType(key);
    addXmpParents(data, keyText);
    if (elements.empty()) throw UnwritableValue(row.exiv2Key);
    if (row.shape == PropertyShape::xmpRationals) {
        Exiv2::XmpTextValue rationals(xmpRationalsText(elements));
        if (rationals.value_.empty()) throw UnwritableValue(row.exiv2Key);
        data.add(key, &rationals);
    } else if (type == Exiv2::xmpBag || type == Exiv2::xmpSeq || type == Exiv2::xmpAlt) {
        Exiv2::XmpArrayValue array(type);
        for (const auto& element : elements)
            array.read(textOf(element, row.shape));
        data.add(key, &array);
    } else if (type == Exiv2::langAlt) {
        Exiv2::LangAltValue alternatives;
        alternatives.value_["x-default"] = textOf(elements.front(), row.shape);
        data.add(key, &alternatives);
    } else {
        Exiv2::XmpTextValue text(textOf(elements.front(), row.shape));
        data.add(key, &text);
    }
}

Exiv2::MetadataId familyOf(std::string_view exiv2Key) {
    if (exiv2Key.starts_with("Exif.")) return Exiv2::mdExif;
    if (exiv2Key.starts_with("Iptc.")) return Exiv2::mdIptc;
    return Exiv2::mdXmp;
}

bool canWrite(ImageType type, Exiv2::MetadataId family) {
    return type.isWritable && (Exiv2::ImageFactory::checkMode(type.format, family) & Exiv2::amWrite) != 0;
}

// Merges the properties into the image's metadata; true when XMP is among them.
bool merge(Exiv2::Image& image, ImageType type, const PropertyDictionary& properties) {
    bool changesXmp = false;
    for (const auto& [dictionary, values] : properties) {
        for (const auto& [property, value] : values) {
            const ImagePropertyRow* row = findImageProperty(dictionary, property);
            // A property the table doesn't know has no place in the file.
            if (!row) throw UnwritableValue(property);
            const auto family = familyOf(row->exiv2Key);
            if (!canWrite(type, family)) throw UnwritableValue(row->exiv2Key);
            switch (family) {
            case Exiv2::mdExif:
                setExif(image.exifData(), *row, value);
                break;
            case Exiv2::mdIptc:
                setIptc(image.iptcData(), *row, value);
                break;
            default:
                setXmp(image.xmpData(), *row, value);
                changesXmp = true;
            }
        }
    }
    return changesXmp;
}

} // namespace

std::optional<ImageDestination> ImageDestination::createWithData(ImageType type) {
    prepareExiv2Library();
    for (auto family : {Exiv2::mdExif, Exiv2::mdIptc, Exiv2::mdXmp})
        if (canWrite(type, family)) return ImageDestination(type);
    return std::nullopt;
}

void ImageDestination::addImageFromSource(const ImageSource& source, const PropertyDictionary& properties) {
    sourceURL_ = source.url();
    properties_ = properties;
}

bool ImageDestination::finalize() {
    if (!sourceURL_) return false;
    try {
        const std::string original = readFileBytes(*sourceURL_);
        // The copy is made in memory: exiv2 reads the bytes where they are and writes the
        // result into a buffer of its own.
        auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(original.data()),
                                               static_cast<long>(original.size()));
        if (!image.get() || image->imageType() != type_.format) return false;
        image->readMetadata();
        // XMP the write doesn't change goes back as the packet it was read from: encoding it anew
        // would restamp its toolkit and reformat it.
        if (!merge(*image, type_, properties_)) image->writeXmpFromPacket(true);
        image->writeMetadata();
        Exiv2::BasicIo& io = image->io();
        if (io.open() != 0) return false;
        io.seek(0, Exiv2::BasicIo::beg);
        const Exiv2::DataBuf bytes = io.read(io.size());
        io.close();
        data_.assign(reinterpret_cast<const char*>(bytes.pData_), static_cast<std::size_t>(bytes.size_));
        return true;
    } catch (const std::exception&) {
        data_.clear();
        return false;
    }
}

} // namespace corvane::detail
