#include "corvane/tag_value/MediaType.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace corvane {

MediaType::MediaType(std::string_view format, MediaKind kind, AccessMap access)
    : data_(std::make_shared<const Data>(Data{formatKey(format), kind, std::move(access)})) {}

TagAccess MediaType::access(const TagStream& stream) const {
    const AccessMap& map = data_->access;
    auto found = map.find(stream);
    return found == map.end() ? TagAccess::n : found->second;
}

bool MediaType::isFormat(std::string_view text) const {
    return format() == formatKey(text);
}

bool MediaType::isFormat(const std::filesystem::path& url) const {
    return format() == pathFormatKey(url);
}

std::string MediaType::formatKey(std::string_view text) {
    std::string key(text);
    bool ascii = true;
    for (char& c : key) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    if (ascii) return key;
    // Full Unicode upper-casing, locale-independent, so that the same text
    // always gives the same key.
    key.clear();
    icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
        .toUpper(icu::Locale::getRoot())
        .toUTF8String(key);
    return key;
}

std::string MediaType::pathFormatKey(const std::filesystem::path& url) {
    return formatKey(pathExtension(url));
}

const std::unordered_map<std::string, MediaType>& MediaType::indexedTypes() {
    static const std::unordered_map<std::string, MediaType> index = [] {
        std::unordered_map<std::string, MediaType> built;
        built.reserve(allCases().size());
        for (const MediaType& type : allCases())
            built.emplace(type.format(), type);
        return built;
    }();
    return index;
}

std::optional<MediaType> MediaType::type(std::string_view extension) {
    const auto& index = indexedTypes();
    auto found = index.find(formatKey(extension));
    if (found == index.end()) return std::nullopt;
    return found->second;
}

std::optional<MediaType> MediaType::type(const std::filesystem::path& url) {
    return type(pathExtension(url));
}

MediaType::Set MediaType::types(const std::vector<MediaKind>& kinds) {
    // Records grouped by kind once, so that a call costs the size of its answer.
    static const std::unordered_map<MediaKind, std::vector<MediaType>> byKind = [] {
        std::unordered_map<MediaKind, std::vector<MediaType>> built;
        for (const auto& [format, type] : indexedTypes())
            built[type.kind()].push_back(type);
        return built;
    }();
    Set result;
    for (MediaKind kind : kinds) {
        auto found = byKind.find(kind);
        if (found != byKind.end()) result.insert(found->second.begin(), found->second.end());
    }
    return result;
}

} // namespace corvane
