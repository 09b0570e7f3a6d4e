#include "corvane/utilities/EngineVersions.hpp"

#ifdef CORVANE_HAVE_EXIV2
#include <exiv2/version.hpp>
#endif

namespace corvane {

std::optional<std::string> imageEngineVersion() {
#ifdef CORVANE_HAVE_EXIV2
    return Exiv2::versionString();
#else
    return std::nullopt;
#endif
}

} // namespace corvane
