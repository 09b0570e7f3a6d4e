#include "corvane/comparison/TagComparatorExporter.hpp"

#include "corvane/comparison/RichTextDocument.hpp"
#include "corvane/csv_support/detail/Utf8.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {
namespace utf8 = detail::utf8;

namespace {

std::size_t utf16Length(std::string_view text) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < text.size();)
        length += utf8::decode(text, i) >= 0x10000 ? 2 : 1;
    return length;
}

std::string tagsTitle() {
    return KitToolbox::localize("TagComparisonTagsTitle");
}

} // namespace

std::string_view TagComparatorExporter::pathExtension(Format format) {
    switch (format) {
    case Format::txt:
        return "txt";
    case Format::rtf:
        return "rtf";
    case Format::csv:
        return "csv";
    }
    return "txt";
}

std::optional<TagComparatorExporter::Format>
TagComparatorExporter::formatFromPathExtension(std::string_view ext) {
    if (!ext.empty() && ext.front() == '.') ext.remove_prefix(1);
    std::string lower(ext);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    for (Format format : allFormats())
        if (pathExtension(format) == lower) return format;
    return std::nullopt;
}

std::string TagComparatorExporter::padded(std::string_view text, std::size_t width) {
    std::string result(text);
    std::size_t length = utf16Length(text);
    if (length < width) result.append(width - length, ' ');
    return result;
}

namespace {

// What a piece of the laid-out comparison is, so that rich text can style it.
enum class Piece { heading, group, key, editedValue, plain };

// The layout of the text and rich text forms, piece by piece: the heading row when there are two
// or more columns, then each group's name and its rows, with padded columns.
template <class Emit> void layOut(const TagComparatorTable& table, Emit&& emit) {
    using E = TagComparatorExporter;
    bool wroteAny = false;
    auto put = [&](std::string_view text, Piece piece) {
        wroteAny = wroteAny || !text.empty();
        emit(text, piece);
    };
    if (table.multiValuesCount() >= 2) {
        put(E::padded(tagsTitle(), E::nameWidth), Piece::heading);
        put(" : ", Piece::plain);
        const auto& titles = table.titles();
        for (std::size_t i = 0; i < titles.size(); ++i) {
            if (i > 0) put("; ", Piece::plain);
            put(E::padded(titles[i], E::valueWidth), Piece::heading);
        }
        put("\n\n", Piece::plain);
    }
    for (const auto& group : table) {
        if (wroteAny) put("\n", Piece::plain);
        put(group.name().stream.rawValue() + "\n", Piece::group);
        for (const auto& entry : group) {
            put(E::padded(entry.key().localizedText(), E::nameWidth), Piece::key);
            put(" : ", Piece::plain);
            const auto& values = entry.values();
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (i > 0) put("; ", Piece::plain);
                put(E::padded(values[i].string.value_or(std::string()), E::valueWidth),
                    values[i].isEdited ? Piece::editedValue : Piece::plain);
            }
            put("\n", Piece::plain);
        }
    }
}

} // namespace

std::string TagComparatorExporter::txtString() const {
    std::string text;
    layOut(tagsTable_, [&text](std::string_view piece, Piece) { text += piece; });
    return text;
}

std::string TagComparatorExporter::rtfString() const {
    // Fonts: 0 Menlo for plain values, 1 Menlo-Bold for headings, names and edited values.
    // Colours: 1 group names, 2 edited values.
    RichTextDocument document({"Menlo", "Menlo-Bold"}, {{0x1F, 0x3A, 0x93}, {0xC0, 0x4B, 0x00}});
    constexpr double size = 13; // the system font size of a regular control
    auto style = [](Piece piece) -> RichTextDocument::Style {
        switch (piece) {
        case Piece::heading:
        case Piece::key:
            return {1, true, 0, size};
        case Piece::group:
            return {1, true, 1, size};
        case Piece::editedValue:
            return {1, true, 2, size};
        case Piece::plain:
            break;
        }
        return {0, false, 0, size};
    };
    layOut(tagsTable_, [&](std::string_view text, Piece piece) { document.append(text, style(piece)); });
    return document.rtf();
}

std::string TagComparatorExporter::csvString() const {
    static constexpr std::string_view delimiter = "; ";
    std::string text = tagsTitle();
    for (const auto& title : tagsTable_.titles()) {
        text += delimiter;
        text += title;
    }
    text += '\n';
    for (const auto& group : tagsTable_) {
        text += group.name().stream.rawValue() + "\n";
        for (const auto& entry : group) {
            text += entry.key().localizedText();
            for (const auto& value : entry.values()) {
                text += delimiter;
                if (value.string) text += *value.string;
            }
            text += '\n';
        }
    }
    return text;
}

std::string TagComparatorExporter::exportedString(Format format) const {
    switch (format) {
    case Format::txt:
        return txtString();
    case Format::rtf:
        return rtfString();
    case Format::csv:
        return csvString();
    }
    return txtString();
}

void TagComparatorExporter::exportAsTXT(const std::filesystem::path& url) const {
    writeFileAtomically(url, txtString());
}

void TagComparatorExporter::exportAsRTF(const std::filesystem::path& url) const {
    writeFileAtomically(url, rtfString());
}

void TagComparatorExporter::exportAsCSV(const std::filesystem::path& url) const {
    writeFileAtomically(url, csvString());
}

void TagComparatorExporter::exportTo(Format format, const std::filesystem::path& url) const {
    writeFileAtomically(url, exportedString(format));
}

} // namespace corvane
