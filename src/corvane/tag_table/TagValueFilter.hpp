#pragma once

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <cstddef>
#include <functional>
#include <string>

namespace corvane {

class TagValueRow;

/// Which rows a `TagValueTable` shows (its `Filter`): by the tag's display name, by the merged
/// value, by whether the value is edited, and by whether there is a value at all. The checks run in
/// that order; a row must pass all four. The default filter passes every row.
///
/// JSON: {"nameConstraint": ..., "valueConstraint": ..., "valueEditionConstraint": ...,
/// "valueStateConstraint": ...}, each constraint an object with one key, the case's name:
/// {"none": {}}, {"contains": {"_0": "text"}}, {"edited": {}} (see `SingleKeyCoding`).
class TagValueFilter {
public:
    /// A test on a text: nothing, the words of a search (case, diacritics and width ignored), or
    /// a regular expression (case matters unless the pattern says otherwise).
    struct StringConstraint {
        /// What the constraint tests: nothing, the words of `text`, or the pattern `text`.
        enum class Kind { none, contains, matches };
        Kind kind = Kind::none; ///< the test
        std::string text;       ///< the words or the pattern

        /// The three kinds of constraint.
        ///@{
        static StringConstraint none() { return {}; }
        static StringConstraint contains(std::string text) { return {Kind::contains, std::move(text)}; }
        static StringConstraint matches(std::string text) { return {Kind::matches, std::move(text)}; }
        ///@}
        friend bool operator==(const StringConstraint&, const StringConstraint&) = default;
    };
    /// Whether rows with an edited value, or with an unedited one, are kept (`ignore` keeps both).
    enum class ValueEditionConstraint { ignore, edited, unedited };
    /// Every case, in order.
    static constexpr std::array<ValueEditionConstraint, 3> allValueEditionConstraints{
        ValueEditionConstraint::ignore, ValueEditionConstraint::edited, ValueEditionConstraint::unedited};
    /// Whether rows with a value, or without one, are kept (`ignore` keeps both).
    enum class ValueStateConstraint { ignore, with, without };
    static constexpr std::array<ValueStateConstraint, 3> allValueStateConstraints{
        ///< every case, in order
        ValueStateConstraint::ignore, ValueStateConstraint::with, ValueStateConstraint::without};

    StringConstraint nameConstraint;  ///< on the tag's display name
    StringConstraint valueConstraint; ///< on the merged value's text
    ValueEditionConstraint valueEditionConstraint = ValueEditionConstraint::ignore; ///< edited or not
    ValueStateConstraint valueStateConstraint = ValueStateConstraint::ignore; ///< with or without a value

    /// Passes every row.
    bool isEmpty() const;
    /// The row passes. Safe to call from several threads at once.
    bool filter(const TagValueRow& row) const;

    friend bool operator==(const TagValueFilter&, const TagValueFilter&) = default;
};

/// Reading throws `SingleKeyCoding::TypeMismatch`: "Invalid number of keys found, expected one." for
/// a constraint that isn't an object of exactly one key, another message for an unknown case, a
/// case without its value or a missing constraint.
///@{
void to_json(nlohmann::json& j, const TagValueFilter::StringConstraint& constraint);
void from_json(const nlohmann::json& j, TagValueFilter::StringConstraint& constraint);
void to_json(nlohmann::json& j, TagValueFilter::ValueEditionConstraint constraint);
void from_json(const nlohmann::json& j, TagValueFilter::ValueEditionConstraint& constraint);
void to_json(nlohmann::json& j, TagValueFilter::ValueStateConstraint constraint);
void from_json(const nlohmann::json& j, TagValueFilter::ValueStateConstraint& constraint);
void to_json(nlohmann::json& j, const TagValueFilter& filter);
void from_json(const nlohmann::json& j, TagValueFilter& filter);
///@}

} // namespace corvane

template <> struct std::hash<corvane::TagValueFilter::StringConstraint> {
    std::size_t operator()(const corvane::TagValueFilter::StringConstraint& c) const noexcept {
        return std::hash<std::string>()(c.text) * 3 + static_cast<std::size_t>(c.kind);
    }
};

template <> struct std::hash<corvane::TagValueFilter> {
    std::size_t operator()(const corvane::TagValueFilter& f) const noexcept {
        const std::hash<corvane::TagValueFilter::StringConstraint> hash;
        return hash(f.nameConstraint) * 31 + hash(f.valueConstraint) * 7 +
               static_cast<std::size_t>(f.valueEditionConstraint) * 3 +
               static_cast<std::size_t>(f.valueStateConstraint);
    }
};
