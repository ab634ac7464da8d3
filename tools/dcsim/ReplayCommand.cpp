// SPDX-License-Identifier: Apache-2.0
// dcsim replay: recorded light on the simulated phone.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Progress.h"
#include "tools/json/LightJson.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

using simulator::Decision;
using simulator::ReplaySummary;

struct Options {
    std::string trace;
    std::string out = "out";
    bool json = false;
};

double secondsOf(std::chrono::milliseconds time) {
    return std::chrono::duration<double>(time).count();
}

// One row a sample.
class TimelineFile {
public:
    TimelineFile(const std::filesystem::path& folder, const std::filesystem::path& trace)
        : name(folder / trace.stem().concat("-timeline.csv")) {
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        stream.open(name);
        if (!stream)
            throw std::runtime_error(name.string() + ": could not be written; expected a folder for the timeline");
        stream << "seconds,lux,mean,state,target_level,composer_level\n";
    }

    void add(const Decision& decision) {
        const auto level = [](const std::optional<int32_t>& value) { return value ? std::to_string(*value) : ""; };
        char seconds[32];
        snprintf(seconds, sizeof seconds, "%.3f", secondsOf(decision.time));
        stream << seconds << "," << decision.lux << "," << decision.mean << ","
               << (decision.composerLevel ? "on" : "off") << "," << level(decision.targetLevel) << ","
               << level(decision.composerLevel) << "\n";
    }

    void finish() {
        stream.close();
        if (!stream)
            throw std::runtime_error(name.string() + ": could not be written to its end; expected room on the disk");
    }

    const std::filesystem::path name;

private:
    std::ofstream stream;
};

// "levels 10 to 41, 32 messages in 0.640 s".
std::string messagesText(const Decision& decision) {
    const auto& messages = decision.messages;
    const auto levelOf = [](const simulator::CurveMessage& message) {
        return message.level ? std::to_string(*message.level) : "off";
    };
    std::string text = "level " + levelOf(messages.front());
    const bool turnsOff = messages.size() > 2 && !messages.back().level;
    if (turnsOff) text += " to " + levelOf(messages[messages.size() - 2]);
    if (messages.size() > 1) text += (turnsOff ? ", then " : " to ") + levelOf(messages.back());
    return text + ": " + std::to_string(messages.size()) + (messages.size() == 1 ? " message" : " messages");
}

void printText(const Decision& decision) {
    char line[128];
    snprintf(line, sizeof line, "%10.3f  lux %-7d mean %-7d  ", secondsOf(decision.time), decision.lux, decision.mean);
    std::cout << line << decision.reason() << "\n" << std::string(12, ' ') << "ring";
    for (const int32_t sample : decision.ring) std::cout << " " << sample;
    std::cout << "\n" << std::string(12, ' ') << messagesText(decision) << "\n";
}

void printSummary(const ReplaySummary& summary, const std::string& timeline) {
    std::cout << "\n"
              << summary.samples << " samples; switched on: " << summary.activations
              << ", off: " << summary.deactivations << "; " << summary.messages << " messages, highest level "
              << summary.highestLevel << "\nEvery sample is in " << simulator::harmless(timeline) << "\n";
}

int run(const Options& options) {
    const simulator::LightTrace trace = simulator::readLightTrace(options.trace);
    TimelineFile timeline(options.out, options.trace);
    ReplaySummary summary;
    Progress progress("replaying");
    simulator::replay(trace, [&](const Decision& decision) {
        summary.add(decision);
        timeline.add(decision);
        progress.show(shareDone(decision, trace));
        if (options.json || !decision.messages.empty()) progress.wipe();
        if (options.json) {
            std::cout << simulator::lineOf(toJson(decision)) << "\n";
        } else if (!decision.messages.empty()) {
            printText(decision);
        }
    });
    timeline.finish();
    const std::string file = timeline.name.string();
    if (options.json) {
        std::cout << simulator::lineOf(toJson(summary, file)) << "\n";
    } else {
        printSummary(summary, file);
    }
    return kAllWell;
}

}  // namespace

void addReplay(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("replay", "Plays recorded light to a simulated phone and explains each decision");
    command->add_option("TRACE", options->trace, "Light trace, CSV lines of SECONDS,LUX")->required();
    command->add_option("--out", options->out, "Folder for the timeline, TRACE-timeline.csv; ./out if not given")
        ->type_name("DIR");
    command->add_flag("--json", options->json, "Prints one JSON object a line, for every sample, instead of text");
    command->footer(
        "The text shows the samples that cause messages to the composer. Times count from the trace's first "
        "sample.\n\nExample:\n  dcsim replay data/traces/tunnel.csv");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
