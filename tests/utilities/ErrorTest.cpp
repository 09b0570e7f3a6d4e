// A host catches every failure of the library as corvane::Error, with the failure's own message.

#include "corvane/utilities/Error.hpp"
#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/csv_support/CSVWriteError.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/preset_support/PresetEdition.hpp"
#include "corvane/preset_support/PresetFile.hpp"
#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/tag_set/TagSetFile.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/value_models/DateEdition.hpp"

#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <functional>
#include <type_traits>

namespace corvane {
namespace {

template <class... Exceptions> constexpr bool allErrors = (std::is_base_of_v<Error, Exceptions> && ...);
static_assert(allErrors<CSVParseError, CSVWriteException, ETOutputException,
                        ETTagStorageReader::ReadException, ETTagStorageWriter::WriteException,
                        DateEdition::DecodingException, PresetEdition::CodingException,
                        CSVSidecarReader::ReadException, JSONSidecarWriter::WriteException>);

std::string errorText(const std::function<void()>& failing) {
    try {
        failing();
    } catch (const Error& e) {
        return e.what();
    }
    return "no corvane::Error";
}

// What the standard library and the JSON library throw inside the library's file readers reaches the
// caller as the library's own error, which names the file.
TEST(ErrorTest, FailuresOfFilesParsersAndWritersAreTheLibrarysErrorAndNameTheFile) {
    test::TemporaryFolder folder;
    const auto missing = folder / "missing.json";
    auto write = [&](const std::string& name, const std::string& text) {
        std::ofstream(folder / name, std::ios::binary) << text;
        return (folder / name).string();
    };

    EXPECT_THAT([&] { CSVReader<NamedCSVView>::fromFile(missing); },
                testing::Throws<FileError>(testing::AllOf(
                    testing::Property(&FileError::path, missing),
                    testing::Property(&std::exception::what,
                                      testing::StrEq(missing.string() +
                                                     ": Cannot read the file: No such file or directory")))));
    const std::string latin1 = write("latin1.csv", "Artist\nZo\xEB\n");
    EXPECT_THAT(errorText([&] { CSVReader<NamedCSVView>::fromFile(latin1); }),
                testing::StartsWith(latin1 + ": "));
    EXPECT_THAT(errorText([&] { FinderResources().read(missing); }),
                testing::StartsWith(missing.string() + ": "));

    const std::string presets = write("presets.json", R"({"groups": [{"name": "no presets"}]})");
    EXPECT_THAT(errorText([&] { PresetFile::fromJSONURL(presets); }),
                testing::StartsWith(presets + ": not a preset library"));
    const std::string set = write("set.json", R"({"entries": 3})");
    EXPECT_THAT(errorText([&] { TagSetFile::fromJSONURL(set); }), testing::StartsWith(set + ": "));
    EXPECT_EQ(errorText([&] { SidecarReader::readSidecar(folder / "notes.txt"); }),
              (folder / "notes.txt").string() + ": Not a sidecar file");

    // The standard library's own error, met where a call has no error code, keeps only the action.
    const FileError converted(std::filesystem::filesystem_error(
        "cannot copy", "/a/b.jpg", "/c", std::make_error_code(std::errc::file_exists)));
    EXPECT_EQ(std::string(converted.what()), "/a/b.jpg: cannot copy: File exists");
    EXPECT_EQ(errorText([] { (void)nlohmann::json("JUMP(YY: 1)").get<DateEdition>(); }),
              "Not parsable input");
}

} // namespace
} // namespace corvane
