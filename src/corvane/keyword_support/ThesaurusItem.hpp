#pragma once

#include <memory>
#include <string>
#include <vector>

namespace corvane {

struct ThesaurusItem;
using ThesaurusItemRef = std::shared_ptr<ThesaurusItem>;

/// One keyword of a thesaurus text while it is being read, before it becomes a `KeywordItem`.
/// Shared, so that a keyword already hung under its parent still takes the children and synonyms
/// of the lines that follow it.
struct ThesaurusItem {
    explicit ThesaurusItem(std::string name) : name(std::move(name)) {}

    std::string name;
    bool isHeader = false;
    /// The text form has no mark for people: always false when read.
    bool isPerson = false;
    std::vector<std::string> synonyms;
    std::vector<ThesaurusItemRef> children;
};

} // namespace corvane
