#include "TaskTestsSupport.hpp"

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/EditionTask.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <set>

using namespace corvane;
using namespace corvane::testing;

namespace {

const std::vector<std::string_view> editionNotes = {EditionManager::didBeginSessionNotification,
                                                    EditionManager::didFlushHistoryNotification,
                                                    EditionManager::didEndSessionNotification};

std::shared_ptr<TagEditor> makeEditor(const std::string& path) {
    return TagEditor::create(TagStorage(TagStorageSource(path)));
}

class TaskEditionTest : public ::testing::Test {
protected:
    void SetUp() override { TearDown(); }
    void TearDown() override {
        TaskManager::shared().waitAllTasks();
        drainMainQueue();
    }
};

} // namespace

TEST_F(TaskEditionTest, EditsOfManyEditorsMakeOneFlushOnTheEditionQueue) {
    const auto artist = *TagName::fromRawValue("EXIF:Artist");
    std::vector<std::shared_ptr<TagEditor>> editors;
    for (int i = 0; i < 12; ++i)
        editors.push_back(makeEditor("/tmp/corvane-edition-task-" + std::to_string(i) + ".jpg"));

    std::mutex seenMutex;
    std::set<TagEditor*> seen;
    std::atomic<int> outOfPlace{0}; // out of a session or off the edition queue
    auto task = std::make_shared<EditionTask>(editors, [&](const std::shared_ptr<TagEditor>& editor) {
        if (!EditionManager::shared().isInSession() ||
            !TaskManager::shared().editionTasksQueue().isCurrentQueue())
            ++outOfPlace;
        editor->unsafeSetValue("Ada", artist);
        std::lock_guard lock(seenMutex);
        seen.insert(editor.get());
    });
    EXPECT_FALSE(task->label().has_value());
    EXPECT_EQ(task->taskDescription(), "Untitled Edition (Pending)");
    NoteRecorder recorder(editionNotes, &EditionManager::shared());

    TaskManager::shared().add(task);
    TaskManager::shared().waitAllTasks();
    drainMainQueue();

    EXPECT_EQ(outOfPlace.load(), 0);
    EXPECT_FALSE(EditionManager::shared().isInSession());
    EXPECT_EQ(seen.size(), editors.size());
    EXPECT_TRUE(task->errors().empty());
    EXPECT_EQ(task->status(), AbstractTask::Status::completed);
    for (const auto& editor : editors)
        EXPECT_EQ(editor->writtenValue(artist), "Ada");
    // One session, one flush that names every editor.
    ASSERT_EQ(recorder.names(), (std::vector<std::string>{"EditionManagerDidBeginSessionNotification",
                                                          "EditionManagerDidFlushHistoryNotification",
                                                          "EditionManagerDidEndSessionNotification"}));
    const HistoryEdition* history = EditionManager::history(recorder.notes[1]);
    ASSERT_NE(history, nullptr);
    for (const auto& editor : editors)
        EXPECT_TRUE(history->hasEditions({editor}, {artist}));
}

TEST_F(TaskEditionTest, FailingEditionClosesItsSession) {
    auto task = std::make_shared<EditionTask>("Broken", [] { throw std::runtime_error("Edition failed"); });
    EXPECT_EQ(task->label(), "Broken");
    EXPECT_EQ(task->title(), "Broken");
    task->perform();
    EXPECT_FALSE(EditionManager::shared().isInSession());
    ASSERT_EQ(task->errors().size(), 1u);
    EXPECT_EQ(task->errorListDescription(), "- Edition failed");
    EXPECT_EQ(task->status(), AbstractTask::Status::completed);
}
