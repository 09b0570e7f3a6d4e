// The tag value table: rows merged across editors, sections and filters, selection and value set,
// the three reload paths chosen by the request diff, the partial reload after an edit, tag-set
// edits, and reloads asked for from several threads at once.

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_table/TagValueTable.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_table/TableRecorder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

namespace corvane {
namespace {

using Domain = TagSetManager::Domain;
using Kind = TagValueTableReloadType::Kind;
using Recorder = test::TableRecorder<TagValueTable>;
using I = TagItem;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;

// People: Artist, By-line; Camera: Make, Model; Unused: Software (no file has it); an unknown tag.
TagSet testSet() {
    return TagSet({TagSection("People"), I::itemEXIFArtist().name(), I::itemIPTCBy_line().name(),
                   TagSection("Camera"), I::itemEXIFMake().name(), I::itemEXIFModel().name(),
                   TagSection("Unused"), I::itemEXIFSoftware().name(),
                   TagName(TagStream::streamEXIF, TagKey("NotInTheCatalogue"))});
}

const TagValueRow& row(const TagValueTable::Content& content, std::size_t index) {
    return std::get<TagValueRow>(content.entries().at(index));
}

std::vector<std::string> rowNames(const TagValueTable::Content& content) {
    std::vector<std::string> names;
    for (const auto& entry : content.entries())
        names.push_back(std::holds_alternative<TagSection>(entry)
                            ? "[" + std::get<TagSection>(entry).rawValue() + "]"
                            : std::get<TagValueRow>(entry).tagItem().name().rawValue());
    return names;
}

// Every row as a view shows it, for comparing a content with another: the name and marks, then
// one value as 'x' or differing values as {'x' 'y'}.
std::vector<std::string> shownRows(const TagValueTable::Content& content) {
    std::vector<std::string> rows;
    for (const auto& entry : content.entries()) {
        const auto* row = std::get_if<TagValueRow>(&entry);
        if (!row) continue;
        std::string text = row->tagItem().name().rawValue() + (row->isEdited() ? " edited" : "") +
                           (row->canBeEdited() ? "" : " locked") + ":";
        if (const auto* single = row->string().singleValue()) text += " '" + *single + "'";
        if (const auto* values = row->string().multipleValues()) {
            text += " {";
            for (const auto& value : *values)
                text += "'" + value + (&value == &*values->rbegin() ? "'}" : "' ");
        }
        rows.push_back(text);
    }
    return rows;
}

class TagValueTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        MainQueue::shared().registerCurrentThreadAsMain();
        MainQueue::shared().drain();
        TagSetManager::shared().edit(Domain::application, [](TagSet) { return testSet(); });
    }

    TagValueTable::Request request(bool showSections = false) const {
        TagValueTable::Request r(Domain::application, {canon, nikon});
        r.showSections = showSections;
        return r;
    }

    TagEditorRef canon = test::editorWith(
        {{&I::itemEXIFArtist(), "Ann"}, {&I::itemEXIFMake(), "Canon"}, {&I::itemEXIFModel(), "R5"}},
        "/photos/a.jpg");
    TagEditorRef nikon =
        test::editorWith({{&I::itemEXIFArtist(), "Ann"}, {&I::itemEXIFMake(), "Nikon"}}, "/photos/b.jpg");
};

TEST_F(TagValueTableTest, RowsMergeEachTagAcrossTheEditors) {
    auto content = TagValueTable::create(request())->content();
    EXPECT_EQ(shownRows(*content),
              (std::vector<std::string>{"EXIF:Artist: 'Ann'", "IPTC:By-line:", "EXIF:Make: {'Canon' 'Nikon'}",
                                        "EXIF:Model: {'' 'R5'}", "EXIF:Software:"}))
        << "no headings without showSections; the unknown tag gives no row; a file without the value "
           "differs from one with it";
    EXPECT_EQ(row(*content, 0).editors().size(), 2u);
    EXPECT_THAT(shownRows(*TagValueTable::create(TagValueTable::Request(Domain::application))->content()),
                Each(Not(HasSubstr(" "))))
        << "no editor: no value, no edit, none refuses";
}

TEST_F(TagValueTableTest, HeadingsShowOnlyAboveRowsThatPassTheFilter) {
    auto r = request(true);
    using Names = std::vector<std::string>;
    const auto names = [&] { return rowNames(TagValueTable::Content(r)); };
    EXPECT_EQ(names(), (Names{"[People]", "EXIF:Artist", "IPTC:By-line", "[Camera]", "EXIF:Make",
                              "EXIF:Model", "[Unused]", "EXIF:Software"}));
    r.filter.valueStateConstraint = TagValueFilter::ValueStateConstraint::with;
    EXPECT_EQ(names(), (Names{"[People]", "EXIF:Artist", "[Camera]", "EXIF:Make", "EXIF:Model"}));
    r.filter.valueStateConstraint = TagValueFilter::ValueStateConstraint::without;
    EXPECT_EQ(names(), (Names{"[People]", "IPTC:By-line", "[Unused]", "EXIF:Software"}));

    r.filter = {};
    r.filter.nameConstraint = TagValueFilter::StringConstraint::contains("MAK");
    EXPECT_EQ(names(), (Names{"[Camera]", "EXIF:Make"}));
    r.filter.nameConstraint = TagValueFilter::StringConstraint::matches("^By");
    EXPECT_EQ(names(), (Names{"[People]", "IPTC:By-line"}));
    r.filter.nameConstraint = {};
    r.filter.valueConstraint = TagValueFilter::StringConstraint::contains("nik");
    EXPECT_EQ(names(), (Names{"[Camera]", "EXIF:Make"}))
        << "how a search reads its words is the merged values' test";
}

// A copy for another selection is the reload test's (a selection change) and the tag set table's.
TEST_F(TagValueTableTest, SelectionKeepsValueRowsAndMergesThem) {
    auto r = request(true);
    r.selection = {0, 4, 5, 99}; // a heading, Make, Model, past the end
    TagValueTable::Content content(r);
    EXPECT_EQ(content.selection(), (IndexSet{4, 5}));
    EXPECT_EQ(content.valueSet().string(), MultiValuedString::multiple({"", "Canon", "Nikon", "R5"}));
    EXPECT_EQ(content.valueSet().tagItems(),
              (std::vector<const TagItem*>{&I::itemEXIFMake(), &I::itemEXIFModel()}));
    EXPECT_EQ(content.indexes(TagSection("Camera")), (IndexSet{4, 5}));
    EXPECT_TRUE(content.indexes(TagSection("Lens")).isEmpty());
    EXPECT_EQ(content.names({5, 0, 1}),
              (std::vector<TagName>{I::itemEXIFArtist().name(), I::itemEXIFModel().name()}));

    const TagValueSet nothing = content.with({}).valueSet();
    EXPECT_TRUE(nothing.string().isNone() && !nothing.isEdited() && nothing.canBeEdited() &&
                nothing.isSupported())
        << "an empty selection: no value, no edit, nothing refused";
}

TEST_F(TagValueTableTest, ValueSetOffersTheChoicesThatEverySelectedTagOffers) {
    auto editors = std::make_shared<const TagValueSet::Editors>();
    using Choices = std::vector<TagValueSet::Choice>;
    EXPECT_EQ(TagValueSet(editors, {&I::itemEXIFContrast(), &I::itemEXIFSharpness()}).filteredChoices(),
              (Choices{{"0", "Normal"}}));
    EXPECT_EQ(TagValueSet(editors, {&I::itemEXIFSaturation(), &I::itemEXIFContrast()}).filteredChoices(),
              (Choices{{"0", "Normal"}, {"1", "Low"}, {"2", "High"}}));
    EXPECT_TRUE(TagValueSet(editors, {}).filteredChoices().empty());
}

TEST_F(TagValueTableTest, ReloadsDoOnlyWhatTheRequestDiffAsksFor) {
    std::atomic<int> conversions{0};
    auto r = request(true);
    r.convert = TagValueTable::Request::Convert::create(
        [&](const TagValueRow&) -> std::any { return ++conversions; });
    auto table = TagValueTable::create(r);
    Recorder recorder(table);
    const int firstConversions = conversions;
    EXPECT_EQ(firstConversions, 5) << "one conversion per row";

    table->reload(r);
    EXPECT_TRUE(recorder.drain().empty()) << "an unchanged request posts nothing";

    r.selection = {1};
    table->reload(r);
    auto events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_TRUE(events[0].isWill && events[0].isReloading && events[0].onMainThread);
    EXPECT_TRUE(!events[1].isWill && !events[1].isReloading && events[1].onMainThread);
    EXPECT_EQ(events[1].type, TagValueTableReloadType::selection);
    EXPECT_EQ(conversions, firstConversions) << "a selection change rebuilds no row";
    EXPECT_EQ(table->content()->valueSet().string(), MultiValuedString::single("Ann"));

    r.convert = r.convert->copy(); // the same code, another identity
    table->reload(r);
    events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].type, TagValueTableReloadType::entries);
    EXPECT_EQ(conversions, firstConversions + 5);
    EXPECT_EQ(table->content()->selection(), (IndexSet{1}));
    EXPECT_EQ(TagValueTable::reloadType(Notification("Other")), std::nullopt);
}

TEST_F(TagValueTableTest, AnEditRebuildsOnlyTheTouchedRowsWithoutFilteringAgain) {
    std::atomic<int> conversions{0};
    auto r = request();
    r.filter.valueStateConstraint = TagValueFilter::ValueStateConstraint::with; // Artist, Make, Model
    r.convert = TagValueTable::Request::Convert::create(
        [&](const TagValueRow&) -> std::any { return ++conversions; });
    auto table = TagValueTable::create(r);
    Recorder recorder(table);
    conversions = 0;

    nikon->setValue("Bob", I::itemEXIFArtist().name());
    auto events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].type, TagValueTableReloadType::values(std::nullopt));
    EXPECT_EQ(events[1].type, TagValueTableReloadType::values(IndexSet{0}));
    EXPECT_EQ(conversions, 1) << "only the touched row, rebuilt as a full reload would (the next test)";

    {
        EditionManager::Session session;
        canon->setValue("", I::itemEXIFArtist().name());
        nikon->setValue("", I::itemEXIFArtist().name());
    }
    events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].type, TagValueTableReloadType::values(IndexSet{0}));
    ASSERT_EQ(table->content()->entries().size(), 3u)
        << "the row that no longer passes stays until a full reload";
    EXPECT_TRUE(row(*table->content(), 0).string().isNone());

    auto stranger = test::editorWith({{&I::itemEXIFArtist(), "Eve"}}, "/photos/c.jpg");
    stranger->setValue("Zoe", I::itemEXIFArtist().name());
    EXPECT_TRUE(recorder.drain().empty()) << "an edit of another editor leaves the table alone";
}

// Rows updated from the edited editors alone must end exactly as rows built over all editors: the
// same distinct values in the same order (the empty text first), the same marks.
TEST_F(TagValueTableTest, PartialReloadsEndWhereAFullReloadWould) {
    std::vector<TagEditorRef> editors;
    for (int i = 0; i < 20; ++i)
        editors.push_back(test::editorWith({{&I::itemEXIFArtist(), i % 2 ? "Ann" : "Bob"},
                                            {&I::itemEXIFMake(), "Make " + std::to_string(i)}},
                                           "/photos/p" + std::to_string(i) + ".jpg"));
    editors.push_back(editors[3]); // listed twice
    editors.push_back(test::editorWith({{&I::itemEXIFArtist(), "Ann"}}, "/music/song.mp3"));
    TagValueTable::Request r(Domain::application, editors);
    r.showSections = true;
    r.selection = {1, 4}; // Artist, Make
    auto table = TagValueTable::create(r);
    Recorder recorder(table);
    const auto artist = I::itemEXIFArtist().name(), make = I::itemEXIFMake().name(),
               byLine = I::itemIPTCBy_line().name();
    ASSERT_TRUE(shownRows(*table->content())[2].find(" locked") != std::string::npos)
        << "the sound file can't take a Make: " << shownRows(*table->content())[2];

    const auto step = [&](const std::string& what, const std::function<void()>& edit) {
        SCOPED_TRACE(what);
        {
            EditionManager::Session session;
            edit();
        }
        auto events = recorder.drain();
        ASSERT_EQ(events.size(), 2u);
        ASSERT_EQ(events[1].type.kind(), Kind::values);
        const auto partial = table->content();
        const TagValueTable::Content full(partial->request());
        EXPECT_EQ(shownRows(*partial), shownRows(full));
        EXPECT_EQ(partial->valueSet(), full.valueSet());
    };
    step("a value appears", [&] { editors[0]->setValue("Cy", artist); });
    step("it vanishes, another becomes shared", [&] { editors[0]->setValue("Ann", artist); });
    step("the empty text, in an editor listed twice", [&] {
        editors[3]->setValue("", artist);
        editors[3]->setValue("", make);
    });
    step("many editors at once", [&] {
        for (std::size_t i = 0; i < 20; ++i)
            editors[i]->setValue(i < 10 ? "Canon" : "Nikon", make);
    });
    step("a tag no file had", [&] { editors[7]->setValue("Dee", byLine); });
    step("restored and saved", [&] {
        editors[0]->setValue(std::nullopt, make);
        editors[7]->flushChanges();
    });
    step("everyone agrees again", [&] {
        for (std::size_t i = 0; i < 20; ++i)
            editors[i]->setValue("Ann", artist);
    });

    // Copies of a content share what their rows were read from; copies that reload the same edit at
    // once, on two threads (run under ThreadSanitizer by the lead), must each come out right.
    TagValueTable::Content first = *table->content(), second = first;
    editors[5]->setValue("Eve", artist);
    recorder.drain();
    HistoryEdition history;
    history.registerTag(editors[5], artist);
    std::thread other([&] { EXPECT_EQ(first.reloadValues(history), (IndexSet{1})); });
    EXPECT_EQ(second.reloadValues(history), (IndexSet{1}));
    other.join();
    EXPECT_EQ(shownRows(first), shownRows(TagValueTable::Content(first.request())));
    EXPECT_EQ(shownRows(second), shownRows(first));
}

TEST_F(TagValueTableTest, ATagSetEditReloadsInFullAndDropsTheSelection) {
    auto r = request();
    r.selection = {0};
    auto table = TagValueTable::create(r);
    Recorder recorder(table);
    TagSetManager::shared().append(Domain::photosExtension, {I::itemEXIFCopyright().name()});
    EXPECT_TRUE(recorder.drain().empty()) << "another domain's edit";

    TagSetManager::shared().append(Domain::application, {I::itemEXIFCopyright().name()});
    auto events = recorder.drain();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].type, TagValueTableReloadType::entries);
    EXPECT_EQ(table->content()->entries().size(), 6u);
    EXPECT_TRUE(table->content()->selection().isEmpty());
    EXPECT_EQ(table->latestRequest().selection, (IndexSet{0})) << "the stored request keeps its selection";
}

// Run under ThreadSanitizer by the lead: requests stored and diffed from several threads while the
// main thread drains.
TEST_F(TagValueTableTest, ConcurrentReloadsFromSeveralThreadsEndOnTheLatestRequest) {
    auto table = TagValueTable::create(request());
    Recorder recorder(table);
    std::atomic<int> running{4};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            std::mt19937 random(static_cast<unsigned>(t));
            for (int i = 0; i < 40; ++i) {
                auto r = request(random() % 2 == 0);
                r.selection = {static_cast<std::size_t>(random() % 6)};
                table->reload(r);
                (void)table->content()->entries().size();
            }
            --running;
        });
    EXPECT_TRUE(MainQueue::shared().runUntil([&] { return running == 0; }, std::chrono::seconds(60)));
    for (auto& thread : threads)
        thread.join();
    auto events = recorder.drain();

    const auto content = table->content();
    EXPECT_EQ(content->request(), table->latestRequest())
        << "the last operation diffs against the latest request";
    EXPECT_EQ(content->entries().size(), content->request().showSections ? 8u : 5u);
    EXPECT_EQ(table->processCount(), 0);
    for (std::size_t i = 0; i < events.size(); ++i)
        EXPECT_EQ(events[i].isWill, i % 2 == 0) << "will and did alternate: one reload at a time";
}

} // namespace
} // namespace corvane
