// SPDX-License-Identifier: Apache-2.0
// The check of calibration files on any document: it comes to an end, what it says can be printed, and a block that it
// finds no fault with is one that the library uses.
#include <algorithm>

#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "tests/TemporaryFolder.h"
#include "tools/check/Document.h"
#include "tools/json/CheckJson.h"

namespace fuzz {

namespace {

using simulator::CheckedCalibration;
using simulator::Finding;

void requireSentences(const CheckedCalibration& checked) {
    long line = 0;
    for (const Finding& finding : checked.findings) {
        require(!finding.what.empty() && !finding.rule.empty(), "a finding says what it is");
        require(finding.line >= line, "findings are in the order of the file");
        line = finding.line;
        const std::string sentence = sentenceOf(finding) + toJson(finding).dump();
        require(std::all_of(sentence.begin(), sentence.end(), [](char c) { return c >= ' ' && c <= '~'; }),
                "a finding is printable: " + sentence);
    }
    const simulator::Summary summary = summaryOf(checked);
    require(!toJson(summary).dump().empty() && !simulator::textOf(summary).empty(), "the summary can be printed");
}

void requireBlocks(const CheckedCalibration& checked) {
    const bool hasErrors = countOf(checked.findings, Finding::Severity::ERROR) > 0;
    for (const auto& block : checked.blocks) {
        const bool complete = (*checked.record).*block.block->isComplete;
        const bool there = block.line > 0 || block.values > 0;
        require(hasErrors || !there || complete, std::string(block.block->name) + " is faulty or complete");
        require(hasErrors || !there || block.values == block.block->elements,
                std::string(block.block->name) + " is faulty or exact");
    }
}

void check(const std::string& document) {
    static const tests::TemporaryFolder kFolder;
    beQuiet();
    const CheckedCalibration checked = simulator::checkCalibration(kFolder.write("calibration.xml", document));
    requireSentences(checked);
    requireBlocks(checked);
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::check({data, data + size});
    return 0;
}
