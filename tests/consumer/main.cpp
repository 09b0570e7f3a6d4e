// Uses a few public types the way an application does and checks what it gets; exits non-zero,
// naming the check, when the library it was built against misbehaves.

#include "corvane/Version.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/value_models/CoordinateParser.hpp"

#include <iostream>
#include <string_view>

// The library's build settings stay its own.
#if defined(CORVANE_SOURCE_DIR) || defined(CORVANE_HAVE_EXIV2) || defined(CORVANE_HAVE_GEONAMES)
#error "a private definition of the library reached its consumer"
#endif

static int failures = 0;

static void check(bool ok, std::string_view what) {
    if (ok) return;
    std::cerr << "consumer: " << what << '\n';
    ++failures;
}

int main() {
    using namespace corvane;
    check(std::string_view(CORVANE_VERSION).starts_with("0."), "version header");

    const auto jpeg = MediaType::type(std::filesystem::path("holiday.JPG"));
    check(jpeg && jpeg->kind() == MediaKind::image, "format registry: JPG is an image");
    check(jpeg && jpeg->access(TagStream::streamEXIF) == TagAccess::rwc, "format registry: EXIF in JPEG");
    check(MediaType::allCases().size() == 289, "format registry: the folder and 288 formats");

    // The catalogue is data linked into the library.
    const TagItem* artist = TagItem::find("EXIF", "Artist");
    check(artist && artist->displayName() == "Artist" && artist->isWritable(), "catalogue: EXIF:Artist");

    const auto position = CoordinateParser::coordinate("40 26 46 N, 79 58 56 W");
    check(position.has_value(), "coordinate parser");

    try {
        throw Error("caught as the library's error base");
    } catch (const std::exception&) {
    }
    if (failures == 0) std::cout << "Corvane " << CORVANE_VERSION << ": consumer checks passed\n";
    return failures == 0 ? 0 : 1;
}
