#include "corvane/tag_editor/TagPasteboard.hpp"

#include "corvane/tag_editor/InProcessTagPasteboard.hpp"

#include <mutex>

namespace corvane {

namespace {

struct SharedPasteboard {
    std::mutex mutex;
    std::shared_ptr<TagPasteboard> pasteboard = std::make_shared<InProcessTagPasteboard>();
};

SharedPasteboard& sharedPasteboard() {
    static SharedPasteboard instance;
    return instance;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// The pair of one line, or nothing.
std::optional<TagPair> parseLine(std::string_view line) {
    // The name itself holds a colon ("EXIF:Artist"); the value starts at the first `: "`.
    std::size_t separator = line.find(": \"");
    if (separator == std::string_view::npos) return std::nullopt;
    std::string_view rawName = line.substr(0, separator);
    while (!rawName.empty() && isBlank(rawName.front()))
        rawName.remove_prefix(1);
    auto name = TagName::fromRawValue(rawName);
    if (!name || name->key().rawValue().empty()) return std::nullopt;

    std::string value;
    std::size_t i = separator + 3;
    bool closed = false;
    for (; i < line.size(); ++i) {
        char c = line[i];
        if (c == '"') {
            closed = true;
            ++i;
            break;
        }
        if (c != '\\') {
            value += c;
            continue;
        }
        if (++i == line.size()) return std::nullopt;
        switch (line[i]) {
        case 'n':
            value += '\n';
            break;
        case 'r':
            value += '\r';
            break;
        case 't':
            value += '\t';
            break;
        default: // \" and \\, and any other escaped character as itself
            value += line[i];
            break;
        }
    }
    if (!closed) return std::nullopt;
    for (; i < line.size(); ++i)
        if (!isBlank(line[i])) return std::nullopt;
    return TagPair(*name, std::move(value));
}

} // namespace

std::string TagPasteboard::quoted(std::string_view value) {
    std::string text = "\"";
    for (char c : value) {
        switch (c) {
        case '"':
            text += "\\\"";
            break;
        case '\\':
            text += "\\\\";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\r':
            text += "\\r";
            break;
        case '\t':
            text += "\\t";
            break;
        default:
            text += c;
        }
    }
    text += '"';
    return text;
}

std::string TagPasteboard::multipleValuesText(const std::vector<TagPair>& pairs) {
    std::string text;
    for (const auto& pair : pairs) {
        text += pair.name().rawValue();
        text += ": ";
        text += quoted(pair.value());
        text += '\n';
    }
    return text;
}

std::vector<TagPair> TagPasteboard::parseMultipleValues(std::string_view text) {
    std::vector<TagPair> pairs;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        if (auto pair = parseLine(text.substr(start, end - start))) pairs.push_back(std::move(*pair));
        start = end + 1;
    }
    return pairs;
}

void TagPasteboard::setMultipleValues(const std::vector<TagPair>& pairs) {
    setString(multipleValuesText(pairs));
}

std::vector<TagPair> TagPasteboard::multipleValues() const {
    auto text = string();
    return text ? parseMultipleValues(*text) : std::vector<TagPair>();
}

std::shared_ptr<TagPasteboard> TagPasteboard::shared() {
    auto& s = sharedPasteboard();
    std::lock_guard lock(s.mutex);
    return s.pasteboard;
}

void TagPasteboard::setShared(std::shared_ptr<TagPasteboard> pasteboard) {
    auto& s = sharedPasteboard();
    std::lock_guard lock(s.mutex);
    s.pasteboard = pasteboard ? std::move(pasteboard) : std::make_shared<InProcessTagPasteboard>();
}

} // namespace corvane
