// SPDX-License-Identifier: Apache-2.0
// dcsim report: everything about a calibration on one page.
#include <iostream>
#include <memory>

#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Progress.h"
#include "tools/json/ReportJson.h"
#include "tools/report/Page.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

struct Options {
    std::string script;
    std::string calibration;
    std::string trace;
    std::string panel;
    TargetArguments target;
    std::string out;
    bool json = false;
};

std::optional<std::filesystem::path> given(const std::string& file) {
    return file.empty() ? std::nullopt : std::optional<std::filesystem::path>(file);
}

int run(const Options& options) {
    if (options.out.empty() && !options.json)
        throw std::runtime_error("report: nowhere to put the report; expected -o FILE, --json or both");
    simulator::requireNoInput(options.out, {options.script, options.calibration, options.trace, options.panel});
    std::optional<simulator::PanelInput> panel;
    if (!options.panel.empty()) panel = {options.panel, targetOf(options.target)};
    Progress progress("replaying");
    const simulator::Report report =
        simulator::gatherReport({given(options.script), given(options.calibration), given(options.trace), panel,
                                 [&progress](double share) { progress.show(share); }});
    progress.wipe();
    const std::string json = simulator::lineOf(toJson(report));
    if (!options.out.empty()) simulator::replaceFile(options.out, simulator::renderPage(json));
    if (options.json) {
        std::cout << json << "\n";
    } else {
        std::cout << "The report is in " << simulator::harmless(options.out) << "\n";
    }
    return report.calibration.findings.empty() ? kAllWell : kFindings;
}

}  // namespace

void addReport(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("report", "Shows all about a calibration on one page");
    command->add_option("SCRIPT", options->script,
                        "Session to show, one command a line, - for standard input; a short one if not given");
    command->add_option("--calibration", options->calibration, "Calibration file; the sample phone's if not given")
        ->type_name("FILE");
    command->add_option("--trace", options->trace, "Light trace, CSV lines of SECONDS,LUX, for a timeline")
        ->type_name("TRACE.csv");
    auto* const panel =
        command->add_option("--panel", options->panel,
                            "Measurement of the panel without calibration, for the accuracy figures after the script");
    panel->type_name("PANEL.ti3");
    addTargetOptions(*command, options->target);
    for (const char* const option : {"--target", "--white", "--gamma"}) command->get_option(option)->needs(panel);
    command->add_option("-o", options->out, "Where the page goes: one HTML file that needs nothing else")
        ->type_name("FILE.html");
    command->add_flag("--json", options->json, "What the page shows, as one JSON document");
    command->footer(
        "The status is 1 when the calibration has findings; the page shows them. Limits of the accuracy figures do "
        "not\n"
        "change it, see dcsim accuracy.\n\nExample:\n"
        "  dcsim report --calibration panel.xml --panel data/panels/cool.ti3 -o report.html");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
