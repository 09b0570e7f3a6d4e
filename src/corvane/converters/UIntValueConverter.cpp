#include "corvane/converters/UIntValueConverter.hpp"

namespace corvane {

UIntValueConverter::UIntValueConverter() : SIntValueConverter(true) {}

} // namespace corvane
