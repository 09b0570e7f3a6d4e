#include "corvane/tag_storages/ETTagStorageReader.hpp"

#include "corvane/helpers/JSONInput.hpp"

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/exiftool_wrapper/detail/ETRunOutput.hpp"
#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/detail/DynamicTagItems.hpp"
#include "corvane/tag_value/detail/NumberText.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"

#include <algorithm>
#include <exception>
#include <future>
#include <iterator>
#include <limits>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>
#include <unordered_map>
#include <unordered_set>

namespace corvane {

namespace {

// The tail of ExifTool's placeholder for binary values: "(Binary data 1234 bytes, use -b option to extract)".
constexpr std::string_view binaryPlaceholder = "use -b option to extract";
constexpr std::string_view keysGroup = "Keys";

bool containsAny(std::string_view text, const std::vector<std::string>& needles) {
    for (const auto& needle : needles)
        if (text.find(needle) != std::string_view::npos) return true;
    return false;
}

// Types whose values are text: ExifTool prints numeric-looking text as a JSON number, and such a
// value must reach the storage as printed ("1.50", not "1.5").
bool isTextType(TagType type) {
    switch (type.value()) {
    case TagType::string:
    case TagType::langAlt:
    case TagType::utf8:
    case TagType::Unicode:
    case TagType::unicode:
    case TagType::pstring:
    case TagType::varString:
    case TagType::varPStr32:
    case TagType::varUStr32:
    case TagType::longString:
        return true;
    default:
        return false;
    }
}

// What a "family 0:family 1" group key of one run resolves to; the same keys recur in every record,
// so each is worked out once per decode.
struct GroupInfo {
    bool banned = false;
    // ExifTool's own group, which holds its warnings about the file.
    bool exifTool = false;
    std::string g0;
    std::string g1;
    TagStream recordedStream;
};

// Below this many bytes of output a batch is decoded in one piece.
constexpr std::size_t minimumDecodedPart = 256 * 1024;

// ExifTool's JSON array of records cut into `count` arrays of whole records, for decoding side by
// side. A record starts at a "{" that begins a line: ExifTool indents everything inside a record
// and escapes the line breaks of texts. Empty when the text isn't laid out that way.
std::vector<std::string> splitRecords(std::string_view data, std::size_t count) {
    const auto open = data.find_first_not_of(" \t\r\n");
    if (open == std::string_view::npos || data[open] != '[') return {};
    std::vector<std::size_t> starts{open + 1};
    for (std::size_t k = 1; k < count; ++k) {
        const auto at = data.find("\n{", std::max(starts.back(), data.size() / count * k));
        if (at == std::string_view::npos) break;
        starts.push_back(at + 1);
    }
    if (starts.size() < 2) return {};
    std::vector<std::string> chunks;
    for (std::size_t k = 0; k < starts.size(); ++k) {
        const bool last = k + 1 == starts.size();
        std::string_view records = data.substr(starts[k], (last ? data.size() : starts[k + 1]) - starts[k]);
        std::string chunk = "[";
        if (last) {
            chunk.append(records);
        } else {
            // The records before the next part end with the separator "},": the array closes there.
            records = trimAsciiWhiteSpace(records);
            if (!records.ends_with("},")) return {};
            records.remove_suffix(1);
            chunk.append(records).append("]");
        }
        chunks.push_back(std::move(chunk));
    }
    return chunks;
}

// Streams ExifTool's JSON array straight into storages: no document tree is built, groups are
// resolved once per key, and values of tags outside the catalogue are skipped without being
// stored anywhere.
class ExifToolJSONDecoder {
public:
    using number_integer_t = nlohmann::json::number_integer_t;
    using number_unsigned_t = nlohmann::json::number_unsigned_t;
    using number_float_t = nlohmann::json::number_float_t;
    using string_t = nlohmann::json::string_t;
    using binary_t = nlohmann::json::binary_t;

    ExifToolJSONDecoder(const std::vector<TagStorageSource>& sources,
                        const std::vector<std::string>& bannedValues,
                        const std::vector<std::string>& bannedStreams)
        : bannedValues_(bannedValues), bannedStreams_(bannedStreams) {
        // On a repeated URL the later source stands.
        for (const auto& source : sources)
            sourcesByPath_.insert_or_assign(source.url().native(), &source);
    }

    std::vector<TagStorage> takeStorages() { return std::move(storages_); }
    ETTagStorageReader::FileWarnings takeWarnings() { return std::move(warnings_); }
    bool shapeError() const { return shapeError_; }
    const std::exception_ptr& parseError() const { return parseError_; }

    // --- SAX events

    bool null() { return scalar(DynamicValue(), {}); }
    bool boolean(bool value) {
        return scalar(DynamicValue(Number::fromBool(value)), value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) {
        return scalar(DynamicValue(Number::fromInteger(value)), std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) {
        const Number number = value <= static_cast<number_unsigned_t>(std::numeric_limits<int64_t>::max())
                                  ? Number::fromInteger(static_cast<int64_t>(value))
                                  : Number::fromDouble(static_cast<double>(value));
        return scalar(DynamicValue(number), std::to_string(value));
    }
    bool number_float(number_float_t value, const string_t& text) {
        return scalar(DynamicValue(Number::fromDouble(value)), text);
    }
    bool string(string_t& value) {
        if (skipDepth_ == 0 && level_ == Level::record) {
            // Only "SourceFile" has a scalar value worth keeping at this level.
            if (pendingSourceFile_) sourceFile_ = std::move(value);
            pendingSourceFile_ = false;
            return true;
        }
        if (skipDepth_ == 0 && level_ == Level::group && pendingWarning_) {
            recordWarnings_.push_back(std::move(value));
            return true;
        }
        return scalar(DynamicValue(std::move(value)), {});
    }
    bool binary(binary_t&) { return scalar(DynamicValue(), {}); }

    bool start_object(std::size_t) {
        if (skipDepth_ > 0) {
            ++skipDepth_;
            return true;
        }
        switch (level_) {
        case Level::top:
            return failShape();
        case Level::array:
            level_ = Level::record;
            beginRecord();
            return true;
        case Level::record:
            pendingSourceFile_ = false;
            if (currentGroup_ && currentGroup_->exifTool) {
                // Only its warnings are kept, apart from the values.
                level_ = Level::group;
                readingWarnings_ = true;
                return true;
            }
            if (!currentGroup_ || currentGroup_->banned) {
                skipDepth_ = 1;
                return true;
            }
            level_ = Level::group;
            return true;
        case Level::group:
        case Level::value:
            // A structure: no catalogue tag takes one, so the tag is dropped.
            dropValue();
            skipDepth_ = 1;
            return true;
        }
        return true;
    }

    bool end_object() {
        if (skipDepth_ > 0) {
            --skipDepth_;
            return true;
        }
        if (level_ == Level::group) {
            level_ = Level::record;
            currentGroup_ = nullptr;
            readingWarnings_ = pendingWarning_ = false;
        } else if (level_ == Level::record) {
            endRecord();
            level_ = Level::array;
        }
        return true;
    }

    bool key(string_t& key) {
        if (skipDepth_ > 0) return true;
        if (level_ == Level::record) {
            pendingSourceFile_ = key == "SourceFile";
            currentGroup_ = pendingSourceFile_ ? nullptr : &resolveGroup(key);
            if (currentGroup_ && !currentGroup_->banned) streams_.insert(currentGroup_->recordedStream);
        } else if (level_ == Level::group && readingWarnings_) {
            pendingWarning_ = key == "Warning";
            currentItem_ = nullptr;
        } else if (level_ == Level::group) {
            currentItem_ = ETTagStorageReader::findTagItem(currentGroup_->g0, currentGroup_->g1, key);
            // The item's own name keeps its entry (a lookup the first time only): the copies that
            // the storage and its editor hold then reach the item without searching the catalogue.
            if (currentItem_) (void)currentItem_->name().item();
            keepsText_ = currentItem_ && isTextType(currentItem_->type());
        }
        return true;
    }

    bool start_array(std::size_t) {
        if (skipDepth_ > 0) {
            ++skipDepth_;
            return true;
        }
        switch (level_) {
        case Level::top:
            level_ = Level::array;
            return true;
        case Level::array:
            return failShape();
        case Level::record:
            // A group that isn't an object counts as an empty one; a SourceFile that isn't a string
            // is no SourceFile.
            pendingSourceFile_ = false;
            skipDepth_ = 1;
            return true;
        case Level::group:
            if (!currentItem_) {
                skipDepth_ = 1;
                return true;
            }
            level_ = Level::value;
            arrays_.emplace_back();
            return true;
        case Level::value:
            arrays_.emplace_back();
            return true;
        }
        return true;
    }

    bool end_array() {
        if (skipDepth_ > 0) {
            --skipDepth_;
            return true;
        }
        if (level_ == Level::array) {
            level_ = Level::top;
            return true;
        }
        if (level_ != Level::value) return true;
        DynamicArray done = std::move(arrays_.back());
        arrays_.pop_back();
        if (!arrays_.empty()) {
            arrays_.back().emplace_back(std::move(done));
            return true;
        }
        level_ = Level::group;
        if (valueDropped_)
            valueDropped_ = false;
        else
            storeValue(DynamicValue(std::move(done)));
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
        if (auto parse = dynamic_cast<const nlohmann::json::parse_error*>(&error))
            parseError_ = std::make_exception_ptr(*parse);
        else // a number beyond a double ("1e400"): JSON, but not of a shape this reader takes
            parseError_ = std::make_exception_ptr(
                ETTagStorageReader::ReadException(ETTagStorageReader::ReadError::dataDecodingFailed));
        return false;
    }

private:
    enum class Level { top, array, record, group, value };

    bool failShape() {
        shapeError_ = true;
        return false;
    }

    bool scalar(DynamicValue value, std::string_view text) {
        if (skipDepth_ > 0) return true;
        switch (level_) {
        case Level::top:
        case Level::array:
            return failShape();
        case Level::record:
            pendingSourceFile_ = false;
            return true;
        case Level::group:
            if (currentItem_)
                storeValue(keepsText_ && !text.empty() ? DynamicValue(text) : std::move(value), text);
            return true;
        case Level::value:
            arrays_.back().push_back(keepsText_ && !text.empty() ? DynamicValue(text) : std::move(value));
            return true;
        }
        return true;
    }

    void dropValue() {
        if (level_ == Level::value) valueDropped_ = true;
    }

    const GroupInfo& resolveGroup(const std::string& key) {
        if (auto it = groups_.find(key); it != groups_.end()) return it->second;
        GroupInfo info;
        const auto colon = key.find(':');
        const std::string_view text(key);
        if (colon == std::string::npos) {
            info.g0 = info.g1 = std::string(trimAsciiWhiteSpace(text));
        } else {
            info.g0 = std::string(trimAsciiWhiteSpace(text.substr(0, colon)));
            info.g1 = std::string(trimAsciiWhiteSpace(text.substr(colon + 1)));
        }
        info.exifTool = info.g0 == "ExifTool";
        info.banned = (!info.g0.empty() && containsAny(info.g0, bannedStreams_)) ||
                      (!info.g1.empty() && containsAny(info.g1, bannedStreams_));
        const auto* family = TagCatalogue::shared().family(info.g0);
        info.recordedStream = family && family->isMaker ? TagStream::streamMakerNotes : TagStream(info.g0);
        return groups_.emplace(key, std::move(info)).first->second;
    }

    // `printed` is the number as ExifTool printed it, for a number out of the tag's range.
    void storeValue(const DynamicValue& value, std::string_view printed = {}) {
        const std::string* text = value.stringValue();
        // ExifTool prints a list of one text as a plain text: it is that one element, kept whole even
        // when it holds the list's separator ("Smith, John" is one keyword, not two). Lists of
        // numbers are printed as one text of all their elements ("0 0 0 0"), and are split.
        const TagType type = currentItem_->type();
        if (text && currentItem_->isList() && !type.isNumber() && !type.isDateTimeOrPartial()) {
            auto one = currentItem_->stringValueFromNativeValue(DynamicValue(DynamicArray{value}));
            if (one && !one->empty()) return storeText(std::move(*one));
        }
        // A file may hold more numbers than the tag's table says (the count of an IFD entry is the
        // file's): ExifTool prints them all, and they are kept so rather than run together.
        auto string = text && detail::holdsSeveralNumbers(*currentItem_, *text)
                          ? std::optional<std::string>(std::string(trimAsciiWhiteSpace(*text)))
                          : currentItem_->stringValueFromNativeValue(value);
        // Text the tag's converter can't read ("0000:00:00 00:00:00", "inf", "undef") is what the
        // file holds all the same: it is shown as ExifTool printed it, not dropped.
        if (!string && text && !trimAsciiWhiteSpace(*text).empty())
            string = std::string(trimAsciiWhiteSpace(*text));
        // So is a number the tag's type can't hold (-1 in an unsigned tag).
        if (!string && !text && !printed.empty()) string = std::string(printed);
        // And a list whose every element the converter drops (numbers in a list of country codes):
        // its elements as they print, joined as the tag's list.
        if (string && string->empty() && !text) string = elementsText(value).value_or(std::string());
        if (string) storeText(std::move(*string));
    }

    // The elements of an array value, in the tag's list form; nothing for an empty array or another
    // value.
    std::optional<std::string> elementsText(const DynamicValue& value) const {
        const DynamicArray* elements = value.arrayValue();
        if (!elements || elements->empty()) return std::nullopt;
        const bool comma = currentItem_->isList() || currentItem_->valueSeparator() == ", ";
        std::string joined;
        for (const DynamicValue& element : *elements) {
            if (&element != &elements->front()) joined += comma ? "," : " ";
            joined += element.description();
        }
        return joined;
    }

    void storeText(std::string string) {
        if (!string.empty() && containsAny(string, bannedValues_)) return;
        // The first occurrence of a name wins.
        values_.try_emplace(currentItem_->name(), std::move(string));
    }

    void beginRecord() {
        sourceFile_.reset();
        pendingSourceFile_ = false;
        currentGroup_ = nullptr;
        currentItem_ = nullptr;
        streams_.clear();
        values_.clear();
        recordWarnings_.clear();
    }

    const TagStorageSource* sourceOf(const std::string& path) {
        if (auto it = sourcesByPath_.find(path); it != sourcesByPath_.end()) return it->second;
        // ExifTool prints targets as it was given them; one that needed "./" in front (a relative
        // name beginning with "-") comes back with it. Compare normalised paths then.
        if (normalizedSources_.empty())
            for (const auto& [text, source] : sourcesByPath_)
                normalizedSources_.insert_or_assign(std::filesystem::path(text).lexically_normal().native(),
                                                    source);
        const auto normal = std::filesystem::path(path).lexically_normal().native();
        if (auto it = normalizedSources_.find(normal); it != normalizedSources_.end()) return it->second;
        // ExifTool prints a name that isn't valid UTF-8 with "?" for each stray byte: such a record
        // goes to the first source of that spelling not yet read.
        for (const auto& [text, source] : sourcesByPath_)
            if (!readSources_.contains(source) &&
                (withStrayBytesReplaced(text) == path || withStrayBytesReplaced(text) == normal))
                return source;
        return nullptr;
    }

    // The text with each byte that is no part of a valid UTF-8 sequence replaced by "?".
    static std::string withStrayBytesReplaced(std::string_view text) {
        std::string out;
        out.reserve(text.size());
        for (std::size_t i = 0; i < text.size();) {
            const auto byte = static_cast<unsigned char>(text[i]);
            const std::size_t length = byte < 0x80           ? 1
                                       : (byte >> 5) == 0x6  ? 2
                                       : (byte >> 4) == 0xE  ? 3
                                       : (byte >> 3) == 0x1E ? 4
                                                             : 0;
            bool valid = length > 0 && i + length <= text.size();
            for (std::size_t k = 1; valid && k < length; ++k)
                valid = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
            if (valid) {
                out.append(text.substr(i, length));
                i += length;
            } else {
                out += '?';
                ++i;
            }
        }
        return out;
    }

    void endRecord() {
        if (!sourceFile_) return;
        const TagStorageSource* source = sourceOf(*sourceFile_);
        if (!source) return;
        readSources_.insert(source);
        if (!recordWarnings_.empty()) {
            auto& warnings = warnings_[source->url()];
            warnings.insert(warnings.end(), recordWarnings_.begin(), recordWarnings_.end());
        }
        TagStorage storage(*source);
        storage.setOriginalStreams(std::move(streams_));
        storage.setOriginalValues(std::move(values_));
        streams_ = {};
        values_ = {};
        FinderResources resources;
        try {
            resources.read(source->url());
        } catch (const std::exception&) {
            resources = FinderResources();
        }
        storage.storeFinderResourcesValues(resources);
        storage.completeFileResources(source->url());
        storages_.push_back(std::move(storage));
    }

    const std::vector<std::string>& bannedValues_;
    const std::vector<std::string>& bannedStreams_;
    std::unordered_map<std::string, const TagStorageSource*> sourcesByPath_;
    std::unordered_map<std::string, const TagStorageSource*> normalizedSources_;
    std::unordered_set<const TagStorageSource*> readSources_;
    std::unordered_map<std::string, GroupInfo> groups_;

    Level level_ = Level::top;
    int skipDepth_ = 0;
    bool shapeError_ = false;
    std::exception_ptr parseError_;

    // The record being read.
    std::optional<std::string> sourceFile_;
    bool pendingSourceFile_ = false;
    const GroupInfo* currentGroup_ = nullptr;
    const TagItem* currentItem_ = nullptr;
    bool keepsText_ = false;
    bool valueDropped_ = false;
    bool readingWarnings_ = false;
    bool pendingWarning_ = false;
    std::vector<std::string> recordWarnings_;
    std::vector<DynamicArray> arrays_;
    TagStorage::Streams streams_;
    TagStorage::Values values_;

    std::vector<TagStorage> storages_;
    ETTagStorageReader::FileWarnings warnings_;
};

} // namespace

static_assert(TagStorageReaderType<ETTagStorageReader>);

// --- Settings

ETTagStorageReader::Settings::Settings(std::vector<TagStorageSource> sources)
    : sources_(std::move(sources)) {}

void ETTagStorageReader::Settings::setupDefaultBannedValues() {
    bannedValues_ = {std::string(binaryPlaceholder)};
    bannedStreams_ = {"ExifTool", "Composite"};
    for (int track = 0; track <= 10; ++track)
        bannedStreams_.push_back("Track" + std::to_string(track));
}

// --- Errors

std::string_view message(ETTagStorageReader::ReadError error) {
    switch (error) {
    case ETTagStorageReader::ReadError::readerOutputIsEmpty:
        return "Reader output is empty";
    case ETTagStorageReader::ReadError::dataDecodingFailed:
        return "Data decoding failed";
    }
    return "Data decoding failed";
}

// --- Reader

ETTagStorageReader::ETTagStorageReader(Settings settings) : settings_(std::move(settings)) {
    // The library's running ExifTool processes, unless the application switched them off.
    process_.setPool(ETProcessPool::shared());
}

double ETTagStorageReader::progress() const {
    // The process keeps the figure apart from its output, so reading it copies nothing.
    return process_.progress();
}

TagStorageMap ETTagStorageReader::readStorages() {
    if (const auto& handler = settings_.onStartHandler()) handler(*this);
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);

    warnings_.clear();
    TagStorageMap storages;
    for (auto& storage : readFolderStorages()) {
        auto url = storage.source().url();
        storages.insert_or_assign(std::move(url), std::move(storage));
    }
    for (auto& storage : readFileStorages()) {
        auto url = storage.source().url();
        storages.insert_or_assign(std::move(url), std::move(storage));
    }

    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    if (const auto& handler = settings_.onEndHandler()) handler(*this);
    return storages;
}

std::vector<TagStorage> ETTagStorageReader::readFolderStorages() const {
    // Folders aren't read: what a folder storage holds later is what the user edits.
    std::vector<TagStorage> storages;
    for (const auto& source : settings_.sources())
        if (source.isFolder()) storages.emplace_back(source);
    return storages;
}

std::vector<TagStorage> ETTagStorageReader::readFileStorages() {
    std::vector<TagStorageSource> files;
    for (const auto& source : settings_.sources())
        if (!source.isFolder()) files.push_back(source);
    if (files.empty()) return {};

    ETInput input;
    input.addArguments(files, [this](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
        maker.language = settings_.language();
        maker.shortTags = settings_.enableShortTags();
        maker.rawValues = settings_.enableRawValues();
        maker.noComposite = settings_.disableComposite();
        maker.rawLocation = settings_.forceRawLocation();
        maker.ignoreMinorErrors = settings_.ignoreMinorErrors();
        maker.arguments = {"-g0:1", "-j"};
        for (const auto& tag : settings_.requestedTags())
            maker.arguments.push_back("-" + tag);
        maker.password = source.password();
        maker.url = source.url();
        // Files with the same options share one ExifTool command.
        maker.soloRun = false;
    });
    // The run is synchronous within readStorages(), so the reader outlives every callback.
    input.onProgressHandler = [this](ETProcess&) {
        if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    };
    input.onEndHandler = [](ETProcess& process) { process.debugProcessOutputIfEnabled(); };

    // Decoding the output needs the tag catalogue and the calendar: the first read of the program
    // indexes the catalogue and has ICU load the machine's time zone and the calendar's data (which
    // the first date decoded would wait for) beside the ExifTool run, on another processor, instead
    // of after it. The tags themselves are parsed as the output names them, each row alone: parsing
    // every family here instead took some 15 ms of the other processor and several megabytes, and
    // slowed the ExifTool run beside it.
    std::future<void> catalogue;
    static std::once_flag catalogueLoading;
    std::call_once(catalogueLoading, [&] {
        catalogue = std::async(std::launch::async, [] {
            (void)GregorianCalendar::components(Date::now());
            (void)TagCatalogue::shared();
        });
    });
    const ETOutput output = process_.execute(input);
    if (catalogue.valid()) catalogue.get();
    output.throwIfErrors();
    auto storages = decodeOutput(output.data(), files, warnings_);
    // Warnings printed on standard error rather than into a file's record (minor errors passed
    // over, with "-m") go with the file they name.
    for (const ETFileMessage& message : output.messages()) {
        if (message.kind != ETFileMessage::Kind::warning || !message.path) continue;
        const auto source = std::find_if(files.begin(), files.end(), [&](const TagStorageSource& file) {
            return file.url().lexically_normal() == message.path->lexically_normal();
        });
        if (source == files.end()) continue;
        // The record holds ExifTool's own form ("[minor] TEXT"); standard error's parsed form has the
        // mark taken off. The same warning printed both ways is shown once, as the record has it.
        auto& warnings = warnings_[source->url()];
        const auto same = [&](std::string_view warning) {
            detail::takeMinorMark(warning);
            return warning == message.text;
        };
        if (std::none_of(warnings.begin(), warnings.end(), same)) warnings.push_back(message.text);
    }
    return storages;
}

std::vector<TagStorage>
ETTagStorageReader::parseExifToolOutput(std::string_view data,
                                        const std::vector<TagStorageSource>& sources) const {
    FileWarnings ignored;
    return decodeOutput(data, sources, ignored);
}

std::vector<TagStorage> ETTagStorageReader::decodeOutput(std::string_view data,
                                                         const std::vector<TagStorageSource>& sources,
                                                         FileWarnings& warnings) const {
    // A batch's output is decoded in parts side by side: after the ExifTool processes have ended,
    // the machine's processors have nothing else to do. A part that doesn't decode has the whole
    // output decoded again in one piece, which gives the error. Each part's nesting is checked beside
    // its decoding: a part that decodes begins at a record, at the array's depth, and nests as deep
    // as it does in the whole; a part never counts deeper than it is in the whole, so a part refused
    // is one the whole would have been refused for.
    const std::size_t parts = std::min<std::size_t>(std::max(1u, std::thread::hardware_concurrency()),
                                                    data.size() / minimumDecodedPart);
    const auto chunks = parts > 1 ? splitRecords(data, parts) : std::vector<std::string>();
    if (!chunks.empty()) {
        struct Part {
            bool decoded = false;
            std::vector<TagStorage> storages;
            FileWarnings warnings;
        };
        std::vector<Part> decodedParts(chunks.size());
        concurrentPerform(chunks.size(), [&](std::size_t k) {
            checkJSONNesting(chunks[k], "ExifTool output");
            ExifToolJSONDecoder decoder(sources, settings_.bannedValues(), settings_.bannedStreams());
            Part& part = decodedParts[k];
            part.decoded = nlohmann::json::sax_parse(chunks[k], &decoder) && !decoder.shapeError() &&
                           !decoder.parseError();
            part.storages = decoder.takeStorages();
            part.warnings = decoder.takeWarnings();
        });
        if (std::all_of(decodedParts.begin(), decodedParts.end(), [](const Part& p) { return p.decoded; })) {
            std::vector<TagStorage> storages;
            warnings.clear();
            for (Part& part : decodedParts) {
                std::move(part.storages.begin(), part.storages.end(), std::back_inserter(storages));
                for (auto& [file, texts] : part.warnings) {
                    auto& kept = warnings[file];
                    kept.insert(kept.end(), texts.begin(), texts.end());
                }
            }
            return storages;
        }
    }
    checkJSONNesting(data, "ExifTool output");
    std::optional<ExifToolJSONDecoder> decoder;
    decoder.emplace(sources, settings_.bannedValues(), settings_.bannedStreams());
    bool parsed = nlohmann::json::sax_parse(data, &*decoder);
    if (!parsed && !decoder->shapeError()) {
        // A text that ExifTool printed as a number no double holds: read again with it quoted.
        if (const auto quoted = detail::quoteOutOfRangeNumbers(data)) {
            decoder.emplace(sources, settings_.bannedValues(), settings_.bannedStreams());
            parsed = nlohmann::json::sax_parse(*quoted, &*decoder);
        }
    }
    if (decoder->shapeError()) throw ReadException(ReadError::dataDecodingFailed);
    if (decoder->parseError()) std::rethrow_exception(decoder->parseError());
    if (!parsed) throw ReadException(ReadError::dataDecodingFailed);
    warnings = decoder->takeWarnings();
    return decoder->takeStorages();
}

const TagItem* ETTagStorageReader::findTagItem(std::string_view g0, std::string_view g1,
                                               std::string_view rawKey) {
    const auto& catalogue = TagCatalogue::shared();
    // Maker-note tags are filed under the maker's family 1 name.
    const std::string_view stream = g0 == TagStream::streamMakerNotes.rawValue() ? g1 : g0;
    if (const TagItem* item = catalogue.find(stream, rawKey)) return item;
    if (g0 == TagStream::streamQuickTime.rawValue() && g1 == keysGroup) {
        // QuickTime "Keys" name some tags of the camera with a prefix and a suffix of their own.
        std::string_view key = rawKey;
        if (key.starts_with("Camera")) key.remove_prefix(6);
        if (const TagItem* item = catalogue.find(TagStream::streamQuickTime.rawValue(), key)) return item;
        if (key.ends_with("Equivalent")) key.remove_suffix(10);
        if (const TagItem* item = catalogue.find(TagStream::streamQuickTime.rawValue(), key)) return item;
    }
    // A name made from the file's content, or one the catalogue doesn't list: shown all the same.
    return detail::DynamicTagItems::shared().itemForRead(g0, stream, rawKey);
}

} // namespace corvane
