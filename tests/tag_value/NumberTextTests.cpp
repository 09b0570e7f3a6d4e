#include "corvane/tag_editor/detail/PrettyText.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/detail/NumberText.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

// Files hold more numbers than a tag's table says, or numbers its type can't hold; ExifTool prints
// them all, and showing them through the tag's converter would change them ("100 0" run together
// into 1000, "-54" dropped from an unsigned list, "undef" from a real one).
TEST(NumberText, NumbersTheConverterWouldMisreadAreShownAsTheyStand) {
    struct Case {
        const TagItem& item;
        std::string text;
        bool whole;
        std::string shown;
    };
    const TagItem& components = *TagName::fromRawValue("EXIF:ComponentsConfiguration")->item();
    const Case cases[] = {
        {TagItem::itemEXIFExifImageWidth(), "100 0", false, "100 0"},
        {TagItem::itemEXIFExifImageWidth(), " 640 ", true, "640"},
        {TagItem::itemEXIFLensInfo(), "15 85 undef undef", false, "15 85 undef undef"},
        {TagItem::itemEXIFLensInfo(), "15 85 3.5 5.6", true, "15 85 3.5 5.6"},
        {components, "1 2 -3 0", false, "1 2 -3 0"},
        {components, "1 2 3 0", true, "Y, Cb, Cr, -"},
        {TagItem::itemEXIFArtist(), "100 0", true, "100 0"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.item.name().rawValue() + " = " + c.text);
        EXPECT_EQ(detail::convertsWholly(c.item, c.text), c.whole);
        EXPECT_EQ(detail::prettyText(c.item, c.text), c.shown);
    }
}

} // namespace
} // namespace corvane
