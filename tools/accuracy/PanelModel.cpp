// SPDX-License-Identifier: Apache-2.0
// The model of Berns, "Methods for characterizing CRT displays", Displays 16 (1996), 173-182, with free curves. Black,
// the matrix and the curves begin with the measured black, primaries and ramps. Then all are adjusted together so that
// the squared differences in L*, a* / S_C and b* / S_C are least over all patches, with the chroma weight S_C = 1 +
// 0.045 C* of CIE 116, which brings them close to delta E 2000.
#include "tools/accuracy/PanelModel.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tools/accuracy/LeastSquares.h"

namespace simulator {

namespace {

constexpr size_t kMostLevels = 13;  // of a curve: more would follow the noise of the measurement
constexpr Vec3 kWhite = {1, 1, 1};
constexpr Vec3 kBlack = {0, 0, 0};

double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// a + factor * b
Vec3 sum(const Vec3& a, double factor, const Vec3& b) {
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

// Measured light of one channel without black.
Vec3 lightOf(const Measurement& panel, size_t channel, double level) {
    Vec3 rgb{};
    rgb[channel] = level;
    return sum(meanXyz(panel.patches, rgb).value(), -1, meanXyz(panel.patches, kBlack).value());
}

// A curve through the measured ramp, or through some of its levels, both ends included.
ChannelCurve curveOf(const Measurement& panel, size_t channel) {
    const std::vector<double> ramp = rampOf(panel.patches, channel);
    const Vec3 full = lightOf(panel, channel, 1);
    const size_t last = std::min(ramp.size(), kMostLevels) - 1;
    std::vector<double> levels;
    std::vector<double> lights;
    for (size_t i = 0; i <= last; ++i) {
        levels.push_back(ramp[i * (ramp.size() - 1) / last]);
        lights.push_back(dot(lightOf(panel, channel, levels.back()), full) / dot(full, full));
    }
    levels.front() = 0;
    levels.back() = 1;
    return ChannelCurve(std::move(levels), lights);
}

}  // namespace

PanelModel::PanelModel(const Measurement& panel)
    : unit(meanXyz(panel.patches, kWhite).value()[1]),
      black(sum({}, 1 / unit, meanXyz(panel.patches, kBlack).value())),
      curves{curveOf(panel, 0), curveOf(panel, 1), curveOf(panel, 2)} {
    for (size_t channel = 0; channel < 3; ++channel) {
        const Vec3 full = lightOf(panel, channel, 1);
        for (size_t row = 0; row < 3; ++row) matrix[3 * row + channel] = full[row] / unit;
    }
    const Vec3 measuredWhite = meanXyz(panel.patches, kWhite).value();
    const auto residualsOf = [&](const std::vector<double>& trial) {
        PanelModel model = *this;
        model.setParameters(trial);
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
