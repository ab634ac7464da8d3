// SPDX-License-Identifier: Apache-2.0
// dcsim accuracy: how right a measured panel's picture is.
#include <iostream>
#include <memory>
#include <optional>

#include "tools/accuracy/AccuracyTable.h"
#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/json/AccuracyJson.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

struct Options {
    StateArguments state;
    TargetArguments target;
    std::string panel;
    std::string limits;
    std::string measured;
    std::string patches;
    bool json = false;
};

std::optional<simulator::DrivenMeasurement> measuredOf(const Options& options, const simulator::Target& target) {
    if (options.measured.empty()) return std::nullopt;
    return simulator::DrivenMeasurement{options.measured, patchesOf(options.patches, target),
                                        simulator::readMeasurement(options.measured)};
}

int run(const Options& options) {
    const simulator::Target target = targetOf(options.target);
    const simulator::Limits limits =
        options.limits.empty() ? simulator::Limits() : simulator::readLimits(options.limits);
    const simulator::MeasuredPanel panel(options.panel);
    const simulator::Accuracy accuracy =
        simulator::accuracyOf(statesOf(options.state), panel, target, limits, measuredOf(options, target));
    if (options.json) {
        std::cout << simulator::lineOf(simulator::accuracyToJson(accuracy), 2) << "\n";
    } else {
        std::cout << simulator::harmless(simulator::textOf(accuracy));
    }
    return simulator::isKept(accuracy) ? kAllWell : kFindings;
}

}  // namespace

void addAccuracy(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("accuracy", "Says how close a measured panel comes to its target");
    addStateOptions(*command, options->state);
    command->add_option("--panel", options->panel, "Measurement of the panel without calibration")
        ->required()
        ->type_name("PANEL.ti3");
    addTargetOptions(*command, options->target);
    command->add_option("--limits", options->limits, "Limits in place of the defaults: a JSON object")
        ->type_name("FILE.json");
    CLI::Option* const measured =
        command->add_option("--measured", options->measured, "Measured values in place of the model's")
            ->type_name("AFTER.ti3");
    command->add_option("--patches", options->patches, "Patches that --measured shows; the standard list if not given")
        ->needs(measured)
        ->type_name("PATCHES.ti1");
    command->add_flag("--json", options->json, "All figures as one JSON document");
    command->footer(
        "The composer's state after the script drives a model of the panel. A file of limits has some of the members\n"
        "of {\"white\": 2, \"greyChroma\": 2, \"gamma\": 0.1, \"colorCheckerMean\": 1, \"colorCheckerLargest\": 2.5,\n"
        "\"coverage\": 98}, here with their defaults: dE2000 of white, dC, difference from the target's exponent, "
        "dE2000,\n"
        "dE2000, and percent. Exit status: 0 all limits are kept, 1 a limit fails, 2 wrong use or input.\n\nExample:\n"
        "  dcsim accuracy --panel data/panels/cool.ti3 --calibration panel.xml");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
