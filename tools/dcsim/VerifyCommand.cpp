// SPDX-License-Identifier: Apache-2.0
// dcsim verify: a session compared with a stored one.
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Progress.h"
#include "tools/dcsim/SessionArguments.h"
#include "tools/json/StoredSession.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

using simulator::Difference;
using simulator::Json;
using simulator::SessionDump;

struct Options : SessionArguments {
    std::string script;
    std::string expected;
    bool update = false;
};

std::string textOf(const std::optional<Json>& value) {
    constexpr size_t kLongest = 300;
    const std::string text = value ? simulator::lineOf(*value) : "nothing";
    return text.size() > kLongest ? text.substr(0, kLongest) + " ..." : text;
}

// "composer call 12 of 30, setColorTransformMatrix, at 0.020 s".
std::string placeOf(size_t number, const std::vector<SessionDump::Call>& calls) {
    const std::string place = "composer call " + std::to_string(number);
    const std::string count = std::to_string(calls.size());
    if (number > calls.size()) return place + " is missing: the session has " + count;
    const auto& [ms, call] = calls[number - 1];
    char time[32];
    snprintf(time, sizeof time, ", at %.3f s", static_cast<double>(ms) / 1000);
    return place + " of " + count + ", " + std::string(nameOf(simulator::kComposerOperations, call.operation)) + time;
}

void printDifference(const Options& options, const Difference& difference, const SessionDump& got) {
    if (options.json) {
        std::cout << simulator::lineOf(toJson(difference, got)) << "\n";
        return;
    }
    std::cout << simulator::harmless(options.script + ": the session differs from " + options.expected) << "\n  "
              << (difference.call ? placeOf(*difference.call, got.calls) : "state at the end") << "\n  "
              << difference.path << "\n  expected  " << textOf(difference.expected) << "\n  got       "
              << textOf(difference.got) << "\n";
}

void printDone(const Options& options, const char* event, const std::string& text, const SessionDump& dump) {
    if (options.json) {
        std::cout << simulator::lineOf(verdictToJson(event, dump)) << "\n";
    } else {
        std::cout << simulator::harmless(text) << ": " << dump.calls.size()
                  << " composer calls and the state at the end\n";
    }
}

int verify(const Options& options) {
    const simulator::ScriptFile script(options.script);
    // A file that exists is replaced only if it is a stored session.
    const bool isFirst = options.update && !std::filesystem::exists(options.expected);
    const Json expected = isFirst ? Json() : simulator::readDump(options.expected);
    Progress progress("waiting");
    simulator::SessionOptions session = unseenSession(options);
    showWaits(session, progress);
    const SessionDump got = simulator::dumpOf(script, std::move(session));
    if (options.update) {
        simulator::writeDump(toJson(got), options.expected);
        printDone(options, "written", options.expected + ": written", got);
        return kAllWell;
    }
    if (const auto difference = simulator::firstDifference(expected, toJson(got))) {
        printDifference(options, *difference, got);
        return kFindings;
    }
    printDone(options, "same", options.script + ": as expected", got);
    return kAllWell;
}

}  // namespace

void addVerify(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "verify", "Compares a script's composer calls and the state at its end with a stored session");
    command->add_option("SCRIPT", options->script, "Script; - is standard input")->required();
    command->add_option("STORED", options->expected, "Stored session, a JSON file")->required();
    command->add_flag("--update", options->update,
                      "Stores the session, in a new file or in place of a stored session, instead of comparing it");
    addPhoneOption(*command, *options);
    addJsonFlag(*command, *options);
    command->footer(
        "The first difference is printed, with exit status 1. Pictures are not written.\n\n"
        "Example:\n  dcsim verify data/demo.script data/demo.expected.json");
    command->callback([options, &status] { status = verify(*options); });
}

}  // namespace dcsim
