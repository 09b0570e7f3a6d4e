#include "corvane/value_models/TextLocation.hpp"

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/helpers/detail/IcuRegex.hpp"

#include <initializer_list>
#include <vector>

namespace corvane {
using detail::IcuRegex;

namespace {

// True when every code point is white space or a line break.

std::string
formatAddressComponents(std::initializer_list<std::initializer_list<const TextLocation::Field*>> groups) {
    std::string joined;
    for (const auto& group : groups) {
        std::string part;
        for (const auto* field : group) {
            if (!*field) continue;
            if (!part.empty()) part += ' ';
            part += **field;
        }
        if (part.empty()) continue;
        if (!joined.empty()) joined += ", ";
        joined += part;
    }
    static const IcuRegex whiteRuns(R"([\s\n]+)");
    const std::string collapsed = whiteRuns.replaceAll(joined, " ");
    // Runs are single blanks now, so trimming one at each end is enough.
    size_t begin = collapsed.empty() || collapsed.front() != ' ' ? 0 : 1;
    size_t end = collapsed.size();
    if (end > begin && collapsed[end - 1] == ' ') --end;
    return collapsed.substr(begin, end - begin);
}

} // namespace

TextLocation::Field TextLocation::nonBlank(const Field& text) {
    if (!text || isUnicodeWhiteSpace(*text)) return std::nullopt;
    return text;
}

TextLocation::TextLocation(Field placeName, Field streetName, Field streetNumber, Field city, Field state,
                           Field zipCode, Field countryName, Field countryCode)
    : placeName_(nonBlank(placeName)), streetName_(nonBlank(streetName)),
      streetNumber_(nonBlank(streetNumber)), city_(nonBlank(city)), state_(nonBlank(state)),
      zipCode_(nonBlank(zipCode)), countryName_(nonBlank(countryName)), countryCode_(nonBlank(countryCode)) {}

bool TextLocation::isEmpty() const {
    return !placeName_ && !streetName_ && !streetNumber_ && !city_ && !state_ && !zipCode_ && !countryName_ &&
           !countryCode_;
}

std::string TextLocation::formattedAddress() const {
    return formatAddressComponents({{&placeName_},
                                    {&streetNumber_, &streetName_},
                                    {&city_, &state_, &zipCode_, &countryName_, &countryCode_}});
}

std::string TextLocation::shortFormattedAddress() const {
    return formatAddressComponents({{&streetNumber_, &streetName_}, {&city_, &state_, &countryName_}});
}

TextLocation::Field TextLocation::iptcSublocation() const {
    if (placeName_) return placeName_;
    const std::string text = streetNumber_.value_or("") + " " + streetName_.value_or("");
    return nonBlank(std::string(trimAsciiBlanks(text)));
}

} // namespace corvane
