#include "corvane/tag_table/TagValueFilter.hpp"

#include "corvane/helpers/SingleKeyCoding.hpp"
#include "corvane/helpers/detail/WordSearch.hpp"
#include "corvane/tag_table/TagValueRow.hpp"
#include "corvane/tag_table/detail/PatternSearch.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <nlohmann/json.hpp>

namespace corvane {
using detail::WordSearch;

using Filter = TagValueFilter;
using StringConstraint = Filter::StringConstraint;
using EditionConstraint = Filter::ValueEditionConstraint;
using StateConstraint = Filter::ValueStateConstraint;

namespace {

bool passesName(const StringConstraint& constraint, const TagItem& item) {
    switch (constraint.kind) {
    case StringConstraint::Kind::none:
        return true;
    case StringConstraint::Kind::contains:
        return WordSearch(constraint.text).isFoundIn(item.displayName());
    case StringConstraint::Kind::matches:
        return detail::PatternSearch(constraint.text).isFoundIn(item.displayName());
    }
    return true;
}

bool passesValue(const StringConstraint& constraint, const MultiValuedString& value) {
    switch (constraint.kind) {
    case StringConstraint::Kind::none:
        return true;
    case StringConstraint::Kind::contains:
        return value.searches(constraint.text);
    case StringConstraint::Kind::matches:
        return value.matches(constraint.text);
    }
    return true;
}

// The names of an enumeration's cases in JSON, in the order of the cases.
template <class E> E caseNamed(const std::string& name, const std::array<const char*, 3>& names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == names[i]) return static_cast<E>(i);
    throw SingleKeyCoding::TypeMismatch("Unknown case \"" + name + "\"");
}

constexpr std::array<const char*, 3> stringNames{"none", "contains", "matches"};
constexpr std::array<const char*, 3> editionNames{"ignore", "edited", "unedited"};
constexpr std::array<const char*, 3> stateNames{"ignore", "with", "without"};

} // namespace

bool TagValueFilter::isEmpty() const {
    return nameConstraint.kind == StringConstraint::Kind::none &&
           valueConstraint.kind == StringConstraint::Kind::none &&
           valueEditionConstraint == EditionConstraint::ignore &&
           valueStateConstraint == StateConstraint::ignore;
}

bool TagValueFilter::filter(const TagValueRow& row) const {
    if (!passesName(nameConstraint, row.tagItem())) return false;
    if (!passesValue(valueConstraint, row.string())) return false;
    if (valueEditionConstraint == EditionConstraint::edited && !row.isEdited()) return false;
    if (valueEditionConstraint == EditionConstraint::unedited && row.isEdited()) return false;
    if (valueStateConstraint == StateConstraint::with && row.string().isNone()) return false;
    if (valueStateConstraint == StateConstraint::without && !row.string().isNone()) return false;
    return true;
}

void to_json(nlohmann::json& j, const StringConstraint& constraint) {
    const char* name = stringNames[static_cast<std::size_t>(constraint.kind)];
    j = constraint.kind == StringConstraint::Kind::none ? SingleKeyCoding::encode(name)
                                                        : SingleKeyCoding::encode(name, constraint.text);
}

void from_json(const nlohmann::json& j, StringConstraint& constraint) {
    const auto decoded = SingleKeyCoding::decode(j);
    const auto kind = caseNamed<StringConstraint::Kind>(decoded.caseName, stringNames);
    constraint.kind = kind;
    constraint.text = kind == StringConstraint::Kind::none
                          ? std::string()
                          : SingleKeyCoding::associatedValue<std::string>(decoded);
}

void to_json(nlohmann::json& j, EditionConstraint constraint) {
    j = SingleKeyCoding::encode(editionNames[static_cast<std::size_t>(constraint)]);
}

void from_json(const nlohmann::json& j, EditionConstraint& constraint) {
    constraint = caseNamed<EditionConstraint>(SingleKeyCoding::decode(j).caseName, editionNames);
}

void to_json(nlohmann::json& j, StateConstraint constraint) {
    j = SingleKeyCoding::encode(stateNames[static_cast<std::size_t>(constraint)]);
}

void from_json(const nlohmann::json& j, StateConstraint& constraint) {
    constraint = caseNamed<StateConstraint>(SingleKeyCoding::decode(j).caseName, stateNames);
}

void to_json(nlohmann::json& j, const TagValueFilter& filter) {
    j = nlohmann::json{{"nameConstraint", filter.nameConstraint},
                       {"valueConstraint", filter.valueConstraint},
                       {"valueEditionConstraint", filter.valueEditionConstraint},
                       {"valueStateConstraint", filter.valueStateConstraint}};
}

void from_json(const nlohmann::json& j, TagValueFilter& filter) {
    const auto constraint = [&](const char* key) -> const nlohmann::json& {
        if (!j.is_object() || !j.contains(key))
            throw SingleKeyCoding::TypeMismatch(std::string("The filter lacks its \"") + key + "\"");
        return j[key];
    };
    filter.nameConstraint = constraint("nameConstraint").get<StringConstraint>();
    filter.valueConstraint = constraint("valueConstraint").get<StringConstraint>();
    filter.valueEditionConstraint = constraint("valueEditionConstraint").get<EditionConstraint>();
    filter.valueStateConstraint = constraint("valueStateConstraint").get<StateConstraint>();
}

} // namespace corvane
