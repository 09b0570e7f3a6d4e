#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>

namespace corvane {

/// Which storage engines may be used: a set of option bits.
class EngineOption {
public:
    /// The option bits.
    using RawValue = std::int64_t;

    constexpr EngineOption() = default;
    /// The options of these bits; any bits are kept.
    constexpr explicit EngineOption(RawValue raw) : raw_(raw) {}
    /// The union of the options.
    constexpr EngineOption(std::initializer_list<EngineOption> options) {
        for (auto o : options)
            raw_ |= o.raw_;
    }

    /// One option each: ExifTool, the in-process image engine, the movie engine option (no engine
    /// of this library answers to it); all three.
    ///@{
    static constexpr EngineOption exifTool() { return EngineOption(1); }
    static constexpr EngineOption coreImage() { return EngineOption(2); }
    static constexpr EngineOption avFoundation() { return EngineOption(4); }
    static constexpr EngineOption all() { return EngineOption(7); }
    ///@}

    /// The bits; no bit set.
    ///@{
    constexpr RawValue rawValue() const { return raw_; }
    constexpr bool isEmpty() const { return raw_ == 0; }
    ///@}

    /// Set operations on the bits, named as a standard set's.
    ///@{
    constexpr bool contains(EngineOption o) const { return (raw_ & o.raw_) == o.raw_; }
    constexpr EngineOption unionWith(EngineOption o) const { return EngineOption(raw_ | o.raw_); }
    constexpr EngineOption intersection(EngineOption o) const { return EngineOption(raw_ & o.raw_); }
    constexpr EngineOption symmetricDifference(EngineOption o) const { return EngineOption(raw_ ^ o.raw_); }
    constexpr EngineOption subtracting(EngineOption o) const { return EngineOption(raw_ & ~o.raw_); }
    constexpr bool isSubset(EngineOption of) const { return (raw_ & ~of.raw_) == 0; }
    constexpr bool isSuperset(EngineOption of) const { return of.isSubset(*this); }
    constexpr bool isDisjoint(EngineOption with) const { return (raw_ & with.raw_) == 0; }

    constexpr void insert(EngineOption o) { raw_ |= o.raw_; }
    constexpr void remove(EngineOption o) { raw_ &= ~o.raw_; }
    ///@}

    /// The same as operators: union, intersection, symmetric difference, subtraction.
    ///@{
    constexpr EngineOption operator|(EngineOption o) const { return unionWith(o); }
    constexpr EngineOption operator&(EngineOption o) const { return intersection(o); }
    constexpr EngineOption operator^(EngineOption o) const { return symmetricDifference(o); }
    constexpr EngineOption operator-(EngineOption o) const { return subtracting(o); }
    ///@}

    friend constexpr bool operator==(EngineOption, EngineOption) = default; ///< same bits

private:
    RawValue raw_ = 0;
};

} // namespace corvane

template <> struct std::hash<corvane::EngineOption> {
    size_t operator()(corvane::EngineOption o) const noexcept {
        return std::hash<std::int64_t>()(o.rawValue());
    }
};
