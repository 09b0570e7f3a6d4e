// Sessions, flushes and the order of the edition manager's notifications on the main queue.

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

#include <barrier>
#include <latch>
#include <thread>

namespace corvane {
namespace {

using test::EditionEvent;
using test::EditionRecorder;
using test::folderEditor;
using test::writableNames;

const TagName& artist() {
    return TagItem::itemEXIFArtist().name();
}

class EditionManagerTest : public testing::Test {
protected:
    EditionManager& manager = EditionManager::shared();
    EditionRecorder recorder;
};

// The recorder hears the manager's own notifications and takes the history from the flush's; a
// payload of another type is no history.
TEST_F(EditionManagerTest, OneChangeOutOfSessionGivesBeginFlushWithTheTagEnd) {
    auto editor = folderEditor();
    editor->setValue("Ann", artist());
    EXPECT_TRUE(recorder.pending().empty()) << "notifications go through the main queue";

    auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    const HistoryEdition& history = events[1].history;
    ASSERT_EQ(history.values().size(), 1u);
    EXPECT_EQ(history.tagNames({editor}), HistoryEdition::TagNames{artist()});
    EXPECT_EQ(
        EditionManager::history(Notification(std::string(EditionManager::didFlushHistoryNotification),
                                             &manager, {{"HistoryEdition", std::string("not a history")}})),
        nullptr);

    // A change that changes nothing still flushes, an empty history.
    folderEditor()->setValue(std::nullopt, artist());
    events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    EXPECT_FALSE(events[1].history.hasEditions());

    // A registration out of any session waits for the next flush.
    manager.registerTag(editor, artist());
    MainQueue::shared().drain();
    EXPECT_TRUE(recorder.pending().empty());
    manager.beginSession();
    manager.endSession();
    events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    EXPECT_TRUE(events[1].history.hasEditions({editor}));
}

TEST_F(EditionManagerTest, NestedSessionsMergeIntoOneFlushAtTheOutermostEnd) {
    auto editor = folderEditor();
    const auto names = writableNames(3);
    manager.beginSession();
    {
        EditionManager::Session inner;
        for (const TagName& name : names)
            editor->setValue("x", name);
        EXPECT_TRUE(manager.isInSession());
    }
    EXPECT_TRUE(manager.isInSession());
    MainQueue::shared().drain();
    EXPECT_EQ(EditionRecorder::kinds(recorder.pending()), "begin") << "the flush waits for the outermost end";
    manager.endSession();
    EXPECT_FALSE(manager.isInSession());

    auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    EXPECT_EQ(events[1].history.tagNames({editor}), HistoryEdition::TagNames(names.begin(), names.end()));
}

TEST_F(EditionManagerTest, TheHundredAndFirstRegistrationFlushesInMidSession) {
    auto editor = folderEditor();
    const auto names = writableNames(130);
    ASSERT_EQ(names.size(), 130u);
    {
        EditionManager::Session session;
        for (std::size_t i = 0; i < 100; ++i)
            manager.registerTag(editor, names[i]);
        MainQueue::shared().drain();
        EXPECT_EQ(EditionRecorder::kinds(recorder.pending()), "begin") << "100 registrations stay gathered";
        for (std::size_t i = 100; i < names.size(); ++i)
            manager.registerTag(editor, names[i]);
        MainQueue::shared().drain();
        EXPECT_EQ(EditionRecorder::kinds(recorder.pending()), "begin flush")
            << "the flush doesn't end the session";
        EXPECT_TRUE(manager.isInSession());
    }
    auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush flush end");
    EXPECT_EQ(events[1].history.tagNamesOf(editor)->size(), 101u);
    EXPECT_TRUE(events[1].history.tagNamesOf(editor)->contains(names[100]));
    EXPECT_EQ(events[2].history.tagNamesOf(editor)->size(), 29u);
    EXPECT_FALSE(events[2].history.tagNamesOf(editor)->contains(names[100]));

    // Registrations count even when they repeat a tag.
    {
        EditionManager::Session session;
        for (int i = 0; i < 101; ++i)
            manager.registerTag(editor, artist());
    }
    events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush flush end");
    EXPECT_EQ(events[1].history.tagNamesOf(editor)->size(), 1u);
    EXPECT_FALSE(events[2].history.hasEditions());
}

TEST_F(EditionManagerTest, SessionsOnTwoThreadsShareOneCount) {
    auto editor = folderEditor();
    const auto names = writableNames(2);
    std::latch bothOpen(2);
    std::latch firstEnded(1);
    std::thread first([&] {
        manager.beginSession();
        bothOpen.arrive_and_wait();
        editor->setValue("one", names[0]);
        manager.endSession();
        firstEnded.count_down();
    });
    std::thread second([&] {
        manager.beginSession();
        bothOpen.arrive_and_wait();
        firstEnded.wait();
        EXPECT_TRUE(manager.isInSession()) << "the other thread's session is still open";
        editor->setValue("two", names[1]);
        manager.endSession();
    });
    first.join();
    second.join();

    auto events = recorder.drain();
    ASSERT_EQ(EditionRecorder::kinds(events), "begin flush end");
    EXPECT_EQ(events[1].history.tagNames({editor}), HistoryEdition::TagNames(names.begin(), names.end()));
}

// Editors of one file share a bucket of the history's map but are two keys.
TEST(HistoryEdition, EditorsOfTheSameFileAreTwoKeysAndLocationEditionsAreTheirs) {
    auto a = folderEditor("/photos/trip");
    auto b = folderEditor("/photos/trip");
    auto other = folderEditor("/photos/other");
    EXPECT_EQ(TagEditorHash()(a), TagEditorHash()(b));
    EXPECT_NE(TagEditorHash()(a), TagEditorHash()(other));
    const auto names = writableNames(3);

    HistoryEdition history;
    history.registerTag(a, names[0]);
    history.registerTag(a, names[0]);
    history.registerTag(b, names[1]);
    EXPECT_TRUE(history.hasEditions());
    EXPECT_EQ(history.values().size(), 2u);
    EXPECT_EQ(*history.tagNamesOf(a), HistoryEdition::TagNames{names[0]});
    EXPECT_EQ(*history.tagNamesOf(b), HistoryEdition::TagNames{names[1]});
    EXPECT_EQ(history.tagNamesOf(other), nullptr);

    EXPECT_TRUE(history.hasEditions({other, b}));
    EXPECT_FALSE(history.hasEditions({other}));
    EXPECT_TRUE(history.hasEditions({other, a}, {names[2], names[0]}));
    EXPECT_FALSE(history.hasEditions({a}, {names[1], names[2]}));
    EXPECT_EQ(history.tagNames({a, b, other}), HistoryEdition::TagNames(names.begin(), names.begin() + 2));

    // Location editions look at the location tags only.
    EXPECT_FALSE(history.hasLocationEditions({a}));
    history.registerTag(a, TagName::locationTagNames().back());
    EXPECT_TRUE(history.hasLocationEditions({a}));
    EXPECT_FALSE(history.hasLocationEditions({b}));
}

} // namespace
} // namespace corvane
