// SPDX-License-Identifier: Apache-2.0
// The program's commands: each adds itself to the command line.
#pragma once

#include <CLI/CLI.hpp>

namespace dcsim {

// Exit statuses of every command.
constexpr int kAllWell = 0;
constexpr int kFindings = 1;
constexpr int kWrongUse = 2;  // also for input that cannot be read

// A command sets status when it runs. What it throws is a std::exception whose text says what is wrong and what was
// expected, and means kWrongUse; a simulator::ScriptError says the script and the line too.
void addAccuracy(CLI::App& app, int& status);
void addCalibrate(CLI::App& app, int& status);
void addCheck(CLI::App& app, int& status);
void addDiff(CLI::App& app, int& status);
void addPatches(CLI::App& app, int& status);
void addReplay(CLI::App& app, int& status);
void addReport(CLI::App& app, int& status);
void addRun(CLI::App& app, int& status);
void addShell(CLI::App& app, int& status);
void addShow(CLI::App& app, int& status);
void addVerify(CLI::App& app, int& status);

}  // namespace dcsim
