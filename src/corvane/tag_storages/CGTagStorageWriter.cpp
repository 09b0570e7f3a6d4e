#include "corvane/tag_storages/CGTagStorageWriter.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_storages/UnwritableValueError.hpp"
#include "corvane/tag_storages/detail/FileReplacement.hpp"
#include "corvane/tag_storages/detail/ImageDestination.hpp"
#include "corvane/tag_storages/detail/WritableValue.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagNameMapping.hpp"
#include "corvane/utilities/KitDebugger.hpp"

namespace corvane {

static_assert(TagStorageWriterType<CGTagStorageWriter>);

namespace {

namespace fs = std::filesystem;

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n\v\f") == std::string_view::npos;
}

// The edits as image I/O properties. A cleared tag becomes the null marker, which removes the
// property. A value its converter can't read is left out (and logged) rather than taken for a
// clear: a typing slip must not delete a tag.
detail::PropertyDictionary nativeValues(const TagStorage& storage) {
    detail::PropertyDictionary properties;
    for (const auto& [name, text] : storage.writtenValues()) {
        // The file system's own values are written as Finder resources.
        if (name.stream() == TagStream::streamFile) continue;
        const TagItem* item = TagItem::find(name);
        const auto cgName = TagNameMapping::cgName(name);
        if (!item || !cgName) continue;
        DynamicValue value = item->converter()->coreImageValueFromStringValue(text);
        const bool unreadable = value.isNothing() || (value.arrayValue() && value.arrayValue()->empty());
        if (unreadable && !isBlank(text)) {
            KitDebugger::shared().log([&name = name, &text = text] {
                return "Unreadable value of " + name.rawValue() + ": " + text;
            });
            continue;
        }
        if (unreadable) value = DynamicValue();
        properties[cgName->stream().rawValue()][cgName->key().rawValue()] = std::move(value);
    }
    return properties;
}

std::string propertiesDescription(const detail::PropertyDictionary& properties) {
    std::string text;
    for (const auto& [dictionary, values] : properties)
        for (const auto& [key, value] : values)
            text += (text.empty() ? "" : ", ") + dictionary + ":" + key + "=" +
                    (value.isNothing() ? std::string("null") : value.description());
    return "{" + text + "}";
}

} // namespace

std::string_view message(CGTagStorageWriter::WriteError error) {
    switch (error) {
    case CGTagStorageWriter::WriteError::emptyResult:
        return "Empty result";
    case CGTagStorageWriter::WriteError::sourceIsInvalid:
        return "Source is invalid";
    case CGTagStorageWriter::WriteError::typeIsUnknown:
        return "Type is unknown";
    case CGTagStorageWriter::WriteError::destinationIsInvalid:
        return "Destination is invalid";
    case CGTagStorageWriter::WriteError::metadataAreEmpty:
        return "Metadata are empty";
    case CGTagStorageWriter::WriteError::finalizeFailed:
        return "Finalize failed";
    case CGTagStorageWriter::WriteError::dataAreEmpty:
        return "Data are empty";
    }
    return "Empty result";
}

CGTagStorageWriter::CGTagStorageWriter(Settings settings) : settings_(std::move(settings)) {}

double CGTagStorageWriter::progress() const {
    return atomic_.read([&] { return nonAtomicProgress_; });
}

void CGTagStorageWriter::write() {
    if (const auto& handler = settings_.onStartHandler()) handler(*this);
    if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    const auto& storages = settings_.storages();
    for (std::size_t i = 0; i < storages.size(); ++i) {
        write(storages[i]);
        const double share = static_cast<double>(i + 1) / static_cast<double>(storages.size());
        atomic_.write([&] { nonAtomicProgress_ = share; });
        if (const auto& handler = settings_.onProgressHandler()) handler(*this);
    }
    if (const auto& handler = settings_.onEndHandler()) handler(*this);
}

void CGTagStorageWriter::write(const TagStorage& storage) {
    for (const auto& url : storage.listWriterFileURLs())
        writeFile(storage, url);
}

void CGTagStorageWriter::writeFile(const TagStorage& storage, const fs::path& url) {
    const auto destination = settings_.destinations().find(url);
    const fs::path target = destination == settings_.destinations().end() ? url : destination->second;
    if (auto reason = detail::unwritableStorageReason(storage)) throw UnwritableValueError(url, *reason);
    const auto properties = nativeValues(storage);

    // Nothing for the image I/O engine: the file itself is left alone, and a destination gets the
    // file as it is.
    if (properties.empty()) {
        if (target != url) detail::replaceFileKeepingAttributes(url, target, readFileBytes(url));
    } else {
        auto source = detail::ImageSource::createWithURL(url);
        if (!source) throw WriteException(WriteError::sourceIsInvalid, url);
        const auto type = source->type();
        if (!type) throw WriteException(WriteError::typeIsUnknown, url);
        auto image = detail::ImageDestination::createWithData(*type);
        if (!image) throw WriteException(WriteError::destinationIsInvalid, url);
        image->addImageFromSource(*source, properties);
        KitDebugger::shared().log(
            [&] { return "Write at " + url.string() + ": " + propertiesDescription(properties); });
        if (!image->finalize()) throw WriteException(WriteError::finalizeFailed, url);
        if (image->data().empty()) throw WriteException(WriteError::dataAreEmpty, url);
        detail::replaceFileKeepingAttributes(url, target, image->data());
    }

    try {
        storage.prepareFinderResourcesValues().write(target);
    } catch (const std::exception&) {
        // The file system's values are a courtesy: the metadata are written.
    }
}

} // namespace corvane
