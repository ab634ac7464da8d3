// SPDX-License-Identifier: Apache-2.0
// dcsim: the display-control service on a simulated phone.
#include <csignal>
#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tools/dcsim/Commands.h"
#include "tools/session/Command.h"
#include "tools/text/Text.h"

namespace {

// The first word names a command, unless it is an option.
void requireCommand(const CLI::App& app, const std::string& word) {
    std::string names;
    for (const CLI::App* const command : app.get_subcommands({})) {
        if (command->get_name() == word) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    if (word.empty()) throw std::runtime_error("a command is missing; expected one of " + names);
    if (word[0] != '-') throw std::runtime_error("unknown command \"" + word + "\"; expected one of " + names);
}

}  // namespace

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away is an output that cannot be written
    CLI::App app("The display-control service on a simulated phone", "dcsim");
    app.require_subcommand(1);
    app.set_version_flag("--version", "dcsim " DCSIM_VERSION);
    app.footer("Example:\n  dcsim run data/demo.script --out pictures");
    int status = dcsim::kAllWell;
    dcsim::addCheck(app, status);
    dcsim::addRun(app, status);
    dcsim::addShow(app, status);
    dcsim::addVerify(app, status);
    dcsim::addShell(app, status);
    dcsim::addReplay(app, status);
    dcsim::addReport(app, status);
    dcsim::addAccuracy(app, status);
    dcsim::addCalibrate(app, status);
    dcsim::addDiff(app, status);
    dcsim::addPatches(app, status);
    try {
        requireCommand(app, argc > 1 ? argv[1] : "");
        app.parse(argc, argv);
        std::cout.flush();
        if (!std::cout) throw std::runtime_error("standard output could not be written; expected a place for it");
        return status;
    } catch (const CLI::ParseError& error) {
        std::ostringstream said;
        const bool isHelp = app.exit(error, std::cout, said) == 0;
        std::cerr << simulator::harmless(said.str());
        return isHelp ? dcsim::kAllWell : dcsim::kWrongUse;
    } catch (const simulator::ScriptError& error) {
        std::cerr << simulator::harmless(error.what()) << "\n";
        return dcsim::kWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << simulator::harmless(error.what()) << "\n";
        return dcsim::kWrongUse;
    }
}
