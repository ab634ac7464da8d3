// SPDX-License-Identifier: Apache-2.0
// The model of Berns, "Methods for characterizing CRT displays", Displays 16 (1996), 173-182, with free curves. Black
// and the matrix begin with the measured black and primaries, the curves with exponent 2.2. Then all are adjusted
// together so that the squared differences in L*, a* / S_C and b* / S_C are least over all patches, with the chroma
// weight S_C = 1 + 0.045 C* of CIE 116, which brings them close to delta E 2000.
#include "tools/accuracy/PanelModel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tools/accuracy/LeastSquares.h"

namespace simulator {

namespace {

constexpr size_t kMostLevels = 13;    // of a curve: more would follow the noise of the measurement
constexpr double kDarkDensity = 1.5;  // 1: the levels lie evenly

// a + factor * b
Vec3 sum(const Vec3& a, double factor, const Vec3& b) {
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

// Has some of the measured levels, both ends included, and more of the dark ones, where curves bend most.
ChannelCurve curveOf(const Measurement& panel, size_t channel) {
    std::vector<double> ramp = rampOf(panel.patches, channel);
    ramp.front() = 0;
    ramp.back() = 1;
    const size_t last = std::min(ramp.size(), kMostLevels) - 1;
    const auto steps = static_cast<double>(ramp.size() - 1);
    std::vector<double> levels = {0};
    size_t index = 0;
    for (size_t i = 1; i <= last; ++i) {
        const double place = std::pow(static_cast<double>(i) / static_cast<double>(last), kDarkDensity) * steps;
        index = std::max(index + 1, static_cast<size_t>(std::lround(place)));
        levels.push_back(ramp[index]);
    }
    return ChannelCurve(levels);
}

}  // namespace

PanelModel::PanelModel(const Measurement& panel)
    : unit(meanXyz(panel.patches, kFullWhite).value()[1]),
      black(sum({}, 1 / unit, meanXyz(panel.patches, kFullBlack).value())),
      curves{curveOf(panel, 0), curveOf(panel, 1), curveOf(panel, 2)} {
    for (size_t channel = 0; channel < 3; ++channel) {
        Vec3 rgb{};
        rgb[channel] = 1;
        const Vec3 full = meanXyz(panel.patches, rgb).value();
        for (size_t row = 0; row < 3; ++row) matrix[3 * row + channel] = full[row] / unit - black[row];
    }
    const Vec3 measuredWhite = meanXyz(panel.patches, kFullWhite).value();
    const auto residualsOf = [&](std::vector<double>& trial) {
        PanelModel model = *this;
        model.setParameters(trial);
        trial = model.parameters();  // curves do not fall
        return model.residuals(panel.patches, measuredWhite);
    };
    setParameters(minimizeSquares(residualsOf, parameters()));

    const auto inverted = inverse(matrix);
    if (!inverted) throw std::runtime_error("the primaries do not mix; expected three different colours");
    toLinear = *inverted;
    std::vector<double> differences;
    for (const MeasuredPatch& patch : panel.patches)
        differences.push_back(deltaE2000(xyz(patch.rgb), patch.xyz, measuredWhite));
    errors = summaryOf(differences);
}

std::vector<double> PanelModel::parameters() const {
    std::vector<double> values(black.begin(), black.end());
    values.insert(values.end(), matrix.begin(), matrix.end());
    for (const ChannelCurve& curve : curves) {
        for (size_t i = 0; i < curve.parameterCount(); ++i) values.push_back(curve.parameter(i));
    }
    return values;
}

void PanelModel::setParameters(const std::vector<double>& parameters) {
    auto next = parameters.begin();
    for (double& element : black) element = *next++;
    for (double& element : matrix) element = *next++;
    for (ChannelCurve& curve : curves) {
        for (size_t i = 0; i < curve.parameterCount(); ++i) curve.setParameter(i, *next++);
    }
}

std::vector<double> PanelModel::residuals(const std::vector<MeasuredPatch>& patches, const Vec3& measuredWhite) const {
    std::vector<double> result;
    for (const MeasuredPatch& patch : patches) {
        const Vec3 expected = toLab(patch.xyz, measuredWhite);
        const Vec3 error = sum(toLab(xyz(patch.rgb), measuredWhite), -1, expected);
        const double chromaWeight = 1 + 0.045 * std::hypot(expected[1], expected[2]);
        result.insert(result.end(), {error[0], error[1] / chromaWeight, error[2] / chromaWeight});
    }
    return result;
}

Vec3 PanelModel::xyz(const Vec3& drive) const {
    Vec3 linear;
    for (size_t i = 0; i < 3; ++i) linear[i] = curves[i].light(drive[i]);
    return sum({}, unit, sum(black, 1, multiply(matrix, linear)));
}

Vec3 PanelModel::drive(const Vec3& xyz) const {
    const Vec3 linear = multiply(toLinear, sum(sum({}, 1 / unit, xyz), -1, black));
    Vec3 levels;
    for (size_t i = 0; i < 3; ++i) levels[i] = curves[i].level(std::clamp(linear[i], 0.0, 1.0));
    return levels;
}

}  // namespace simulator
