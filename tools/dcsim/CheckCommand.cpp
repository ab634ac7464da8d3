// SPDX-License-Identifier: Apache-2.0
// dcsim check: whether calibration files are sound.
#include <unistd.h>

#include <iostream>
#include <memory>

#include "tools/check/Summary.h"
#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Terminal.h"
#include "tools/text/Text.h"

namespace dcsim {

namespace {

using simulator::CheckedCalibration;
using simulator::Finding;
using simulator::Json;

struct Options {
    std::vector<std::string> files;
    bool json = false;
};

struct Counts {
    size_t errors = 0;
    size_t warnings = 0;
    size_t unreadable = 0;  // files
};

constexpr const char* kRed = "\033[31m";
constexpr const char* kYellow = "\033[33m";
constexpr const char* kBold = "\033[1m";

std::string colored(const char* color, const std::string& text) {
    return useColor(STDOUT_FILENO) ? color + text + "\033[0m" : text;
}

// "1 error", "2 errors".
std::string counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void printFindings(const std::string& file, const std::vector<Finding>& findings, Finding::Severity severity) {
    const size_t count = countOf(findings, severity);
    if (count == 0) return;
    const bool isError = severity == Finding::Severity::ERROR;
    std::cout << colored(isError ? kRed : kYellow, counted(count, isError ? "error" : "warning")) << "\n";
    for (const Finding& finding : findings) {
        if (finding.severity != severity) continue;
        std::cout << simulator::harmless(file) << ":" << (finding.line > 0 ? std::to_string(finding.line) + ":" : "")
                  << " " << sentenceOf(finding) << "\n";
    }
}

void printFile(const std::string& file, const CheckedCalibration& checked) {
    std::cout << colored(kBold, simulator::harmless(file)) << "\n" << simulator::textOf(simulator::summaryOf(checked));
    printFindings(file, checked.findings, Finding::Severity::ERROR);
    printFindings(file, checked.findings, Finding::Severity::WARNING);
    std::cout << "\n";
}

Json toJson(const std::string& file, const CheckedCalibration& checked) {
    Json findings = Json::array();
    for (const Finding& finding : checked.findings) findings.push_back(simulator::toJson(finding));
    return {{"file", file},
            {"summary", simulator::toJson(simulator::summaryOf(checked))},
            {"findings", findings},
            {"errors", countOf(checked.findings, Finding::Severity::ERROR)},
            {"warnings", countOf(checked.findings, Finding::Severity::WARNING)}};
}

// A file that cannot be read does not keep the others from being checked.
Json checkFile(const std::string& file, bool json, Counts& counts) {
    try {
        const CheckedCalibration checked = simulator::checkCalibration(file);
        counts.errors += countOf(checked.findings, Finding::Severity::ERROR);
        counts.warnings += countOf(checked.findings, Finding::Severity::WARNING);
        if (json) return toJson(file, checked);
        printFile(file, checked);
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << simulator::harmless(error.what()) << "\n";
        ++counts.unreadable;
        if (json) return {{"file", file}, {"unreadable", error.what()}};
    }
    return {};
}

int run(const Options& options) {
    Counts counts;
    Json files = Json::array();
    for (const std::string& file : options.files) files.push_back(checkFile(file, options.json, counts));
    if (options.json) {
        const Json all = {{"files", files},
                          {"errors", counts.errors},
                          {"warnings", counts.warnings},
                          {"unreadable", counts.unreadable}};
        std::cout << simulator::lineOf(all, 2) << "\n";
    } else {
        std::cout << counted(options.files.size(), "file") << ": " << counted(counts.errors, "error") << ", "
                  << counted(counts.warnings, "warning");
        if (counts.unreadable > 0) std::cout << ", " << counts.unreadable << " could not be read";
        std::cout << "\n";
    }
    if (counts.unreadable > 0) return kWrongUse;
    return counts.errors + counts.warnings > 0 ? kFindings : kAllWell;
}

}  // namespace

void addCheck(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("check", "Says what the library makes of calibration files and what looks wrong in them");
    command->add_option("file", options->files, "Calibration files")->required();
    command->add_flag("--json", options->json, "One JSON document instead of text");
    command->footer(
        "An error is what the library does not use, or uses otherwise than the text says; a warning is a value that\n"
        "it uses and that the display will suffer from. Exit status: 0 no findings, 1 findings, 2 a file that cannot\n"
        "be read.\n\nExample:\n  dcsim check data/phone/vendor/etc/*.xml");
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
