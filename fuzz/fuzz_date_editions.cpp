// Date editions as preset files and the command line describe them: "shift(...)", "update(...)".

#include "FuzzInput.hpp"

#include "corvane/value_models/DateEdition.hpp"
#include "corvane/value_models/DateValues.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(fuzz::text(data, size));
    if (auto edition = DateEdition::fromDescription(text)) (void)edition->description();
    (void)DateValues::fromDescription(text).description();
    return 0;
}
