#include "TaskTestsSupport.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/EditionTask.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <gtest/gtest.h>

#include <atomic>

using namespace corvane;
using namespace corvane::testing;

namespace {

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

    std::atomic<int> outOfSession{0}; // the editors' blocks run side by side, all in the task's session
    auto task = std::make_shared<EditionTask>(editors, [&](const std::shared_ptr<TagEditor>& editor) {
        if (!EditionManager::shared().isInSession()) ++outOfSession;
        editor->unsafeSetValue("Ada", artist);
    });
    EXPECT_FALSE(task->label().has_value());
    EXPECT_EQ(task->taskDescription(), "Untitled Edition (Pending)");
    test::EditionRecorder recorder;

    TaskManager::shared().add(task);
    TaskManager::shared().waitAllTasks();

    EXPECT_EQ(outOfSession.load(), 0);
    EXPECT_FALSE(EditionManager::shared().isInSession());
    EXPECT_TRUE(task->errors().empty());
    // Every editor edited, in one session, with one flush that names every editor.
    const auto events = recorder.drain();
    ASSERT_EQ(test::EditionRecorder::kinds(events), "begin flush end");
    for (const auto& editor : editors) {
        EXPECT_EQ(editor->writtenValue(artist), "Ada");
        EXPECT_TRUE(events[1].history.hasEditions({editor}, {artist}));
    }
}

// A labelled edition runs on the edition queue inside a session, which its failure closes.
TEST_F(TaskEditionTest, ALabelledEditionRunsOnTheEditionQueueInASessionThatAFailureCloses) {
    std::atomic<bool> onEditionQueue{false}, inSession{false};
    auto task = std::make_shared<EditionTask>("Broken", [&] {
        onEditionQueue = TaskManager::shared().editionTasksQueue().isCurrentQueue();
        inSession = EditionManager::shared().isInSession();
        throw std::runtime_error("Edition failed");
    });
    EXPECT_EQ(task->title(), "Broken");
    TaskManager::shared().add(task);
    TaskManager::shared().waitAllTasks();
    EXPECT_TRUE(onEditionQueue.load() && inSession.load());
    EXPECT_FALSE(EditionManager::shared().isInSession());
    EXPECT_EQ(task->errorListDescription(), "- Edition failed");
}
