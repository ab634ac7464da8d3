// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/CalibrationDifferences.h"

#include <cmath>
#include <iterator>

#include "tools/accuracy/ColorChecker.h"
#include "tools/accuracy/Shown.h"
#include "tools/check/Document.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

using Values = std::vector<double>;

template <typename T>
void append(Values& values, const T* from, size_t count) {
    for (size_t i = 0; i < count; ++i) values.push_back(static_cast<double>(from[i]));
}

Values valuesOf(const CalibrationBlock& block, const ConfigXmlParser& record) {
    if (block.isComplete == &ConfigXmlParser::hasUnlimitedCT)
        return {static_cast<double>(record.unlimitedWarm), static_cast<double>(record.unlimitedCold)};
    Values values;
    if (block.isComplete == &ConfigXmlParser::hasEyeCare) {
        values = {record.eyeCareMaxCCT, record.eyeCareMinCCT};
        append(values, record.eyeCareCoeffs, std::size(record.eyeCareCoeffs));
    } else {
        append(values, floatsOf(block, record), block.elements);
    }
    return values;
}

void compareValues(const Values& before, const Values& after, BlockDifference& difference) {
    double largest = -1;
    for (size_t i = 0; i < before.size(); ++i) {
        const bool isSame = before[i] == after[i] || (std::isnan(before[i]) && std::isnan(after[i]));
        if (isSame) continue;
        ++difference.differing;
        const double distance = std::abs(after[i] - before[i]);
        if (!difference.largest || distance > largest) {
            largest = distance;
            difference.largest = {i + 1, before[i], after[i]};
        }
    }
}

// X, Y, Z with Y = 100 for white.
Vec3 scaledXyz(const DisplayState& state, const PanelModel& panel, const Vec3& rgb) {
    const double white = panel.xyz(driveLevels(state, kFullWhite))[1];
    return scaled(panel.xyz(driveLevels(state, rgb)), 100 / white);
}

}  // namespace

std::vector<BlockDifference> differencesOf(const ConfigXmlParser& before, const ConfigXmlParser& after) {
    std::vector<BlockDifference> differences;
    for (const CalibrationBlock& block : kCalibrationBlocks) {
        BlockDifference difference{block.name, before.*block.isComplete, after.*block.isComplete, 0, {}};
        if (difference.wasComplete && difference.isComplete)
            compareValues(valuesOf(block, before), valuesOf(block, after), difference);
        if (difference.differing > 0 || difference.wasComplete != difference.isComplete)
            differences.push_back(difference);
    }
    return differences;
}

std::vector<BlockDifference> differencesOf(const DisplayState& before, const DisplayState& after) {
    const auto valuesIn = [](const auto& array) {
        Values values;
        append(values, array.data(), array.size());
        return values;
    };
    BlockDifference matrix{"matrix", true, true, 0, {}};
    compareValues(valuesIn(before.last.elements), valuesIn(after.last.elements), matrix);
    BlockDifference table{"gamma table", true, true, 0, {}};
    compareValues(valuesIn(before.gamma.entries), valuesIn(after.gamma.entries), table);
    std::vector<BlockDifference> differences;
    for (const BlockDifference& difference : {matrix, table}) {
        if (difference.differing > 0) differences.push_back(difference);
    }
    return differences;
}

ColorErrors compareShown(const DisplayState& before, const DisplayState& after, const PanelModel& panel,
                         const Target& target) {
    std::vector<double> errors;
    for (const ChartPatch& patch : colorChecker(target))
        errors.push_back(
            deltaE2000(scaledXyz(before, panel, patch.rgb), scaledXyz(after, panel, patch.rgb), whiteOf(target)));
    return summaryOf(errors);
}

std::pair<std::string, std::string> textsOf(const LargestDifference& difference) {
    const auto [value, before, after] = difference;
    const auto [first, second] = std::pair(static_cast<float>(before), static_cast<float>(after));
    const bool areFloats = static_cast<double>(first) == before && static_cast<double>(second) == after;
    return areFloats ? std::pair(shortest(first), shortest(second)) : std::pair(shortest(before), shortest(after));
}

std::string sentenceOf(const BlockDifference& difference) {
    std::string text = difference.block + ": ";
    if (difference.wasComplete != difference.isComplete)
        return text + (difference.wasComplete ? "only in the first file" : "only in the second file");
    const auto& [value, before, after] = *difference.largest;
    text += std::to_string(difference.differing) + (difference.differing == 1 ? " value differs" : " values differ");
    const std::string most = difference.differing == 1 ? ", value " : ", most of all value ";
    if (difference.block == "UnlimitedCT") {
        char colors[40];
        snprintf(colors, sizeof colors, "0x%06X, was 0x%06X", static_cast<unsigned>(static_cast<int64_t>(after)),
                 static_cast<unsigned>(static_cast<int64_t>(before)));
        return text + most + std::to_string(value) + ": " + colors;
    }
    const auto [was, is] = textsOf(*difference.largest);
    return text + most + std::to_string(value) + ": " + is + ", was " + was;
}

}  // namespace simulator
