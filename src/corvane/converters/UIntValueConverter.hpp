#pragma once

#include "corvane/converters/SIntValueConverter.hpp"

namespace corvane {

/// Unsigned integer tags: the signed converter, refusing every negative result
/// in every operation. The typed value stays a signed 64-bit Int.
class UIntValueConverter : public SIntValueConverter {
public:
    UIntValueConverter();
};

} // namespace corvane
