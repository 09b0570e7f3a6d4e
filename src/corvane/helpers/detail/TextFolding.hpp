#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::detail {

// Text brought to the form in which searches compare it, scalar by scalar, with a map back to the
// bytes each folded piece came from, so that a hit in the folded text gives a range in the
// original one.
//
// Every scalar is canonically decomposed (so precomposed and combining accents compare alike).
// Options then drop the non-spacing marks, fold case (full folding: "ß" gives "ss"), take
// full-width and half-width forms as their plain ones, or lower-case in the current locale before
// folding (Turkish dotted and dotless i). A mark that folds to nothing belongs to the scalar
// before it. Malformed UTF-8 counts as one replacement character per bad sequence.
class TextFolding {
public:
    // The bits match the search options of TextReplacement where both have them.
    enum Option : unsigned {
        caseInsensitive = 1,
        diacriticInsensitive = 128,
        widthInsensitive = 256,
        currentLocaleCase = 1u << 16, // lower-case by the current locale first (with caseInsensitive)
    };
    using Options = unsigned;

    struct Scalar {
        std::size_t begin = 0; // bytes of the original text, dropped marks that follow included
        std::size_t end = 0;
        bool isMark = false; // a combining mark that stayed (a hit shouldn't end before it)
    };

    TextFolding(std::string_view text, Options options);

    // The folded text.
    const std::u32string& units() const { return units_; }
    const std::vector<Scalar>& scalars() const { return scalars_; }
    // The scalar that folded unit `unit` came from.
    const Scalar& scalarOfUnit(std::size_t unit) const { return scalars_[unitScalar_[unit]]; }
    // The unit is the first one of its scalar.
    bool startsScalar(std::size_t unit) const {
        return unit == 0 || unitScalar_[unit - 1] != unitScalar_[unit];
    }

    // The folded text alone.
    static std::u32string folded(std::string_view text, Options options);

private:
    std::u32string units_;
    std::vector<std::size_t> unitScalar_;
    std::vector<Scalar> scalars_;
};

} // namespace corvane::detail
