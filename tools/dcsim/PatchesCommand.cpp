// SPDX-License-Identifier: Apache-2.0
// dcsim patches: what drives the panel for the patches that an instrument measures.
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

struct Options {
    std::string patches;
    StateArguments state;
    TargetArguments target;
    std::string out;
};

int run(Options options) {
    simulator::requireNoInput(options.out, {options.patches, options.state.script, options.state.calibration});
    for (const std::string& file : {options.patches, options.state.script}) {
        if (std::filesystem::path(file).extension() == ".ti3")
            throw std::runtime_error(file + ": is a measurement; expected a list of patches, PATCHES.ti1, or a script");
    }
    // A single file may be the script.
    if (options.state.script.empty() && std::filesystem::path(options.patches).extension() != ".ti1")
        std::swap(options.patches, options.state.script);
    const auto patches = patchesOf(options.patches, targetOf(options.target));
    const auto driven = simulator::drivenPatches(statesOf(options.state).end, patches);
    simulator::replaceFile(options.out, simulator::toTi1(driven));
    std::cout << simulator::harmless(options.out) << ": " << driven.size() << " patches\n";
    return kAllWell;
}

}  // namespace

void addPatches(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("patches", "Writes what drives the panel for patches that an instrument measures");
    command->add_option("PATCHES", options->patches,
                        "Patches as applications draw them, PATCHES.ti1; white three times, 33 greys, primaries, "
                        "secondaries and the ColorChecker if not given");
    addStateOptions(*command, options->state);
    addTargetOptions(*command, options->target);
    command->add_option("-o", options->out, "Where the driven patches go: RGB 0 to 100, not rounded to codes")
        ->required()
        ->type_name("DRIVEN.ti1");
    command->footer(
        "An instrument measures the driven patches on the panel without calibration; dcsim accuracy --measured takes\n"
        "the result. --target and --white choose the ColorChecker's colours.\n\nExample:\n"
        "  dcsim patches --calibration panel.xml -o driven.ti1\n"
        "  dcsim accuracy --calibration panel.xml --panel panel.ti3 --measured driven.ti3");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
