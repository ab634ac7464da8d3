// SPDX-License-Identifier: Apache-2.0
// dcsim: the display-control service on a simulated phone.
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Signals.h"
#include "tools/session/Command.h"
#include "tools/text/Text.h"

namespace {

// The first word names a command, unless it is one of the program's options.
void requireCommand(const CLI::App& app, const std::string& word) {
    std::string names;
    for (const CLI::App* const command : app.get_subcommands({})) {
        if (command->get_name() == word) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    if (word.empty()) throw std::runtime_error("a command is missing; expected one of " + names);
    if (word != "-h" && word != "--help" && word != "--version")
        throw std::runtime_error("unknown command \"" + word + "\"; expected one of " + names);
}

// Without its hyphens; empty if none is near.
std::string_view nearestOption(const std::string& word, const CLI::App& command) {
    if (word.rfind("--", 0) != 0) return {};
    std::vector<std::string_view> known;
    for (const CLI::Option* const option : command.get_options())
        known.insert(known.end(), option->get_lnames().begin(), option->get_lnames().end());
    return simulator::nearestOf(std::string_view(word).substr(2), known);
}

// What is wrong, and how the command is used.
std::string messageOf(const CLI::ParseError& error, const CLI::App& command) {
    std::string what = error.what();
    if (what.find("; expected ") != std::string::npos) return what;
    for (const std::string& word : command.remaining()) {
        const std::string_view nearest = nearestOption(word.substr(0, word.find('=')), command);
        if (!nearest.empty())
            return "unknown option " + simulator::inQuotes(word) + "; expected --" + std::string(nearest);
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
        what = "unknown argument " + simulator::inQuotes(what.substr(what.find(": ") + 2));
    const std::string usage = CLI::Formatter().make_usage(&command, "dcsim " + command.get_name());
    return what + "; expected " +
           usage.substr(usage.find("dcsim"), usage.find_last_not_of('\n') + 1 - usage.find("dcsim"));
}

}  // namespace

int main(int argc, char** argv) {
    dcsim::watchSignals();
    CLI::App app("The display-control service on a simulated phone", "dcsim");
    app.require_subcommand(1);
    for (const auto& [label, text] : {std::pair("SUBCOMMAND", "COMMAND"), std::pair("Positionals", "Arguments"),
                                      std::pair("TEXT", ""), std::pair("REQUIRED", "")})
        app.get_formatter()->label(label, text);
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
    for (CLI::App* const command : app.get_subcommands({})) command->group("Commands");
    try {
        requireCommand(app, argc > 1 ? argv[1] : "");
        app.parse(argc, argv);
        std::cout.flush();
        if (!std::cout) throw std::runtime_error("standard output could not be written; expected a place for it");
        return status;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);  // help or version
        std::cerr << "dcsim: " << simulator::harmless(messageOf(error, *app.get_subcommand(argv[1]))) << "\n";
        return dcsim::kWrongUse;
    } catch (const simulator::ScriptError& error) {
        std::cerr << simulator::harmless(error.what()) << "\n";
        return dcsim::kWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << simulator::harmless(error.what()) << "\n";
        return dcsim::kWrongUse;
    }
}
