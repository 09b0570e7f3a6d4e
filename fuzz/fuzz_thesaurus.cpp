// Thesaurus text: keywords indented by tabs, one a line, with optional synonyms.

#include "FuzzInput.hpp"

#include "corvane/keyword_support/ThesaurusReader.hpp"
#include "corvane/keyword_support/ThesaurusWriter.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        (void)ThesaurusWriter().string(ThesaurusReader().read(fuzz::text(data, size)));
    } catch (const Error&) { // the reader's errors: no root item, for one
    }
    return 0;
}
