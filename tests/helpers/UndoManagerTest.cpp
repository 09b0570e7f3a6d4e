#include "corvane/helpers/UndoManager.hpp"

#include <gtest/gtest.h>

using namespace corvane;

namespace {

// A value whose setter registers its own undo, as an application would.
struct Document {
    UndoManager undo;
    int value = 0;
    void set(int v) {
        const int old = value;
        undo.registerUndo([this, old] { set(old); });
        value = v;
    }
};

TEST(UndoManagerTest, GroupsUndoAndRedoWithinTheGivenLevels) {
    Document doc;
    doc.set(1);
    doc.undo.beginUndoGrouping();
    doc.set(2);
    doc.set(3);
    doc.undo.setActionName("Two changes");
    doc.undo.endUndoGrouping();
    EXPECT_EQ(doc.undo.undoActionName(), "Two changes");

    doc.undo.undo();
    EXPECT_EQ(doc.value, 1);
    EXPECT_TRUE(doc.undo.canRedo());
    EXPECT_EQ(doc.undo.redoActionName(), "Two changes");
    doc.undo.redo();
    EXPECT_EQ(doc.value, 3);
    doc.undo.undo();
    doc.undo.undo();
    EXPECT_EQ(doc.value, 0);
    EXPECT_FALSE(doc.undo.canUndo());

    // A new change clears what could be redone.
    doc.set(9);
    EXPECT_FALSE(doc.undo.canRedo());
    // Only the given number of levels are kept.
    Document limited;
    limited.undo.setLevelsOfUndo(2);
    for (int i = 1; i <= 5; ++i)
        limited.set(i);
    limited.undo.undo();
    limited.undo.undo();
    EXPECT_EQ(limited.value, 3);
    EXPECT_FALSE(limited.undo.canUndo());
}

} // namespace
