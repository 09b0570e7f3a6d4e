#include "corvane/preset_support/EquatableObject.hpp"

namespace corvane {

EquatableObject::~EquatableObject() = default;

} // namespace corvane
