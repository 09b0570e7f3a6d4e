#include "corvane/value_models/DateEdition.hpp"

#include "corvane/helpers/detail/IcuRegex.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <nlohmann/json.hpp>

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace corvane {
using detail::IcuRegex;

namespace {

template <class... Ts> struct Overloaded : Ts... { using Ts::operator()...; };
template <class... Ts> Overloaded(Ts...) -> Overloaded<Ts...>;

const IcuRegex& commandPattern() {
    static const IcuRegex regex(R"(^(\w+)\((.*)\)$)");
    return regex;
}

std::string upperCased(const std::string& s) {
    icu::UnicodeString u = icu::UnicodeString::fromUTF8(s);
    u.toUpper(icu::Locale("en_US_POSIX"));
    std::string out;
    u.toUTF8String(out);
    return out;
}

} // namespace

std::string_view DateEdition::message(DecodingError error) {
    switch (error) {
    case DecodingError::notParsableInput:
        return "Not parsable input";
    }
    return "Not parsable input";
}

std::optional<DateEdition> DateEdition::fromDescription(const std::optional<std::string>& description) {
    if (!description) return std::nullopt;
    const auto groups = commandPattern().firstMatchGroups(*description);
    if (!groups || groups->size() != 2) return std::nullopt;
    const std::string word = upperCased((*groups)[0]);
    const std::string& inner = (*groups)[1];
    if (word == "RESTORE") return restore();
    if (word == "REMOVE") return remove();
    if (word == "SELECT") return select(DateValues::fromDescription(inner));
    if (word == "UPDATE") return update(DateValues::fromDescription(inner));
    if (word == "SHIFT") return shift(DateValues::fromDescription(inner));
    return std::nullopt;
}

const DateValues* DateEdition::values() const {
    return std::visit(Overloaded{[](const Select& c) -> const DateValues* { return &c.values; },
                                 [](const Update& c) -> const DateValues* { return &c.values; },
                                 [](const Shift& c) -> const DateValues* { return &c.values; },
                                 [](const auto&) -> const DateValues* { return nullptr; }},
                      value_);
}

std::string DateEdition::description() const {
    return std::visit(Overloaded{[](const Select& c) { return "SELECT(" + c.values.description() + ")"; },
                                 [](const Update& c) { return "UPDATE(" + c.values.description() + ")"; },
                                 [](const Shift& c) { return "SHIFT(" + c.values.description() + ")"; },
                                 [](const Restore&) { return std::string("RESTORE()"); },
                                 [](const Remove&) { return std::string("REMOVE()"); }},
                      value_);
}

std::string DateEdition::localizedDescription() const {
    const auto text = [](const char* key) { return KitToolbox::localize(key); };
    return std::visit(
        Overloaded{
            [&](const Select& c) { return text("DateEditionSelect") + "(" + c.values.description() + ")"; },
            [&](const Update& c) { return text("DateEditionUpdate") + "(" + c.values.description() + ")"; },
            [&](const Shift& c) { return text("DateEditionShift") + "(" + c.values.description() + ")"; },
            [&](const Restore&) { return text("DateEditionRestore"); },
            [&](const Remove&) { return text("DateEditionRemove"); }},
        value_);
}

std::optional<Date> DateEdition::apply(const std::optional<Date>& date) const {
    return std::visit(Overloaded{[&](const Select& c) { return c.values.date(); },
                                 [&](const Update& c) { return c.values.updateDate(date); },
                                 [&](const Shift& c) { return c.values.shiftDate(date); },
                                 [&](const Restore&) { return date; },
                                 [&](const Remove&) { return std::optional<Date>(); }},
                      value_);
}

} // namespace corvane

corvane::DateEdition nlohmann::adl_serializer<corvane::DateEdition>::from_json(const json& j) {
    auto edition = corvane::DateEdition::fromDescription(j.get<std::string>());
    if (!edition)
        throw corvane::DateEdition::DecodingException(corvane::DateEdition::DecodingError::notParsableInput);
    return *edition;
}

void nlohmann::adl_serializer<corvane::DateEdition>::to_json(json& j, const corvane::DateEdition& e) {
    j = e.description();
}
