#include "corvane/tag_value/MediaKind.hpp"

#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

std::string_view MediaKind::rawValue() const {
    switch (case_) {
    case audio:
        return "audio";
    case image:
        return "image";
    case movie:
        return "movie";
    case sidecar:
        return "sidecar";
    case other:
        return "other";
    }
    return "other";
}

std::optional<MediaKind> MediaKind::fromRawValue(std::string_view raw) {
    for (MediaKind kind : allCases())
        if (kind.rawValue() == raw) return kind;
    return std::nullopt;
}

const std::vector<MediaKind>& MediaKind::allCases() {
    static const std::vector<MediaKind> all{audio, image, movie, sidecar, other};
    return all;
}

std::string_view MediaKind::localizationKey() const {
    switch (case_) {
    case audio:
        return "MediaKindAudio";
    case image:
        return "MediaKindImage";
    case movie:
        return "MediaKindMovie";
    case sidecar:
        return "MediaKindSidecar";
    case other:
        return "MediaKindOther";
    }
    return "MediaKindOther";
}

std::string MediaKind::localizedName() const {
    return KitToolbox::localize(localizationKey());
}

} // namespace corvane
