// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/AccuracyArguments.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "tools/check/Check.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

// What is wrong with a word, or nothing.
std::string isTarget(const std::string& word) {
    return simulator::primariesOf(word) ? "" : "\"" + word + "\" is not a target; expected srgb or display-p3";
}

// CLI::Range lets NaN pass.
std::string isExponent(const std::string& word) {
    double value = 0;
    const bool isNumber = CLI::detail::lexical_cast(word, value);
    return isNumber && value >= 1 && value <= 4 ? "" : "\"" + word + "\" is not an exponent; expected 1 to 4";
}

}  // namespace

void addChromaticityOption(CLI::App& command, const std::string& name, std::optional<simulator::Chromaticity>& value,
                           const std::string& description) {
    const auto read = [name, &value](const std::string& text) {
        simulator::Chromaticity xy{};
        int length = -1;
        const bool isRead =
            sscanf(text.c_str(), "%lf,%lf%n", &xy.x, &xy.y, &length) == 2 && text.c_str()[length] == '\0';
        if (!isRead || !(xy.x > 0 && xy.y > 0 && xy.x + xy.y <= 1))
            throw CLI::ValidationError(name,
                                       "\"" + text +
                                           "\" is not a chromaticity; expected CIE X,Y above 0, together at most 1 "
                                           "(the driver's thousandths divided by 1000)");
        value = xy;
    };
    command.add_option_function<std::string>(name, read, description)->type_name("X,Y");
}

void addTargetOptions(CLI::App& command, TargetArguments& arguments) {
    command.add_option("--target", arguments.target, "Primaries of the target: srgb (if not given) or display-p3")
        ->transform([](std::string word) { return CLI::detail::to_lower(std::move(word)); })
        ->check(isTarget)
        ->type_name("TARGET");
    addChromaticityOption(command, "--white", arguments.white,
                          "White of the target, CIE xy; 0.3127,0.3290 (D65) if not given");
    command
        .add_option("--gamma", arguments.gamma,
                    "Exponent of the target; 2.2 if not given. Another one is approximate for colours, because the "
                    "composer decodes with 2.2")
        ->check(isExponent)
        ->type_name("EXPONENT");
}

simulator::Target targetOf(const TargetArguments& arguments) {
    const auto target = simulator::makeTarget(simulator::primariesOf(arguments.target).value(),
                                              arguments.white.value_or(simulator::kD65), arguments.gamma);
    if (!target) throw std::runtime_error("--white: is outside the target's gamut; expected CIE x,y inside it");
    return *target;
}

std::vector<simulator::Patch> patchesOf(const std::string& file, const simulator::Target& target) {
    return file.empty() ? simulator::standardPatches(target) : simulator::readPatches(file);
}

void addStateOptions(CLI::App& command, StateArguments& arguments) {
    command.add_option("SCRIPT", arguments.script,
                       "Script; - is standard input; without one the service is started in standard mode");
    command
        .add_option("--phone", arguments.phone,
                    "Folder of the phone's files, of which a copy is used; the sample phone if not given")
        ->type_name("DIR");
    command.add_option("--calibration", arguments.calibration, "Calibration file instead of the panel's")
        ->type_name("FILE.xml");
}

simulator::ServiceStates statesOf(const StateArguments& arguments) {
    std::optional<simulator::ScriptFile> script;
    if (!arguments.script.empty()) script.emplace(arguments.script);
    simulator::ServiceRun run;
    if (script) run.script = &*script;
    if (!arguments.phone.empty()) run.phone = arguments.phone;
    if (!arguments.calibration.empty()) {
        run.calibration = arguments.calibration;
        const auto checked = simulator::checkCalibration(arguments.calibration);
        if (simulator::countOf(checked.findings, simulator::Finding::Severity::ERROR) > 0)
            std::cerr << "dcsim: " << simulator::harmless(arguments.calibration)
                      << ": the library does not read it as it is written; dcsim check says why\n";
    }
    return simulator::statesOf(run);
}

}  // namespace dcsim
