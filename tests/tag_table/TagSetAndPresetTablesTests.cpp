// The tag set table and the preset edition table: their rows, and what reloads them.

#include "corvane/preset_support/PresetItem.hpp"
#include "corvane/tag_table/PresetEditionTable.hpp"
#include "corvane/tag_table/TagSetTable.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "tag_table/TableRecorder.hpp"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Domain = TagSetManager::Domain;
using I = TagItem;

class TablesTest : public ::testing::Test {
protected:
    void SetUp() override {
        MainQueue::shared().registerCurrentThreadAsMain();
        MainQueue::shared().drain();
        auto& manager = TagSetManager::shared();
        manager.edit(Domain::application, [](TagSet) {
            return TagSet({TagSection("People"), I::itemEXIFArtist().name(), TagSection("Camera"),
                           I::itemEXIFMake().name(),
                           TagName(TagStream::streamEXIF, TagKey("NotInTheCatalogue"))});
        });
        manager.edit(Domain::photosExtension, [](TagSet) { return TagSet({I::itemXMPSubject().name()}); });
    }
};

TEST_F(TablesTest, TagSetTableShowsKnownTagsThatPassItsFilter) {
    TagSetTable::Request request(Domain::application);
    request.showSections = true;
    auto table = TagSetTable::create(request);
    EXPECT_EQ(table->content()->entries().size(), 4u) << "two headings, two known tags";

    request.filter = TagSetTable::Request::Filter::create([](const TagItem& item) {
        return item.stream() != TagStream::streamEXIF || item.key().rawValue() != "Make";
    });
    TagSetTable::Content filtered(request);
    EXPECT_EQ(filtered.entries(), (std::vector<TagSetTableEntry>{TagSection("People"), &I::itemEXIFArtist()}))
        << "a section whose tags are all refused loses its heading";
    EXPECT_EQ(filtered.with({0, 1}).entries(), filtered.entries()) << "a selection keeps the rows";
    EXPECT_EQ(filtered.with({0, 1}).selection(), (IndexSet{1}));
}

// How a set edit reloads (its domain only, the selection dropped) is shared with the value table and
// tested there; here, that the tag set table hears the edits of its new domain.
TEST_F(TablesTest, TagSetTableReloadsOnDomainChangesAndSetEdits) {
    TagSetTable::Request request(Domain::application);
    request.selection = {0};
    auto table = TagSetTable::create(request);
    test::TableRecorder<TagSetTable> recorder(table);

    request.setDomain(Domain::photosExtension);
    table->reload(request);
    auto events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].type, TagSetTableReloadType::entries);
    EXPECT_EQ(table->content()->entries(), (std::vector<TagSetTableEntry>{&I::itemXMPSubject()}));
    EXPECT_EQ(table->content()->selection(), (IndexSet{0}));

    TagSetManager::shared().append(Domain::photosExtension, {I::itemEXIFModel().name()});
    EXPECT_EQ(recorder.drain().size(), 2u);
    EXPECT_EQ(table->content()->entries().size(), 2u);
}

TEST_F(TablesTest, PresetTableFollowsItsPresetsEntries) {
    auto table = PresetEditionTable::create(PresetEditionTable::Request());
    EXPECT_TRUE(table->content()->entries().empty()) << "no preset, no rows";

    auto preset = PresetItem::create(
        "p", "",
        {{I::itemEXIFArtist().name(), PresetEdition::useCustomValue("Ann")},
         {TagName(TagStream::streamEXIF, TagKey("NotInTheCatalogue")), PresetEdition::useCustomValue("x")}});
    PresetEditionTable::Request request(preset);
    request.convert = PresetEditionTable::Request::Convert::create(
        [](const PresetEditionRow& row) -> std::any { return row.tagItem().displayName(); });
    test::TableRecorder<PresetEditionTable> recorder(table);
    table->reload(request);
    ASSERT_EQ(recorder.drain().size(), 2u);
    ASSERT_EQ(table->content()->entries().size(), 1u) << "the unknown tag shows no row";
    const auto& row = std::get<PresetEditionRow>(table->content()->entries()[0]);
    EXPECT_EQ(std::any_cast<std::string>(row.objectValue()), "Artist");
    EXPECT_TRUE(row.isWritable());
    EXPECT_EQ(preset->entries().size(), 2u) << "but stays in the preset";

    preset->insertEntries({{I::itemEXIFMake().name(), PresetEdition::useCustomValue("Canon")}}, 0);
    auto events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].type, PresetEditionTableReloadType::entries);
    EXPECT_EQ(table->content()->entries().size(), 2u);

    auto other = PresetItem::create();
    other->insertEntries({{I::itemEXIFMake().name(), PresetEdition::useCustomValue("Nikon")}}, 0);
    EXPECT_TRUE(recorder.drain().empty()) << "another preset's change";
}

} // namespace
} // namespace corvane
