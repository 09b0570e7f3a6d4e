#include "corvane/exiftool_wrapper/ETPathFilter.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

namespace corvane {

ETPathFilter::ETPathFilter(const std::vector<std::string>& extensions) {
    extensions_.reserve(extensions.size());
    for (const auto& e : extensions)
        addExtension(e);
}

ETPathFilter::ETPathFilter(std::initializer_list<std::string_view> extensions) {
    extensions_.reserve(extensions.size());
    for (auto e : extensions)
        addExtension(e);
}

std::string ETPathFilter::normalizedExtension(std::string_view extension) {
    if (!extension.empty() && extension.front() == '.') extension.remove_prefix(1);
    std::string out(extension);
    for (auto& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

void ETPathFilter::addExtension(std::string_view extension) {
    auto normalized = normalizedExtension(extension);
    if (normalized.find_first_not_of(" \t\r\n") == std::string::npos) return;
    if (lookup_.insert(normalized).second) extensions_.push_back(std::move(normalized));
}

bool ETPathFilter::matches(const std::filesystem::path& url) const {
    const auto ext = upperPathExtension(url);
    return !ext.empty() && lookup_.contains(ext);
}

std::vector<std::filesystem::path>
ETPathFilter::filter(const std::vector<std::filesystem::path>& urls) const {
    std::vector<std::filesystem::path> out;
    for (const auto& url : urls)
        if (matches(url)) out.push_back(url);
    return out;
}

std::vector<std::string> ETPathFilter::exifToolArguments() const {
    std::vector<std::string> args;
    args.reserve(extensions_.size() * 2);
    for (const auto& e : extensions_) {
        args.emplace_back("-ext");
        args.push_back(e);
    }
    return args;
}

} // namespace corvane
