// A host catches every failure of the library as corvane::Error, with the failure's own message.

#include "corvane/utilities/Error.hpp"
#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/CSVWriteError.hpp"
#include "corvane/csv_support/detail/CSVParsingState.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/preset_support/PresetEdition.hpp"
#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/value_models/DateEdition.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <type_traits>

namespace corvane {
using detail::CSVParsingState;
namespace {

static_assert(std::is_base_of_v<Error, CSVParseError>);
static_assert(std::is_base_of_v<Error, CSVWriteException>);
static_assert(std::is_base_of_v<Error, ETOutputException>);
static_assert(std::is_base_of_v<Error, ETTagStorageReader::ReadException>);
static_assert(std::is_base_of_v<Error, ETTagStorageWriter::WriteException>);
static_assert(std::is_base_of_v<Error, DateEdition::DecodingException>);
static_assert(std::is_base_of_v<Error, PresetEdition::CodingException>);
static_assert(std::is_base_of_v<Error, CSVSidecarReader::ReadException>);
static_assert(std::is_base_of_v<Error, JSONSidecarWriter::WriteException>);

std::string errorText(const std::function<void()>& failing) {
    try {
        failing();
    } catch (const Error& e) {
        return e.what();
    }
    return "no corvane::Error";
}

TEST(ErrorTest, FailuresOfParsersAndWritersAreCaughtAsTheLibrarysErrorWithTheirMessages) {
    EXPECT_EQ(errorText([] { (void)nlohmann::json("JUMP(YY: 1)").get<DateEdition>(); }),
              "Not parsable input");
    EXPECT_EQ(errorText([] { CSVParsingState::array("a\"b", U','); }), "Can't have non-quote here: b");
    EXPECT_EQ(errorText([] {
                  throw ETTagStorageWriter::WriteException(
                      ETTagStorageWriter::WriteError::jsonEncodingFailed);
              }),
              "JSON encoding failed");
}

} // namespace
} // namespace corvane
