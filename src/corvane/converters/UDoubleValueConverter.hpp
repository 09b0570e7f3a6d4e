#pragma once

#include "corvane/converters/SDoubleValueConverter.hpp"

namespace corvane {

/// Unsigned decimal tags: the signed converter, refusing every value that is not
/// >= 0.0 in every operation (NaN is refused, -0.0 accepted).
class UDoubleValueConverter : public SDoubleValueConverter {
public:
    UDoubleValueConverter();
};

} // namespace corvane
