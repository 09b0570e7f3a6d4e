#include "corvane/keyword_support/ThesaurusWriter.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <algorithm>

namespace corvane {

std::string_view message(ThesaurusWriter::WritingError) {
    return "Data are empty";
}

std::string ThesaurusWriter::string(const std::vector<KeywordItemRef>& items, std::size_t indent) const {
    const std::string prefix(indent, '\t');
    auto sorted = items;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a->name() < b->name(); });
    std::string text;
    for (const auto& item : sorted) {
        text += prefix;
        if (item->isHeader()) text += '[';
        text += item->name();
        if (item->isHeader()) text += ']';
        text += '\n';
        auto synonyms = item->synonyms();
        std::sort(synonyms.begin(), synonyms.end());
        for (const auto& synonym : synonyms)
            text += prefix + "\t{" + synonym + "}\n";
        text += string(item->children(), indent + 1);
    }
    return text;
}

std::string ThesaurusWriter::data(const std::vector<KeywordItemRef>& items) const {
    std::string text = string(items);
    if (text.empty()) throw CaseException<WritingError>(WritingError::dataAreEmpty);
    return text;
}

void ThesaurusWriter::write(const std::vector<KeywordItemRef>& items,
                            const std::filesystem::path& url) const {
    writeFileAtomically(url, data(items), 0600);
}

} // namespace corvane
