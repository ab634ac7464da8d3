// SPDX-License-Identifier: Apache-2.0
// What stands around the script language: help, completion, stored sessions, and the program at a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>

#include "tests/TemporaryFolder.h"
#include "tools/json/StoredSession.h"
#include "tools/session/Completion.h"
#include "tools/session/Help.h"

namespace simulator {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kData = DISPLAY_CONTROL_DATA_DIR;

class ToolsTest : public ::testing::Test {
protected:
    std::string file(const std::string& name, const std::string& text = "") const {
        return temporary.write(name, text).string();
    }

    const tests::TemporaryFolder temporary;
    const std::filesystem::path folder = temporary.path();
};

TEST(HelpTest, NamesEveryCommandAndEachOfItsArguments) {
    const std::string all = helpOf(commands());
    for (const Command& command : commands()) {
        SCOPED_TRACE(command.name);
        EXPECT_THAT(all, HasSubstr(" " + std::string(command.name)));
        for (const Argument& argument : command.arguments) {
            EXPECT_THAT(helpOf(command),
                        AllOf(HasSubstr("\n    " + nameOf(argument) + " "),
                              HasSubstr("  " + rangeOf(argument).substr(0, 30))));  // long ones are wrapped
        }
    }
    EXPECT_THAT(all, HasSubstr("\n\nMatrices and tables\n  setColorTransformMatrix "));
}

TEST_F(ToolsTest, CompletesWhatMayStandThere) {
    file("table.txt");
    file(".hidden");
    std::filesystem::create_directory(folder / "tables");
    const std::string begun = (folder / "").string();
    const struct {
        std::string line;
        std::vector<std::string> words;
    } kCases[] = {
        {"setU", {"setUnlimitedCT"}},
        {"  getGlobal", {"getGlobalDeGammaLut", "getGlobalGammaLut"}},
        {"setUnlimitedCT ", {"0", "1", "2"}},
        {"setUnlimitedCT 1", {"1"}},
        {"setUnlimitedCT 0 ", {}},
        {"setUnlimitedCT 0 1 ", {}},
        {"setColorTransformMatrix 0 1 1 1 1 1 1 1 1 ", {}},
        {"sensor ", {"fail", "start", "stop"}},
        {"sensor fail  e", {"enable"}},
        {"picture night ", {"0", "1", "2"}},
        {"nothing ", {}},
        {"# set", {}},
        {"calibration " + begun + "t", {begun + "table.txt", begun + "tables/"}},
        {"calibration " + begun + ".", {begun + ".hidden"}},
        {"setGlobalGammaLut 0 " + begun + "table.", {begun + "table.txt"}},
        {"calibration /nowhere/", {}},
    };
    for (const auto& [line, words] : kCases) EXPECT_EQ(completionsOf(line, {commands(), 3}), words) << line;
}

Json dumpOfFile(const std::string& name) {
    ScriptFile script(name);
    return toJson(dumpOf(script, {}));
}

TEST_F(ToolsTest, TheDemosSessionIsTheStoredOne) {
    const Json got = dumpOfFile(kData + "/demo.script");
    const auto difference = firstDifference(readDump(kData + "/demo.expected.json"), got);
    EXPECT_EQ(difference ? difference->path : "", "");

    writeDump(got, folder / "again.json");
    EXPECT_FALSE(firstDifference(readDump(folder / "again.json"), got));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "nothing else is left behind";
}

TEST_F(ToolsTest, TheFirstDifferenceIsFound) {
    const std::string start = "displays 2\ninit\nlight 20000\nsetAlad 0 1\nwait 1s\nsetUnlimitedCT 1 ";
    const Json expected = dumpOfFile(file("a.script", start + "20\n"));
    const size_t calls = expected["calls"].size();
    EXPECT_EQ(expected["calls"][calls - 2]["params"][1]["toneCurveLevel"], 10);

    const Json warmer = dumpOfFile(file("b.script", start + "-20\n"));
    const auto changed = firstDifference(expected, warmer);
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->path, "/calls/" + std::to_string(calls - 1) + "/last/0");
    EXPECT_EQ(*changed->expected, expected["calls"].back()["last"][0]);
    EXPECT_EQ(*changed->got, 1);

    const Json shorter = dumpOfFile(file("c.script", start.substr(0, start.rfind('\n') + 1)));
    const auto missing = firstDifference(expected, shorter);
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->path, "/calls/" + std::to_string(calls - 1));
    EXPECT_FALSE(missing->got);
    EXPECT_FALSE(firstDifference(shorter, expected)->expected);
}

TEST(SessionDumpTest, ValuesAreComparedExactly) {
    const struct {
        const char* expected;
        const char* got;
        const char* path;  // null when they are the same
    } kCases[] = {
        {R"({"a":1,"b":[0.1]})", R"({"b":[0.1],"a":1})", nullptr},
        {R"({"b":[0.1]})", R"({"b":[0.10000001]})", "/b/0"},
        {"[0.0]", "[-0.0]", "/0"},
        {"[1]", "[]", "/0"},
        {R"({"a/b":{}})", R"({"a/b":{"c":1}})", "/a~1b/c"},
        {R"({"a":[]})", R"({"a":{}})", "/a"},
    };
    for (const auto& [expected, got, path] : kCases) {
        const auto difference = firstDifference(Json::parse(expected), Json::parse(got));
        EXPECT_EQ(difference ? difference->path : "", path == nullptr ? "" : path) << expected << " " << got;
    }
}

TEST_F(ToolsTest, TheProgramsAnswersAndItsExitStatus) {
    const std::string script = kData + "/demo.script";
    const std::string other = file("other.script", "init\nwait 2h\n");
    const std::string broken = file("broken.script", "init\n\nshw\nwait 1s\nlight\n");
    const std::string fresh = (folder / "fresh.json").string();
    const std::string panel = "accuracy --panel " + kData + "/panels/cool.ti3";
    const std::string loose = file("loose.json", R"({"white": 9, "greyChroma": 9, "gamma": 9, "colorCheckerMean": 9,
                                                     "colorCheckerLargest": 9, "coverage": 50})");
    const std::string driven = (folder / "driven.ti1").string();
    const std::string calibrate = "calibrate " + kData + "/panels/oled.ti3 -o ";
    const std::string shipped = kData + "/phone/vendor/etc/disp_calib_data_0b.xml";
    const std::string made = (folder / "made.xml").string();
    const std::string link = (folder / "link").string();
    std::filesystem::create_symlink("a.script", link);
    const std::string none = (folder / "none.xml").string();
    const struct {
        std::string arguments;
        int status;
        std::string output;  // a part of it
    } kCases[] = {
        {"show " + other, 0, "screen mode  none yet"},
        {"show --json", 0, R"({"event":"state","state":{)"},
        {"run " + broken + " 2>/dev/null | head -c 1 | wc -c", 0, "0\n"},  // nothing has run
        {"run " + broken, 2,
         broken + ":3: unknown command \"shw\"; expected show\n" + broken + ":5: light: LUX is missing"},
        {"show /nowhere", 2, "dcsim: /nowhere: does not exist; expected a script"},
        {"verify " + script + " " + kData + "/demo.expected.json", 0, ": as expected: 172 composer calls"},
        {"verify " + other + " " + kData + "/demo.expected.json --json", 1,
         R"({"event":"difference","path":"/calls/3","call":4,"expected":{"call":"setColorTransformMatrix")"},
        {"verify " + other + " " + kData + "/demo.expected.json", 1, "composer call 4 is missing: the session has 3"},
        {"verify " + other + " " + fresh, 2, fresh + ": does not exist; expected a stored session; --update writes it"},
        {"verify " + other + " " + other, 2,
         other + ": is not a stored session; expected one that --update has written"},
        {"verify " + other + " " + other + " --update", 2, other + ": is not a stored session"},
        {"verify " + other + " " + folder.string(), 2, "is a folder; expected a stored session"},
        {"verify " + other + " " + fresh + " --update", 0, fresh + ": written: 3 composer calls"},
        {"verify " + other + " " + fresh, 0, "as expected"},
        {"verify " + other + " /nowhere/x --update", 2,
         "dcsim: /nowhere/x: could not be written (No such file or directory)"},
        {"shell < " + broken, 2, "<stdin>:3: unknown command \"shw\""},
        {"report - --json < " + broken, 2, "<stdin>:3: unknown command \"shw\""},
        {"shell < " + file("bom.script", "\xEF\xBB\xBFinit\nquit\n"), 0, "answer    init -> 0\n"},
        {"run " + file("long.script", "\n#" + std::string(65535, 'x') + "\n" + std::string(65537, 'x')), 2,
         "long.script:3: the line is longer than 65536 bytes; expected a script\n"},
        {"shell < " + file("long-line.script", std::string(65537, 'x') + "\nshw\n"), 2,
         "<stdin>:1: the line is longer than 65536 bytes; expected a script\n<stdin>:2: unknown command \"shw\""},
        {"show \"\x1B[31m\n\xC3\xBC\"", 2, "dcsim: \\x1B[31m\n\xC3\xBC: does not exist"},
        {"run " + script + " --out " + folder.string(), 0,
         "composer  setAladParams 0 on, levels 11 to 59 in 49 messages, 20 ms apart\n"},
        {"run " + script + " --all --out " + folder.string(), 0, "composer  setAladParams 0 on 14: level 40 -> OK\n"},
        {"check --json /nowhere\xFF", 2, "\"file\": \"/nowhere\xEF\xBF\xBD\""},
        {"check --driver-white 0.1,0.8 " + kData + "/phone/vendor/etc/disp_calib_data_default.xml", 1,
         "has a triangle of primaries that the driver's white is outside of"},
        {"run a b", 2, "dcsim: unknown argument \"b\"; expected dcsim run [OPTIONS] SCRIPT\n"},
        {panel, 1, "\nwhite, dE2000                                     0.04   at most 2     pass\n"},
        {panel + " --json", 1, "\"pass\": false"},
        {panel + " --limits " + loose, 0, "\nAll 8 limits are kept\n"},
        {panel + " --white 0.6,0.39 " + other, 2,
         "dcsim: --white: is outside the target's gamut; expected CIE x,y inside it"},
        {panel + " --white 0.6,", 2, "--white: \"0.6,\" is not a chromaticity; expected CIE X,Y"},
        {"check --driver-white 312,329 " + made, 2, "(the driver's thousandths divided by 1000)"},
        {panel + " --white nan,0.3", 2, "is not a chromaticity"},
        {"accuracy --pannel " + made, 2, "unknown option \"--pannel\"; expected --panel\n"},
        {"diff --target sRGB " + made + " " + made, 2, "--target requires --panel"},
        {"accuracy --panel /nowhere", 2, "/nowhere: does not exist; expected a CGATS file"},
        {panel + " --target rec709", 2, "\"rec709\" is not a target; expected srgb or display-p3"},
        {panel + " --calibration /nowhere", 2, "dcsim: /nowhere: does not exist; expected a calibration file"},
        {panel + " --calibration " + other, 1, other + ": the library does not read it as it is written"},
        {panel + " --measured " + kData + "/panels/cool.ti3", 2, "has no SAMPLE_ID of the list of patches"},
        {"patches -o " + driven, 0, driven + ": 66 patches\n"},
        {"patches " + driven + " " + other + " -o " + driven, 2,
         driven + ": is also the input; expected another file to write\n"},
        {"patches " + driven + " " + other + " -o " + made, 0, made + ": 66 patches\n"},
        {"patches " + driven + " " + broken + " -o " + made, 2, "unknown command"},
        {"patches x.ti3 -o " + made, 2, "x.ti3: is a measurement; expected a list of patches"},
        {"report " + file("a.script", "init\n") + " -o " + link, 2, link + ": is also the input"},
        {calibrate + kData + "/phone/../panels/oled.ti3", 2, "oled.ti3: is also the input"},
        {"patches " + other + " -o " + folder.string(), 2, folder.string() + ": is not a regular file; expected"},
        {calibrate + none + " --base /nowhere", 2, "dcsim: /nowhere: does not exist; expected a calibration file"},
        {calibrate + none + " --base " + shipped + " --simulated", 2, "--base excludes --simulated"},
        {calibrate + none + " --gamma nan", 2, "--gamma: \"nan\" is not an exponent; expected 1 to 4"},
        {"check " + none, 2, none + ": does not exist"},
        {calibrate + "/nowhere/x", 2, "dcsim: /nowhere/x: could not be written"},
        {calibrate + made + " --base " + shipped, 0, "\nAll 8 limits are kept\n\nThe calibration is in " + made},
        {"diff " + shipped + " " + made, 1, "\n\nThe composer receives in standard mode:\n  matrix: 9 values differ"},
        {"diff " + shipped + " " + made + " --json | grep -cE 'UnlimitedCT|EyeCare|WPCParam'", 1, "0\n"},
        {"diff " + made + " " + made + " --panel " + kData + "/panels/oled.ti3", 0, "reads the same from both"},
        {"check " + made, 0, "1 file: 0 errors, 0 warnings"},
        {"calibrate " + kData + "/panels/cool.ti3 --simulated --json -o " + made, 1, "\"outOfGamut\": "},
        {"calibrate " + kData + "/panels/cool.ti3 -o " + made, 1, "left out      UnlimitedCT, EyeCare, WPCParam: "},
        {"diff " + made + " " + shipped + " --panel " + kData + "/panels/cool.ti3", 1,
         "\nOn the panel, ColorChecker: "},
        {"bogus", 2, "unknown command \"bogus\"; expected one of check, run, "},
        {"", 2, "a command is missing; expected one of check, run, "},
    };
    for (const auto& [arguments, status, part] : kCases) {
        SCOPED_TRACE(arguments);
        FILE* const program = popen((std::string(DCSIM) + " " + arguments + " 2>&1").c_str(), "r");
        std::string output;
        char buffer[4096];
        for (size_t got = 0; (got = fread(buffer, 1, sizeof buffer, program)) > 0;) output.append(buffer, got);
        EXPECT_EQ(WEXITSTATUS(pclose(program)), status);
        EXPECT_THAT(output, HasSubstr(part));
    }
}

// dcsim shell at its own terminal; killed at the end if it has not left.
class ShellAtTerminal {
public:
    ShellAtTerminal() {
        const winsize size = {24, 200, 0, 0};
        child = forkpty(&terminal, nullptr, nullptr, &size);
        if (child == 0) {
            signal(SIGINT, SIG_DFL);  // as at a login, also where the tests run in the background
            // libedit never frees the names of functions that are added to it, so leaks are not looked for here.
            execl("/bin/sh", "sh", "-c", "TERM=xterm NO_COLOR=1 ASAN_OPTIONS=detect_leaks=0 exec " DCSIM " shell",
                  nullptr);
            _exit(127);
        }
    }
    ~ShellAtTerminal() {
        close(terminal);
        if (child <= 0) return;
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    ShellAtTerminal(const ShellAtTerminal&) = delete;
    ShellAtTerminal& operator=(const ShellAtTerminal&) = delete;

    void type(const std::string& keys) {
        EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    // Reads until text appears, and takes what stands up to its end; false when half a minute brings nothing.
    bool sees(const std::string& text) {
        constexpr int kPatience = 30'000;
        size_t found = 0;
        while ((found = output.find(text)) == std::string::npos) {
            pollfd ready = {terminal, POLLIN, 0};
            char buffer[4096];
            const ssize_t got = poll(&ready, 1, kPatience) == 1 ? read(terminal, buffer, sizeof buffer) : 0;
            if (got <= 0) return false;
            output.append(buffer, static_cast<size_t>(got));
        }
        output.erase(0, found + text.size());
        return true;
    }

    // The exit status, once everything that it has written has been read.
    int leave() {
        while (sees("\n")) {
        }
        int status = -1;
        waitpid(std::exchange(child, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string output;  // not yet taken

private:
    int terminal = -1;
    pid_t child = -1;
};

TEST(ShellTest, ATerminalHasPromptCompletionErrorsAndInterrupts) {
    ShellAtTerminal shell;
    ASSERT_TRUE(shell.sees("dcsim> "));
    shell.type("ini\t\n");
    ASSERT_TRUE(shell.sees("init"));
    ASSERT_TRUE(shell.sees("answer    init -> 0"));
    ASSERT_TRUE(shell.sees("dcsim> "));
    shell.type("setUn\t\t\n");
    ASSERT_TRUE(shell.sees("LEVEL is missing; expected setUnlimitedCT DISPLAY LEVEL"));
    ASSERT_TRUE(shell.sees("dcsim> "));
    shell.type("get\t");
    ASSERT_TRUE(shell.sees("getColorTransformMatrix  getColorTransformMatrix2  "));
    ASSERT_TRUE(shell.sees("dcsim> get"));
    shell.type("\x03setAlad 0 1\n");
    ASSERT_TRUE(shell.sees("answer    setAlad -> OK")) << "what stood before Ctrl-C is gone";
    shell.type("wait 1000h\n");
    ASSERT_TRUE(shell.sees("lux, mean"));
    shell.type("\x03");
    ASSERT_TRUE(shell.sees("answer    wait -> interrupted"));
    ASSERT_TRUE(shell.sees("dcsim> "));
    shell.type("quit\n");
    EXPECT_EQ(shell.leave(), 0);
}

}  // namespace
}  // namespace simulator
