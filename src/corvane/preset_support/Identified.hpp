#pragma once

#include "corvane/preset_support/EquatableObject.hpp"

#include <memory>
#include <utility>

namespace corvane {

/// A value given an identity: a box that is equal only to itself, whatever it holds. A table
/// request keeps its callback in one, so that two requests with the same callback stay apart.
template <class T> class Identified : public EquatableObject {
public:
    /// A new box holding `value`.
    static std::shared_ptr<Identified> create(T value) {
        return std::shared_ptr<Identified>(new Identified(std::move(value)));
    }

    /// The value held.
    const T& value() const { return value_; }
    /// Replaces the value; the box keeps its identity.
    void setValue(T value) { value_ = std::move(value); }
    /// Changes the value in place.
    template <class F> void modifyValue(F&& change) { change(value_); }

    /// A new box with the same value: equal contents, another identity.
    std::shared_ptr<Identified> copy() const { return create(value_); }

private:
    explicit Identified(T value) : value_(std::move(value)) {}

    T value_;
};

} // namespace corvane
