// Date texts through the converters of the library's date tags, and through a pattern of the
// input's own (the first line) since the parsing function is public.

#include "FuzzInput.hpp"

#include "corvane/converters/DateTimeValueConverter.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const DateTimeValueConverter converters[] = {
        DateTimeValueConverter("yyyy:MM:dd HH:mm:ss"), DateTimeValueConverter("yyyy:MM:dd HH:mm:ssZZZZZ"),
        DateTimeValueConverter("yyyy:MM:dd"), DateTimeValueConverter("HH:mm:ss")};
    const auto [selector, rest] = fuzz::selectorAndRest(fuzz::text(data, size));
    const DateTimeValueConverter& converter = converters[selector % std::size(converters)];
    const std::string text(rest);
    if (auto date = converter.typedValueFromStringValue(text))
        (void)converter.stringValueFromTypedValue(date);
    (void)converter.formattedValueFromStringValue(text);
    const auto [pattern, value] = fuzz::firstLineAndRest(rest);
    if (pattern.size() <= 64) {
        if (auto date = DateTimeValueConverter::parse(std::string(value), std::string(pattern)))
            (void)DateTimeValueConverter::format(*date, std::string(pattern));
    }
    return 0;
}
