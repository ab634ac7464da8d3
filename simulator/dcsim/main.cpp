// dcsim: the simulated phone's program.
#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

#include "simulator/script/Command.h"
#include "simulator/script/Session.h"

namespace {

constexpr int kExitWrongUse = 2;

struct RunOptions {
    std::string script;
    std::string phone;
    std::string picture = std::string(DISPLAY_CONTROL_DATA_DIR) + "/chart.png";
    std::string out = "out";
    bool json = false;
    int32_t logPriority = ANDROID_LOG_DEBUG;
};

int runLines(std::istream& lines, const std::string& name, simulator::Session& session) {
    std::string line;
    for (size_t number = 1; std::getline(lines, line); ++number) {
        try {
            session.run(line, number);
        } catch (const std::runtime_error& error) {
            std::cerr << name << ":" << number << ": " << error.what() << "\n";
            return kExitWrongUse;
        }
    }
    return EXIT_SUCCESS;
}

int run(const RunOptions& options) {
    using simulator::Timeline;
    const bool fromInput = options.script == "-";
    std::ifstream file;
    if (!fromInput) {
        file.open(options.script);
        if (!file || std::filesystem::is_directory(options.script))
            throw std::runtime_error(options.script + ": could not be read; expected a script");
    }

    Timeline timeline(std::cout, options.json ? Timeline::Format::JSON : Timeline::Format::TEXT);
    simulator::SessionOptions session;
    if (!options.phone.empty()) session.phone = options.phone;
    session.picture = simulator::loadPng(options.picture);
    session.out = options.out;
    session.logPriority = options.logPriority;
    simulator::Session phone(std::move(session), timeline);
    return runLines(fromInput ? std::cin : file, fromInput ? "<stdin>" : options.script, phone);
}

const std::map<std::string, int32_t> kLogLevels = {{"debug", ANDROID_LOG_DEBUG},
                                                   {"info", ANDROID_LOG_INFO},
                                                   {"error", ANDROID_LOG_ERROR},
                                                   {"none", ANDROID_LOG_SILENT}};

void addRun(CLI::App& app, RunOptions& options) {
    CLI::App* const command = app.add_subcommand("run", "Runs a script on a simulated phone and shows what happens");
    command->add_option("script", options.script, "Script, one command a line; - for standard input")->required();
    command->add_option("--phone", options.phone, "The phone's files; used as they stand, not copied")
        ->type_name("DIR");
    command->add_option("--picture", options.picture, "Picture on the screen, instead of the test chart")
        ->type_name("IN.png");
    command->add_option("--out", options.out, "Where the pictures go; ./out if not given")->type_name("DIR");
    command->add_flag("--json", options.json, "One JSON object a line instead of text");
    command->add_option("--log", options.logPriority, "Log lines shown: debug, info, error or none")
        ->transform(CLI::CheckedTransformer(kLogLevels, CLI::ignore_case).description(""))
        ->type_name("LEVEL");
    command->footer([] {
        std::string text = "Commands of a script:\n";
        for (const simulator::Command& row : simulator::commands()) {
            std::string usage = "  " + simulator::usageOf(row);
            usage.resize(std::max<size_t>(usage.size() + 2, 48), ' ');
            text += usage + std::string(row.summary) + "\n";
        }
        return text + "\nExample:\n  printf 'init\\nsetUnlimitedCT 0 -40\\npicture warm\\n' | dcsim run -\n";
    });
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("The display-control service on a simulated phone", "dcsim");
    app.require_subcommand(1);
    RunOptions options;
    addRun(app, options);
    try {
        app.parse(argc, argv);
        return run(options);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : kExitWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << error.what() << "\n";
        return kExitWrongUse;
    }
}
