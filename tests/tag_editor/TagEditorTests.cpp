// The editor on one storage: the change frame and what it registers, forceValue,
// source changes, the folder settings of ExifTool editors, image I/O access. Editors as keys are
// the history's test.

#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/NoteRecorder.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

#include <thread>

namespace corvane {
namespace {

using test::EditionEvent;
using test::EditionRecorder;

const TagName& artist() {
    return TagItem::itemEXIFArtist().name();
}
const TagName& keywords() {
    return TagItem::itemIPTCKeywords().name();
}
const TagName& subject() {
    return TagItem::itemXMPSubject().name();
}
TagName unknownTag() {
    return TagName(TagStream::streamEXIF, TagKey("NotInTheCatalogue"));
}

TagStorage jpegStorage(const char* path = "/photos/shot.jpg") {
    TagStorage storage{TagStorageSource(path)};
    storage.setOriginalValue("Ann", artist());
    storage.setOriginalValue("sea", keywords());
    return storage;
}

// The storage's own tests check the values each setter leaves; these check what the editor
// registers for them.

// The tags of the one flush that a change out of any session produces.
HistoryEdition::TagNames flushedTags(EditionRecorder& recorder, const std::shared_ptr<TagEditor>& editor) {
    auto events = recorder.drain();
    EXPECT_EQ(EditionRecorder::kinds(events), "begin flush end");
    if (events.size() != 3) return {};
    const auto* names = events[1].history.tagNamesOf(editor);
    return names ? *names : HistoryEdition::TagNames();
}

class TagEditorTest : public testing::Test {
protected:
    EditionRecorder recorder;
};

TEST_F(TagEditorTest, EveryChangingSetterRegistersWhatChanged) {
    auto editor = ETTagEditor::create(jpegStorage());
    editor->setValue("Bob", artist());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});

    editor->setValue("Bob", artist()); // same value: nothing changes, the frame still runs
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{});

    editor->setOriginalValue("Bob", artist()); // the edit becomes the original
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});
    editor->unsafeSetValue("Bob", artist()); // no comparison: an edit equal to the original
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});
    editor->unsafeSetValue(std::nullopt, artist());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});

    // A tag that can't be edited is silently left alone, and registers nothing.
    const TagStorage before = editor->storage();
    editor->setValue("x", unknownTag());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{});
    editor->forceValue(unknownTag());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{});
    EXPECT_EQ(editor->storage(), before);
}

TEST_F(TagEditorTest, ForceValueMakesTheCurrentValueAnEdit) {
    auto editor = ETTagEditor::create(jpegStorage());

    // A value equal to the original, which setValue would never keep as an edit.
    editor->forceValue(artist());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});
    EXPECT_TRUE(editor->isValueEdited(artist()));
    EXPECT_EQ(editor->writtenValue(artist()), "Ann");

    // A pending edit stays as it is, and is registered again.
    editor->setValue("Bob", keywords());
    recorder.drain();
    editor->forceValue(keywords());
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{keywords()});
    EXPECT_EQ(editor->writtenValue(keywords()), "Bob");

    // A tag without any value: written as the empty string, so the save clears it.
    const TagName& title = TagItem::itemXMPSubject().name();
    auto folder = ETTagEditor::create(TagStorage(TagStorageSource("/photos/trip")));
    folder->forceValue(title);
    EXPECT_EQ(flushedTags(recorder, folder), HistoryEdition::TagNames{title});
    EXPECT_EQ(folder->writtenValue(title), "");
}

TEST_F(TagEditorTest, ListOperationsRegisterEveryNameTheStorageGives) {
    auto editor = ETTagEditor::create(jpegStorage());
    editor->setValue("Bob", artist());
    editor->setValue("", keywords());
    recorder.drain();

    const TagStorage before = editor->flushChanges();
    EXPECT_EQ(before.writtenValue(artist()), "Bob") << "the storage as it stood before the flush";
    EXPECT_EQ(flushedTags(recorder, editor), (HistoryEdition::TagNames{artist(), keywords()}));

    editor->cleanStorage({TagStream::streamEXIF});
    EXPECT_EQ(flushedTags(recorder, editor), HistoryEdition::TagNames{artist()});
}

// A reload registers the old and the new originals, changed or not, in one session (how many
// registrations flush in mid-session is the manager's test; the pending edits it keeps, the storage's).
TEST_F(TagEditorTest, AReloadRegistersEveryOriginal) {
    auto editor = ETTagEditor::create(jpegStorage());
    TagStorage read{TagStorageSource("/photos/shot.jpg")};
    read.setOriginalValue("sea", keywords());
    read.setOriginalValue("boat", subject());
    editor->reloadValues(read);
    EXPECT_EQ(flushedTags(recorder, editor), (HistoryEdition::TagNames{artist(), keywords(), subject()}));
}

TEST_F(TagEditorTest, UpdateSourceKeepsTheValuesAndNotifiesOnTheCallingThread) {
    auto editor = ETTagEditor::create(jpegStorage());
    editor->setValue("Bob", artist());
    const auto temporary = editor->temporaryURL();
    const std::size_t hash = TagEditorHash()(editor);
    recorder.drain();

    test::NoteRecorder moved(TagEditor::didChangeSourceNotification);
    std::thread([&] {
        editor->updateSource(TagStorageSource("/photos/moved.jpg", std::nullopt, std::string("pw")));
    }).join();

    // Heard before this thread drains its main queue: posted synchronously on the calling thread.
    ASSERT_EQ(moved.notes.size(), 1u);
    EXPECT_EQ(moved.notes[0].object<TagEditor>(), editor);
    EXPECT_EQ(editor->filename(), "moved.jpg");
    EXPECT_EQ(editor->source().password(), "pw");
    EXPECT_EQ(editor->temporaryURL(), temporary);
    EXPECT_EQ(editor->writtenValue(artist()), "Bob");
    EXPECT_EQ(editor->originalValue(keywords()), "sea");
    EXPECT_EQ(TagEditorHash()(editor), hash) << "a key in a container stays findable";
    EXPECT_TRUE(recorder.drain().empty()) << "no session, no registration";
}

TEST_F(TagEditorTest, FolderSettingsOfAnExifToolEditor) {
    auto editor = ETTagEditor::create(TagStorage(TagStorageSource("/photos/trip")));
    EXPECT_FALSE(editor->recurseSubfolders());
    EXPECT_FALSE(editor->storage().recurseSubfolders().has_value()) << "reading doesn't store the default";

    test::NoteRecorder recurse(ETTagEditor::didChangeRecurseSubfoldersNotification);
    test::NoteRecorder filter(ETTagEditor::didChangeFilePathFilterNotification);
    editor->setRecurseSubfolders(false);
    EXPECT_EQ(editor->storage().recurseSubfolders(), std::optional<bool>(false)) << "stored as present";
    editor->modifyRecurseSubfolders([](bool& value) { value = !value; });
    EXPECT_TRUE(editor->recurseSubfolders());
    editor->setFilePathFilter(ETPathFilter{"jpg", "tif"});
    editor->modifyFilePathFilter([](std::optional<ETPathFilter>& value) { value->addExtension("png"); });
    EXPECT_EQ(editor->filename(), "trip/**.JPG|TIF|PNG");

    ASSERT_EQ(recurse.notes.size(), 2u);
    EXPECT_EQ(recurse.notes[0].name(), "ETTagEditorDidChangeRecurseSuboldersNotification");
    EXPECT_EQ(recurse.notes[0].object<ETTagEditor>(), editor);
    ASSERT_EQ(filter.notes.size(), 2u);
    EXPECT_EQ(filter.notes[1].name(), "ETTagEditorDidChangeFilePathFilterNotification");
    EXPECT_TRUE(recorder.drain().empty()) << "folder settings are no tag edits";
}

TEST_F(TagEditorTest, ImageIOEditorHidesTagsWithoutImageIOName) {
    auto storage = jpegStorage();
    storage.setOriginalValue("boat", subject());

    auto cg = CGTagEditor::create(storage);
    auto et = ETTagEditor::create(storage);
    EXPECT_EQ(cg->access(subject()), TagAccess::n);
    EXPECT_NE(et->access(subject()), TagAccess::n);
    EXPECT_TRUE(cg->canReadValue(subject())) << "the storage answers, not the overridden access";
    EXPECT_EQ(cg->originalValue(subject()), "boat");
    EXPECT_EQ(cg->access(artist()), et->access(artist()));
    EXPECT_TRUE(cg->canEditValue(subject()));

    std::shared_ptr<TagEditor> asBase = cg;
    EXPECT_EQ(asBase->access(subject()), TagAccess::n) << "virtual through the base";
}

} // namespace
} // namespace corvane
