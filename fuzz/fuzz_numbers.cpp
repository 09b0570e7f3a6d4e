// Numbers and Booleans as typed and as found in files, through every number converter alone and
// inside the array converter on both of the catalogue's separators.

#include "FuzzInput.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/SIntValueConverter.hpp"
#include "corvane/converters/UDoubleValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"

#include <memory>
#include <vector>

using namespace corvane;

namespace {

std::vector<ValueConverterRef> makeConverters() {
    std::vector<ValueConverterRef> elements{
        std::make_shared<SDoubleValueConverter>(), std::make_shared<UDoubleValueConverter>(),
        std::make_shared<SIntValueConverter>(), std::make_shared<UIntValueConverter>(),
        std::make_shared<BoolValueConverter>()};
    std::vector<ValueConverterRef> all = elements;
    for (const auto& element : elements) {
        all.push_back(std::make_shared<ArrayValueConverter>(element, " "));
        all.push_back(std::make_shared<ArrayValueConverter>(element, ","));
    }
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::vector<ValueConverterRef> converters = makeConverters();
    const auto [selector, rest] = fuzz::selectorAndRest(fuzz::text(data, size));
    const ValueConverter& converter = *converters[selector % converters.size()];
    const std::string text(rest);
    const DynamicValue native = converter.nativeValueFromStringValue(text);
    (void)converter.stringValueFromNativeValue(native);
    (void)converter.csvValueFromNativeValue(native);
    (void)converter.jsonValueFromNativeValue(native);
    (void)converter.stringValueFromStringValue(text);
    (void)converter.formattedValueFromStringValue(text);
    (void)converter.exifToolValueFromStringValue(text);
    (void)converter.objectValueFromStringValue(text);
    return 0;
}
