// SPDX-License-Identifier: Apache-2.0
// Reading and writing measurement files.
#include "tools/accuracy/Measurement.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"

namespace simulator {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

class MeasurementTest : public ::testing::Test {
protected:
    std::filesystem::path write(const std::string& text) const { return folder.write("panel.ti3", text); }

    // What is said of a file with that text, after its name.
    template <typename Read>
    std::string errorOfText(Read read, const std::string& text) const {
        const std::filesystem::path file = write(text);
        const std::string error = errorOf([&] { read(file); });
        return error.substr(std::min(file.string().size(), error.size()));
    }

    const tests::TemporaryFolder folder;
};

std::string replaced(std::string text, const std::string& old, const std::string& with) {
    const size_t begin = text.find(old);
    EXPECT_NE(begin, std::string::npos) << old;
    return text.replace(begin, old.size(), with);
}

// What other programs write, and the reader takes.
TEST_F(MeasurementTest, HarmlessVariantsAreRead) {
    const Measurement panel = SyntheticPanel().measure(4, 0);
    const std::string text = toTi3(panel);
    std::string dosLines = text;
    for (size_t i = 0; (i = dosLines.find('\n', i)) != std::string::npos; i += 2) dosLines.insert(i, "\r");
    const std::string kVariants[] = {
        dosLines,
        replaced(text, "\n1 0", "\n\"upper left\" 0"),
        replaced(text, "\n1 0", "\n# a remark\n\n1 0"),
        text + "CTI3\nNUMBER_OF_FIELDS many\n",  // a second table
        replaced(text, "COLOR_REP", "LUMINANCE_XYZ_CDM2 \"427.2 450.0 542.0\"\nCOLOR_REP"),
        replaced(text, "COLOR_REP", "NORMALIZED_TO_Y_100 \"NO\"\nLUMINANCE_XYZ_CDM2 \"427.2 450.0 542.0\"\nCOLOR_REP"),
    };
    for (const std::string& variant : kVariants) {
        const auto patches = readPanel(write(variant)).patches;
        ASSERT_EQ(patches.size(), panel.patches.size());
        EXPECT_THAT(patches[6].rgb, Pointwise(DoubleNear(1e-9), panel.patches[6].rgb));
        EXPECT_THAT(patches[6].xyz, Pointwise(DoubleNear(1e-6), panel.patches[6].xyz));
    }
    EXPECT_EQ(readPanel(write(kVariants[1])).patches[0].id, "upper left");
    EXPECT_EQ(readPanel(write(kVariants[4])).candelas, 4.5);
    EXPECT_EQ(readPanel(write(kVariants[5])).candelas, 1);
    EXPECT_EQ(readPanel(write(text)).instrument, "a formula");
    const auto stated = readPanel(
        write(replaced(text, "COLOR_REP", "TARGET_INSTRUMENT \"colorimeter 2\"\nCREATED \"3 July 2026\"\nCOLOR_REP")));
    EXPECT_EQ(stated.instrument + ", " + stated.date, "colorimeter 2, 3 July 2026");
}

TEST_F(MeasurementTest, FaultsAreRefusedWithFileLineAndWhatWasExpected) {
    // Row 13 is the first: RGB 0 0 0 four times, then 25 for red.
    const std::string text = toTi3(SyntheticPanel().measure(4, 0));
    const std::string red25 = "\n5 25.000000 0.000000 0.000000 ";
    const struct {
        std::string text;
        std::string error;
    } kFaults[] = {
        {"", ": has no complete table; expected the lines BEGIN_DATA and END_DATA"},
        {std::string((8 << 20) + 1, ' '), ": is larger than 8 MiB; expected a CGATS file"},
        {replaced(text, "ORIG", ".include \"/etc/passwd\"\nORIG"), ":3: names another file; expected no .INCLUDE"},
        {replaced(text, "SETS 20", "SETS 21"),
         ": Line 32, Count mismatch. NUMBER_OF_SETS was 21, found 20; expected a CGATS table"},
        {replaced(text, "CTI3\n", "panel of 3 July\n"), ": does not begin with its type; expected a CGATS table"},
        {replaced(text, "CTI3", "CTI1"),
         ":1: is a file of type \"CTI1\"; expected CTI3, a measurement from RGB to XYZ"},
        {replaced(text, red25, "\n5 nan 0 0 "), ":15: RGB_R is \"nan\"; expected a number from 0 to 100"},
        {replaced(text, red25, "\n5 25 inf 0 "), ":15: RGB_G is \"inf\"; expected a number from 0 to 100"},
        {replaced(text, red25, "\n5 25 0 1e400 "), ":15: RGB_B is \"1e400\"; expected a number from 0 to 100"},
        {replaced(text, red25, "\n5 25% 0 0 "), ":15: RGB_R is \"25%\"; expected a number from 0 to 100"},
        {replaced(text, red25, "\n5 100.1 0 0 "), ":15: RGB_R is \"100.1\"; expected a number from 0 to 100"},
        {replaced(text, red25, "\n5 25 0 0 -7 1 1 #"), ":15: XYZ_X is \"-7\"; expected a number from -1 to 100000"},
        {replaced(text, red25, "\n5 25 0 "), ":15: has 6 values; expected 7, one a field"},
        {replaced(text, "ID RGB_R RGB_G", "ID RGB_R RGB_R"), ": repeats the field \"RGB_R\"; expected each once"},
        {replaced(text, red25, "\n4 25 0 0 "), ":15: repeats the SAMPLE_ID \"4\"; expected each once"},
        {replaced(text, "XYZ_X XYZ_Y XYZ_Z", "LAB_L LAB_A LAB_B"),
         ": has no field XYZ_X; expected SAMPLE_ID, RGB and, in a measurement, XYZ"},
        {replaced(text, "COLOR_REP", "LUMINANCE_XYZ_CDM2 \"427 0 542\"\nCOLOR_REP"),
         ": LUMINANCE_XYZ_CDM2 is \"427 0 542\"; expected X, Y and Z of white in cd/m2"},
        {replaced(text, "\n20 100.000000 ", "\n20 99 "), ": has no white; expected a patch with RGB 100 100 100"},
        {replaced(text, red25, "\n5 30 0 0 "),
         ": has no full ramp of red; expected patches of it alone from 0 to 100 in steps of at most 25"},
        {replaced(text, "\n19 0.000000 0.000000 100.000000 ", "\n19 0 0 99 "),
         ": has no full ramp of blue; expected patches of it alone from 0 to 100 in steps of at most 25"},
    };
    for (const auto& [faulty, error] : kFaults) EXPECT_EQ(errorOfText(readPanel, faulty), error);

    auto noBlack = SyntheticPanel().measure(4, 0);
    noBlack.patches.erase(noBlack.patches.begin(), noBlack.patches.begin() + 4);
    EXPECT_EQ(errorOfText(readPanel, toTi3(noBlack)), ": has no black; expected a patch with RGB 0 0 0");
    SyntheticPanel dark;
    dark.unit = 0;
    EXPECT_EQ(errorOfText(readPanel, toTi3(dark.measure())),
              ": white is not brighter than black; expected a panel that shows light");
    EXPECT_THROW(readPanel(folder.path()), std::runtime_error) << "a folder";
}

TEST_F(MeasurementTest, APatchListKeepsItsIdsAndEightDecimals) {
    const std::vector<Patch> patches = {{"dark skin", {1.0 / 3, 0.1234567891, 0}}, {"2", {1, 0.5, 2e-9}}};
    const auto read = readPatches(write(toTi1(patches)));
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].id, "dark skin");
    for (size_t i = 0; i < 2; ++i) EXPECT_THAT(read[i].rgb, Pointwise(DoubleNear(1e-10), patches[i].rgb));
    EXPECT_EQ(errorOfText(readMeasurement, toTi1(patches)),
              ":1: is a file of type \"CTI1\"; expected CTI3, a measurement from RGB to XYZ");
}

}  // namespace
}  // namespace simulator
