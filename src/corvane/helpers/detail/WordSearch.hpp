#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::detail {

/// A search typed into a filter field: its words, each to be found somewhere in a text, in any
/// order, ignoring case, diacritics and character width ("cafe sky" finds "Sky over the Café").
/// Words are split at Unicode white space and line breaks; a search of blanks only has no word and
/// is found in every text. Prepared once, then immutable and safe to share between threads.
class WordSearch {
public:
    explicit WordSearch(std::string_view search);

    bool isEmpty() const { return words_.empty(); }
    /// Every word occurs in `text`.
    bool isFoundIn(std::string_view text) const;

private:
    std::vector<std::u32string> words_; // folded
};

} // namespace corvane::detail
