// Thesaurus text: keywords indented by tabs, one a line, with optional synonyms.

#include "FuzzInput.hpp"

#include "corvane/keyword_support/ThesaurusReader.hpp"
#include "corvane/keyword_support/ThesaurusWriter.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto keywords = ThesaurusReader().read(fuzz::text(data, size));
    (void)ThesaurusWriter().string(keywords);
    return 0;
}
