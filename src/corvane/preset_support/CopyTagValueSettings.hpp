#pragma once

#include "corvane/tag_value/TagName.hpp"

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <string_view>

namespace corvane {

/// How a preset copies another tag of the same file into the tag it edits: the source, whether
/// the source is read as stored (`raw`) or as displayed (`pretty`), and where the copy goes.
struct CopyTagValueSettings {
    /// Read the source as stored, or as displayed (choice titles, fractions).
    enum class Formatter { raw, pretty };
    /// Where the copy goes: instead of the value, before it, after it.
    enum class Insertion { replace, prepend, append };
    /// Every case of each, in order.
    ///@{
    static constexpr std::array<Formatter, 2> allFormatters{Formatter::raw, Formatter::pretty};
    static constexpr std::array<Insertion, 3> allInsertions{Insertion::replace, Insertion::prepend,
                                                            Insertion::append};
    ///@}
    /// "raw", "pretty"; "replace", "prepend", "append".
    static std::string_view text(Formatter formatter);
    static std::string_view text(Insertion insertion); ///< see the `Formatter` form

    TagName tagName;                          ///< the tag copied from
    Formatter formatter = Formatter::raw;     ///< how the source is read
    Insertion insertion = Insertion::replace; ///< where the copy goes

    friend bool operator==(const CopyTagValueSettings&, const CopyTagValueSettings&) = default;
};

/// {"tag_name": "EXIF:Artist", "formatter": "raw", "insertion": "replace"}; all three keys are
/// required, and an unknown text is an error (std::invalid_argument).
void to_json(nlohmann::ordered_json& j, const CopyTagValueSettings& settings);
void from_json(const nlohmann::ordered_json& j, CopyTagValueSettings& settings); ///< see `to_json`

} // namespace corvane
