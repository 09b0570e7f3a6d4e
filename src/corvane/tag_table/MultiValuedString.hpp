#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// One tag's value across several files: the one value they all hold (`single`), the distinct
/// values when they differ (`multiple`, sorted), or no value in any file (`none`).
///
/// A file without the tag counts as the empty text, and the empty text stays among the values of
/// `multiple`: a group in which some files have no value is shown as differing, not as one value.
class MultiValuedString {
public:
    /// Every file has this text.
    struct Single {
        std::string value; ///< the common text
        friend bool operator==(const Single&, const Single&) = default;
    };
    /// Shared, so that copying a table's content doesn't copy thousands of per-file values.
    struct Multiple {
        std::shared_ptr<const std::vector<std::string>> values; ///< ascending
        /// Same values.
        friend bool operator==(const Multiple& a, const Multiple& b) { return *a.values == *b.values; }
    };
    /// No file at all.
    struct None {
        friend bool operator==(const None&, const None&) = default;
    };

    MultiValuedString() : value_(None{}) {}
    /// From the distinct texts: none gives `none`, one gives `single` (`none` for the empty text),
    /// more give `multiple`.
    explicit MultiValuedString(const std::set<std::string>& values);
    /// The same from distinct texts already sorted ascending, sharing them rather than copying.
    static MultiValuedString merged(std::shared_ptr<const std::vector<std::string>> ascending);

    /// One text; several differing texts (sorted ascending); no file.
    ///@{
    static MultiValuedString single(std::string value) { return MultiValuedString(Single{std::move(value)}); }
    static MultiValuedString multiple(std::vector<std::string> values) {
        return MultiValuedString(
            Multiple{std::make_shared<const std::vector<std::string>>(std::move(values))});
    }
    static MultiValuedString none() { return MultiValuedString(); }
    ///@}

    bool isNone() const { return std::holds_alternative<None>(value_); } ///< no file at all
    /// Null unless `single`.
    const std::string* singleValue() const;
    /// Null unless `multiple`.
    const std::vector<std::string>* multipleValues() const;

    /// The value to copy as one: the single value, the empty text for `none`, and nothing for
    /// differing values.
    std::optional<std::string> pastableValue() const;
    /// Every word of `search` is found, ignoring case, diacritics and width, in the value (in one
    /// of the values for `multiple`); `none` never matches. A search of blanks only matches any
    /// value.
    bool searches(std::string_view search) const;
    /// The value (one of the values) contains a match of the regular expression; case matters
    /// unless the pattern says otherwise. `none` and a malformed pattern never match.
    bool matches(std::string_view pattern) const;

    friend bool operator==(const MultiValuedString&, const MultiValuedString&) = default;

private:
    template <class T> explicit MultiValuedString(T value) : value_(std::move(value)) {}

    std::variant<Single, Multiple, None> value_;
};

} // namespace corvane
