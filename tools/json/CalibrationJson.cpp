// SPDX-License-Identifier: Apache-2.0
#include "tools/json/CalibrationJson.h"

#include "tools/json/AccuracyJson.h"

namespace simulator {

namespace {

Json patchesToJson(const std::vector<double>& errors) {
    Json json = errorsToJson(summaryOf(errors));
    json["patches"] = errors.size();
    return json;
}

Json blocksToJson(const std::vector<BlockDifference>& blocks) {
    Json list = Json::array();
    for (const BlockDifference& block : blocks) {
        Json json = {{"block", block.block},
                     {"before", block.wasComplete},
                     {"after", block.isComplete},
                     {"differing", block.differing},
                     {"largest", nullptr}};
        if (block.largest) {
            const auto [before, after] = textsOf(*block.largest);
            json["largest"] = {
                {"value", block.largest->value}, {"before", numberToJson(before)}, {"after", numberToJson(after)}};
        }
        list.push_back(json);
    }
    return list;
}

}  // namespace

Json calibrationToJson(const std::string& file, const PanelCalibration& calibration, const Accuracy& accuracy) {
    return {{"file", file},
            {"fitted", patchesToJson(calibration.fitted)},
            {"notFitted", patchesToJson(calibration.keptOut)},
            {"outOfGamut", calibration.outOfGamut},
            {"warnings", warningsOf(calibration)},
            {"accuracy", accuracyToJson(accuracy)}};
}

Json differencesToJson(const CalibrationDifferences& differences) {
    Json json = {{"blocks", blocksToJson(differences.blocks)},
                 {"composer", blocksToJson(differences.composer)},
                 {"shown", nullptr}};
    if (differences.shown) json["shown"] = errorsToJson(*differences.shown);
    return json;
}

}  // namespace simulator
