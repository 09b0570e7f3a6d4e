#pragma once

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <string>
#include <string_view>

namespace corvane {

/// A given text that a preset puts into a tag: in place of the current value, or before or
/// after it.
struct UseCustomValueSettings {
    /// Where the text goes: instead of the value, before it, after it; every case in order.
    ///@{
    enum class Insertion { replace, prepend, append };
    static constexpr std::array<Insertion, 3> allInsertions{Insertion::replace, Insertion::prepend,
                                                            Insertion::append};
    ///@}
    /// "replace", "prepend", "append".
    static std::string_view text(Insertion insertion);

    std::string value;                        ///< the text to put
    Insertion insertion = Insertion::replace; ///< see `Insertion`

    friend bool operator==(const UseCustomValueSettings&, const UseCustomValueSettings&) = default;
};

/// {"value": "...", "insertion": "replace"}; both keys are required, and an unknown insertion is an
/// error (std::invalid_argument).
void to_json(nlohmann::ordered_json& j, const UseCustomValueSettings& settings);
void from_json(const nlohmann::ordered_json& j, UseCustomValueSettings& settings); ///< see `to_json`

} // namespace corvane
