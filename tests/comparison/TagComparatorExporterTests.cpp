#include "corvane/comparison/RichTextDocument.hpp"
#include "corvane/comparison/TagComparatorExporter.hpp"
#include "corvane/csv_support/detail/Utf8.hpp"
#include "corvane/exiftool_wrapper/detail/ProgramRun.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/utilities/FileError.hpp"

#include "ComparisonFixtures.hpp"
#include "support/FileBytes.hpp"
#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace corvane {
namespace utf8 = detail::utf8;
namespace {

namespace fs = std::filesystem;
using test::name;
using test::storageWith;

TagComparatorTable twoFileTable() {
    TagStorage first = storageWith("/p/a.jpg", {{"EXIF:Make", "ACME"}, {"EXIF:Artist", "Zoë"}});
    TagStorage second = storageWith("/p/b.jpg", {{"EXIF:Make", "ACME"}, {"IPTC:Keywords", "k1,k2"}});
    second.unsafeSetValue("Neu", name("EXIF:Artist"));
    return TagComparatorTable::fromStorages({first, second});
}

TEST(ComparisonExporter, TextPadsColumnsByUTF16UnitsAndDelimitedFormJoinsWithSemicolonBlank) {
    using E = TagComparatorExporter;
    const std::string expected = E::padded("Tags", 40) + " : " + E::padded("a.jpg", 80) + "; " +
                                 E::padded("b.jpg", 80) + "\n\n\nEXIF\n" + E::padded("EXIF Artist", 40) +
                                 " : " + E::padded("Zoë", 80) + "; " + E::padded("Neu", 80) + "\n" +
                                 E::padded("EXIF Make", 40) + " : " + E::padded("ACME", 80) + "; " +
                                 E::padded("ACME", 80) + "\n\nIPTC\n" + E::padded("IPTC Keywords", 40) +
                                 " : " + E::padded("", 80) + "; " + E::padded("k1,k2", 80) + "\n";
    EXPECT_EQ(E(twoFileTable()).txtString(), expected);

    EXPECT_EQ(
        E(TagComparatorTable::fromStorages({storageWith("/p/a.jpg", {{"EXIF:Make", "ACME"}})})).txtString(),
        "EXIF\n" + E::padded("EXIF Make", 40) + " : " + E::padded("ACME", 80) + "\n");
    EXPECT_EQ(TagComparatorExporter::padded("Zoë", 5), "Zoë  ");
    EXPECT_EQ(TagComparatorExporter::padded("😀", 3), "😀 "); // two UTF-16 units
    const std::string longName(45, 'x');
    EXPECT_EQ(TagComparatorExporter::padded(longName, 40), longName);
    EXPECT_EQ(TagComparatorExporter(twoFileTable()).csvString(), "Tags; a.jpg; b.jpg\n"
                                                                 "EXIF\n"
                                                                 "EXIF Artist; Zoë; Neu\n"
                                                                 "EXIF Make; ACME; ACME\n"
                                                                 "IPTC\n"
                                                                 "IPTC Keywords; ; k1,k2\n");
}

TEST(ComparisonExporter, FormatsAndFiles) {
    EXPECT_EQ(TagComparatorExporter::allFormats().size(), 3u);
    EXPECT_EQ(TagComparatorExporter::formatFromPathExtension(".CSV"), TagComparatorExporter::Format::csv);
    EXPECT_EQ(TagComparatorExporter::formatFromPathExtension("doc"), std::nullopt);

    test::TemporaryFolder folder("corvane-comparison");
    TagComparatorExporter exporter(twoFileTable());
    for (auto format : TagComparatorExporter::allFormats()) {
        const fs::path url = folder / ("out." + std::string(TagComparatorExporter::pathExtension(format)));
        exporter.exportTo(format, url);
        EXPECT_EQ(test::fileBytes(url), exporter.exportedString(format));
    }
    EXPECT_THROW(exporter.exportAsTXT(folder / "no" / "such" / "folder.txt"), FileError);
}

TEST(RichText, ControlCharactersBecomeControlWordsInABalancedASCIIDocument) {
    // Characters are checked by the round trip through unrtf below, which folds blanks.
    EXPECT_EQ(RichTextDocument::escaped("1\n2\t3\r\n"), "1\\par\n2\\tab 3\\par\n");

    const std::string rtf = TagComparatorExporter(twoFileTable()).rtfString();
    EXPECT_TRUE(rtf.starts_with("{\\rtf1\\ansi"));
    EXPECT_NE(rtf.find("{\\fonttbl{\\f0\\fmodern\\fcharset0 Menlo;}{\\f1\\fmodern\\fcharset0 Menlo-Bold;}}"),
              std::string::npos);
    EXPECT_NE(rtf.find("{\\colortbl;"), std::string::npos);
    EXPECT_TRUE(std::all_of(rtf.begin(), rtf.end(), [](unsigned char c) { return c < 0x80; }))
        << "ASCII only";
    // Braces balance, so readers find the end of the document.
    int depth = 0;
    for (std::size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\') {
            ++i;
            continue;
        }
        depth += rtf[i] == '{' ? 1 : rtf[i] == '}' ? -1 : 0;
        ASSERT_GE(depth, 0);
    }
    EXPECT_EQ(depth, 0);
}

// unrtf prints characters outside ASCII through its configuration's `unisymbol_print`; the stock
// text configuration has none, so the test adds one that writes each UTF-16 unit as "&#n;".
std::string unrtfText(const fs::path& rtf, const fs::path& configFolder) {
    fs::create_directories(configFolder);
    for (const auto& entry : fs::directory_iterator("/usr/share/unrtf"))
        fs::copy_file(entry.path(), configFolder / entry.path().filename(),
                      fs::copy_options::overwrite_existing);
    std::ofstream(configFolder / "text.conf", std::ios::app) << "unisymbol_print\n\t&#%;\n";

    return detail::runProgram({"unrtf", "-P", configFolder.string(), "--text", rtf.string()},
                              std::chrono::seconds(30))
        .standardOutput;
}

// A text as unrtf prints it with that configuration: ASCII as it is, every other character as its
// UTF-16 units; runs of blanks, which unrtf folds, folded into one blank.
std::string asPrinted(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const char32_t c = utf8::decode(text, i);
        if (c >= 0x10000)
            out += "&#" + std::to_string(0xD800 + ((c - 0x10000) >> 10)) + ";&#" +
                   std::to_string(0xDC00 + ((c - 0x10000) & 0x3FF)) + ";";
        else if (c >= 0x80)
            out += "&#" + std::to_string(c) + ";";
        else if (c != ' ' && c != '\n' && c != '\t')
            out += static_cast<char>(c);
        else if (!out.empty() && out.back() != ' ')
            out += ' ';
    }
    return out;
}

TEST(ComparisonExporter, RichTextOfRealFilesConvertsBackToEveryValue) {
    if (!fs::exists("/usr/bin/unrtf")) GTEST_SKIP() << "unrtf is not installed";
    test::TemporaryFolder folder("corvane-comparison-rtf");
    const fs::path a = test::makeJPEG(folder / "première.jpg");
    const fs::path b = test::makeJPEG(folder / "second.jpg");
    test::tagWithExifTool(a, {"-EXIF:Artist=Zoë Ünsal 東京 😀", "-EXIF:Make=ACME {braces} \\ back",
                              "-IPTC:Keywords=Été", "-IPTC:Keywords=Hiver", "-XMP:Title=Ça va ? Oui !"});
    test::tagWithExifTool(b, {"-EXIF:Artist=Ørjan Ølstad", "-EXIF:Make=ACME {braces} \\ back",
                              "-XMP:Title=Привет мир", "-XMP:Rating=3", "-XMP:Creator=Ørjan Ølstad"});

    ETTagStorageReader::Settings settings({TagStorageSource(a), TagStorageSource(b)});
    settings.setEnableRawValues(true);
    settings.setEnableShortTags(true);
    settings.setDisableComposite(true);
    settings.setupDefaultBannedValues();
    ETTagStorageReader reader(settings);
    auto storages = reader.readStorages();
    std::vector<TagStorage> ordered{storages.at(a), storages.at(b)};
    ordered[1].unsafeSetValue("Édité ✓", name("EXIF:Artist"));

    TagComparatorTable table = TagComparatorTable::fromStorages(ordered);
    const fs::path rtf = folder / "comparison.rtf";
    TagComparatorExporter(table).exportAsRTF(rtf);
    const std::string text = asPrinted(unrtfText(rtf, folder / "unrtf"));

    std::size_t checked = 0;
    for (const std::string& title : table.titles())
        EXPECT_NE(text.find(asPrinted(title)), std::string::npos) << title;
    for (const auto& group : table) {
        EXPECT_NE(text.find(group.name().stream.rawValue()), std::string::npos);
        for (const auto& entry : group) {
            EXPECT_NE(text.find(asPrinted(entry.key().localizedText())), std::string::npos)
                << entry.key().localizedText();
            for (const auto& value : entry.values()) {
                if (!value.string) continue;
                EXPECT_NE(text.find(asPrinted(*value.string)), std::string::npos) << *value.string;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 20u);
    for (const char* expected :
         {"Zoë Ünsal 東京 😀", "ACME {braces} \\ back", "Привет мир", "Édité ✓", "Ørjan Ølstad"})
        EXPECT_NE(text.find(asPrinted(expected)), std::string::npos) << expected;
}

} // namespace
} // namespace corvane
