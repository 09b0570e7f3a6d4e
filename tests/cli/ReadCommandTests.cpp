// `corvane read`: readable and raw values, the tags picked, and the JSON and CSV forms, run as the
// built program and compared with what ExifTool prints for the same files.
#include "cli/CliRun.hpp"
#include "support/Corpus.hpp"
#include "support/SampleFiles.hpp"

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace corvane::test;

using ReadCommand = CliTest;

// The rows "Family:Key<TAB>value" of the plain form.
std::string row(const std::string& name, const std::string& value) {
    return "\n" + name + "\t" + value + "\n";
}

// A JPEG with values that read differently as stored and as a person reads them.
fs::path photo(const fs::path& path) {
    makeJPEG(path);
    tagWithExifTool(path,
                    {"-n", "-EXIF:ResolutionUnit=2", "-EXIF:Flash=9", "-EXIF:ExposureTime=0.00625",
                     "-EXIF:FNumber=2.8", "-EXIF:Orientation=6", "-EXIF:ComponentsConfiguration=1 2 3 0",
                     "-EXIF:Artist=Ann, Bo", "-XMP:Subject=one", "-XMP:Subject=two", "-XMP:Artist=Xavier"});
    return path;
}

TEST_F(ReadCommand, tagsArePickedCaseInsensitively) {
    const auto jpeg = photo(folder / "a.jpg");
    // A bare name takes the preferred family the file holds: EXIF before XMP.
    auto bare = cliOK({"read", "-t", "artist", "-t", "FLASH", jpeg.string()});
    EXPECT_EQ(bare.out, "======== " + jpeg.string() + "\nEXIF:Artist\tAnn, Bo\nEXIF:Flash\tOn, Fired\n");

    auto family = cliOK({"read", "--tag", "xmp:*", "-t", "Exif:Orientation", jpeg.string()});
    EXPECT_THAT(family.out, HasSubstr(row("XMP:Artist", "Xavier")));
    EXPECT_THAT(family.out, HasSubstr(row("EXIF:Orientation", "Rotate 90 CW")));
    EXPECT_THAT(family.out, Not(HasSubstr("EXIF:Flash")));

    auto every = cli({"read", "-t", "*:Artist", jpeg.string()});
    EXPECT_THAT(every.out, HasSubstr("EXIF:Artist"));
    EXPECT_THAT(every.out, HasSubstr("XMP:Artist"));

    // A name only maker notes have, in several makers' notes: the user must say which.
    auto ambiguous = cliExits(2, {"read", "-t", "shuttercount", jpeg.string()});
    EXPECT_THAT(ambiguous.err, HasSubstr("\"shuttercount\" is ambiguous"));
    EXPECT_THAT(ambiguous.err, HasSubstr("Canon:ShutterCount"));
    EXPECT_TRUE(ambiguous.out.empty()) << ambiguous.out;

    for (const std::string unknown : {"NoSuchTag", "Nofamily:Artist"})
        EXPECT_THAT(cliExits(2, {"read", "-t", unknown, jpeg.string()}).err, HasSubstr(unknown));
}

// Values read as ExifTool prints them, or as stored with -n, in the plain form, JSON and CSV.
TEST_F(ReadCommand, readableByDefaultRawOnRequestInEveryForm) {
    const auto a = photo(folder / "a.jpg");
    const auto pretty = cliOK({"read", a.string()}).out;
    for (const std::string tag :
         {"ResolutionUnit", "Flash", "ExposureTime", "Orientation", "ComponentsConfiguration"})
        EXPECT_THAT(pretty, HasSubstr(row("EXIF:" + tag, exifToolValue(a, "EXIF:" + tag))));
    EXPECT_THAT(pretty, HasSubstr(row("EXIF:FNumber", "2.8")));
    const auto raw = cliOK({"read", "-n", a.string()}).out;
    EXPECT_THAT(raw, HasSubstr(row("EXIF:Flash", "9")));
    EXPECT_THAT(raw, Not(HasSubstr("1/160")));

    const auto b = makeJPEG(folder / "b.jpg");
    tagWithExifTool(b, {"-EXIF:Artist=Only \"quoted\"", "-EXIF:LensInfo=15 85 undef undef",
                        "-XMP:Subject=Smith, John", "-XMP:Title=A back\\slash, \u00e9 and a\ttab"});
    auto run = cliOK({"read", "--json", a.string(), b.string()});
    const auto json = nlohmann::json::parse(run.out);
    ASSERT_EQ(json.size(), 2u) << run.out;
    EXPECT_EQ(json[0].at("SourceFile"), a.string());
    EXPECT_EQ(json[0].at("EXIF:FNumber"), 2.8);
    EXPECT_EQ(json[0].at("EXIF:ExposureTime"), "1/160");
    EXPECT_EQ(json[0].at("XMP:Subject"), nlohmann::json::array({"one", "two"}));
    EXPECT_EQ(json[1].at("EXIF:Artist"), "Only \"quoted\"");
    EXPECT_EQ(json[1].at("XMP:Title"), "A back\\slash, \u00e9 and a\ttab");
    // Numbers the tag's type can't hold, and one keyword holding a comma, as the file has them.
    EXPECT_EQ(json[1].at("EXIF:LensInfo"), "15 85 undef undef");
    EXPECT_EQ(json[1].at("XMP:Subject"), nlohmann::json::array({"Smith, John"}));

    const auto rawJSON = nlohmann::json::parse(cliOK({"read", "--json", "-n", a.string()}).out).at(0);
    EXPECT_EQ(rawJSON.at("EXIF:Flash"), 9);
    EXPECT_EQ(rawJSON.at("EXIF:ExposureTime"), 0.00625);

    auto csv = cliOK({"read", "--csv", "-t", "EXIF:Artist", "-t", "EXIF:Flash", a.string(), b.string()});
    EXPECT_EQ(csv.out, "SourceFile,EXIF:Artist,EXIF:Flash\n" + a.string() + ",\"Ann, Bo\",\"On, Fired\"\n" +
                           b.string() + ",\"Only \"\"quoted\"\"\",\n");

    cliExits(2, {"read", "--csv", "--json", a.string()});
}

// ExifTool's warnings are shown with the file they concern, when reading and when writing; -q hides
// them, and they don't change the exit code.
TEST_F(ReadCommand, warningsPerFileUnlessQuiet) {
    // ExifTool writes this file only by passing over a minor fault, which it reports as a warning.
    const auto minor = makeJPEGWithMinorExifDefect(folder / "minor.jpg");
    const auto good = makeJPEG(folder / "good.jpg");
    // ExifTool puts it both in the file's record and on standard error: it is shown once.
    EXPECT_EQ(cliOK({"read", "-t", "EXIF:Artist", minor.string()}).err,
              "corvane: " + minor.string() + ": warning: [minor] Incorrect EXIF segment identifier\n");
    auto run = cliOK({"set", "EXIF:Artist=A", "--", good.string(), minor.string()});
    EXPECT_THAT(run.err, StartsWith("corvane: " + minor.string() + ": warning: "));
    EXPECT_THAT(run.err, Not(HasSubstr(good.string())));
    auto quiet = cliOK({"-q", "set", "EXIF:Artist=B", "--", good.string(), minor.string()});
    EXPECT_EQ(quiet.err, "");
    EXPECT_THAT(quiet.out, HasSubstr("2 files updated"));

    // A file that ends inside its frame header, after its EXIF: ExifTool reads the EXIF and warns.
    const auto cut = makeJPEG(folder / "cut.jpg");
    tagWithExifTool(cut, {"-EXIF:Artist=Cut"});
    const std::string bytes = fileBytes(cut);
    writeText(cut, bytes.substr(0, bytes.find("\xFF\xC0") + 6));
    const std::string warning = "corvane: " + cut.string() + ": warning: JPEG format error\n";
    for (const std::string form : {"--raw", "--json", "--csv"}) {
        auto read = cliOK({"read", form, "-t", "EXIF:Artist", good.string(), cut.string()});
        EXPECT_EQ(read.err, warning) << form;
        EXPECT_THAT(read.out, HasSubstr("Cut"));
    }
    auto quietRead = cliOK({"-q", "read", cut.string()});
    EXPECT_EQ(quietRead.err, "");
    EXPECT_THAT(quietRead.out, HasSubstr(row("EXIF:Artist", "Cut")));
    // ExifTool's own group, where it puts its warnings, is no family of the file's tags.
    EXPECT_THAT(quietRead.out, Not(HasSubstr("\nExifTool:")));
}

// Every tag of the corpus's JPEGs whose catalogue entry has choices reads as the title that
// ExifTool prints for it. Strict for the standard families; maker notes and XMP rows that stand for
// several of ExifTool's tables (a model's variant, another XMP namespace with the same name) may
// print otherwise, and are listed, not failed.
TEST_F(ReadCommand, choiceTitlesAgreeWithExifToolOnTheCorpus) {
    const fs::path corpus = corpusFolder();
    const fs::path samples = corpus / "jpeg" / "exif-samples";
    if (!fs::is_directory(samples)) GTEST_SKIP() << "no corpus at " << corpus;
    std::vector<std::string> files;
    for (const char* name : {"Canon_40D.jpg", "Nikon_D70.jpg", "Pentax_K10D.jpg", "Olympus_C8080WZ.jpg",
                             "Fujifilm_FinePix_E500.jpg", "Sony_HDR-HC3.jpg", "Panasonic_DMC-FZ30.jpg"})
        // Canonical: both programs name the file as given, and corvane normalises it.
        if (fs::exists(samples / name)) files.push_back(fs::canonical(samples / name).string());
    ASSERT_FALSE(files.empty());

    auto exifTool = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), files.begin(), files.end());
        return nlohmann::json::parse(runExifTool(arguments).standardOutput);
    };
    const auto printedRecords = exifTool({"-j", "-G0:1", "-s"});
    const auto rawRecords = exifTool({"-j", "-G0:1", "-s", "-n"});
    std::vector<std::string> readArguments{"read", "--json"};
    readArguments.insert(readArguments.end(), files.begin(), files.end());
    const auto ours = nlohmann::json::parse(cliOK(readArguments).out);
    ASSERT_EQ(ours.size(), files.size());

    auto text = [](const nlohmann::json& value) {
        if (value.is_string()) return value.get<std::string>();
        if (!value.is_array()) return value.dump();
        std::string joined;
        for (const auto& element : value)
            joined += (joined.empty() ? "" : ", ") +
                      (element.is_string() ? element.get<std::string>() : element.dump());
        return joined;
    };
    // ExifTool's values of one file by our Family:Key (the maker's group for maker notes), first wins.
    auto byName = [&](const nlohmann::json& records, const nlohmann::json& source) {
        std::map<std::string, std::string> values;
        for (const auto& record : records) {
            if (record.at("SourceFile") != source) continue;
            for (const auto& [group, value] : record.items()) {
                const auto first = group.find(':'), second = group.find(':', first + 1);
                if (second == std::string::npos) continue;
                const std::string g0 = group.substr(0, first),
                                  g1 = group.substr(first + 1, second - first - 1);
                values.emplace((g0 == "MakerNotes" ? g1 : g0) + ":" + group.substr(second + 1), text(value));
            }
        }
        return values;
    };
    const std::set<std::string> strictFamilies{"EXIF", "IPTC", "ICC_Profile", "JFIF", "File", "Photoshop"};
    std::size_t compared = 0;
    std::vector<std::string> variants;
    for (const auto& record : ours) {
        const auto printed = byName(printedRecords, record.at("SourceFile"));
        const auto raw = byName(rawRecords, record.at("SourceFile"));
        for (const auto& [name, value] : record.items()) {
            const auto tagName = corvane::TagName::fromRawValue(name);
            const corvane::TagItem* item = tagName ? tagName->item() : nullptr;
            if (!item || item->choices().empty()) continue;
            const auto it = printed.find(name);
            // ExifTool's own table for this tag in this file converts nothing.
            if (it == printed.end() || raw.at(name) == it->second) continue;
            ++compared;
            if (text(value) == it->second) continue;
            if (strictFamilies.contains(item->stream().rawValue()))
                ADD_FAILURE() << record.at("SourceFile") << " " << name << ": " << text(value)
                              << " where ExifTool prints " << it->second;
            else
                variants.push_back(name + ": " + text(value) + " / " + it->second);
        }
    }
    EXPECT_GT(compared, 100u);
    EXPECT_LT(variants.size() * 10, compared) << variants.size() << " of " << compared;
    for (const auto& variant : variants)
        std::cout << "catalogue row of another variant: " << variant << '\n';
}

} // namespace
