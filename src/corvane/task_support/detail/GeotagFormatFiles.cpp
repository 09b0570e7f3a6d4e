#include "corvane/task_support/detail/GeotagFormatFiles.hpp"

// The files are linked in as they stand, so that the library needs no resource folder at run time.
__asm__(".section .rodata\n"
        ".globl corvane_gpx_format_begin\n"
        "corvane_gpx_format_begin:\n"
        ".incbin \"" CORVANE_SOURCE_DIR "/data/gpx.fmt\"\n"
        ".globl corvane_gpx_format_end\n"
        "corvane_gpx_format_end:\n"
        ".globl corvane_kml_format_begin\n"
        "corvane_kml_format_begin:\n"
        ".incbin \"" CORVANE_SOURCE_DIR "/data/kml.fmt\"\n"
        ".globl corvane_kml_format_end\n"
        "corvane_kml_format_end:\n"
        ".previous\n");

extern "C" const char corvane_gpx_format_begin[];
extern "C" const char corvane_gpx_format_end[];
extern "C" const char corvane_kml_format_begin[];
extern "C" const char corvane_kml_format_end[];

namespace corvane::detail {

std::string_view geotagFormatFile(std::string_view name) {
    if (name == "gpx") return {corvane_gpx_format_begin, corvane_gpx_format_end};
    if (name == "kml") return {corvane_kml_format_begin, corvane_kml_format_end};
    return {};
}

} // namespace corvane::detail
