#include "corvane/tag_table/MultiValuedString.hpp"

#include "corvane/helpers/detail/WordSearch.hpp"
#include "corvane/tag_table/detail/PatternSearch.hpp"

#include <algorithm>

namespace corvane {
using detail::WordSearch;

MultiValuedString::MultiValuedString(const std::set<std::string>& values) : value_(None{}) {
    if (values.size() == 1) {
        if (!values.begin()->empty()) value_ = Single{*values.begin()};
    } else if (values.size() > 1) {
        value_ = Multiple{std::make_shared<const std::vector<std::string>>(values.begin(), values.end())};
    }
}

MultiValuedString MultiValuedString::merged(std::shared_ptr<const std::vector<std::string>> ascending) {
    if (!ascending || ascending->empty()) return none();
    if (ascending->size() == 1) return ascending->front().empty() ? none() : single(ascending->front());
    return MultiValuedString(Multiple{std::move(ascending)});
}

const std::string* MultiValuedString::singleValue() const {
    const auto* single = std::get_if<Single>(&value_);
    return single ? &single->value : nullptr;
}

const std::vector<std::string>* MultiValuedString::multipleValues() const {
    const auto* multiple = std::get_if<Multiple>(&value_);
    return multiple ? multiple->values.get() : nullptr;
}

std::optional<std::string> MultiValuedString::pastableValue() const {
    if (const std::string* value = singleValue()) return *value;
    if (isNone()) return std::string();
    return std::nullopt;
}

namespace {

// The test on the one value, or on any of the values; `none` never passes.
template <class Test> bool anyValue(const MultiValuedString& string, Test&& test) {
    if (const std::string* value = string.singleValue()) return test(*value);
    if (const auto* values = string.multipleValues())
        return std::any_of(values->begin(), values->end(), test);
    return false;
}

} // namespace

bool MultiValuedString::searches(std::string_view search) const {
    if (isNone()) return false;
    const WordSearch words(search);
    return anyValue(*this, [&](const std::string& value) { return words.isFoundIn(value); });
}

bool MultiValuedString::matches(std::string_view pattern) const {
    if (isNone()) return false;
    const detail::PatternSearch regex(pattern);
    return anyValue(*this, [&](const std::string& value) { return regex.isFoundIn(value); });
}

} // namespace corvane
