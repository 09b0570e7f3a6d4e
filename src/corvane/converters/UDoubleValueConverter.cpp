#include "corvane/converters/UDoubleValueConverter.hpp"

namespace corvane {

UDoubleValueConverter::UDoubleValueConverter() : SDoubleValueConverter(true) {}

} // namespace corvane
