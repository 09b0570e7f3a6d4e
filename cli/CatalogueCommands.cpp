// `corvane formats` and `corvane tags`: the media registry and the tag catalogue.
#include "Commands.hpp"

#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>
#include <iostream>

namespace corvane::cli {

namespace {

void printFormats() {
    for (const MediaType& type : MediaType::allCases()) {
        std::vector<std::pair<TagStream, TagAccess>> rights(type.access().begin(), type.access().end());
        std::sort(rights.begin(), rights.end(), [](const auto& a, const auto& b) {
            auto ia = a.first.index(), ib = b.first.index();
            if (ia && ib) return *ia < *ib;
            if (ia || ib) return ia.has_value();
            return a.first < b.first;
        });
        std::cout << (type.format().empty() ? std::string("(folder)") : type.format()) << '\t'
                  << type.kind().rawValue() << '\t';
        bool first = true;
        for (const auto& [stream, access] : rights) {
            if (access == TagAccess::n) continue;
            std::cout << (first ? "" : " ") << stream.rawValue() << '=' << access.rawValue();
            first = false;
        }
        std::cout << '\n';
    }
}

std::string countText(const TagItem& item) {
    auto count = item.count();
    if (!count || *count < 0) return "*";
    return std::to_string(*count);
}

int printTags(const std::string& streamName) {
    const std::vector<const TagItem*>* items = &TagItem::allCases();
    if (!streamName.empty()) {
        items = &TagStream(streamName).items();
        if (items->empty()) {
            std::cerr << "corvane: unknown tag family \"" << streamName << "\"\n";
            return 2;
        }
    }
    for (const TagItem* item : *items) {
        std::cout << item->name().rawValue() << '\t' << item->type().rawValue() << '\t' << countText(*item)
                  << '\t' << (item->isWritable() ? "writable" : "read-only") << '\t' << item->displayName()
                  << '\n';
    }
    return 0;
}

} // namespace

void addCatalogueCommands(CLI::App& app, int& exitCode) {
    auto* formats =
        app.add_subcommand("formats", "List the known file formats: format, kind, access per family");
    formats->callback([] { printFormats(); });

    auto* tags = app.add_subcommand("tags", "List catalogue rows: name, type, count, writable, display name");
    auto stream = std::make_shared<std::string>();
    tags->add_option("STREAM", *stream, "Only the tags of this family (EXIF, IPTC, XMP, Canon, ...)");
    tags->callback([stream, &exitCode] { exitCode = printTags(*stream); });
}

} // namespace corvane::cli
