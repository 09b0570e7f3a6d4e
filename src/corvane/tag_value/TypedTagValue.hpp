#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace corvane {

/// The two edit intentions in storage form, read by every operation that takes
/// an optional string value: the empty string clears the tag in the file,
/// no string at all takes the edit back.
inline const std::optional<std::string> TagValueClear{std::string()};
/// No edit: the value read from the file comes back.
inline const std::optional<std::string> TagValueRestore{};

/// A typed edit of one tag: set a value, clear the tag from the file, or
/// restore the value read from the file.
template <typename T> class TypedTagValue {
public:
    /// The three intentions.
    enum class Case { value, clear, restore };

    /// Write this value.
    static TypedTagValue value(T v) { return TypedTagValue(Storage(std::in_place_index<0>, std::move(v))); }
    /// Remove the tag from the file.
    static TypedTagValue clear() { return TypedTagValue(Storage(std::in_place_index<1>)); }
    /// Take the tag's edit back.
    static TypedTagValue restore() { return TypedTagValue(Storage(std::in_place_index<2>)); }
    /// A value gives `value`, no value gives `clear` (never `restore`).
    static TypedTagValue optional(const std::optional<T>& v) { return v ? value(*v) : clear(); }

    /// Which of the three.
    Case kind() const { return static_cast<Case>(storage_.index()); }
    bool isValue() const { return storage_.index() == 0; }   ///< a value to write
    bool isClear() const { return storage_.index() == 1; }   ///< the tag is removed
    bool isRestore() const { return storage_.index() == 2; } ///< the edit is taken back

    /// The value of the `value` case, nullptr otherwise.
    const T* getIf() const { return std::get_if<0>(&storage_); }
    /// The value of the `value` case; only valid for that case.
    const T& get() const { return std::get<0>(storage_); }

    /// The storage form: the value through `toString`, TagValueClear or TagValueRestore.
    template <typename F> std::optional<std::string> storageValue(F&& toString) const {
        switch (kind()) {
        case Case::value:
            return toString(get());
        case Case::clear:
            return TagValueClear;
        case Case::restore:
            return TagValueRestore;
        }
        return TagValueRestore;
    }

    friend bool operator==(const TypedTagValue&, const TypedTagValue&) = default;

private:
    struct ClearMarker {
        friend bool operator==(ClearMarker, ClearMarker) { return true; }
    };
    struct RestoreMarker {
        friend bool operator==(RestoreMarker, RestoreMarker) { return true; }
    };
    using Storage = std::variant<T, ClearMarker, RestoreMarker>;

    explicit TypedTagValue(Storage s) : storage_(std::move(s)) {}

    Storage storage_;
};

} // namespace corvane
