// SPDX-License-Identifier: Apache-2.0
// Accuracy as it is reported: of the service's states, predicted and measured.
#include "tools/accuracy/Accuracy.h"

#include <gmock/gmock.h>

#include <sstream>

#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"
#include "tools/accuracy/AccuracyTable.h"
#include "tools/json/AccuracyJson.h"

namespace simulator {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

const std::string kPhone = DISPLAY_CONTROL_DATA_DIR "/phone";
const Target kSrgb = makeTarget(kSrgbPrimaries).value();

class AccuracyTest : public ::testing::Test {
protected:
    MeasuredPanel load(const SyntheticPanel& panel) const {
        Measurement measurement = panel.measure(16);
        return MeasuredPanel(folder.write("panel.ti3", toTi3(measurement)));
    }

    const tests::TemporaryFolder folder;
    ServiceStates untouched;  // a composer as it comes up
};

std::vector<float> gammaOf(const DisplayState& state) {
    return {state.gamma.entries.data(), state.gamma.entries.data() + 4096};
}

TEST_F(AccuracyTest, TheControlsStartFromTheFilesThatTheScriptLeaves) {
    std::istringstream text("panel somebody else's\ninit\nsetStandardMode 0\nsetEyeCareCT 0 80\n");
    const ScriptFile script(text, "text");
    const ServiceStates other = statesOf({&script, kPhone});
    const ServiceStates standard = statesOf({nullptr, kPhone});
    ASSERT_THAT(other.controls, SizeIs(2));
    for (const ControlStates& control : other.controls) {
        EXPECT_EQ(gammaOf(control.neutral), gammaOf(other.end)) << control.operation;
        EXPECT_NE(gammaOf(control.neutral), gammaOf(standard.end)) << control.operation;
        EXPECT_NE(control.neutral.last.elements[8], other.end.last.elements[8]) << "eye care";
        EXPECT_EQ(control.levels.back().first, 100);
    }
    EXPECT_EQ(standard.controls[0].levels.front().first, -100);

    std::istringstream stopped("composer stop\n");
    const ScriptFile stop(stopped, "text");
    EXPECT_THAT(errorOf([&stop] { statesOf({&stop, kPhone}); }), HasSubstr("the composer has no display 0"));
}

TEST_F(AccuracyTest, RowsHaveLimitsOrAreReported) {
    Limits limits;
    limits.gamma = 0;
    SyntheticPanel narrow;
    narrow.primaries.red = {0.58, 0.34};
    const Accuracy accuracy = accuracyOf(untouched, load(narrow), kSrgb, limits);
    EXPECT_FALSE(isKept(accuracy));
    std::vector<std::string> judged;
    std::vector<std::string> reported;
    for (const AccuracyRow& row : rowsOf(accuracy))
        (row.isKept ? judged : reported).push_back(row.figure + ": " + row.value + ", " + row.limit);
    EXPECT_THAT(judged, AllOf(SizeIs(8), ::testing::Contains("white, dE2000: 0.00, at most 2"),
                              ::testing::Contains("coverage in xy: 84.9 %, at least 98 %")));
    EXPECT_THAT(reported,
                AllOf(::testing::Contains("white, CCT: 6504 K, "), ::testing::Contains("luminance kept: 99.9 %, "),
                      ::testing::Contains("panel model's residual, mean dE2000: 0.00, ")));
    const std::string text = textOf(accuracy);
    EXPECT_THAT(text,
                AllOf(HasSubstr("srgb, white x 0.3127 y 0.3290, gamma 2.2\n"), HasSubstr("  FAIL\n"),
                      HasSubstr("patches, 22 counted\n"), HasSubstr("beyond the panel, not counted above: orange"),
                      HasSubstr("simulated libraries")));
    EXPECT_THAT(worstOf(accuracy.figures.colorChecker, 24),
                ::testing::Each(::testing::Field(&PatchFigure::isPanelClipped, false)));
    EXPECT_THAT(warningsOf(accuracy), IsEmpty());
}

TEST_F(AccuracyTest, AMeasurementOfAnotherSessionIsNoticed) {
    MeasuredPanel panel = load({});
    panel.native.candelas = 4.5;
    DrivenMeasurement measured{"after.ti3", standardPatches(kSrgb), {{}, {}}};
    for (const Patch& patch : drivenPatches(untouched.end, measured.coded))
        measured.driven.patches.push_back({patch, panel.model.xyz(patch.rgb)});
    const Accuracy asPredicted = accuracyOf(untouched, panel, kSrgb, {}, measured);
    EXPECT_TRUE(isKept(asPredicted));
    EXPECT_LT(asPredicted.measured->difference.largest, 1e-6);
    EXPECT_EQ(asPredicted.measured->whites, 4U);
    EXPECT_THAT(warningsOf(asPredicted), ElementsAre(HasSubstr("not known in cd/m2")));
    EXPECT_FALSE(asPredicted.candelas);
    EXPECT_THAT(textOf(asPredicted), HasSubstr("not known\n"));
    EXPECT_TRUE(accuracyToJson(asPredicted)["measured"]["fromPredicted"].is_object());

    untouched.end.last.elements[8] = 0.8F;
    measured.driven.patches.pop_back();
    const Accuracy other = accuracyOf(untouched, panel, kSrgb, {}, measured);
    EXPECT_GT(other.measured->difference.largest, 5);
    EXPECT_THAT(warningsOf(other),
                ElementsAre(HasSubstr("driven up to 9.6 % off the levels of this session"),
                            HasSubstr("1 of 66 patches are not in the measurement"), HasSubstr("cd/m2")));
}

}  // namespace
}  // namespace simulator
