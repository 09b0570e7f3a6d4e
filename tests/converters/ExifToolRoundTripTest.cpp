#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/BoolValueConverter.hpp"
#include "corvane/converters/CountryValueConverter.hpp"
#include "corvane/converters/DateTimeValueConverter.hpp"
#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/StringValueConverter.hpp"
#include "corvane/converters/UIntValueConverter.hpp"

#include "support/SampleFiles.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>

using namespace corvane;

// Values handed to ExifTool through a JSON import file come back from ExifTool's
// JSON output as the same canonical strings.
TEST(ConvertersWithExifTool, ValuesSurviveAJsonImportAndExport) {
    test::TemporaryFolder folder("corvane-converters");
    auto image = test::makeJPEG(folder / "sample.jpg");

    struct Case {
        std::string tag; // as ExifTool's JSON names it with -G0
        ValueConverterRef converter;
        std::string typed;     // what the user typed
        std::string canonical; // what comes back, normalised
    };
    auto strings = std::make_shared<StringValueConverter>();
    const std::vector<Case> cases = {
        {"EXIF:Artist", strings, "  Jane  Doe", "  Jane  Doe"},
        {"EXIF:DateTimeOriginal", std::make_shared<DateTimeValueConverter>("yyyy:MM:dd HH:mm:ss"),
         "2021:03:04 05:06:07", "2021:03:04 05:06:07"},
        {"EXIF:ISO", std::make_shared<UIntValueConverter>(), "100.0", "100"},
        {"XMP:Rating", std::make_shared<SDoubleValueConverter>(), "3,5", "3.50000000"},
        {"XMP:Marked", std::make_shared<BoolValueConverter>(), "Yes", "true"},
        {"XMP:Subject", std::make_shared<ArrayValueConverter>(strings, ","), "alpha, beta", "alpha,beta"},
        {"XMP:CountryCode", std::make_shared<CountryValueConverter>(), "usa", "US"},
    };

    nlohmann::json record = {{"SourceFile", image.string()}};
    for (const auto& c : cases) {
        // A list goes to ExifTool as a JSON array, every other value as ExifTool's own value.
        DynamicValue value = dynamic_cast<const ArrayValueConverter*>(c.converter.get())
                                 ? c.converter->jsonValueFromNativeValue(c.typed)
                                 : c.converter->exifToolValueFromStringValue(c.typed);
        ASSERT_FALSE(value.isNothing()) << c.tag;
        record[c.tag] = toJson(value);
    }
    auto importFile = folder / "import.json";
    std::ofstream(importFile) << nlohmann::json::array({record}).dump();
    auto written = test::runExifTool({"-overwrite_original", "-json=" + importFile.string(), image.string()});
    ASSERT_EQ(written.exitCode, 0) << written.standardError;

    auto read = test::runExifTool({"-json", "-G0", "-struct", image.string()});
    ASSERT_EQ(read.exitCode, 0) << read.standardError;
    auto output = nlohmann::json::parse(read.standardOutput).at(0);
    for (const auto& c : cases) {
        ASSERT_TRUE(output.contains(c.tag)) << c.tag << " missing from " << read.standardOutput;
        DynamicValue value = dynamicValueFromJson(output[c.tag]);
        EXPECT_EQ(c.converter->stringValueFromNativeValue(value), c.canonical)
            << c.tag << ": " << output[c.tag].dump();
    }
}
