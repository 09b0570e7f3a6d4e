// The keyword library: notifications posted only for real changes and with the editions a view
// needs, removal anywhere in the forest, the file form and its strict keys, and the storage beside
// the user defaults (owner-only file, fallback under the key, failures that change nothing).

#include "corvane/keyword_support/KeywordFile.hpp"
#include "corvane/keyword_support/KeywordManager.hpp"
#include "corvane/keyword_support/ThesaurusReader.hpp"
#include "corvane/keyword_support/ThesaurusWriter.hpp"
#include "corvane/utilities/CaseException.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "support/NoteRecorder.hpp"
#include "support/ScratchDefaults.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

#include <sys/stat.h>

namespace corvane {
namespace {

using Recorder = test::NoteRecorder;
using test::ScratchDefaults;

using Item = KeywordItem;

TEST(KeywordItemTest, PostsOnlyRealChangesWithTheirEditions) {
    auto item = Item::create("Animals");
    Recorder info(Item::didChangeInfoNotification);
    Recorder children(Item::didChangeChildrenNotification);

    item->setName("Animals");
    item->setIsHeader(false);
    item->setSynonyms({});
    item->modifyIsPerson([](bool&) {});
    EXPECT_TRUE(info.notes.empty()) << "unchanged values post nothing";
    item->setName("Fauna");
    item->modifySynonyms([](auto& synonyms) { synonyms.push_back("Beasts"); });
    ASSERT_EQ(info.notes.size(), 2u);
    EXPECT_EQ(info.notes[0].sender(), item.get());

    item->insertChildren({Item::create("Cat"), Item::create("Dog")}, 0);
    item->insertChildren({Item::create("Bird"), Item::create("Fish")}, 1);
    EXPECT_EQ(item->children()[3]->name(), "Dog");
    item->removeChildren({});
    item->setChildren(item->children());
    item->removeChildren({0, 2});
    item->modifyChildren([](auto& list) { list.push_back(Item::create("Cat")); });
    EXPECT_EQ(children.each(&Item::childrenEdition),
              (std::vector<std::optional<Item::ChildrenEdition>>{
                  Item::InsertChildren{{0, 1}}, Item::InsertChildren{{1, 2}}, Item::RemoveChildren{{0, 2}},
                  Item::ReloadChildren{}}))
        << "an empty removal and the same list post nothing";
    EXPECT_FALSE(Item::childrenEdition(info.notes[0])) << "another notification carries no edition";
}

TEST(KeywordManagerTest, RemovingAnywhereInformsOnlyTheParentThatLostIt) {
    auto manager = KeywordManager::create();
    auto root = Item::create("Places");
    auto child = Item::create("Europe");
    auto grandchild = Item::create("Paris");
    auto other = Item::create("People");
    child->insertChildren({grandchild}, 0);
    root->insertChildren({child}, 0);
    other->insertChildren({grandchild, Item::create("Ann")}, 0); // the same object twice in the forest
    manager->insertItems({root, other}, 0);
    EXPECT_EQ(manager->countItemsAndChildren(), 6u);
    EXPECT_TRUE(root->hasChild(grandchild));
    EXPECT_FALSE(child->hasChild(root));
    std::vector<std::string> visited;
    manager->transformItems([&](const KeywordItemRef& item) { visited.push_back(item->name()); });
    EXPECT_EQ(visited, (std::vector<std::string>{"Places", "Europe", "Paris", "People", "Paris", "Ann"}));

    Recorder items(KeywordManager::didChangeItemsNotification);
    Recorder children(Item::didChangeChildrenNotification);
    manager->removeItem(grandchild);
    EXPECT_TRUE(items.notes.empty()) << "the roots didn't change";
    ASSERT_EQ(children.notes.size(), 2u);
    EXPECT_EQ(children.notes[0].sender(), child.get());
    EXPECT_EQ(Item::childrenEdition(children.notes[0]), Item::ChildrenEdition(Item::RemoveChildren{{0}}));
    EXPECT_EQ(children.notes[1].sender(), other.get());
    EXPECT_FALSE(root->hasChild(grandchild));

    manager->removeItem(other);
    manager->setSelectedItem(root);
    manager->setSelectedItem(root);
    manager->setItems(manager->items());
    EXPECT_EQ(items.each(&KeywordManager::itemEdition),
              (std::vector<std::optional<KeywordManager::ItemEdition>>{KeywordManager::RemoveItems{{1}},
                                                                       KeywordManager::ReloadSelection{}}))
        << "the same selection and the same roots post nothing more";
}

TEST(KeywordFileTest, ReadsStrictKeywordsAndLenientWrapperAndWritesOnlyTreesItReadsBack) {
    auto cat = Item::create("Cat");
    cat->setIsPerson(true);
    cat->setSynonyms({"Kitty", "Puss"});
    auto animals = Item::create("Animals");
    animals->setIsHeader(true);
    animals->insertChildren({cat}, 0);
    const KeywordFile file("Mine", {animals});
    const auto text = file.jsonData();
    EXPECT_NE(text.find("\n  \"items\": ["), std::string::npos) << "pretty-printed";

    EXPECT_EQ(KeywordFile::fromJSONData(text).jsonData(), text);

    const std::string keyword =
        R"({"name":"A","is_header":false,"is_person":false,"synonyms":[],"children":[]})";
    EXPECT_FALSE(KeywordFile::fromJSONData(R"({"items":[)" + keyword + "]}").description());
    EXPECT_FALSE(KeywordFile::fromJSONData(R"({"description":7,"items":[)" + keyword + "]}").description());
    EXPECT_EQ(KeywordFile::fromJSONData("[" + keyword + "]").items().size(), 1u)
        << "a bare array of keywords";
    EXPECT_THROW(KeywordFile::fromJSONData(R"({"description":"x"})"), KeywordFile::DecodingError);
    EXPECT_THROW(KeywordFile::fromJSONData(
                     R"({"items":[{"name":"A","is_header":false,"is_person":false,"synonyms":[]}]})"),
                 KeywordFile::DecodingError)
        << "every key of a keyword is required";
    ScratchDefaults defaults;
    const auto chain = [](std::size_t levels) {
        auto root = Item::create("0");
        for (auto last = root; --levels > 0; last = last->children()[0])
            last->insertChildren({Item::create(std::to_string(levels))}, 0);
        return root;
    };
    auto manager = KeywordManager::create();
    manager->setItems({chain(KeywordFile::maxDepth)});
    manager->saveToDefaults();
    auto loaded = KeywordManager::create();
    loaded->loadFromDefaults();
    EXPECT_EQ(loaded->countItemsAndChildren(), KeywordFile::maxDepth)
        << "the deepest tree written reads back";

    const auto stored = KitSettings::shared().userDefaults()->preferenceFileURL("QRVeywords");
    const auto before = KeywordFile::fromJSONURL(stored).jsonData();
    manager->setItems({chain(KeywordFile::maxDepth + 1)});
    EXPECT_THROW(manager->saveToDefaults(), KeywordFile::DepthError);
    EXPECT_THROW(KeywordFile({}, manager->items()).exportTo(defaults.folder / "deep.json"),
                 KeywordFile::DepthError);
    EXPECT_FALSE(std::filesystem::exists(defaults.folder / "deep.json"));
    EXPECT_EQ(KeywordFile::fromJSONURL(stored).jsonData(), before)
        << "a refused save leaves the library as it was";
}

TEST(KeywordManagerTest, StoresBesideTheDefaultsAndFallsBackToTheKey) {
    ScratchDefaults defaults;
    auto manager = KeywordManager::create();
    manager->loadFromDefaults();
    EXPECT_TRUE(manager->items().empty()) << "nothing stored";
    manager->insertItems({Item::create("Kept")}, 0);
    manager->saveToDefaults();
    const auto dataFile = defaults.folder / "QRVeywords.data";
    struct stat status {};
    ASSERT_EQ(::stat(dataFile.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_FALSE(KitSettings::shared().userDefaults()->contains("QRVeywords"));

    auto loaded = KeywordManager::create();
    Recorder items(KeywordManager::didChangeItemsNotification);
    loaded->loadFromDefaults();
    EXPECT_EQ(items.each(&KeywordManager::itemEdition),
              std::vector<std::optional<KeywordManager::ItemEdition>>{KeywordManager::ReloadItems{}});
    EXPECT_EQ(loaded->items()[0]->name(), "Kept");

    // A broken file throws, names itself, and changes nothing.
    std::ofstream(dataFile) << R"({"items": 3})";
    const auto before = loaded->items();
    EXPECT_THAT([&] { loaded->loadFromDefaults(); },
                testing::ThrowsMessage<KeywordFile::DecodingError>(testing::HasSubstr(dataFile.string())));
    EXPECT_EQ(loaded->items(), before);

    // Where the data file can't be written (a folder stands in its place), the library goes under
    // the key and is read from there.
    std::filesystem::remove(dataFile);
    std::filesystem::create_directory(dataFile);
    manager->saveToDefaults();
    EXPECT_TRUE(KitSettings::shared().userDefaults()->contains("QRVeywords"));
    auto fromKey = KeywordManager::create();
    fromKey->loadFromDefaults();
    ASSERT_EQ(fromKey->items().size(), 1u);
    EXPECT_EQ(fromKey->items()[0]->name(), "Kept");
}

// Thesaurus text: a tree with headers and synonyms read, written and read again to the same tree;
// the cases the line pattern decides (read with ICU's rules); the three reading failures.

using ReadingError = ThesaurusReader::ReadingError;
using testing::StrEq;
using testing::ThrowsMessage;

std::optional<ReadingError> failure(std::string_view text) {
    try {
        ThesaurusReader().read(text);
    } catch (const CaseException<ReadingError>& e) {
        return e.error();
    }
    return std::nullopt;
}

// name, "[name]" for a header, synonyms in braces, children in parentheses.
std::string shape(const std::vector<KeywordItemRef>& items) {
    std::string text;
    for (const auto& item : items) {
        text += item->isHeader() ? "[" + item->name() + "]" : item->name();
        for (const auto& synonym : item->synonyms())
            text += "{" + synonym + "}";
        if (!item->children().empty()) text += "(" + shape(item->children()) + ")";
        text += ' ';
    }
    return text;
}

TEST(ThesaurusTest, ReadsWritesAndReadsBackTheSameTree) {
    const std::string text = "[People]\n"
                             "\tZoë\n"
                             "\t\t{Zo}\n"
                             "\tAnn\n"
                             "\n"
                             "Places\n"
                             "\t{Locations}\n"
                             "\t{Areas}\n"
                             "\t[Europe]\n"
                             "\t\tParis\n";
    const auto items = ThesaurusReader().read(text);
    EXPECT_EQ(shape(items), "[People](Zoë{Zo} Ann ) Places{Locations}{Areas}([Europe](Paris ) ) ");
    EXPECT_FALSE(items[0]->isPerson());

    items[0]->children()[0]->setIsPerson(true);
    const std::string written = ThesaurusWriter().string(items);
    EXPECT_EQ(written,
              "[People]\n\tAnn\n\tZoë\n\t\t{Zo}\nPlaces\n\t{Areas}\n\t{Locations}\n\t[Europe]\n\t\tParis\n")
        << "sorted by name at each level, synonyms too";
    const auto again = ThesaurusReader().read(written);
    EXPECT_EQ(shape(again), "[People](Ann Zoë{Zo} ) Places{Areas}{Locations}([Europe](Paris ) ) ");
    EXPECT_FALSE(again[0]->children()[1]->isPerson()) << "the text has no mark for people";
    EXPECT_EQ(ThesaurusWriter().string(again), written);

    test::TemporaryFolder folder;
    ThesaurusWriter().write(items, folder / "k.txt");
    struct stat status {};
    ASSERT_EQ(::stat((folder / "k.txt").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_EQ(shape(ThesaurusReader().readAt(folder / "k.txt")), shape(again));
    EXPECT_THAT([] { ThesaurusWriter().data({}); },
                ThrowsMessage<CaseException<ThesaurusWriter::WritingError>>(StrEq("Data are empty")));
}

TEST(ThesaurusTest, LinesReadAsTheLinePatternSays) {
    // A synonym one tab in belongs to the root, whatever came between.
    EXPECT_EQ(shape(ThesaurusReader().read("A\n\tB\n\t\tC\n\t{S}\n")), "A{S}(B(C ) ) ");
    // The depth map keeps the last keyword of every depth: D hangs under B, from the earlier root.
    EXPECT_EQ(shape(ThesaurusReader().read("A\n\tB\nC\n\t\tD\n")), "A(B(D ) ) C ");
    // No name inside the marks: the plain form takes the whole line.
    EXPECT_EQ(shape(ThesaurusReader().read("[]\n{}\n[\n")), "[] {} [ ");
    // "." takes a tab: a line of tabs is a keyword named by its last tab.
    EXPECT_EQ(ThesaurusReader().read("A\n\t\t\n")[0]->children()[0]->name(), "\t");
    // "$" matches before a final carriage return, which "." doesn't take.
    const auto crlf = ThesaurusReader().read("[H]\r\n\tName\r\n");
    EXPECT_EQ(shape(crlf), "[H](Name ) ");
    EXPECT_EQ(ThesaurusReader::capturesMatches("\t[H]"), (std::array<std::string, 4>{"\t", "[", "H", "]"}));
    EXPECT_EQ(ThesaurusReader::capturesMatches("X"), (std::array<std::string, 4>{"", "", "X", ""}))
        << "empty groups that take part count";

    EXPECT_EQ(failure("\r\n"), ReadingError::lineDoesNotMatchPattern);
    EXPECT_EQ(failure("\t\tX\n"), ReadingError::lineIndentationIsInvalid);
    EXPECT_EQ(failure("{S}\n"), ReadingError::lineIndentationIsInvalid);
    EXPECT_EQ(failure("\t\t\n"), ReadingError::lineIndentationIsInvalid) << "a tab named at depth 1";
    EXPECT_EQ(failure(""), ReadingError::rootItemIsMissing);
    EXPECT_EQ(failure("\n\n"), ReadingError::rootItemIsMissing);
    EXPECT_THAT([] { ThesaurusReader().read(std::string_view("\t\tX")); },
                ThrowsMessage<Error>(StrEq("Line indentation is invalid")));
}

} // namespace
} // namespace corvane
