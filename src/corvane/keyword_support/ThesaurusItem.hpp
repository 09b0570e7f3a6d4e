#pragma once

#include <memory>
#include <string>
#include <vector>

namespace corvane {

struct ThesaurusItem;
/// The shared handle of a keyword being read.
using ThesaurusItemRef = std::shared_ptr<ThesaurusItem>;

/// One keyword of a thesaurus text while it is being read, before it becomes a `KeywordItem`.
/// Shared, so that a keyword already hung under its parent still takes the children and synonyms
/// of the lines that follow it.
struct ThesaurusItem {
    /// A keyword of this name, without synonyms or children.
    explicit ThesaurusItem(std::string name) : name(std::move(name)) {}

    std::string name;      ///< the keyword's text
    bool isHeader = false; ///< a group heading, bracketed in the text form
    /// The text form has no mark for people: always false when read.
    bool isPerson = false;
    std::vector<std::string> synonyms;      ///< the synonyms, in order
    std::vector<ThesaurusItemRef> children; ///< the child keywords, in order
};

} // namespace corvane
