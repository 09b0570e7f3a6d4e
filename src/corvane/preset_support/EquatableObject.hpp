#pragma once

#include <memory>

namespace corvane {

/// The base of library objects that are equal only to themselves: two presets with the same
/// contents are still two presets. Such objects live in std::shared_ptr, whose comparison is by
/// address, so arrays of them compare element by element by identity.
class EquatableObject : public std::enable_shared_from_this<EquatableObject> {
public:
    EquatableObject() = default;
    EquatableObject(const EquatableObject&) = delete;
    EquatableObject& operator=(const EquatableObject&) = delete;
    virtual ~EquatableObject();

    /// Identity.
    friend bool operator==(const EquatableObject& a, const EquatableObject& b) { return &a == &b; }
};

/// An object shared by identity.
using EquatableObjectRef = std::shared_ptr<EquatableObject>;

} // namespace corvane
