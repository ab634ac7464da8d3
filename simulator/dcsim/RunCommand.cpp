// dcsim run: a script on the simulated phone.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>

#include "simulator/dcsim/Commands.h"
#include "simulator/script/Command.h"
#include "simulator/script/Session.h"

namespace dcsim {

namespace {

struct Options {
    std::string script;
    std::string phone;
    std::string picture = std::string(DISPLAY_CONTROL_DATA_DIR) + "/chart.png";
    std::string out = "out";
    bool json = false;
    std::string log = "debug";
};

const std::map<std::string, int32_t> kLogLevels = {{"debug", ANDROID_LOG_DEBUG},
                                                   {"info", ANDROID_LOG_INFO},
                                                   {"error", ANDROID_LOG_ERROR},
                                                   {"none", ANDROID_LOG_SILENT}};

// What is wrong with a word, or nothing.
std::string isLogLevel(const std::string& word) {
    return kLogLevels.count(word) != 0 ? "" : "\"" + word + "\" is no log level; expected debug, info, error or none";
}

int runLines(std::istream& lines, const std::string& name, simulator::Session& session) {
    std::string line;
    for (size_t number = 1; std::cout && std::getline(lines, line); ++number) {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (number == 1 && line.rfind(kByteOrderMark, 0) == 0) line.erase(0, kByteOrderMark.size());
        try {
            session.run(line, number);
        } catch (const std::runtime_error& error) {
            std::cerr << name << ":" << number << ": " << error.what() << "\n";
            return kWrongUse;
        }
    }
    if (lines.bad()) throw std::runtime_error(name + ": could not be read; expected a script");
    return kAllWell;
}

int run(const Options& options) {
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
    session.logPriority = kLogLevels.at(options.log);
    simulator::Session phone(std::move(session), timeline);
    return runLines(fromInput ? std::cin : file, fromInput ? "<stdin>" : options.script, phone);
}

std::string help() {
    constexpr size_t kSummaryColumn = 50;
    std::string text = "Commands of a script:\n";
    for (const simulator::Command& row : simulator::commands()) {
        std::string usage = "  " + simulator::usageOf(row);
        usage += usage.size() + 2 > kSummaryColumn ? "\n" + std::string(kSummaryColumn, ' ')
                                                   : std::string(kSummaryColumn - usage.size(), ' ');
        text += usage + std::string(row.summary) + "\n";
    }
    return text + "\nExample:\n  printf 'init\\nsetUnlimitedCT 0 -40\\npicture warm\\n' | dcsim run -";
}

}  // namespace

void addRun(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("run", "Runs a script on a simulated phone and shows what happens");
    command->add_option("script", options->script, "Script, one command a line; - for standard input")->required();
    command->add_option("--phone", options->phone, "The phone's files; used and changed where they are, not copied")
        ->type_name("DIR");
    command->add_option("--picture", options->picture, "Picture on the screen, instead of the test chart")
        ->type_name("IN.png");
    command->add_option("--out", options->out, "Where the pictures go; ./out if not given")->type_name("DIR");
    command->add_flag("--json", options->json, "One JSON object a line instead of text");
    command->add_option("--log", options->log, "Log lines shown: debug, info, error or none")
        ->check(isLogLevel)
        ->type_name("LEVEL");
    command->footer(help);
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
