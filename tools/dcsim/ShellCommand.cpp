// SPDX-License-Identifier: Apache-2.0
// dcsim shell: the script language at a prompt.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/LineEditor.h"
#include "tools/dcsim/SessionArguments.h"
#include "tools/dcsim/Signals.h"
#include "tools/dcsim/Terminal.h"
#include "tools/session/Completion.h"
#include "tools/session/Help.h"
#include "tools/text/LineReader.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

using simulator::Argument;
using simulator::Command;

// The commands of the script language, and below them the shell's own, which no session runs.
std::vector<Command> shellTable() {
    std::vector<Command> table = simulator::commands();
    Argument command = {"command", Argument::Kind::NAME, 1, /*optional=*/true};
    for (const Command& row : table) command.words.push_back(row.name);
    table.push_back({"help", {command}, "list the commands, or explain a command", nullptr, "this shell"});
    table.push_back({"quit", {}, "leave the shell", nullptr});
    table.push_back({"exit", {}, "leave the shell", nullptr});
    return table;
}

class Shell {
public:
    Shell(const SessionArguments& arguments, bool atTerminal)
        : timeline(writerOf(arguments, /*commands=*/!atTerminal)), session(optionsOf(arguments), timeline) {}

    // Carries out a line. Throws std::runtime_error when it is wrong.
    void step(std::string_view line, size_t number) {
        clearInterrupt();
        const simulator::ParsedLine parsed = simulator::parseLine(line, table);
        if (parsed.command == nullptr || parsed.command->run != nullptr) return session.run(line, number);
        if (parsed.command->name != "help") {
            left = true;
        } else if (parsed.values.size() == 0) {
            std::cout << simulator::helpOf(table) << std::flush;
        } else {
            std::cout << simulator::helpOf(simulator::commandNamed(parsed.values.text(0), table)) << std::flush;
        }
    }

    bool hasLeft() const { return left; }

    std::vector<std::string> completionsOf(std::string_view lineUpToCursor) {
        return simulator::completionsOf(
            lineUpToCursor,
            {table, session.phone().composer().hasStopped() ? 0 : session.phone().composer().displayCount()});
    }

private:
    static simulator::SessionOptions optionsOf(const SessionArguments& arguments) {
        simulator::SessionOptions options = seenSession(arguments);
        options.goOnWaiting = [](auto, auto) { return !isInterrupted(); };
        return options;
    }

    const std::vector<Command> table = shellTable();
    bool left = false;
    simulator::Timeline timeline;
    simulator::Session session;
};

int runAtTerminal(const SessionArguments& arguments) {
    Shell shell(arguments, /*atTerminal=*/true);
    LineEditor editor([&shell](std::string_view line) { return shell.completionsOf(line); });
    const bool color = useColor(STDERR_FILENO);
    std::cout << "A simulated phone; help lists the commands, quit leaves.\n" << std::flush;
    for (size_t number = 1; std::cout && !shell.hasLeft(); ++number) {
        const auto line = editor.next();
        if (!line) break;
        try {
            shell.step(*line, number);
        } catch (const std::runtime_error& error) {
            const std::string text = simulator::harmless(error.what());
            std::cerr << (color ? simulator::colored(simulator::kRed, text) : text) << "\n";
        }
    }
    return kAllWell;
}

// Goes to the next line that is not too long; false at the end. Reports the others, which make status kWrongUse.
bool nextLine(simulator::LineReader& script, int& status) {
    while (true) {
        try {
            return script.next();
        } catch (const simulator::LineTooLong& error) {
            std::cerr << simulator::harmless(error.what()) << "\n";
            status = kWrongUse;
        }
    }
}

int runPlain(const SessionArguments& arguments) {
    Shell shell(arguments, /*atTerminal=*/false);
    int status = kAllWell;
    simulator::LineReader script(std::cin, "<stdin>", "a script");
    while (std::cout && !shell.hasLeft() && nextLine(script, status)) {
        try {
            shell.step(script.line(), script.number());
        } catch (const std::runtime_error& error) {
            std::cerr << simulator::harmless(script.place() + error.what()) << "\n";
            status = kWrongUse;
        }
    }
    return status;
}

int shell(const SessionArguments& arguments) {
    keepInterrupts();
    const bool atTerminal = isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
    return atTerminal ? runAtTerminal(arguments) : runPlain(arguments);
}

}  // namespace

void addShell(CLI::App& app, int& status) {
    const auto options = std::make_shared<SessionArguments>();
    CLI::App* const command = app.add_subcommand("shell", "Runs the commands of scripts as they are typed at a prompt");
    addPhoneOption(*command, *options);
    addPictureOptions(*command, *options);
    addJsonFlag(*command, *options);
    command->footer(
        "Ctrl-C ends a wait, and otherwise clears the line. Input that does not come from a terminal gets no\n"
        "prompt, and the exit status is 2 if a line was wrong.\n\nExample:\n  dcsim shell\n  dcsim> help "
        "setUnlimitedCT");
    command->callback([options, &status] { status = shell(*options); });
}

}  // namespace dcsim
