// SPDX-License-Identifier: Apache-2.0
// Light on the simulated phone: recordings, what the worker makes of them, and the tone curves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "simulator/closed/ToneCurve.h"
#include "tests/ErrorOf.h"
#include "tests/TemporaryFolder.h"
#include "tools/light/LightTrace.h"
#include "tools/light/Replay.h"

namespace simulator {
namespace {

using alad::CurveAction;
using std::chrono::milliseconds;
using ::testing::EndsWith;
using ::testing::HasSubstr;

TEST(ToneCurve, LevelsRiseWithTheLogarithmOfTheLight) {
    EXPECT_EQ(toneCurveLevel(std::numeric_limits<int>::min()), 0);
    EXPECT_EQ(toneCurveLevel(100), 0);
    EXPECT_EQ(toneCurveLevel(3162), 32) << "half the way in the logarithm";
    EXPECT_EQ(toneCurveLevel(100000), 64);
    EXPECT_EQ(toneCurveLevel(std::numeric_limits<int>::max()), 64);
    for (int lux = 1; lux < 200000; lux += 7) ASSERT_LE(toneCurveLevel(lux), toneCurveLevel(lux + 7)) << lux;
}

TEST(ToneCurve, CurvesKeepTheirEndsAndLiftTheMiddleWithTheLevel) {
    for (int level = 0; level <= 64; ++level) {
        SCOPED_TRACE(level);
        std::array<int32_t, 256> curve{};
        EXPECT_EQ(getAGTMCurveParams(level, curve.data()), 0);
        EXPECT_EQ(curve.front(), 0);
        EXPECT_EQ(curve.back(), 4095);
        EXPECT_TRUE(std::is_sorted(curve.begin(), curve.end()));
        EXPECT_TRUE(level == 0 || curve[128] > toneCurve(level - 1)[128]);
        EXPECT_EQ(levelOfToneCurve({curve.begin(), curve.end()}), level);
    }
    EXPECT_EQ(toneCurve(-5), toneCurve(0));
    EXPECT_EQ(toneCurve(65), toneCurve(64));
    EXPECT_FALSE(levelOfToneCurve({4}));
}

class LightTraceTest : public ::testing::Test {
protected:
    LightTrace read(const std::string& text) const { return readLightTrace(folder.write("trace.csv", text)); }

    std::string errorOf(const std::string& text) const {
        return tests::errorOf([&] { read(text); });
    }

    const tests::TemporaryFolder folder;
};

TEST_F(LightTraceTest, ReadsTimesAndLight) {
    const LightTrace trace = read("\xEF\xBB\xBF\n\nseconds, lux\r\n0,300\n\n 0.5 , 0\n0.5,0.25\n100000000,1e30\n");
    ASSERT_EQ(trace.size(), 4U);
    EXPECT_EQ(trace[1].time, milliseconds(500));
    EXPECT_EQ(trace[1].lux, 0.0F);
    EXPECT_EQ(trace[3].lux, 1e30F);
}

TEST_F(LightTraceTest, AWrongLineSaysWhereAndWhatWasExpected) {
    const struct {
        const char* text;
        const char* message;
    } kCases[] = {
        {"", "has no sample; expected lines of SECONDS,LUX"},
        {"seconds,lux\n", "has no sample; expected lines of SECONDS,LUX"},
        {"lux,seconds\n0,1\n", ":1: \"lux,seconds\" does not name the columns; expected seconds,lux or no header"},
        {"0,1\nseconds,lux\n", ":2: \"seconds\" is not a time; expected seconds from 0 to 1e8"},
        {"0,1\n1;2\n", ":2: \"1;2\" is not two columns; expected SECONDS,LUX"},
        {"0,1,2\n", ":1: \"0,1,2\" is not two columns; expected SECONDS,LUX"},
        {"0,1\n1,dark\n", ":2: \"dark\" is not a light level; expected lux from 0"},
        {"-1,1\n", ":1: \"-1\" is not a time; expected seconds from 0 to 1e8"},
        {"nan,1\n", ":1: \"nan\" is not a time; expected seconds from 0 to 1e8"},
        {"0,1\n5,1e99\n", ":2: \"1e99\" is not a light level; expected lux from 0"},
        {"0,1\n5,-0.5\n", ":2: \"-0.5\" is not a light level; expected lux from 0"},
        {"0,nan\n", ":1: \"nan\" is not a light level; expected lux from 0"},
        {"0,\033[31m\xF8\n", ":1: \"\\x1B[31m\\xF8\" is not a light level; expected lux from 0"},
        {"5,1\n4,1\n", ":2: the time is before that of the line above; expected times that do not fall"},
    };
    for (const auto& [text, message] : kCases) EXPECT_THAT(errorOf(text), EndsWith(message)) << text;
    EXPECT_THROW(readLightTrace("/nowhere.csv"), std::runtime_error);
    EXPECT_THROW(readLightTrace("/"), std::runtime_error);
}

std::vector<Decision> decisionsOn(const LightTrace& trace) {
    std::vector<Decision> decisions;
    replay(trace, [&decisions](const Decision& decision) { decisions.push_back(decision); });
    return decisions;
}

TEST(Replay, EverySampleIsADecisionWithItsReason) {
    const auto decisions =
        decisionsOn({{milliseconds(5000), 300}, {milliseconds(7500), 20000}, {milliseconds(9500), 300}});
    ASSERT_EQ(decisions.size(), 12U) << "14.5 seconds at a second each, less 81 messages at 20 ms";
    EXPECT_EQ(decisions[1].reason(), "mean 300 is not above 8000: stays off");
    EXPECT_EQ(decisions[3].lux, 20000);
    EXPECT_EQ(decisions[3].mean, 300) << "one bright sample of five is an outlier";

    const Decision& on = decisions[4];
    EXPECT_EQ(on.time, milliseconds(5000));
    EXPECT_EQ(on.reason(), "mean 20000 is above 8000: on; two samples in a row above 8000");
    EXPECT_EQ(on.targetLevel, 49);
    EXPECT_EQ(on.composerLevel, 49);
    ASSERT_EQ(on.messages.size(), 40U) << "from level 10 to level 49";
    EXPECT_EQ(on.messages[1].time - on.messages[0].time, milliseconds(20));

    const Decision& off = decisions[6];
    EXPECT_EQ(off.action, CurveAction::DEACTIVATE);
    EXPECT_FALSE(off.composerLevel);
    EXPECT_FALSE(decisions.back().composerLevel);
}

TEST(Replay, NoLightLevelAsksForNoLevelAndLeavesTheCurve) {
    const auto decisions = decisionsOn({{milliseconds(0), 20000}, {milliseconds(3000), -1}});
    const Decision& last = decisions.back();
    EXPECT_EQ(last.reason(), "mean -1 is not a light level; two samples in a row below 5000");
    EXPECT_FALSE(last.targetLevel);
    EXPECT_EQ(last.composerLevel, 49);
}

}  // namespace
}  // namespace simulator
