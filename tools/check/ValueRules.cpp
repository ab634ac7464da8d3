// SPDX-License-Identifier: Apache-2.0
// What is unlikely about the values of a calibration: the library uses them as they are.
//
// A code is an 8-bit step of the panel's input, 1/255.
#include <platform/Numbers.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "color/ColorManager.h"
#include "simulator/Colorimetry.h"
#include "simulator/closed/EyeCare.h"
#include "tools/check/Rules.h"

namespace simulator {

namespace {

using vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;
using vendor::kov::hardware::display_control::V1_0::implementation::TMat33;

constexpr double kCode = 1.0 / 255.0;

using BlockFlags = std::initializer_list<BlockFlag>;

// Calls look for each of these blocks that is complete, with its values.
template <typename Look>
void inBlocks(const Subject& subject, BlockFlags flags, Look look) {
    for (const BlockFlag flag : flags) {
        const CalibrationBlock& form = blockOf(flag);
        if (subject.record.*flag) look(form, floatsOf(form, subject.record));
    }
}

// Gamma tables.

constexpr BlockFlags kTables = {&ConfigXmlParser::hasGammaCalib, &ConfigXmlParser::hasGammaTuning};
constexpr size_t kEntries = ConfigXmlParser::kTable;

void gammaFalls(const Subject& subject, Notes& notes) {
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        for (size_t i = 1; i < kEntries; ++i) {
            if (!(table[i] < table[i - 1])) continue;
            notes.addValue(
                subject, form, i,
                "is lower than the one before it (" + numberText(table[i]) + " after " + numberText(table[i - 1]) + ")",
                "a table that does not fall");
        }
    });
}

void gammaRange(const Subject& subject, Notes& notes) {
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        for (size_t i = 0; i < kEntries; ++i) {
            if (table[i] >= 0.0F && table[i] <= 1.0F) continue;
            notes.addValue(subject, form, i, "is " + numberText(table[i]), "an output from 0 to 1");
        }
    });
}

// A table of 8-bit outputs holds each for less than that wherever its slope is above 1/8; that of x^(1/2.2) is at least
// 0.45 throughout.
void gammaFlat(const Subject& subject, Notes& notes) {
    constexpr size_t kLongestRun = 128;
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        for (size_t start = 0, end = 0; start < kEntries; start = end) {
            for (end = start + 1; end < kEntries && table[end] == table[start];) ++end;
            if (end - start <= kLongestRun) continue;
            notes.addValue(subject, form, start,
                           "and those up to value " + std::to_string(end) + " are all " + numberText(table[start]),
                           "at most " + std::to_string(kLongestRun) + " equal values in a row");
        }
    });
}

// Half a code is black still, on a panel of 8 bits.
void gammaStart(const Subject& subject, Notes& notes) {
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        if (!(std::abs(static_cast<double>(table[0])) > kCode / 2)) return;
        notes.addValue(subject, form, 0, "is " + numberText(table[0]) + ": black is not dark",
                       "0, or less than half an 8-bit code");
    });
}

void gammaEnd(const Subject& subject, Notes& notes) {
    constexpr double kFarthest = 2 * kCode;
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        const double last = table[kEntries - 1];
        if (!(std::abs(last - 1.0) > kFarthest)) return;
        notes.addValue(subject, form, kEntries - 1, "is " + numberText(last) + ": white is not full",
                       "1, or less than two 8-bit codes off");
    });
}

// A step is coarse when it is more than one and a half codes and twice that of the usual curve x^(1/2.2) in the same
// place: the curve itself begins with steps of 5.8 and 2.2 codes, which every table has.
void gammaStep(const Subject& subject, Notes& notes) {
    const auto usual = [](size_t i) { return std::pow(static_cast<double>(i) / kEntries, 1 / 2.2); };
    inBlocks(subject, kTables, [&](const CalibrationBlock& form, const float* table) {
        for (size_t i = 1; i < kEntries; ++i) {
            const double step = static_cast<double>(table[i]) - static_cast<double>(table[i - 1]);
            const double coarse = std::max(1.5 * kCode, 2 * (usual(i) - usual(i - 1)));
            if (!(step > coarse)) continue;
            notes.addValue(
                subject, form, i,
                "is " + numberText(step / kCode, 3) + " 8-bit codes above the one before it, which shows as banding",
                "a step of at most " + numberText(coarse / kCode, 3) + " here");
        }
    });
}

// Matrices.

constexpr BlockFlags kMatrices = {&ConfigXmlParser::hasCtmWpc, &ConfigXmlParser::hasCtmCcm};

Mat3 matrixOf(const float* elements) {
    Mat3 matrix{};
    std::copy_n(elements, matrix.size(), matrix.begin());
    return matrix;
}

bool isFinite(const float* elements) {
    return std::all_of(elements, elements + ConfigXmlParser::kMatrix, [](float e) { return std::isfinite(e); });
}

template <typename Look>
void inMatrices(const Subject& subject, Notes& notes, Look look) {
    inBlocks(subject, kMatrices, [&](const CalibrationBlock& form, const float* elements) {
        if (!isFinite(elements)) return;
        const auto [what, expected] = look(elements);
        if (!what.empty()) notes.addBlock(subject, form, what, expected);
    });
}

using Verdict = std::pair<std::string, std::string>;  // what is wrong, or nothing; what was expected

void matrixSingular(const Subject& subject, Notes& notes) {
    inMatrices(subject, notes, [](const float* elements) -> Verdict {
        if (inverse(matrixOf(elements))) return {};
        return {"is singular: colours that differ become the same", "rows that are not made of each other"};
    });
}

void matrixWhite(const Subject& subject, Notes& notes) {
    inMatrices(subject, notes, [](const float* elements) -> Verdict {
        constexpr double kFarthest = 0.03;
        const Vec3 white = multiply(matrixOf(elements), Vec3{1, 1, 1});
        const std::string expected = "white within " + numberText(kFarthest) +
                                     " of where it was in CIE xy, taking sRGB's primaries for the panel's";
        const Vec3 xyz = multiply(*rgbToXyz(kSrgbPrimaries, kD65), white);
        const double sum = xyz[0] + xyz[1] + xyz[2];
        if (!(*std::min_element(white.begin(), white.end()) >= 0.0) || !(sum > 0.0))
            return {"makes white a colour that cannot be shown", expected};
        const double moved = std::hypot(xyz[0] / sum - kD65.x, xyz[1] / sum - kD65.y);
        return moved <= kFarthest ? Verdict{} : Verdict{"moves white by " + numberText(moved, 3), expected};
    });
}

// The matrix in effect is divided by its largest output, so that nothing clips at the top and everything gets darker.
void matrixLarge(const Subject& subject, Notes& notes) {
    inMatrices(subject, notes, [](const float* elements) -> Verdict {
        constexpr float kLargest = 1.5F;
        TMat33<float> matrix;
        for (size_t i = 0; i < ConfigXmlParser::kMatrix; ++i) matrix[i] = elements[i];
        const float largest = ColorManager::maxRgb(matrix);
        if (!(largest > kLargest)) return {};
        return {"has outputs up to " + numberText(largest, 3) + " and darkens the picture by as much",
                "none above " + numberText(kLargest)};
    });
}

void matrixNegative(const Subject& subject, Notes& notes) {
    inMatrices(subject, notes, [](const float* elements) -> Verdict {
        constexpr double kLowest = -0.25;
        double lowest = 0.0;
        for (size_t row = 0; row < 9; row += 3) {
            double negative = 0.0;  // of the corner of the RGB cube that has just the primaries this row takes away
            for (size_t i = row; i < row + 3; ++i) negative += std::min(static_cast<double>(elements[i]), 0.0);
            lowest = std::min(lowest, negative);
        }
        if (lowest >= kLowest) return {};
        return {"has outputs down to " + numberText(lowest, 3) + ", which clip to 0",
                "none below " + numberText(kLowest)};
    });
}

// A colour correction maps the white of the pictures to the panel's, 1, 1, 1: its rows add up to 1, or to one another
// when it is scaled. When the columns do that and the rows do not, the matrix is written by columns. Of a white-point
// matrix, and of a colour correction that moves white, nothing can be said.
void matrixTransposed(const Subject& subject, Notes& notes) {
    constexpr double kSame = 0.004;  // of the mean sum
    inBlocks(subject, {&ConfigXmlParser::hasCtmCcm}, [&](const CalibrationBlock& form, const float* elements) {
        if (!isFinite(elements)) return;
        const Mat3 m = matrixOf(elements);
        const auto spread = [](const Vec3& sums) {
            const auto [least, most] = std::minmax_element(sums.begin(), sums.end());
            return (*most - *least) / std::abs((sums[0] + sums[1] + sums[2]) / 3);
        };
        const Vec3 rows = {m[0] + m[1] + m[2], m[3] + m[4] + m[5], m[6] + m[7] + m[8]};
        const Vec3 columns = {m[0] + m[3] + m[6], m[1] + m[4] + m[7], m[2] + m[5] + m[8]};
        if (!(spread(columns) <= kSame && spread(rows) > 2 * kSame)) return;
        notes.addBlock(subject, form,
                       "has columns that keep white and rows that do not (the rows add up to " +
                           numberText(rows[0], 4) + ", " + numberText(rows[1], 4) + ", " + numberText(rows[2], 4) +
                           "), as if transposed",
                       "the matrix by rows, each adding up to 1");
    });
}

// The white that standard mode shows on a panel with the primaries of WPCParam and the driver's white.
void driverWhite(const Subject& subject, Notes& notes) {
    constexpr double kFarthest = 0.005;  // about delta E 2000 of 2
    const ConfigXmlParser& record = subject.record;
    if (!subject.driverWhite || !record.hasCtmWpc || !record.hasWpcParam) return;
    const float* const p = record.wpcParam;
    const auto panel = rgbToXyz({{p[0], p[3]}, {p[1], p[4]}, {p[2], p[5]}}, *subject.driverWhite);
    if (!panel)
        return notes.addBlock(subject, blockOf(&ConfigXmlParser::hasWpcParam),
                              "has a triangle of primaries that the driver's white is outside of",
                              "white inside the triangle");
    Vec3 white = {1, 1, 1};
    if (record.hasCtmCcm) white = multiply(matrixOf(record.ctmCcm), white);
    white = multiply(matrixOf(record.ctmWpc), white);
    if (!std::all_of(white.begin(), white.end(), [](double gain) { return gain > 0; })) return;
    const Vec3 xyz = multiply(*panel, white);
    const double sum = xyz[0] + xyz[1] + xyz[2];
    const Chromaticity shown = {xyz[0] / sum, xyz[1] / sum};
    if (std::hypot(shown.x - kD65.x, shown.y - kD65.y) <= kFarthest) return;
    notes.addBlock(subject, blockOf(&ConfigXmlParser::hasCtmWpc),
                   "brings the driver's white " + numberText(subject.driverWhite->x, 4) + ", " +
                       numberText(subject.driverWhite->y, 4) + " to " + numberText(shown.x, 4) + ", " +
                       numberText(shown.y, 4) + " in CIE xy",
                   "D65 (0.3127, 0.329) within " + numberText(kFarthest));
}

// Colour temperatures and primaries. What levels do is what the simulated closed libraries make of the values.

bool isColor(int32_t color) {
    return color > 0 && color <= 0xFFFFFF;
}

// Blue over red in linear light.
double blueness(int32_t color) {
    const auto linear = [color](int shift) { return srgbToLinear(((color >> shift) & 0xFF) / 255.0); };
    return linear(0) / linear(16);
}

void unlimitedEnds(const Subject& subject, Notes& notes) {
    const ConfigXmlParser& record = subject.record;
    if (!record.hasUnlimitedCT || !isColor(record.unlimitedWarm) || !isColor(record.unlimitedCold)) return;
    const double warm = blueness(record.unlimitedWarm);
    const double cold = blueness(record.unlimitedCold);
    if (!(warm >= cold)) return;
    notes.addBlock(subject, blockOf(&ConfigXmlParser::hasUnlimitedCT),
                   "has a warm end that is not warmer than the cold one (blue over red in linear light " +
                       numberText(warm, 3) + " and " + numberText(cold, 3) + ")",
                   "less blue at the warm end");
}

// Gains of white go straight from 1 to each end, so they are monotone if neutral is between the ends.
void unlimitedMonotone(const Subject& subject, Notes& notes) {
    const ConfigXmlParser& record = subject.record;
    if (!record.hasUnlimitedCT || !isColor(record.unlimitedWarm) || !isColor(record.unlimitedCold)) return;
    const double warm = blueness(record.unlimitedWarm);
    const double cold = blueness(record.unlimitedCold);
    if (warm >= cold || (warm <= 1 && cold >= 1)) return;
    notes.addBlock(subject, blockOf(&ConfigXmlParser::hasUnlimitedCT),
                   std::string(warm > 1 ? "has a warm end that is colder" : "has a cold end that is warmer") +
                       " than neutral (blue over red in linear light " + numberText(warm > 1 ? warm : cold, 3) +
                       "): white turns back on the way",
                   "neutral between the ends");
}

template <typename Look>
void inEyeCare(const Subject& subject, Look look) {
    const ConfigXmlParser& record = subject.record;
    if (!record.hasEyeCare) return;
    const EyeCareParams params = {{std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs)},
                                  platform::toInt32(record.eyeCareMaxCCT),
                                  platform::toInt32(record.eyeCareMinCCT)};
    if (checkEyeCareParams(params) == 0) look(params);
}

void eyeCareNeutral(const Subject& subject, Notes& notes) {
    constexpr double kFarthest = 0.005;
    inEyeCare(subject, [&](const EyeCareParams& params) {
        const Mat3 matrix = *eyeCareMatrix(params, kEyeCareWeakest);
        for (size_t i = 0; i < matrix.size(); ++i) {
            const double neutral = i % 4 == 0 ? 1 : 0;
            if (std::abs(matrix[i] - neutral) <= kFarthest) continue;
            return notes.addBlock(subject, blockOf(&ConfigXmlParser::hasEyeCare),
                                  "is not neutral at level 0, where element " + std::to_string(i + 1) +
                                      " of its matrix is " + numberText(matrix[i], 4),
                                  numberText(neutral) + " within " + numberText(kFarthest) + ", of the identity");
        }
    });
}

void eyeCareMonotone(const Subject& subject, Notes& notes) {
    constexpr double kRounding = 1e-3;
    inEyeCare(subject, [&](const EyeCareParams& params) {
        const auto bluenessAt = [&params](int level) {
            const Vec3 white = multiply(*eyeCareMatrix(params, level), Vec3{1, 1, 1});
            return white[2] / white[0];
        };
        double warmest = bluenessAt(kEyeCareWeakest);
        for (int level = kEyeCareWeakest + 1; level <= kEyeCareStrongest; ++level) {
            const double blue = bluenessAt(level);
            if (blue > warmest + kRounding)
                return notes.addBlock(subject, blockOf(&ConfigXmlParser::hasEyeCare),
                                      "gets colder again at level " + std::to_string(level) +
                                          " (blue over red of white " + numberText(blue, 3) + " after " +
                                          numberText(warmest, 3) + ")",
                                      "a white that only gets warmer");
            warmest = std::min(warmest, blue);
        }
    });
}

void eyeCareRange(const Subject& subject, Notes& notes) {
    const ConfigXmlParser& record = subject.record;
    if (!record.hasEyeCare) return;
    for (const double kelvin : {record.eyeCareMaxCCT, record.eyeCareMinCCT}) {
        if (kelvin >= 1000 && kelvin <= 25000) continue;
        notes.addBlock(subject, blockOf(&ConfigXmlParser::hasEyeCare), "has an end at " + numberText(kelvin) + " K",
                       "colour temperatures from 1000 to 25000 K");
    }
    if (record.eyeCareMaxCCT > record.eyeCareMinCCT) return;
    notes.addBlock(subject, blockOf(&ConfigXmlParser::hasEyeCare),
                   "has a maximum of " + numberText(record.eyeCareMaxCCT) + " K and a minimum of " +
                       numberText(record.eyeCareMinCCT) + " K",
                   "a maximum above the minimum");
}

// Read as the simulated white-point calibration reads the block: x of red, green and blue, then their y.
void primaries(const Subject& subject, Notes& notes) {
    inBlocks(subject, {&ConfigXmlParser::hasWpcParam}, [&](const CalibrationBlock& form, const float* p) {
        const Primaries panel = {{p[0], p[3]}, {p[1], p[4]}, {p[2], p[5]}};
        const auto& [red, green, blue] = panel;
        const double area = ((green.x - red.x) * (blue.y - red.y) - (blue.x - red.x) * (green.y - red.y)) / 2;
        constexpr double kSmallestArea = 0.02;
        if (!(area >= kSmallestArea)) {
            notes.addBlock(subject, form,
                           "has primaries that span " + numberText(area, 3) +
                               " in CIE xy, taken as x and then y of red, green, blue",
                           "a triangle with red, green and blue counterclockwise, of at least " +
                               numberText(kSmallestArea) + " (sRGB: 0.112)");
        } else if (!rgbToXyz(panel, kD65)) {
            notes.addBlock(subject, form, "has a triangle of primaries that D65 is outside of",
                           "white inside the triangle");
        }
    });
}

}  // namespace

std::vector<Rule> valueRules() {
    constexpr auto kWarning = Finding::Severity::WARNING;
    return {
        {"gamma-falls", kWarning, gammaFalls},
        {"gamma-range", kWarning, gammaRange},
        {"gamma-flat", kWarning, gammaFlat},
        {"gamma-start", kWarning, gammaStart},
        {"gamma-end", kWarning, gammaEnd},
        {"gamma-step", kWarning, gammaStep},
        {"matrix-singular", kWarning, matrixSingular},
        {"matrix-white", kWarning, matrixWhite},
        {"matrix-large", kWarning, matrixLarge},
        {"matrix-negative", kWarning, matrixNegative},
        {"matrix-transposed", kWarning, matrixTransposed},
        {"driver-white", kWarning, driverWhite},
        {"warm-end", kWarning, unlimitedEnds},
        {"unlimited-monotone", kWarning, unlimitedMonotone},
        {"eye-care-neutral", kWarning, eyeCareNeutral},
        {"eye-care-monotone", kWarning, eyeCareMonotone},
        {"temperature-range", kWarning, eyeCareRange},
        {"primaries", kWarning, primaries},
    };
}

}  // namespace simulator
