#pragma once

#include "corvane/keyword_support/KeywordItem.hpp"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Writes keyword trees as thesaurus text (see ThesaurusReader): keywords and synonyms sorted by
/// name at each level, byte order, a header as "[name]", synonyms as "{name}" one tab deeper than
/// their keyword. The person flag has no mark in the text and is lost.
class ThesaurusWriter {
public:
    /// Why a library can't be written; `message` gives the text.
    enum class WritingError { dataAreEmpty };

    /// The text of `items`, each line starting with `indent` tabs more than its depth.
    std::string string(const std::vector<KeywordItemRef>& items, std::size_t indent = 0) const;
    /// The text as UTF-8 bytes; no keyword at all throws CaseException<WritingError> dataAreEmpty.
    std::string data(const std::vector<KeywordItemRef>& items) const;
    /// Writes the data atomically, readable by its owner only. Throws as `data`, or
    /// FileError.
    void write(const std::vector<KeywordItemRef>& items, const std::filesystem::path& url) const;
};

/// "Data are empty".
std::string_view message(ThesaurusWriter::WritingError error);

} // namespace corvane
