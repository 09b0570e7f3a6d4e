#pragma once

#include "corvane/tag_value/TagName.hpp"

#include <optional>
#include <vector>

namespace corvane {

/// The bridge between the ExifTool vocabulary and the image I/O engine's
/// property names. An image I/O name is a TagName whose stream is the property
/// dictionary in braces ("{Exif}") and whose key is the property key
/// ("ExposureTime"). Built once, on first use; read-only afterwards.
class TagNameMapping {
public:
    /// One pair of names for the same value.
    struct Row {
        TagName et; ///< TagName::empty where the property has no ExifTool tag
        TagName cg; ///< the image I/O engine's name: "{Dictionary}" stream, property key
    };

    /// All 472 rows, in table order: the five file rows, then {TIFF}, {JFIF},
    /// {Exif}, {ExifAux}, {GIF}, {PNG}, {GPS}, {IPTC}, {DNG}, {CIFF},
    /// {MakerNikon}, {MakerCanon}.
    static const std::vector<Row>& etcgMapping();

    /// Look-ups in the two dictionaries derived from the rows without an empty
    /// side. Where several rows share a name, the first row in table order
    /// wins (IPTC's Headline and City before their XMP counterparts).
    static std::optional<TagName> cgName(const TagName& etName);
    static std::optional<TagName> etName(const TagName& cgName); ///< the reverse look-up
};

} // namespace corvane
