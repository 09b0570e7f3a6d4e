#pragma once

#include "corvane/preset_support/CopyTagValueSettings.hpp"
#include "corvane/preset_support/SearchAndReplaceSettings.hpp"
#include "corvane/preset_support/UseCustomActionSettings.hpp"
#include "corvane/preset_support/UseCustomValueSettings.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <nlohmann/json_fwd.hpp>

#include <string_view>
#include <type_traits>
#include <variant>

namespace corvane {

/// What a preset does to one tag: run a fixed action, copy another tag, put a given text, search
/// and replace inside the value, or keep the value as it is. Immutable; equal by case and settings.
/// `TagEditorPresets` makes an edition take effect on an editor.
class PresetEdition {
public:
    /// Leave the tag as it is.
    struct KeepCurrentValue {
        friend bool operator==(const KeepCurrentValue&, const KeepCurrentValue&) = default;
    };
    /// The five kinds of edition, each with its settings.
    using Case = std::variant<UseCustomActionSettings, CopyTagValueSettings, UseCustomValueSettings,
                              SearchAndReplaceSettings, KeepCurrentValue>;

    /// Why a JSON value can't be read or written as an edition; `message` gives the text.
    enum class CodingError { unknownDecodingType, unknownEncodingType };
    /// "Unknown decoding type", "Unknown encoding type".
    static std::string_view message(CodingError error);
    /// Thrown when a JSON value names an unknown edition type.
    using CodingException = CaseException<CodingError>;

    PresetEdition() : value_(KeepCurrentValue{}) {}
    /// An edition of this kind.
    template <class T>
    requires std::is_constructible_v<Case, T> PresetEdition(T value) : value_(std::move(value)) {}

    /// An edition of each kind.
    ///@{
    static PresetEdition useCustomAction(UseCustomActionSettings::Action action) {
        return UseCustomActionSettings{action};
    }
    static PresetEdition copyTagValue(CopyTagValueSettings settings) { return settings; }
    static PresetEdition
    useCustomValue(std::string value,
                   UseCustomValueSettings::Insertion insertion = UseCustomValueSettings::Insertion::replace) {
        return UseCustomValueSettings{std::move(value), insertion};
    }
    static PresetEdition searchAndReplace(SearchAndReplaceSettings settings) { return settings; }
    static PresetEdition keepCurrentValue() { return KeepCurrentValue{}; }
    ///@}

    /// The kind with its settings; the settings of kind `T`, or null for another kind.
    ///@{
    const Case& value() const { return value_; }
    template <class T> const T* getIf() const { return std::get_if<T>(&value_); }
    ///@}

    friend bool operator==(const PresetEdition&, const PresetEdition&) = default;

private:
    Case value_;
};

/// The message of a coding error, for CaseException.
inline std::string_view message(PresetEdition::CodingError error) {
    return PresetEdition::message(error);
}

/// The JSON form: {"type": ..., "settings": {...}}, "settings" left out for keep_current_value.
/// Reading also takes the older forms ("none", "remove", "restore", "value", "merge", "append",
/// "prepend", "copy", "clone", with their text under "value"); writing always gives the current
/// one. An unknown type throws PresetEdition::CodingException (unknownDecodingType); a missing key
/// or a value of the wrong kind throws the JSON library's error (or std::invalid_argument for an
/// unknown setting text or tag name).
void to_json(nlohmann::ordered_json& j, const PresetEdition& edition);
void from_json(const nlohmann::ordered_json& j, PresetEdition& edition); ///< see `to_json`

} // namespace corvane
