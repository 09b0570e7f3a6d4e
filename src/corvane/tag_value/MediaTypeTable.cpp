#include "corvane/tag_value/MediaType.hpp"

// The compiled-in table of file formats, expanded from two lists: the formats (MediaTypes.inc) and
// the rights of each group of like formats (detail/MediaTypeAccess.inc). Each format is one lazily
// built constant; allCases lists the folder first, then the formats in the list's order.

namespace corvane {

namespace {

// One function per group of like formats: access<group>().
#define CORVANE_RIGHT(family, right) {TagStream::stream##family, TagAccess::right},
#define CORVANE_ACCESS(group, rights)                                                                        \
    MediaType::AccessMap access##group() {                                                                   \
        return {rights};                                                                                     \
    }
#include "corvane/tag_value/detail/MediaTypeAccess.inc"
#undef CORVANE_ACCESS
#undef CORVANE_RIGHT

// A format's own rights, completed by a shared group's rights on the families it doesn't list.
MediaType::AccessMap merged(MediaType::AccessMap own, const MediaType::AccessMap& more) {
    for (const auto& [stream, right] : more)
        own.emplace(stream, right);
    return own;
}

MediaType::AccessMap everyStreamCreatable() {
    MediaType::AccessMap access;
    for (const TagStream& stream : TagStream::allCases())
        access.emplace(stream, TagAccess::rwc);
    return access;
}

} // namespace

// A folder has no extension and takes every tag of every family.
const MediaType& MediaType::typeFolder() {
    static const MediaType t("", MediaKind::other, everyStreamCreatable());
    return t;
}

#define CORVANE_MEDIA_TYPE(constant, format, kind, rights, moreRights)                                       \
    const MediaType& MediaType::type##constant() {                                                           \
        static const MediaType t(format, MediaKind::kind, merged(access##rights(), access##moreRights()));   \
        return t;                                                                                            \
    }
#include "corvane/tag_value/MediaTypes.inc"
#undef CORVANE_MEDIA_TYPE

const std::vector<MediaType>& MediaType::allCases() {
    static const std::vector<MediaType> all{
        typeFolder(),
#define CORVANE_MEDIA_TYPE(constant, ...) type##constant(),
#include "corvane/tag_value/MediaTypes.inc"
#undef CORVANE_MEDIA_TYPE
    };
    return all;
}

} // namespace corvane
