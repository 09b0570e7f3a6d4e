#pragma once

#include <span>
#include <string_view>

namespace corvane::detail {

// How a property's value is shaped between exiv2 and the image I/O dictionaries. Most values take
// the shape of their exiv2 type (`automatic`); the others need a conversion the type doesn't tell.
enum class PropertyShape {
    // Text for text types; a number, or an array of numbers, for numeric types; an array of text
    // for repeatable IPTC datasets and XMP bags and sequences; the default text of an XMP
    // language alternative.
    automatic,
    // Numbers always as an array, even a single one: ISO speeds, the lens focal and aperture range.
    numberArray,
    // Bytes of an undefined value read as text: the versions "0231", "0100".
    byteText,
    // EXIF text that cameras pad with blanks: Make, Model, Software, Artist; read without them.
    paddedText,
    // The EXIF copyright: the photographer's notice, a NUL, the editor's; read as two lines.
    copyright,
    // A text behind an 8-byte character code ("ASCII", "UNICODE"): the user comment.
    comment,
    // APEX values in the file, the values they stand for in the dictionary: the f-number of an
    // aperture value, the exposure time in seconds of a shutter speed value.
    apexAperture,
    apexShutterSpeed,
    // Degrees, minutes and seconds as three rationals; unsigned decimal degrees in the dictionary.
    gpsCoordinate,
    // Hours, minutes and seconds as three rationals; "HH:mm:ss" in the dictionary.
    gpsTime,
    // An EXIF date text, "yyyy:MM:dd HH:mm:ss" (or "yyyy:MM:dd" for the GPS date stamp).
    exifDate,
    exifDay,
    // IPTC dates and times: "yyyy:MM:dd" and "HH:mm:ss+hh:mm" in the dictionary.
    iptcDate,
    iptcTime,
    // An XMP text of rationals ("24/1 70/1 0/0 0/0"); in the dictionary the same list of numbers as
    // text ("24 70 undef undef"), an unknown value being "undef".
    xmpRationals,
};

// One property the engine knows: the exiv2 key ("Exif.Photo.ExposureTime"), the dictionary
// ("{Exif}") and the property key ("ExposureTime") of the image I/O vocabulary.
struct ImagePropertyRow {
    std::string_view exiv2Key;
    std::string_view dictionary;
    std::string_view property;
    PropertyShape shape = PropertyShape::automatic;
};

// The translation between exiv2 keys and the image I/O property names: one row per property, in
// the order of the dictionaries. A property appears at most once; an exiv2 key too.
std::span<const ImagePropertyRow> imagePropertyTable();

// The dictionaries in table order, the order in which a read goes through them (an earlier
// dictionary wins where two name the same tag).
std::span<const std::string_view> imagePropertyDictionaries();

// The row of an exiv2 key, or of a dictionary and property; nullptr when the table has none.
const ImagePropertyRow* findImageProperty(std::string_view exiv2Key);
const ImagePropertyRow* findImageProperty(std::string_view dictionary, std::string_view property);

} // namespace corvane::detail
