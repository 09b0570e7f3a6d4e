#include "corvane/tag_storages/TagStorage.hpp"

#include "corvane/helpers/WhiteSpace.hpp"

#include "corvane/converters/ValueConverter.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitSettings.hpp"

#include <algorithm>

namespace corvane {

namespace {

// The names in order, copied once: the names are sorted as pointers, since moving a name (two
// texts) at each step of the sort cost more than comparing it.
std::vector<TagName> sortedNames(std::vector<const TagName*> names) {
    std::sort(names.begin(), names.end(), [](const TagName* a, const TagName* b) { return *a < *b; });
    std::vector<TagName> sorted;
    sorted.reserve(names.size());
    for (const TagName* name : names)
        sorted.push_back(*name);
    return sorted;
}

std::vector<TagName> sortedKeys(const TagStorage::Values& values) {
    std::vector<const TagName*> names;
    names.reserve(values.size());
    for (const auto& entry : values)
        names.push_back(&entry.first);
    return sortedNames(std::move(names));
}

// A list of strings in either form the converters give it.
std::optional<std::vector<std::string>> stringList(const DynamicValue& value) {
    if (const auto* strings = value.stringArrayValue()) return *strings;
    if (const auto* array = value.arrayValue()) {
        std::vector<std::string> strings;
        strings.reserve(array->size());
        for (const DynamicValue& element : *array) {
            const auto* text = element.stringValue();
            if (!text) return std::nullopt;
            strings.push_back(*text);
        }
        return strings;
    }
    return std::nullopt;
}

} // namespace

TagStorage::TagStorage(TagStorageSource source)
    : source_(std::move(source)), temporaryURL_(corvane::temporaryURL(pathExtension(source_.url()))) {
    readSourceType();
}

// --- Identity and descriptions

void TagStorage::readSourceType() {
    isFolder_ = source_.isFolder();
    mediaType_ = MediaType::type(upperPathExtension(source_.url()));
}

std::optional<MediaType> TagStorage::mediaType() const {
    return mediaType_;
}

std::string TagStorage::folderSuffix() const {
    if (!isFolder()) return {};
    std::string suffix = recurseSubfolders_.value_or(false) ? "/**" : "/*";
    if (filePathFilter_ && !filePathFilter_->extensions().empty()) {
        suffix += '.';
        bool first = true;
        for (const std::string& extension : filePathFilter_->extensions()) {
            if (!first) suffix += '|';
            suffix += extension;
            first = false;
        }
    }
    return suffix;
}

std::string TagStorage::pathDescription() const {
    return abbreviatingWithTildeInPath(source_.url()) + folderSuffix();
}

std::string TagStorage::nameDescription() const {
    return lastPathComponent(source_.url()) + folderSuffix();
}

std::string TagStorage::debugDescription() const {
    std::string text;
    for (const TagName& name : currentTagNames()) {
        text += name.rawValue();
        text += ':';
        if (auto value = currentValue(name)) text += *value;
        text += '\n';
    }
    return text;
}

// --- Reading

std::vector<TagName> TagStorage::originalTagNames() const {
    return sortedKeys(originalValues_);
}

std::vector<TagName> TagStorage::writtenTagNames() const {
    return sortedKeys(writtenValues_);
}

std::vector<TagName> TagStorage::currentTagNames() const {
    std::vector<const TagName*> names;
    names.reserve(originalValues_.size() + writtenValues_.size());
    for (const auto& entry : originalValues_)
        names.push_back(&entry.first);
    for (const auto& entry : writtenValues_)
        if (!originalValues_.contains(entry.first)) names.push_back(&entry.first);
    return sortedNames(std::move(names));
}

std::optional<std::string> TagStorage::originalValue(const TagName& tagName) const {
    if (!canReadValue(tagName)) return std::nullopt;
    auto it = originalValues_.find(tagName);
    if (it == originalValues_.end()) return std::nullopt;
    return it->second;
}

std::optional<std::string> TagStorage::writtenValue(const TagName& tagName) const {
    auto it = writtenValues_.find(tagName);
    if (it == writtenValues_.end()) return std::nullopt;
    return it->second;
}

std::optional<std::string> TagStorage::currentValue(const TagName& tagName) const {
    if (auto it = writtenValues_.find(tagName); it != writtenValues_.end()) return it->second;
    if (auto it = originalValues_.find(tagName); it != originalValues_.end()) return it->second;
    return std::nullopt;
}

DynamicValue TagStorage::currentNativeValue(const TagItem& tagItem) const {
    return tagItem.converter()->nativeValueFromStringValue(currentValue(tagItem.name()));
}

bool TagStorage::hasValues(const TagStream& stream) const {
    auto holds = [&stream](const Values& values) {
        return std::any_of(values.begin(), values.end(), [&stream](const auto& entry) {
            return !entry.second.empty() && entry.first.stream() == stream;
        });
    };
    return holds(writtenValues_) || holds(originalValues_);
}

// --- Access

TagAccess TagStorage::access(const TagName& tagName) const {
    if (isFolder()) return TagAccess::rwc;
    if (tagName.stream() == TagStream::streamFile) return TagAccess::rwc;
    // The storage's own record, not a copy: copies would count references to the one record of a
    // format from every thread that reads a table's rows.
    if (!mediaType_) return TagAccess::rwc;
    const TagAccess declared = mediaType_->access(tagName.stream());
    if (declared != TagAccess::n) return declared;
    // A family the format doesn't declare: what the file holds may still be read and changed.
    return originalValues_.contains(tagName) ? TagAccess::rw : TagAccess::r;
}

bool TagStorage::canEditValue(const TagName& tagName) const {
    const TagItem* item = tagName.item();
    if (!item || !item->isWritable()) return false;
    const TagAccess tagAccess = access(tagName);
    if (tagAccess == TagAccess::rwc) return true;
    return originalValues_.contains(tagName) && tagAccess.canBeEdited();
}

// --- Changing

bool TagStorage::isOriginalValue(const std::optional<std::string>& value, const TagName& tagName) const {
    auto it = originalValues_.find(tagName);
    if (!value) return it == originalValues_.end() || it->second.empty();
    // Clearing a value that a file doesn't hold changes nothing; for a folder it is a real edit,
    // since it clears the tag in every file below.
    if (it == originalValues_.end()) return value->empty() && !isFolder();
    return it->second == *value;
}

bool TagStorage::setValue(const std::optional<std::string>& value, const TagName& tagName) {
    if (!canEditValue(tagName)) return false;
    const std::optional<std::string> current = currentValue(tagName);
    if (current == value) return false;
    if (!value || isOriginalValue(value, tagName)) {
        writtenValues_.erase(tagName);
        return true;
    }
    writtenValues_.insert_or_assign(tagName, *value);
    return true;
}

bool TagStorage::setOriginalValue(const std::optional<std::string>& value, const TagName& tagName) {
    if (isOriginalValue(value, tagName)) return false;
    originalStreams_.insert(tagName.stream());
    if (!value) {
        originalValues_.erase(tagName);
        return true;
    }
    originalValues_.insert_or_assign(tagName, *value);
    if (auto it = writtenValues_.find(tagName); it != writtenValues_.end() && it->second == *value)
        writtenValues_.erase(it);
    return true;
}

bool TagStorage::unsafeSetValue(const std::optional<std::string>& value, const TagName& tagName) {
    if (value)
        writtenValues_.insert_or_assign(tagName, *value);
    else
        writtenValues_.erase(tagName);
    return true;
}

void TagStorage::unsafeSetValues(const TagStorage& storage) {
    for (const TagName& name : storage.currentTagNames())
        unsafeSetValue(storage.currentValue(name), name);
}

void TagStorage::store(const DynamicValue& nativeValue, const TagItem& tagItem) {
    originalValues_.insert_or_assign(
        tagItem.name(), tagItem.converter()->stringValueFromNativeValue(nativeValue).value_or(""));
}

std::vector<TagName> TagStorage::flushChanges() {
    std::vector<TagName> names = writtenTagNames();
    for (const TagName& name : names) {
        std::string& value = writtenValues_.at(name);
        if (isUnicodeWhiteSpace(value))
            originalValues_.erase(name);
        else
            originalValues_.insert_or_assign(name, std::move(value));
    }
    writtenValues_.clear();
    return names;
}

std::vector<TagName> TagStorage::reloadValues(const TagStorage& storage) {
    std::vector<TagName> names = originalTagNames();
    std::vector<TagName> reloaded = storage.originalTagNames();
    names.insert(names.end(), reloaded.begin(), reloaded.end());
    originalStreams_ = storage.originalStreams_;
    originalValues_ = storage.originalValues_;
    return names;
}

std::vector<TagName> TagStorage::cleanStorage(const std::vector<TagStream>& streams) {
    std::vector<TagName> removed;
    for (const TagName& name : currentTagNames()) {
        if (std::find(streams.begin(), streams.end(), name.stream()) == streams.end()) continue;
        originalValues_.erase(name);
        writtenValues_.erase(name);
        removed.push_back(name);
    }
    return removed;
}

// --- Engines' support

void TagStorage::completeFileResources(const std::filesystem::path& url) {
    store(DynamicValue(lastPathComponent(url)), TagItem::itemFileFileName());
    store(DynamicValue(urlPath(url)), TagItem::itemFileFilePath());
    store(DynamicValue(pathExtension(url)), TagItem::itemFileFileTypeExtension());
    store(DynamicValue(urlPath(deletingLastPathComponent(url))), TagItem::itemFileDirectory());
}

void TagStorage::storeFinderResourcesValues(const FinderResources& resources) {
    const std::filesystem::path& url = source_.url();
    store(DynamicValue(lastPathComponent(url)), TagItem::itemFileFileName());
    store(DynamicValue(urlPath(deletingLastPathComponent(url))), TagItem::itemFileDirectory());
    store(DynamicValue(urlPath(url)), TagItem::itemFileFilePath());
    store(DynamicValue(resources.createDate()), TagItem::itemFileFileCreateDate());
    store(DynamicValue(resources.modifyDate()), TagItem::itemFileFileModifyDate());
    store(DynamicValue(resources.finderTags()), TagItem::itemFileMDItemUserTags());
}

FinderResources TagStorage::prepareFinderResourcesValues() const {
    const TagItem* items[] = {&TagItem::itemFileFileCreateDate(), &TagItem::itemFileFileModifyDate(),
                              &TagItem::itemFileMDItemUserTags()};
    const bool anyWritten = std::any_of(std::begin(items), std::end(items), [this](const TagItem* item) {
        return !item->converter()->nativeValueFromStringValue(writtenValue(item->name())).isNothing();
    });
    FinderResources resources;
    if (!anyWritten) return resources;
    if (const DynamicValue value = currentNativeValue(*items[0]); const Date* date = value.dateValue())
        resources.setCreateDate(*date);
    if (const DynamicValue value = currentNativeValue(*items[1]); const Date* date = value.dateValue())
        resources.setModifyDate(*date);
    resources.setFinderTags(stringList(currentNativeValue(*items[2])));
    return resources;
}

std::vector<std::filesystem::path> TagStorage::listWriterFileURLs() const {
    if (!isFolder()) return {isAsset() ? temporaryURL_ : source_.url()};
    std::vector<std::filesystem::path> urls =
        listFolderFiles(source_.url(), recurseSubfolders_.value_or(false));
    const auto supported = KitSettings::shared().supportedFileTypes();
    std::erase_if(urls, [&supported](const std::filesystem::path& url) {
        // A file without extension would look up the folder type: it is of no known format.
        if (pathExtension(url).empty()) return true;
        const std::optional<MediaType> type = MediaType::type(upperPathExtension(url));
        return !type || !supported.contains(*type);
    });
    // An empty filter restricts nothing, as for ExifTool, which then takes every supported type.
    if (filePathFilter_ && !filePathFilter_->isEmpty()) urls = filePathFilter_->filter(urls);
    return urls;
}

} // namespace corvane
