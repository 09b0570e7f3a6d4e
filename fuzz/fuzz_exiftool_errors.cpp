// ExifTool's error stream and the messages in its JSON output, matched against a command's
// targets (paths may hold " - " and line breaks).

#include "FuzzInput.hpp"

#include "corvane/exiftool_wrapper/detail/ETArgumentFile.hpp"
#include "corvane/exiftool_wrapper/detail/ETRunOutput.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const detail::ETCommand command{{"-j", "-G"},
                                           {"/photos/a.jpg", "/photos/b - c.jpg", "/photos/line\nbreak.jpg"},
                                           {"/photos/trip"},
                                           true,
                                           false};
    const auto [selector, text] = fuzz::selectorAndRest(fuzz::text(data, size));
    std::vector<ETFileMessage> messages, excused;
    std::vector<std::string> unknown;
    if (selector & 1)
        detail::parseErrorText(std::string(text), command, messages, unknown);
    else
        detail::collectJSONMessages(std::string(text), command, messages, excused);
    return 0;
}
