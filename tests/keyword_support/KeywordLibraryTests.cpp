// The keyword library: notifications posted only for real changes and with the editions a view
// needs, removal anywhere in the forest, the file form and its strict keys, and the storage beside
// the user defaults (owner-only file, fallback under the key, failures that change nothing).

#include "corvane/keyword_support/KeywordFile.hpp"
#include "corvane/keyword_support/KeywordManager.hpp"
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

    const auto read = KeywordFile::fromJSONData(text);
    EXPECT_EQ(read.description(), "Mine");
    EXPECT_EQ(read.jsonData(), text);
    EXPECT_NE(read.items()[0], animals) << "reading makes new objects";

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
        auto last = root;
        for (std::size_t level = 1; level < levels; ++level) {
            auto child = Item::create(std::to_string(level));
            last->insertChildren({child}, 0);
            last = child;
        }
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
    std::filesystem::remove(dataFile);
    { std::ofstream(dataFile) << R"({"items": 3})"; }
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

} // namespace
} // namespace corvane
