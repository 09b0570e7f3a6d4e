#include "corvane/tag_storages/CGTagStorageReader.hpp"

#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_storages/detail/ImagePropertyTable.hpp"
#include "corvane/tag_storages/detail/ImageSource.hpp"
#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"

namespace corvane {

static_assert(TagStorageReaderType<CGTagStorageReader>);

namespace {

// The stream a tag is recorded under: maker-note families are recorded as the maker notes.
TagStream recordedStream(const TagStream& stream) {
    const auto* family = TagCatalogue::shared().family(stream.rawValue());
    return family && family->isMaker ? TagStream::streamMakerNotes : stream;
}

// The canonical string of a property through the tag's converter. A tag of one value that the
// engine gives as an array of one (the ISO speed) is read from that element.
std::optional<std::string> canonicalValue(const TagItem& item, const DynamicValue& value) {
    if (auto text = item.stringValueFromNativeValue(value)) return text;
    if (const auto* array = value.arrayValue(); array && array->size() == 1)
        return item.stringValueFromNativeValue(array->front());
    return std::nullopt;
}

void storeProperties(TagStorage& storage, const detail::PropertyDictionary& properties) {
    TagStorage::Values values;
    // Dictionaries in table order, so that where two name the same tag the same one always wins.
    for (std::string_view dictionary : detail::imagePropertyDictionaries()) {
        auto found = properties.find(std::string(dictionary));
        if (found == properties.end()) continue;
        const TagStream stream{std::string(dictionary)};
        for (const auto& [key, value] : found->second) {
            auto etName = TagNameMapping::etName(TagName(stream, TagKey(key)));
            if (!etName) continue;
            storage.insertOriginalStream(recordedStream(etName->stream()));
            const TagItem* item = TagItem::find(*etName);
            if (!item) continue;
            if (auto text = canonicalValue(*item, value)) values.try_emplace(*etName, std::move(*text));
        }
    }
    storage.setOriginalValues(std::move(values));
}

} // namespace

std::string_view message(CGTagStorageReader::ReadError error) {
    switch (error) {
    case CGTagStorageReader::ReadError::emptyResult:
        return "Empty result";
    case CGTagStorageReader::ReadError::sourceIsInvalid:
        return "Source is invalid";
    case CGTagStorageReader::ReadError::metadataAreEmpty:
        return "Metadata are empty";
    }
    return "Empty result";
}

CGTagStorageReader::CGTagStorageReader(Settings settings) : settings_(std::move(settings)) {}

double CGTagStorageReader::progress() const {
    return atomic_.read([&] { return nonAtomicProgress_; });
}

TagStorage CGTagStorageReader::read(const TagStorageSource& source) const {
    const auto& url = source.url();
    auto image = detail::ImageSource::createWithURL(url);
    if (!image) throw ReadException(ReadError::sourceIsInvalid, url);
    auto properties = image->copyProperties();
    if (!properties) throw ReadException(ReadError::metadataAreEmpty, url);

    TagStorage storage(source);
    storeProperties(storage, *properties);
    FinderResources resources;
    try {
        resources.read(url);
    } catch (const std::exception&) {
        resources = FinderResources();
    }
    storage.storeFinderResourcesValues(resources);
    storage.completeFileResources(url);
    return storage;
}

TagStorageMap CGTagStorageReader::readStorages() {
    if (const auto& handler = settings_.onStartHandler()) handler(*this);
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    TagStorageMap storages;
    readFolderStorages(storages);
    readFileStorages(storages);
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    if (const auto& handler = settings_.onEndHandler()) handler(*this);
    return storages;
}

void CGTagStorageReader::incrementProgress(std::size_t unit) {
    const auto count = settings_.sources().size();
    atomic_.write(
        [&] { nonAtomicProgress_ = count ? static_cast<double>(unit) / static_cast<double>(count) : 1; });
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
}

void CGTagStorageReader::readFolderStorages(TagStorageMap& storages) {
    // Folders aren't read: a folder storage holds what the user edits. Progress counts every
    // source, folders first.
    std::size_t done = 0;
    for (const auto& source : settings_.sources()) {
        if (!source.isFolder()) continue;
        storages.insert_or_assign(source.url(), TagStorage(source));
        incrementProgress(++done);
    }
}

void CGTagStorageReader::readFileStorages(TagStorageMap& storages) {
    std::size_t done = 0;
    for (const auto& source : settings_.sources())
        if (source.isFolder()) ++done;
    for (const auto& source : settings_.sources()) {
        if (source.isFolder()) continue;
        storages.insert_or_assign(source.url(), read(source));
        incrementProgress(++done);
    }
}

} // namespace corvane
