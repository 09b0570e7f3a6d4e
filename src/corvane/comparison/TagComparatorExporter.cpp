#include "corvane/comparison/TagComparatorExporter.hpp"

#include "corvane/comparison/RichTextDocument.hpp"
#include "corvane/csv_support/Utf8.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

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

std::string TagComparatorExporter::txtString() const {
    std::string text;
    if (tagsTable_.multiValuesCount() >= 2) {
        text += padded(tagsTitle(), nameWidth) + " : ";
        const auto& titles = tagsTable_.titles();
        for (std::size_t i = 0; i < titles.size(); ++i) {
            if (i > 0) text += "; ";
            text += padded(titles[i], valueWidth);
        }
        text += "\n\n";
    }
    for (const auto& group : tagsTable_) {
        if (!text.empty()) text += '\n';
        text += group.name().stream.rawValue() + "\n";
        for (const auto& entry : group) {
            text += padded(entry.key().localizedText(), nameWidth) + " : ";
            const auto& values = entry.values();
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (i > 0) text += "; ";
                text += padded(values[i].string.value_or(std::string()), valueWidth);
            }
            text += '\n';
        }
    }
    return text;
}

std::string TagComparatorExporter::rtfString() const {
    // Fonts: 0 Menlo for plain values, 1 Menlo-Bold for headings, names and edited values.
    // Colours: 1 group names, 2 edited values.
    RichTextDocument document({"Menlo", "Menlo-Bold"}, {{0x1F, 0x3A, 0x93}, {0xC0, 0x4B, 0x00}});
    constexpr double size = 13; // the system font size of a regular control
    const RichTextDocument::Style headingStyle{1, true, 0, size};
    const RichTextDocument::Style groupStyle{1, true, 1, size};
    const RichTextDocument::Style keyStyle{1, true, 0, size};
    const RichTextDocument::Style editedStyle{1, true, 2, size};
    const RichTextDocument::Style plainStyle{0, false, 0, size};

    if (tagsTable_.multiValuesCount() >= 2) {
        document.append(padded(tagsTitle(), nameWidth), headingStyle);
        document.append(" : ", plainStyle);
        const auto& titles = tagsTable_.titles();
        for (std::size_t i = 0; i < titles.size(); ++i) {
            if (i > 0) document.append("; ", plainStyle);
            document.append(padded(titles[i], valueWidth), headingStyle);
        }
        document.append("\n\n", plainStyle);
    }
    for (const auto& group : tagsTable_) {
        if (!document.isEmpty()) document.append("\n", plainStyle);
        document.append(group.name().stream.rawValue() + "\n", groupStyle);
        for (const auto& entry : group) {
            document.append(padded(entry.key().localizedText(), nameWidth), keyStyle);
            document.append(" : ", plainStyle);
            const auto& values = entry.values();
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (i > 0) document.append("; ", plainStyle);
                document.append(padded(values[i].string.value_or(std::string()), valueWidth),
                                values[i].isEdited ? editedStyle : plainStyle);
            }
            document.append("\n", plainStyle);
        }
    }
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
