// SPDX-License-Identifier: Apache-2.0
// The gains for a white are the panel's linear RGB for its light over that for the white that the control starts from:
// D65 for the unlimited colour temperature, the maximum for eye care.
#include "tools/accuracy/SimulatedBlocks.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "simulator/closed/EyeCare.h"
#include "tools/accuracy/CalibrationFile.h"
#include "tools/accuracy/LeastSquares.h"

namespace simulator {

namespace {

constexpr double kWarmKelvin = 4500;
constexpr double kColdKelvin = 9300;
constexpr int32_t kEyeCareMaxCct = 6500;
constexpr int32_t kEyeCareMinCct = 2900;
constexpr size_t kCubic = 4;  // coefficients
constexpr double kCubicUnit = 1e-5;
constexpr double kChromaticityUnit = 1e-4;

// The largest is 1.
Vec3 gainsBetween(const Mat3& toPanel, const Chromaticity& from, const Chromaticity& to) {
    const Vec3 before = multiply(toPanel, xyzOf(from));
    const Vec3 after = multiply(toPanel, xyzOf(to));
    Vec3 gains;
    for (size_t i = 0; i < 3; ++i) {
        gains[i] = after[i] / before[i];
        if (!(before[i] > 0 && after[i] > 0))
            throw std::runtime_error(
                "the panel cannot show the ends of the colour temperature; expected wider primaries");
    }
    return scaledToLargest(gains);
}

int32_t endPoint(const Mat3& toPanel, double kelvin) {
    int32_t color = 0;
    for (const double gain : gainsBetween(toPanel, kD65, planckianLocus(kelvin).value()))
        color = 256 * color + static_cast<int32_t>(std::lround(255 * linearToSrgb(gain)));
    return color;
}

// c1, c2, c3 of the cubic 1 + c1 t + c2 t^2 + c3 t^3 that is nearest to a gain over the levels.
std::vector<double> cubicOf(const std::vector<Vec3>& gains, size_t channel) {
    const auto residuals = [&](const std::vector<double>& c) {
        std::vector<double> result;
        for (size_t level = 0; level < gains.size(); ++level) {
            const double t = static_cast<double>(level) / kEyeCareStrongest;
            result.push_back(1 + t * (c[0] + t * (c[1] + t * c[2])) - gains[level][channel]);
        }
        return result;
    };
    return minimizeSquares(residuals, {0, 0, 0});
}

}  // namespace

void setSimulatedBlocks(const PanelModel& panel, ConfigXmlParser& record) {
    const Mat3& light = panel.light();
    const Mat3& toPanel = panel.fromLight();
    record.unlimitedWarm = endPoint(toPanel, kWarmKelvin);
    record.unlimitedCold = endPoint(toPanel, kColdKelvin);
    record.hasUnlimitedCT = true;

    const EyeCareParams range{{}, kEyeCareMaxCct, kEyeCareMinCct};
    std::vector<Vec3> gains;
    for (int level = kEyeCareWeakest; level <= kEyeCareStrongest; ++level)
        gains.push_back(gainsBetween(toPanel, planckianLocus(kEyeCareMaxCct).value(),
                                     planckianLocus(eyeCareTemperature(range, level)).value()));
    std::fill(std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs), 0.0);
    for (size_t channel = 0; channel < 3; ++channel) {
        double* const cubic = record.eyeCareCoeffs + 4 * channel * kCubic;
        const std::vector<double> fitted = cubicOf(gains, channel);
        cubic[0] = 1;
        for (size_t i = 0; i < fitted.size(); ++i) cubic[i + 1] = rounded(fitted[i], kCubicUnit);
    }
    record.eyeCareMaxCCT = kEyeCareMaxCct;
    record.eyeCareMinCCT = kEyeCareMinCct;
    record.hasEyeCare = true;

    for (size_t i = 0; i < 3; ++i) {
        const Chromaticity primary = chromaticityOf({light[i], light[3 + i], light[6 + i]});
        record.wpcParam[i] = static_cast<float>(rounded(primary.x, kChromaticityUnit));
        record.wpcParam[3 + i] = static_cast<float>(rounded(primary.y, kChromaticityUnit));
        record.wpcParam[6 + i] = 0;
    }
    record.hasWpcParam = true;
}

}  // namespace simulator
