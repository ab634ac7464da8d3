// SPDX-License-Identifier: Apache-2.0
#include "tools/json/CheckJson.h"

namespace simulator {

namespace {

Json fileToJson(const CheckedFile& file) {
    if (!file.checked) return {{"file", file.name}, {"unreadable", file.error}};
    Json findings = Json::array();
    for (const Finding& finding : file.checked->findings) findings.push_back(toJson(finding));
    return {{"file", file.name},
            {"summary", toJson(summaryOf(*file.checked))},
            {"findings", findings},
            {"errors", countOf(file.checked->findings, Finding::Severity::ERROR)},
            {"warnings", countOf(file.checked->findings, Finding::Severity::WARNING)}};
}

}  // namespace

Json toJson(const Summary& summary) {
    Json blocks = Json::array();
    for (const BlockSummary& block : summary.blocks) {
        Json content = block.complete ? Json::object() : Json();
        for (const auto& [name, value] : block.content) content[name] = valueToJson(value);
        blocks.push_back({{"name", block.count.block->name},
                          {"line", block.count.line},
                          {"values", block.count.values},
                          {"needed", block.count.block->elements},
                          {"complete", block.complete},
                          {"use", block.use},
                          {"content", content}});
    }
    return {{"gammaTableSent", summary.gammaTableSent ? Json(*summary.gammaTableSent) : Json()}, {"blocks", blocks}};
}

Json toJson(const Finding& finding) {
    Json json = {{"severity", finding.severity == Finding::Severity::ERROR ? "error" : "warning"},
                 {"line", finding.line},
                 {"block", finding.block},
                 {"value", finding.value ? Json(*finding.value) : Json()},
                 {"rule", finding.rule},
                 {"what", finding.what},
                 {"expected", finding.expected}};
    if (finding.more > 0) json["more"] = finding.more;
    return json;
}

Json toJson(const CheckedFiles& all) {
    Json files = Json::array();
    for (const CheckedFile& file : all.files) files.push_back(fileToJson(file));
    return {{"files", files}, {"errors", all.errors}, {"warnings", all.warnings}, {"unreadable", all.unreadable}};
}

}  // namespace simulator
