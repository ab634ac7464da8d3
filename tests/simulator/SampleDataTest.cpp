#include "tools/sample_data/SampleData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <platform/DeviceFiles.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include "calibration/ConfigXmlParser.h"
#include "service/WhitePointText.h"
#include "tests/TemporaryFolder.h"
#include "tools/picture/Picture.h"

namespace {

namespace fs = std::filesystem;
using namespace vendor::kov::hardware::display_control::V1_0::implementation;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::Ge;
using ::testing::Le;

const fs::path kShipped = DISPLAY_CONTROL_DATA_DIR;
const std::string kNodes = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/";

std::set<fs::path> filesUnder(const fs::path& folder) {
    std::set<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) files.insert(entry.path().lexically_relative(folder));
    }
    return files;
}

std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class SampleDataTest : public ::testing::Test {
public:
    ~SampleDataTest() override { platform::setDeviceRoot(""); }

protected:
    // The shipped phone, fitted with that panel; the one it comes with when there is no name.
    void usePhone(const std::string& panelName) {
        const fs::path phone = folder / "phone";
        fs::copy(kShipped / "phone", phone, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        platform::setDeviceRoot(phone.string());
        if (!panelName.empty()) std::ofstream(platform::devicePath(kNodes + "lcd_panel_name")) << panelName;
    }

    const tests::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
};

TEST_F(SampleDataTest, TheShippedDataIsWhatTheGeneratorWrites) {
    simulator::writeSampleData(folder);
    for (const char* part : {"phone", "traces"}) ASSERT_EQ(filesUnder(kShipped / part), filesUnder(folder / part));
    for (const fs::path& file : filesUnder(folder)) {
        SCOPED_TRACE(file);
        if (file.extension() == ".png") {
            EXPECT_TRUE(simulator::loadPng(kShipped / file).pixels == simulator::loadPng(folder / file).pixels);
        } else {
            EXPECT_TRUE(textOf(kShipped / file) == textOf(folder / file));
        }
    }
}

void expectGammaTable(const float (&table)[ConfigXmlParser::kTable]) {
    EXPECT_EQ(table[0], 0.0F);
    EXPECT_EQ(std::adjacent_find(std::begin(table), std::end(table), std::greater_equal<>()), std::end(table));
    EXPECT_THAT(table[ConfigXmlParser::kTable - 1], AllOf(Ge(0.999F), Le(1.0F)));
    EXPECT_NEAR(table[2048], 0.73, 0.03) << "near the usual curve";
}

// Each row of the matrix leaves white where it is.
void expectWhiteKept(const float (&matrix)[ConfigXmlParser::kMatrix]) {
    for (size_t row = 0; row < 9; row += 3) EXPECT_NEAR(matrix[row] + matrix[row + 1] + matrix[row + 2], 1.0, 1e-6);
}

TEST_F(SampleDataTest, TheLibraryReadsEveryShippedCalibration) {
    const struct {
        const char* name;
        std::string panelName;
        bool tuned;
        int32_t warm;
        double minCct;
    } kCases[] = {
        {"panel 0a, as shipped", "", true, 0xFFD9A0, 2900},
        {"panel 0b", "dornel R7TK 43 03 0b hd+ video dsi panel\n", true, 0xFFE0B4, 2800},
        {"any other", "some other panel\n", false, 0xFFFFEA, 2900},
    };
    for (const auto& [name, panelName, tuned, warm, minCct] : kCases) {
        SCOPED_TRACE(name);
        usePhone(panelName);
        const auto record = std::make_unique<ConfigXmlParser>();
        record->parser();

        EXPECT_TRUE(record->hasCtmWpc && record->hasCtmCcm && record->hasGammaCalib && record->hasUnlimitedCT &&
                    record->hasEyeCare && record->hasWpcParam);
        EXPECT_EQ(record->hasGammaTuning, tuned);
        expectGammaTable(record->gammaCalib);
        if (tuned) expectGammaTable(record->gammaTuning);
        expectWhiteKept(record->ctmCcm);
        EXPECT_THAT(record->ctmWpc, Each(AllOf(Ge(0.0F), Le(1.0F))));
        EXPECT_EQ(record->unlimitedWarm, warm);
        EXPECT_EQ(record->eyeCareMaxCCT, 6500);
        EXPECT_EQ(record->eyeCareMinCCT, minCct);
        EXPECT_EQ(record->eyeCareCoeffs[0], tuned ? 1.0 : 0.0) << "no fit for a panel that nobody measured";
        EXPECT_GT(record->wpcParam[0], record->wpcParam[2]) << "red lies right of blue";
    }
}

TEST_F(SampleDataTest, TheShippedNodesReadAsADriverWouldTellThem) {
    usePhone("");
    const auto whitePoint = parseWhitePoint(platform::readNode(kNodes + "lcd_whitepoint_info", 64).text);
    ASSERT_TRUE(whitePoint.has_value());
    EXPECT_EQ(whitePoint->x, 301);
    EXPECT_EQ(whitePoint->y, 317);
    EXPECT_EQ(platform::writeNode(kNodes + "lcd_cabc_mode", "1\n"), platform::NodeStatus::OK);
}

}  // namespace
