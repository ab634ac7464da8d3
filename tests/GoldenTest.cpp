// SPDX-License-Identifier: Apache-2.0
// One long session, compared with the file that holds its events: it notices changes of order and text.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/model/Comparison.h"

namespace model {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

const fs::path kRoot = fs::path(DISPLAY_CONTROL_DATA_DIR).parent_path();

// The log statement of a source of which that line is part; empty if there is none.
std::string statementAt(const fs::path& source, int number) {
    std::ifstream lines(source);
    std::string statement;
    bool isOver = true;
    for (std::string line; std::getline(lines, line); --number) {
        if (isOver) statement.clear();
        if (!isOver || line.find("PLATFORM_LOG_") != line.npos) statement += line;
        isOver = statement.empty() || line.find(");") != line.npos;
        if (number <= 1 && isOver) return statement;
    }
    return "";
}

// The log line begins with its tag, its function, and a line of that function's source that logs the message's first
// word.
void expectHead(const simulator::LogLine& log) {
    EXPECT_EQ(log.tag, "KovDisplayControlService") << log.message;
    if (log.function.empty()) return;  // one of the two that have no head
    const std::string word = log.message.substr(0, log.message.find_first_of(" :-0123456789"));
    bool isFound = false;
    for (const char* const folder : {"service", "alad", "calibration", "color"}) {
        for (const auto& source : fs::directory_iterator(kRoot / folder)) {
            std::ifstream file(source.path());
            const std::string text(std::istreambuf_iterator<char>(file), {});
            const bool isSource = log.function == "operator()" || text.find("::" + log.function + "(") != text.npos;
            const std::string statement = statementAt(source.path(), log.line);
            isFound = isFound || (isSource && !statement.empty() && statement.find(word) != statement.npos);
        }
    }
    EXPECT_TRUE(isFound) << log.function << ":" << log.line << ": " << log.message;
}

// Every operation on a phone on which everything works, then on one on which little works, then without a composer.
std::string aLongSession() {
    Settings complete;
    complete.calibrations[0].tuned.assign(4096, 0.5F);
    std::string text;
    Comparison c;
    c.begin(complete);
    c.observer = [&text](const simulator::Event& event) {
        text += std::to_string(event.time / 1ms) + " " + textOf(event) + "\n";
        if (const auto* const log = std::get_if<simulator::LogLine>(&event.what)) expectHead(*log);
    };
    const auto call = [&](const Call& each) {
        c.call(each);
        text += "answer " + textOf(each) + " -> " + c.answer() + "\n";
    };
    const auto light = [&c](float lux, std::chrono::milliseconds duration) { c.light(lux), c.pass(duration); };
    std::vector<Call> rest;
    for (const std::string& operation : operations()) {
        const bool isOften = operation == "init" || operation == "deInit" || operation == "setAlad";
        if (!isOften && operation != "allocUserHandle") rest.push_back({operation, 0, 2, 3, 4, {5.5, 6}});
    }
    const auto callAll = [&] {
        call({"init"});
        call({"setAlad", 0, 1});
        light(9000, 1s + 20ms);
        light(12000, 3s);
        for (const Call& each : rest) call(each);
        call({"setAlad", 0, 1});
        light(20000, 1s + 40ms);
        call({"setAlad", 0, 0});
    };
    callAll();
    Settings poor = c.settings();
    poor.displays = 1;
    poor.panel = {Kind::MISSING};
    poor.whitePoint.text = "x=1";
    poor.cabc = {Kind::MISSING};
    poor.calibrations[0].isWellFormed = false;
    poor.composerFailures[ComposerOperation::GET_DISPLAY_INFO] = Failure::REFUSED;
    poor.composerFailures[ComposerOperation::GET_GLOBAL_GAMMA_LUT] = Failure::NO_CALLBACK;
    poor.composerFailures[ComposerOperation::SET_COLOR_TRANSFORM_MATRIX] = Failure::TRANSPORT_AFTER;
    poor.sensorFailures[SensorOperation::DISABLE_SENSOR] = Failure::REFUSED;
    poor.results[ClosedFunction::GET_UNLIMITED_CT_PARAMS] = -7;
    c.set(poor);
    callAll();
    call({"deInit"});
    for (const Call& each : rest) call(each);
    c.observer = {};
    return text;
}

}  // namespace

TEST(Golden, ALongSessionIsAsItWas) {
    const fs::path golden = kRoot / "tests/golden/session.txt";
    const fs::path actual = kRoot / "tests/golden/session.actual.txt";
    std::ifstream file(golden);
    const std::string expected(std::istreambuf_iterator<char>(file), {});
    const std::string text = aLongSession();
    fs::remove(actual);
    if (text == expected) return;
    std::ofstream(actual) << text;
    FAIL() << "The session differs. See: diff " << golden << " " << actual << "\nTo accept it: mv " << actual << " "
           << golden;
}

}  // namespace model
