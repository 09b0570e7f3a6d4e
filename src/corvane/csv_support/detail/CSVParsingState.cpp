#include "corvane/csv_support/detail/CSVParsingState.hpp"

#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/detail/Utf8.hpp"

#include <array>
#include <cstdint>
#include <cstring>

namespace corvane::detail {

namespace {

enum class CharClass { quote, delimiter, newline, whitespace, other };

// The four flags of the machine, kept apart from the callbacks so the bulk
// parser can run them without std::function indirection.
struct Flags {
    bool atFieldStart = true;
    bool inPlainField = false;
    bool inQuotedField = false;
    bool afterQuote = false;
};

[[noreturn]] void failNonQuote(std::string_view ch) {
    throw CSVParseError::quotation("Can't have non-quote here: " + std::string(ch));
}

// One step of the machine. The flags are examined in the order atFieldStart,
// inPlainField, inQuotedField: a stale inQuotedField left behind after a
// delimiter is harmless because atFieldStart is looked at first.
template <class Sink> inline void transition(Flags& f, CharClass cls, std::string_view ch, Sink& sink) {
    if (f.atFieldStart) {
        switch (cls) {
        case CharClass::quote:
            f.atFieldStart = false;
            f.inQuotedField = true;
            return;
        case CharClass::delimiter:
            sink.endField();
            return;
        case CharClass::newline:
            sink.endRow();
            return;
        case CharClass::whitespace:
            return;
        case CharClass::other:
            f.inPlainField = true;
            f.atFieldStart = false;
            sink.append(ch);
            return;
        }
    }
    if (f.inPlainField) {
        if (!f.afterQuote) {
            switch (cls) {
            case CharClass::quote:
                f.afterQuote = true;
                return;
            case CharClass::delimiter:
                f.atFieldStart = true;
                f.inPlainField = false;
                f.afterQuote = false;
                sink.endField();
                return;
            case CharClass::newline:
                f.atFieldStart = true;
                f.inPlainField = false;
                f.afterQuote = false;
                sink.endRow();
                return;
            default:
                sink.append(ch);
                return;
            }
        }
        if (cls != CharClass::quote) failNonQuote(ch);
        sink.append(ch);
        f.afterQuote = false;
        return;
    }
    if (f.inQuotedField) {
        if (!f.afterQuote) {
            if (cls == CharClass::quote)
                f.afterQuote = true;
            else
                sink.append(ch);
            return;
        }
        switch (cls) {
        case CharClass::quote:
            sink.append(ch);
            f.afterQuote = false;
            return;
        case CharClass::delimiter:
            f.atFieldStart = true;
            f.afterQuote = false;
            sink.endField();
            return;
        case CharClass::newline:
            f.atFieldStart = true;
            f.inQuotedField = false;
            f.afterQuote = false;
            sink.endRow();
            return;
        case CharClass::whitespace:
            return;
        case CharClass::other:
            failNonQuote(ch);
        }
    }
    throw CSVParseError::generic("me_irl");
}

// Splits text into characters and classifies them for one delimiter.
class Classifier {
public:
    explicit Classifier(char32_t delimiter) : delimiter_(delimiter) {
        const std::string d = utf8::encode(delimiter);
        // Bytes that may end a run of plain-field content.
        for (unsigned char b : {'"', '\r', '\n'})
            stopsPlain_[b] = true;
        stopsPlain_[static_cast<unsigned char>(d[0])] = true;
    }

    bool stopsPlain(char c) const { return stopsPlain_[static_cast<unsigned char>(c)]; }

    // Class of the character at `i`; `len` receives its byte length.
    CharClass classify(std::string_view text, std::size_t i, std::size_t& len) const {
        const auto b = static_cast<unsigned char>(text[i]);
        if (b < 0x80) {
            len = 1;
            if (b == '"') return CharClass::quote;
            if (b == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
                len = 2;
                return CharClass::newline;
            }
            if (b == delimiter_) return CharClass::delimiter;
            if (b == '\n' || b == '\r') return CharClass::newline;
            if (b == ' ' || (b >= 0x09 && b <= 0x0D)) return CharClass::whitespace;
            return CharClass::other;
        }
        std::size_t j = i;
        const bool valid = utf8::sequenceLength(text, i) != 0;
        const char32_t c = utf8::decode(text, j);
        len = j - i;
        if (valid && c == delimiter_) return CharClass::delimiter;
        if (valid && utf8::isWhitespace(c)) return CharClass::whitespace;
        return CharClass::other;
    }

    // Runs the machine over `text` until it ends or `stop()` says so. Runs of
    // field content are handed to the sink whole: inside a quoted field only a
    // quotation mark matters, inside a plain one only a quote, a delimiter or a
    // newline, so everything in between is appended at once.
    template <class Sink, class Stop>
    void run(std::string_view text, Flags& f, Sink& sink, Stop&& stop) const {
        const std::size_t n = text.size();
        const char* data = text.data();
        std::size_t i = 0;
        while (i < n && !stop()) {
            if (!f.atFieldStart && !f.afterQuote) {
                std::size_t j = i;
                if (f.inPlainField) {
                    while (j < n && !stopsPlain(data[j]))
                        ++j;
                } else if (f.inQuotedField) {
                    const void* q = std::memchr(data + i, '"', n - i);
                    j = q ? static_cast<std::size_t>(static_cast<const char*>(q) - data) : n;
                }
                if (j > i) {
                    sink.append(text.substr(i, j - i));
                    i = j;
                    continue;
                }
            }
            std::size_t len = 1;
            const CharClass cls = classify(text, i, len);
            transition(f, cls, text.substr(i, len), sink);
            i += len;
        }
    }

private:
    char32_t delimiter_;
    std::array<bool, 256> stopsPlain_{};
};

// Collects fields and rows from `startAt` on. A field made of one run of the
// text is kept as a view and copied once when the field ends.
struct RowCollector {
    std::size_t row = 0;
    std::size_t startAt = 0;
    const CSVParsingState::RowCallback* callback = nullptr;
    std::string_view span;
    bool hasSpan = false;
    std::string field;
    CSVParsingState::Row fields;

    bool collecting() const { return row >= startAt; }
    bool fieldEmpty() const { return hasSpan ? span.empty() : field.empty(); }

    void append(std::string_view s) {
        if (!collecting()) return;
        if (!hasSpan && field.empty()) {
            span = s;
            hasSpan = true;
            return;
        }
        if (hasSpan && span.data() + span.size() == s.data()) {
            span = std::string_view(span.data(), span.size() + s.size()); // adjacent run
            return;
        }
        if (hasSpan) {
            field.assign(span);
            hasSpan = false;
        }
        field.append(s);
    }

    void pushField() {
        if (hasSpan) {
            fields.emplace_back(span);
            hasSpan = false;
        } else {
            fields.push_back(std::move(field));
        }
        field.clear();
    }

    void endField() {
        if (collecting()) pushField();
    }

    void endRow() {
        if (collecting()) {
            const std::size_t width = fields.size() + 1;
            pushField();
            (*callback)(std::move(fields));
            fields.clear();
            fields.reserve(width);
        } else {
            fields.clear();
        }
        hasSpan = false;
        field.clear();
        ++row;
    }
};

// Forwards the machine's events to the user's callbacks of CSVParsingState.
struct CallbackSink {
    CSVParsingState& state;
    void append(std::string_view ch) {
        if (state.appendCharacter) state.appendCharacter(ch);
    }
    void endField() {
        if (state.endField) state.endField();
    }
    void endRow() {
        if (state.endRow) state.endRow();
    }
};

} // namespace

void CSVParsingState::change(std::string_view character) {
    if (character.empty()) return;
    Flags f{atFieldStart, inPlainField, inQuotedField, afterQuote};
    std::size_t len = 1;
    CharClass cls = Classifier(delimiter).classify(character, 0, len);
    // Anything longer than the first character (a scalar with combining marks)
    // is one user-perceived character that is none of the special ones.
    if (len != character.size()) cls = CharClass::other;
    CallbackSink sink{*this};
    // Write the flags back even when the step fails, as a step would in place.
    struct Store {
        CSVParsingState& s;
        Flags& f;
        ~Store() {
            s.atFieldStart = f.atFieldStart;
            s.inPlainField = f.inPlainField;
            s.inQuotedField = f.inQuotedField;
            s.afterQuote = f.afterQuote;
        }
    } store{*this, f};
    transition(f, cls, character, sink);
}

void CSVParsingState::enumArray(std::string_view text, char32_t delimiter, std::size_t startAt,
                                std::optional<std::size_t> rowLimit, const RowCallback& rowCallback) {
    const Classifier classifier(delimiter);
    Flags flags;
    RowCollector collector;
    collector.startAt = startAt;
    collector.callback = &rowCallback;
    // Saturated: a limit of SIZE_MAX means every row, not a sum that wraps to before the start.
    const std::size_t endRow =
        !rowLimit ? 0 : (*rowLimit > SIZE_MAX - startAt ? SIZE_MAX : startAt + *rowLimit);
    auto limitReached = [&] { return rowLimit && collector.row >= endRow; };
    classifier.run(text, flags, collector, limitReached);
    if (limitReached()) return;
    if ((!collector.fieldEmpty() || !collector.fields.empty()) && collector.collecting()) collector.endRow();
}

std::vector<CSVParsingState::Row> CSVParsingState::array(std::string_view text, char32_t delimiter,
                                                         std::size_t startAt,
                                                         std::optional<std::size_t> rowLimit) {
    std::vector<Row> rows;
    enumArray(text, delimiter, startAt, rowLimit, [&rows](Row&& row) { rows.push_back(std::move(row)); });
    return rows;
}

std::unordered_map<std::string, std::string>
CSVParsingState::dictionary(const std::vector<std::string>& header, Row&& fields) {
    std::unordered_map<std::string, std::string> dict;
    dict.reserve(header.size());
    for (std::size_t i = 0; i < header.size(); ++i) {
        std::string value = i < fields.size() ? std::move(fields[i]) : std::string();
        dict.insert_or_assign(header[i], std::move(value));
    }
    return dict;
}

void CSVParsingState::enumDict(const std::vector<std::string>& header, std::string_view content,
                               char32_t delimiter, std::optional<std::size_t> rowLimit,
                               const DictCallback& block, std::size_t startAt) {
    enumArray(content, delimiter, startAt, rowLimit,
              [&](Row&& fields) { block(dictionary(header, std::move(fields))); });
}

} // namespace corvane::detail
