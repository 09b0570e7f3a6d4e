#include "corvane/converters/NoneValueConverter.hpp"

namespace corvane {

// Out of line so that the vtable lives in this unit only.
NoneValueConverter::~NoneValueConverter() = default;

} // namespace corvane
