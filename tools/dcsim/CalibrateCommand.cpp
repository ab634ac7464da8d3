// SPDX-License-Identifier: Apache-2.0
// dcsim calibrate: a calibration file from a measured panel.
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

#include "simulator/PhoneFiles.h"
#include "tools/accuracy/AccuracyTable.h"
#include "tools/accuracy/CalibrationFile.h"
#include "tools/accuracy/SimulatedBlocks.h"
#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/json/CalibrationJson.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

struct Options {
    std::string panel;
    std::string out;
    std::string base;
    bool simulated = false;
    TargetArguments target;
    bool json = false;
};

std::string errorsText(const simulator::ColorErrors& errors) {
    char text[64];
    snprintf(text, sizeof text, "mean dE2000 %.2f, largest %.2f", errors.mean, errors.largest);
    return text;
}

std::string stated(const std::string& text) {
    return text.empty() ? "not stated" : text;
}

// The libraries' blocks that a calibration has no values for.
std::string leftOut(const simulator::ConfigXmlParser& record) {
    std::string names;
    for (const auto& [name, isThere] : {std::pair("UnlimitedCT", record.hasUnlimitedCT),
                                        {"EyeCare", record.hasEyeCare},
                                        {"WPCParam", record.hasWpcParam}}) {
        if (!isThere) names += std::string(names.empty() ? "" : ", ") + name;
    }
    return names;
}

// The comment of the file: what it was made from, and how close it comes.
std::string aboutOf(const simulator::PanelCalibration& calibration, const simulator::ConfigXmlParser& record,
                    const simulator::MeasuredPanel& panel, const simulator::Target& target) {
    std::ostringstream text;
    text << "    Display calibration, made by dcsim " DCSIM_VERSION "\n\n"
         << "    source        " << std::filesystem::path(panel.file).filename().string() << ", "
         << panel.native.patches.size() << " patches\n"
         << "    instrument    " << stated(panel.native.instrument) << "\n"
         << "    measured      " << stated(panel.native.date) << "\n"
         << "    panel model   " << errorsText(panel.model.residual()) << " from the measurement\n"
         << "    target        " << simulator::textOf(target) << "\n"
         << "    fitted        " << calibration.fitted.size()
         << " patches: " << errorsText(simulator::summaryOf(calibration.fitted)) << "; white " << std::fixed
         << std::setprecision(2) << calibration.fitted.front() << "\n"
         << "    not fitted    " << calibration.keptOut.size()
         << " patches: " << errorsText(simulator::summaryOf(calibration.keptOut)) << "\n"
         << "    out of gamut  " << calibration.outOfGamut << " patches\n";
    const std::string missing = leftOut(record);
    if (!missing.empty()) text << "    left out      " << missing << ": their defaults apply\n";
    for (const std::string& warning : simulator::warningsOf(calibration))
        text << "    warning       " << warning << "\n";
    return text.str();
}

std::unique_ptr<simulator::ConfigXmlParser> recordOf(const Options& options, const simulator::PanelCalibration& made,
                                                     const simulator::PanelModel& panel) {
    auto record = std::make_unique<simulator::ConfigXmlParser>();
    simulator::setCalibration(made, *record);
    if (!options.base.empty()) simulator::copyLibraryBlocks(*simulator::readCalibrationFile(options.base), *record);
    if (options.simulated) simulator::setSimulatedBlocks(panel, *record);
    return record;
}

// The accuracy with the text of a calibration that will have that name.
simulator::Accuracy accuracyWith(const std::string& xml, const std::string& name, const simulator::MeasuredPanel& panel,
                                 const simulator::Target& target) {
    simulator::PhoneFiles folder = simulator::PhoneFiles::empty();
    folder.write("/panel.xml", xml);
    StateArguments state;
    state.calibration = folder.pathOf("/panel.xml");
    simulator::ServiceStates states = statesOf(state);
    states.calibration = name;
    return simulator::accuracyOf(states, panel, target);
}

int run(const Options& options) {
    simulator::requireNoInput(options.out, {options.panel});  // it may replace the base
    const simulator::Target target = targetOf(options.target);
    const simulator::MeasuredPanel panel(options.panel);
    const simulator::PanelCalibration made = simulator::calibrate(panel.model, target);
    const auto record = recordOf(options, made, panel.model);
    const std::string about = aboutOf(made, *record, panel, target);
    const std::string xml = simulator::calibrationXml(*record, about, options.simulated);
    const simulator::Accuracy accuracy = accuracyWith(xml, options.out, panel, target);
    simulator::replaceFile(options.out, xml);
    if (options.json) {
        std::cout << simulator::lineOf(simulator::calibrationToJson(options.out, made, accuracy), 2) << "\n";
    } else {
        std::cout << simulator::harmless(about + "\n" + textOf(accuracy)) << "\nThe calibration is in "
                  << simulator::harmless(options.out) << "\n";
    }
    return simulator::isKept(accuracy) ? kAllWell : kFindings;
}

}  // namespace

void addCalibrate(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("calibrate", "Makes the calibration file of a measured panel");
    command->add_option("PANEL", options->panel, "Measurement of the panel without calibration, a .ti3 file")
        ->required();
    command->add_option("-o", options->out, "Where the calibration goes")->required()->type_name("PANEL.xml");
    auto* const base =
        command
            ->add_option("--base", options->base, "Calibration from which UnlimitedCT, EyeCare and WPCParam are copied")
            ->type_name("OLD.xml");
    command
        ->add_flag("--simulated", options->simulated,
                   "Writes these three blocks for the simulated libraries, fitted to this panel")
        ->excludes(base);
    addTargetOptions(*command, options->target);
    command->add_flag("--json", options->json, "The figures as one JSON document");
    command->footer(
        "Writes CTM_WPC, CTM_CCM and Gamma_Calib. UnlimitedCT, EyeCare and WPCParam are read by the phone's closed\n"
        "libraries: they are left out unless an option says where they come from. The figures are those of dcsim\n"
        "accuracy. Exit status: 0 all limits are kept, 1 a limit fails (the file is written), 2 wrong use or input\n"
        "(nothing is written).\n\nExample:\n"
        "  dcsim calibrate data/panels/oled.ti3 -o panel.xml --base data/phone/vendor/etc/disp_calib_data_0a.xml");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
