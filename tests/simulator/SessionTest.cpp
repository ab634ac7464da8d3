// SPDX-License-Identifier: Apache-2.0
// Scripts on the simulated phone: what people see of them, as data.
#include "tools/session/Session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/ErrorOf.h"
#include "tests/TemporaryFolder.h"
#include "tools/json/SessionJson.h"
#include "tools/session/Command.h"

namespace simulator {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A session on a fresh copy of the sample phone (panel 0a, one display), with a picture of two pixels on the screen:
// white and mid grey. Lines are run by run(); events(kind) are those since the last line.
class SessionTest : public ::testing::Test {
protected:
    SessionTest() { restart({}); }

    void restart(const SessionOptions& base) {
        session.reset();
        SessionOptions options = base;
        options.picture = {2, 1, {255, 255, 255, 128, 128, 128}};
        options.out = out;
        session.emplace(options, timeline);
    }

    void run(const std::string& line) {
        stream.str("");
        session->run(line, ++number);
    }

    // All events since the last line, or those of a kind.
    std::vector<Json> events(const std::string& kind = "") {
        std::vector<Json> found;
        std::istringstream lines(stream.str());
        for (std::string line; std::getline(lines, line);) {
            const Json event = Json::parse(line);
            if (kind.empty() || event["event"] == kind) found.push_back(event);
        }
        return found;
    }

    // Each event by the word that tells it apart.
    std::vector<std::string> order() {
        std::vector<std::string> words;
        for (const Json& event : events()) {
            if (event["event"] == "closed" || event["event"] == "sensor") continue;
            words.push_back(event.contains("call") ? event["call"] : event["event"]);
        }
        return words;
    }

    Json answer() { return events("answer").at(0); }

    std::string errorOf(const std::string& line) {
        return tests::errorOf([&] { run(line); });
    }

    // A file with a table of 4096 entries.
    std::string tableFile() const {
        std::ostringstream table;
        for (int i = 0; i < 4096; ++i) table << i << "e-4\n";
        return folder.write("table.txt", table.str()).string();
    }

    const tests::TemporaryFolder folder;
    const std::filesystem::path out = folder.path() / "pictures";
    std::ostringstream stream;
    Timeline timeline{jsonWriter(stream, /*all=*/true)};
    std::optional<Session> session;
    size_t number = 0;
};

TEST_F(SessionTest, EverythingThatALineCausesAppearsInItsOrder) {
    run("init");
    EXPECT_THAT(order(), ElementsAre("command", "getNumOfDisplay", "getDisplayInfo", "log", "log", "log",
                                     "setGlobalGammaLut", "log", "answer"));
    run("setStandardMode 0");
    EXPECT_THAT(order(), ElementsAre("command", "log", "setColorTransformMatrix", "node", "answer"));
    EXPECT_EQ(events("node")[0]["bytes"], "0\\n");
    run("setUnlimitedCT 0 -40  # warm");
    EXPECT_EQ(events("command")[0]["comment"], "# warm");
    EXPECT_THAT(events("log")[0]["message"].get<std::string>(), HasSubstr("-40  1.000000 0."));
    run("getUnlimitedCT 0");
    EXPECT_EQ(answer()["level"], -40);
    run("   # a remark");
    EXPECT_THAT(order(), ElementsAre("command"));
    run("");
    EXPECT_THAT(order(), IsEmpty());
}

TEST_F(SessionTest, EveryOperationGivesItsAnswer) {
    const std::string numbers = tableFile();
    run("displays 2");
    run("init");
    const std::string identity = " 1 0 0 0 1 0 0 0 1";
    const auto table = [](const std::vector<Json>& samples, const char* digest) {
        return Json{{"96", samples[0]},   {"320", samples[1]},  {"1024", samples[2]},
                    {"2048", samples[3]}, {"3840", samples[4]}, {"digestOfAllEntries", digest}};
    };
    const struct {
        std::string line;
        Json answer;  // the parts that matter
    } kCases[] = {
        {"getNumOfDisplay", {{"count", 2}}},
        {"getDisplayInfo 1", {{"result", "OK"}, {"name", "simulated display 1"}}},
        {"getDisplayInfo 18446744073709551615", {{"result", "BAD_DISPLAY"}, {"name", "0"}}},
        {"setColorTransformMatrix 1 .5 0 0 0 .5 0 0 0 .5", {{"result", "OK"}}},
        {"getColorTransformMatrix2 1", {{"result", "OK"}, {"last", {.5F, 0.F, 0.F, 0.F, .5F, 0.F, 0.F, 0.F, .5F}}}},
        {"setColorTransformMatrix2 7" + identity + identity, {{"result", "BAD_DISPLAY"}}},
        {"setGlobalGammaLut 1 " + numbers, {{"result", "OK"}}},
        {"getGlobalGammaLut 1", {{"result", "OK"}, {"table", table({.0096, .032, .1024, .2048, .384}, "#5a67188d")}}},
        {"setGlobalGamma 0 nan", {{"result", "OK"}}},
        {"getGlobalGammaLut 0", {{"table", table({"nan", "nan", "nan", "nan", "nan"}, "#cbc31dc5")}}},
        {"setEyeCareCT 0 101", {{"result", "OK"}}},
        {"getEyeCareCT 0", {{"level", 101}}},
        {"getEyeCareCT 4294967296", {{"result", "FAILED"}, {"level", 0}}},
        {"setSmartEnvironmentMode 0", {{"result", "OK"}}},
        {"setCabcMode 0 5", {{"result", "FAILED"}}},
        {"setCabcMode 0 4", {{"result", "OK"}}},
        {"setCabcSysNode 0 200", {{"result", "OK"}}},
        {"setFeature 0 7 3 0", {{"result", "OK"}}},
        {"setMiscFeature 0 23 -12.7 1e300", {{"result", "OK"}, {"values", Json::array()}}},
        {"getUnlimitedCT 0", {{"level", -12}}},
        {"setMiscFeature 0 23", {{"result", "FAILED"}}},
        {"getMiscFeature 0 23", {{"result", "FAILED"}}},
        {"exclusiveModeEnter 4294967295", {{"result", "OK"}}},
        {"exclusiveModeExit 0", {{"result", "OK"}}},
        {"deInit", {{"result", "done"}}},
        {"setEnhanceScreenMode 0", {{"result", "FAILED"}}},
    };
    for (const auto& [line, expected] : kCases) {
        SCOPED_TRACE(line);
        run(line);
        for (const auto& [key, value] : expected.items()) EXPECT_EQ(answer()[key], value) << key;
    }
}

TEST_F(SessionTest, ThePhoneAroundTheServiceCanChange) {
    run("panel some other panel");
    run("init");
    EXPECT_THAT(events("log")[0]["message"].get<std::string>(), HasSubstr("disp_calib_data_default.xml"));
    run("remove panel");
    run("init");
    EXPECT_THAT(events("log")[0]["message"].get<std::string>(), HasSubstr("open panel name node error"));
    run("remove calibration");
    run("init");
    EXPECT_THAT(events("log").at(2)["message"].get<std::string>(), HasSubstr("access error!"));

    run("calibration " + folder.write("broken.xml", "<calibration>\n<CTM_WPC><v>1</v>\n").string());
    run("init");
    EXPECT_EQ(events("xml").at(0)["line"], 3);

    run("whitepoint -1 5");
    run("setSmartEnvironmentMode 0");
    EXPECT_THAT(events("log").at(0)["message"].get<std::string>(), HasSubstr("-1 5 -0.001000 0.005000"));
    run("remove cabc");
    run("setEnhanceScreenMode 0");
    EXPECT_THAT(events("log").at(1)["message"].get<std::string>(), HasSubstr("open cabc node error"));

    run("closed getUnlimitedCTParams -7");
    run("setUnlimitedCT 0 10");
    EXPECT_EQ(events("log").at(0)["message"], "error -7");
    run("closed getUnlimitedCTParams");
    run("setUnlimitedCT 0 10");
    EXPECT_THAT(events("log").at(0)["message"].get<std::string>(), HasSubstr("10  0."));
    run("folder whitepoint");
    run("setSmartEnvironmentMode 0");
    EXPECT_EQ(events("log").at(0)["message"], "read wpc node error");
    run("write whitepoint x=296,\\x79=311");
    run("setSmartEnvironmentMode 0");
    EXPECT_THAT(events("log").at(0)["message"].get<std::string>(), HasSubstr("296 311"));
    run("composer fail setColorTransformMatrix refused -3");
    run("composer fail 2 unreached");
    for (const char* const result : {"BAD_DISPLAY", "DEAD_OBJECT", "BAD_DISPLAY"}) {
        run("setUnlimitedCT 0 10");
        EXPECT_EQ(events("composer").at(0)["result"], result);
    }
    run("composer fail service");
    run("init");
    EXPECT_EQ(answer()["result"], -1);
    run("composer start");
    run("init");
    run("composer stop");
    run("setUnlimitedCT 0 10");
    EXPECT_EQ(events("composer")[0]["result"], "DEAD_OBJECT");
    EXPECT_EQ(answer()["result"], "OK");
    run("init");
    EXPECT_EQ(answer()["result"], -1);
    run("composer start");
    run("init");
    EXPECT_EQ(answer()["result"], 0);
}

TEST_F(SessionTest, TimePassesOnlyWhereTheScriptWaits) {
    SessionOptions options;
    options.logPriority = ANDROID_LOG_ERROR;  // which hides no sample
    restart(options);
    run("init");
    run("light 20000");
    run("setAlad 0 1");
    EXPECT_EQ(events("answer")[0]["ms"], 0);
    run("wait 990ms");
    EXPECT_THAT(order(), ElementsAre("command"));
    run("wait 1s");
    EXPECT_EQ(events("sample").at(0)["ms"], 1000);
    EXPECT_EQ(events("composer").at(0)["toneCurveLevel"], 10);
    EXPECT_EQ(events("composer").at(1)["ms"], 1020);
    run("setAlad 0 0");
    EXPECT_THAT(order(), ElementsAre("command", "setAladParams", "answer"));
    run("IsAladEnable 0");
    EXPECT_EQ(answer()["result"], 0);

    for (const std::string fault : {"sensor fail service", "sensor fail find", "sensor fail no-queue",
                                    "sensor fail queue", "sensor fail enable", "sensor fail 3", "threads fail"}) {
        SCOPED_TRACE(fault);
        run(fault);
        run("sensor stop");
        run("setAlad 0 1");
        EXPECT_EQ(answer()["result"], "FAILED");
        run("sensor start");
        run("threads start");
    }
    run("sensor stop");
    run("sensor fail disable");
    run("setAlad 0 1");
    run("wait 2.5s");
    EXPECT_EQ(events("sample").at(1)["mean"], 300);
    run("sensor start");
    run("wait 2s");
    EXPECT_EQ(events("sample").at(1)["lux"], 20000);
    run("sensor fail disable");
    run("exclusiveModeEnter 1");
    EXPECT_EQ(events("log").at(0)["message"], "disableSensor error");
}

TEST_F(SessionTest, PicturesShowWhatTheDisplayShows) {
    run("init");
    run("setColorTransformMatrix 0 2 0 0 0 1 0 0 0 0");
    run("picture half");
    EXPECT_EQ(events("picture")[0]["clippedPixels"], 1);
    const Picture shown = loadPng(out / "half.png");
    EXPECT_EQ(shown.width, 2U);
    EXPECT_EQ(shown.pixels[0], 255);
    EXPECT_EQ(shown.pixels[2], 0);
    EXPECT_GT(shown.pixels[3], shown.pixels[4]);
    EXPECT_THAT(errorOf("picture half 1"), HasSubstr("has no display 1"));
    run("composer stop");
    EXPECT_THAT(errorOf("picture half"), HasSubstr("has no display 0"));
}

TEST_F(SessionTest, ShowGivesAllThatADisplaysStateIsMadeOf) {
    run("composer stop");
    run("init");
    run("show");
    EXPECT_EQ(events("state")[0]["state"]["screen mode"], "none yet");
    EXPECT_EQ(events("state")[0]["state"]["panel and calibration, as last read"], "not read yet");
    run("composer start");
    run("init");
    run("setStandardMode 0");
    run("setEyeCareCT 0 50");
    run("show");
    EXPECT_THAT(order(), ElementsAre("command", "state")) << "looking leaves no trace in the log";
    const Json state = events("state")[0]["state"];
    const Json calibration = state["panel and calibration, as last read"];
    EXPECT_EQ(calibration["identified"], "known panel");
    EXPECT_EQ(calibration["complete blocks"].size(), 6U);
    EXPECT_EQ(state["screen mode"], "standard");
    const Json colors = state["display 0"]["service"];
    EXPECT_EQ(colors["eye-care level"], 50);
    EXPECT_EQ(colors["white point"], colors["calibrated white point"]);
    EXPECT_EQ(colors["final matrix"], state["display 0"]["composer"]["last matrix"]);
    const float largest = colors["largest output of the product"];
    EXPECT_EQ(colors["final matrix"][4].get<float>(), colors["product"][4].get<float>() / largest);
}

TEST_F(SessionTest, APhoneThatTheUserNamesChangesInPlaceOnly) {
    const std::filesystem::path phone = folder.path() / "phone";
    std::filesystem::create_directory(phone);
    SessionOptions options;
    options.phone = phone;
    for (const bool inPlace : {false, true}) {
        options.inPlace = inPlace;
        restart(options);
        run("panel mine");
        EXPECT_THAT(order(), ElementsAre("command")) << "a session after another is observed as well";
        EXPECT_EQ(std::filesystem::exists(phone.string() + std::string(kPhoneNodes[0].path)), inPlace);
    }
    session.reset();
    EXPECT_TRUE(std::filesystem::exists(phone));
    std::filesystem::create_symlink("nowhere", phone / "link");
    options.inPlace = false;
    EXPECT_THROW(restart(options), std::runtime_error);
    std::filesystem::remove_all(phone);
    EXPECT_THROW(restart(options), std::runtime_error);
}

TEST_F(SessionTest, AWrongLineSaysWhatIsWrongAndWhatWasExpected) {
    const struct {
        const char* line;
        const char* message;
    } kCases[] = {
        {"setUnlimitdCT 0 1", "unknown command \"setUnlimitdCT\"; expected setUnlimitedCT"},
        {"frobnicate", "unknown command \"frobnicate\"; expected a command such as init"},
        {"setUnlimitedCT", "setUnlimitedCT: DISPLAY is missing; expected setUnlimitedCT DISPLAY LEVEL"},
        {"setUnlimitedCT 0", "setUnlimitedCT: LEVEL is missing; expected setUnlimitedCT DISPLAY LEVEL"},
        {"setUnlimitedCT 0 1 2",
         "setUnlimitedCT: too many arguments, from \"2\" on; "
         "expected setUnlimitedCT DISPLAY LEVEL"},
        {"setUnlimitedCT 0 warm", "setUnlimitedCT: \"warm\" is not a whole number; expected LEVEL, a whole number"},
        {"setUnlimitedCT 0 2147483648",
         "setUnlimitedCT: \"2147483648\" is out of range; expected LEVEL, a whole number"},
        {"getUnlimitedCT -1", "getUnlimitedCT: \"-1\" is not a whole number; expected DISPLAY, a whole number from 0"},
        {"setGlobalGamma 0 1e99", "setGlobalGamma: \"1e99\" is out of range; expected EXPONENT, a number"},
        {"displays 1025", "displays: \"1025\" is out of range; expected COUNT, a whole number from 0 to 1024"},
        {"wait 3",
         "wait: \"3\" has no unit: write 3s, without a space; expected DURATION, a duration up to 1000h such as 90s, "
         "20ms, 2.5min or 1h"},
        {"wait 1001h",
         "wait: \"1001h\" is out of range; "
         "expected DURATION, a duration up to 1000h such as 90s, 20ms, 2.5min or 1h"},
        {"sensor fail", "sensor: what fails is missing; expected it after fail"},
        {"sensor fail service refused", "sensor: service fails in one way only; expected nothing after it"},
        {"composer fail 2 refused 0", "composer: RESULT 0 is success; expected another number"},
        {"sensor fail enable no-callback",
         "sensor: enable has no callback; expected refused, unreached or answer-lost"},
        {"composer fail 2 unreached -3", "composer: unreached takes no RESULT; expected refused, or no RESULT"},
        {"composer stop getDisplayInfo", "composer: stop takes nothing more; expected composer stop"},
        {"composer halt", "composer: \"halt\" is not known; expected STATE, one of stop, start, fail"},
        {"composer fail getDisplays", "composer: \"getDisplays\" is not known; expected getDisplayInfo"},
        {"picture ../x",
         "picture: \"../x\" is not a name; "
         "expected NAME, a name of letters, digits, '.', '_' and '-'"},
        {"panel  # nothing", "panel: NAME is missing; expected panel NAME"},
        {"setGlobalGammaLut 0 /nowhere", "/nowhere: does not exist; expected a file of 4096 numbers"},
        {"calibration /", "/: is a folder; expected a calibration file"},
    };
    for (const auto& [line, message] : kCases) EXPECT_EQ(errorOf(line), message) << line;
    EXPECT_EQ(errorOf("calibration a\0b"s),
              "calibration: \"a\\x00b\" is not a file name; expected FILE, the name of a file");
    EXPECT_THAT(errorOf("setGlobalGammaLut 0 /dev/zero"), EndsWith("expected 4096 such numbers"));
}

}  // namespace
}  // namespace simulator
