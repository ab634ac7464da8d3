// SPDX-License-Identifier: Apache-2.0
#include "tools/check/Check.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tools/check/Document.h"
#include "tools/check/Rules.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;

std::vector<BlockCount> countBlocks(const Document& document) {
    std::vector<BlockCount> counts;
    for (const CalibrationBlock& form : kCalibrationBlocks) {
        const Block* const block = document.lastOf(form);
        counts.push_back({&form, block == nullptr ? 0 : block->line, block == nullptr ? 0 : block->count});
    }
    return counts;
}

std::vector<Finding> look(const Subject& subject) {
    std::vector<Finding> findings;
    for (const auto& rules : {textRules(), valueRules()}) {
        for (const Rule& rule : rules) {
            Notes notes(rule, findings);
            rule.look(subject, notes);
        }
    }
    const auto place = [](const Finding& finding) {
        return std::make_pair(finding.line, finding.more > 0 ? std::string::npos : finding.value.value_or(0));
    };
    std::stable_sort(findings.begin(), findings.end(),
                     [&](const Finding& a, const Finding& b) { return place(a) < place(b); });
    return findings;
}

}  // namespace

void Notes::add(std::string_view block, long line, std::optional<size_t> value, std::string what,
                std::string expected) {
    Listed& seen = listed[std::string(block)];
    if (++seen.count <= kMostFindings) {
        seen.lastLine = line;
        findings.push_back({rule.severity, line, std::string(block), value, std::string(rule.name), std::move(what),
                            std::move(expected)});
        return;
    }
    if (seen.closing == 0) {
        seen.closing = findings.size();
        findings.push_back({rule.severity, seen.lastLine, std::string(block), {}, std::string(rule.name), {}, {}});
    }
    Finding& closing = findings[seen.closing];
    closing.what = std::to_string(++closing.more) + " more like this";
}

void Notes::addBlock(const Subject& subject, const CalibrationBlock& form, std::string what, std::string expected) {
    const Block* const block = subject.document.lastOf(form);
    add(form.name, block == nullptr ? 0 : block->line, {}, std::move(what), std::move(expected));
}

void Notes::addValue(const Subject& subject, const CalibrationBlock& form, size_t index, std::string what,
                     std::string expected) {
    add(form.name, subject.document.lineOf(form, index), index + 1, std::move(what), std::move(expected));
}

std::string numberText(double value, int digits) {
    char text[32];
    snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

CheckedCalibration checkCalibration(const fs::path& file, const std::optional<Chromaticity>& driverWhite) {
    requireFile(file, "a calibration file");
    if (!fs::is_regular_file(file))
        throw std::runtime_error(file.string() + ": is not a regular file; expected a calibration file");
    auto record = std::make_unique<ConfigXmlParser>();
    const Document document = readDocument(file, *record);
    std::vector<Finding> findings = look({document, *record, driverWhite});
    return {std::move(record), std::move(findings), countBlocks(document)};
}

CheckedFiles checkFiles(const std::vector<std::string>& names, const std::optional<Chromaticity>& driverWhite) {
    CheckedFiles all;
    for (const std::string& name : names) {
        try {
            all.files.push_back({name, checkCalibration(name, driverWhite)});
            const std::vector<Finding>& findings = all.files.back().checked->findings;
            all.errors += countOf(findings, Finding::Severity::ERROR);
            all.warnings += countOf(findings, Finding::Severity::WARNING);
        } catch (const std::exception& error) {
            all.files.push_back({name, std::nullopt, error.what()});
            ++all.unreadable;
        }
    }
    return all;
}

std::string sentenceOf(const Finding& finding) {
    std::string text = finding.block.empty() ? "" : finding.block + ": ";
    if (finding.value) text += "value " + std::to_string(*finding.value) + " ";
    text += finding.what;
    return finding.expected.empty() ? text : text + "; expected " + finding.expected;
}

size_t countOf(const std::vector<Finding>& findings, Finding::Severity severity) {
    size_t count = 0;
    for (const Finding& finding : findings) {
        if (finding.severity == severity) count += std::max<size_t>(finding.more, 1);
    }
    return count;
}

}  // namespace simulator
