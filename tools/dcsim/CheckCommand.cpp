// SPDX-License-Identifier: Apache-2.0
// dcsim check: whether calibration files are sound.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "tools/check/Summary.h"
#include "tools/dcsim/AccuracyArguments.h"
#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Terminal.h"
#include "tools/json/CheckJson.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

using simulator::CheckedCalibration;
using simulator::Finding;

struct Options {
    std::vector<std::string> files;
    std::optional<simulator::Chromaticity> driverWhite;
    bool json = false;
};

std::string colored(const char* color, const std::string& text) {
    return useColor(STDOUT_FILENO) ? simulator::colored(color, text) : text;
}

// "1 error", "2 errors".
std::string counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void printFindings(const std::string& file, const std::vector<Finding>& findings, Finding::Severity severity) {
    const size_t count = countOf(findings, severity);
    if (count == 0) return;
    const bool isError = severity == Finding::Severity::ERROR;
    std::cout << colored(isError ? simulator::kRed : simulator::kYellow, counted(count, isError ? "error" : "warning"))
              << "\n";
    for (const Finding& finding : findings) {
        if (finding.severity != severity) continue;
        std::cout << simulator::harmless(file) << ":" << (finding.line > 0 ? std::to_string(finding.line) + ":" : "")
                  << " " << sentenceOf(finding) << "\n";
    }
}

void printFile(const std::string& file, const CheckedCalibration& checked) {
    std::cout << colored(simulator::kBold, simulator::harmless(file)) << "\n"
              << simulator::textOf(simulator::summaryOf(checked));
    printFindings(file, checked.findings, Finding::Severity::ERROR);
    printFindings(file, checked.findings, Finding::Severity::WARNING);
    std::cout << "\n";
}

int run(const Options& options) {
    const simulator::CheckedFiles all = simulator::checkFiles(options.files, options.driverWhite);
    for (const simulator::CheckedFile& file : all.files) {
        if (!file.checked) {
            std::cerr << "dcsim: " << simulator::harmless(file.error) << "\n";
        } else if (!options.json) {
            printFile(file.name, *file.checked);
        }
    }
    if (options.json) {
        std::cout << simulator::lineOf(simulator::toJson(all), 2) << "\n";
    } else {
        std::cout << counted(all.files.size(), "file") << ": " << counted(all.errors, "error") << ", "
                  << counted(all.warnings, "warning");
        if (all.unreadable > 0) std::cout << ", " << all.unreadable << " could not be read";
        std::cout << "\n";
    }
    if (all.unreadable > 0) return kWrongUse;
    return all.errors + all.warnings > 0 ? kFindings : kAllWell;
}

}  // namespace

void addCheck(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("check", "Checks calibration files: prints what the library reads, and what looks wrong");
    command->add_option("FILE", options->files, "Calibration files")->required();
    addChromaticityOption(*command, "--driver-white", options->driverWhite,
                          "White point that the panel's driver reports, CIE xy: does standard mode bring it to D65?");
    command->add_flag("--json", options->json, "Prints one JSON document instead of text");
    command->footer(
        "Error: the library does not use the text, or reads it as something else. Warning: the library uses the value\n"
        "as written, and the display will show it. Findings about levels of eye care and colour temperature are those\n"
        "of the simulated closed libraries. Exit status: 0 no findings, 1 findings, 2 a file that cannot be read.\n\n"
        "Example:\n  dcsim check data/phone/vendor/etc/*.xml");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
