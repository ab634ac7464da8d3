// SPDX-License-Identifier: Apache-2.0
// dcsim diff: what differs between two calibrations.
#include <cstdio>
#include <iostream>
#include <memory>

#include "tools/accuracy/Accuracy.h"
#include "tools/accuracy/CalibrationDifferences.h"
#include "tools/accuracy/CalibrationFile.h"
#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/json/CalibrationJson.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

struct Options {
    std::string before;
    std::string after;
    std::string panel;
    TargetArguments target;
    bool json = false;
};

// What the composer holds in standard mode with a calibration.
simulator::DisplayState stateWith(const std::string& calibration) {
    StateArguments state;
    state.calibration = calibration;
    return statesOf(state).end;
}

void print(const simulator::CalibrationDifferences& differences) {
    for (const auto& difference : differences.blocks) std::cout << simulator::sentenceOf(difference) << "\n";
    std::cout << "\nThe composer receives in standard mode:\n";
    for (const auto& difference : differences.composer) std::cout << "  " << simulator::sentenceOf(difference) << "\n";
    if (differences.composer.empty()) std::cout << "  the same\n";
    if (!differences.shown) return;
    printf("\nOn the panel, ColorChecker: mean dE2000 %.2f, largest %.2f\n", differences.shown->mean,
           differences.shown->largest);
}

int run(const Options& options) {
    simulator::CalibrationDifferences differences{};
    differences.blocks = simulator::differencesOf(*simulator::readCalibrationFile(options.before),
                                                  *simulator::readCalibrationFile(options.after));
    const simulator::DisplayState before = stateWith(options.before);
    const simulator::DisplayState after = stateWith(options.after);
    differences.composer = simulator::differencesOf(before, after);
    if (!options.panel.empty())
        differences.shown = simulator::compareShown(before, after, simulator::MeasuredPanel(options.panel).model,
                                                    targetOf(options.target));
    if (options.json) {
        std::cout << simulator::lineOf(simulator::differencesToJson(differences), 2) << "\n";
    } else if (differences.blocks.empty()) {
        std::cout << "The library reads the same from both.\n";
    } else {
        print(differences);
    }
    return differences.blocks.empty() ? kAllWell : kFindings;
}

}  // namespace

void addDiff(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("diff", "Compares two calibration files as the library reads them");
    command->add_option("OLD", options->before, "Calibration file")->required();
    command->add_option("NEW", options->after, "Calibration file")->required();
    auto* const panel = command->add_option("--panel", options->panel, "Measured panel, to compare what it shows");
    panel->type_name("PANEL.ti3");
    addTargetOptions(*command, options->target);
    for (const char* const option : {"--target", "--white", "--gamma"}) command->get_option(option)->needs(panel);
    command->add_flag("--json", options->json, "One JSON document instead of text");
    command->footer(
        "Exit status: 0 the same, 1 they differ, 2 wrong use or input.\n\nExample:\n"
        "  dcsim diff data/phone/vendor/etc/disp_calib_data_0a.xml panel.xml --panel data/panels/cool.ti3");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
