// SPDX-License-Identifier: Apache-2.0
// The panel shows, for a coded colour v,
//
//     XYZ = black + P * curves(gamma(s * G * C * v^2.2))
//
// with the gains G, the colour correction C and the scale s by which the service keeps every colour within 1. With one
// gamma table for three channels, the best that it can do is to invert the luminance of shown grey: the mean of the
// curves, each weighted with its channel's part in the luminance of white. What remains, the colour of greys where the
// channels differ, and the colour of black, is the matrices' part: they begin with P^-1 * T, which is exact for
// channels that agree, and are then adjusted so that the squared delta E 2000 over greys and patches in gamut is least.
//
// A target is black at 0, a panel is not. The table follows the target down to the luminance of black and approaches it
// smoothly, so that dark codes stay apart: luminance(t) = sqrt(t^2 + black^2 (1 - t^2)).
#include "tools/accuracy/Calibrate.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tools/accuracy/ColorChecker.h"
#include "tools/accuracy/LeastSquares.h"
#include "tools/accuracy/Shown.h"

namespace simulator {

namespace {

constexpr size_t kDriveLevels = 1 << 14;  // samples of a curve, for its inverse
constexpr size_t kCubeSteps = 5;
constexpr size_t kKeptOut = 5;       // every fifth colour is not fitted
constexpr double kWhiteWeight = 5;   // patches that white counts as
constexpr double kWhiteLimit = 0.5;  // delta E 2000
constexpr int kMostFits = 7;         // with white's weight rising
constexpr double kClipped = 0.5;     // delta E 2000
constexpr int kPasses = 2;           // table, matrices, and again
constexpr Vec3 kWhite = {1, 1, 1};

// Divided by the largest sum of the positive elements of a row, as the service does.
Mat3 withinOne(Mat3 matrix) {
    double largest = 0;
    for (size_t row = 0; row < 9; row += 3) {
        double sum = 0;
        for (size_t i = row; i < row + 3; ++i) sum += std::max(matrix[i], 0.0);
        largest = std::max(largest, sum);
    }
    for (double& element : matrix) element /= largest;
    return matrix;
}

// The composer's decoding of a coded level.
double decoded(double level) {
    static const double kWhiteLevel = std::pow((kGammaEntries - 1.0) / kGammaEntries, kTargetExponent);
    return std::min(std::pow(level, kTargetExponent), kWhiteLevel);
}

// The luminance of each channel over its drive levels, without black.
class Luminances {
public:
    explicit Luminances(const PanelModel& panel) : black(std::max(panel.xyz({0, 0, 0})[1] / panel.white()[1], 0.0)) {
        const double darkest = panel.xyz({0, 0, 0})[1];
        for (size_t channel = 0; channel < 3; ++channel) {
            for (size_t i = 0; i <= kDriveLevels; ++i) {
                Vec3 drive{};
                drive[channel] = static_cast<double>(i) / kDriveLevels;
                samples[channel].push_back(panel.xyz(drive)[1] - darkest);
            }
        }
    }

    // The gamma table for a white of which the channels have these parts. exponent: of the light over decoded levels.
    std::vector<double> gammaTable(const Vec3& white, double exponent) const {
        std::vector<double> grey(kDriveLevels + 1);
        for (size_t i = 0; i < grey.size(); ++i) {
            for (size_t channel = 0; channel < 3; ++channel) grey[i] += white[channel] * samples[channel][i];
        }
        std::vector<double> table;
        for (size_t i = 0; i < kGammaEntries; ++i) {
            const double level = std::min(static_cast<double>(i) / (kGammaEntries * decoded(1)), 1.0);
            table.push_back(driveOf(grey, withoutBlack(std::pow(level, exponent)) * grey.back()));
        }
        return table;
    }

private:
    // Light without black that shows a level, both 0 to 1.
    double withoutBlack(double level) const {
        const double luminance = std::sqrt(level * level + black * black * (1 - level * level));
        return (luminance - black) / (1 - black);
    }

    static double driveOf(const std::vector<double>& grey, double light) {
        const auto above = std::lower_bound(grey.begin() + 1, grey.end() - 1, light);
        const double low = *(above - 1);
        const double part = *above > low ? std::clamp((light - low) / (*above - low), 0.0, 1.0) : 1;
        return (static_cast<double>(above - grey.begin()) - 1 + part) / kDriveLevels;
    }

    const double black;  // of white
    std::array<std::vector<double>, 3> samples;
};

struct FitPatch {
    Vec3 decoded;
    Vec3 wanted;  // XYZ, Y = 100 for the target's white
};

// A panel behind the matrices and the table of a calibration.
struct Display {
    const PanelModel& panel;
    const Vec3 targetWhite;
    Mat3 matrix;  // gains and colour correction, within 1
    std::vector<double> gamma;

    Vec3 xyz(const Vec3& linear) const {
        Vec3 drive = multiply(matrix, linear);
        for (double& level : drive) {
            const double place = std::clamp(level, 0.0, 1.0) * kGammaEntries;
            const size_t below = std::min(static_cast<size_t>(place), kGammaEntries - 1);
            const size_t above = std::min(below + 1, kGammaEntries - 1);
            level = gamma[below] + (gamma[above] - gamma[below]) * (place - static_cast<double>(below));
        }
        return panel.xyz(drive);
    }
    double whiteLuminance() const { return xyz({decoded(1), decoded(1), decoded(1)})[1]; }

    // The difference in L*, a*, b*, scaled to the length delta E 2000. It is smooth at 0, where delta E 2000 is not.
    Vec3 difference(const FitPatch& patch, double luminance) const {
        Vec3 shown = xyz(patch.decoded);
        for (double& value : shown) value *= 100 / luminance;
        const Vec3 is = toLab(shown, targetWhite);
        const Vec3 wanted = toLab(patch.wanted, targetWhite);
        const Vec3 lab = {is[0] - wanted[0], is[1] - wanted[1], is[2] - wanted[2]};
        const double length = std::hypot(lab[0], lab[1], lab[2]);
        if (length == 0) return {};
        const double factor = deltaE2000(shown, patch.wanted, targetWhite) / length;
        return {factor * lab[0], factor * lab[1], factor * lab[2]};
    }

    std::vector<double> errors(const std::vector<FitPatch>& patches) const {
        const double luminance = whiteLuminance();
        std::vector<double> errors;
        for (const FitPatch& patch : patches) {
            const Vec3 lab = difference(patch, luminance);
            errors.push_back(std::hypot(lab[0], lab[1], lab[2]));
        }
        return errors;
    }
};

struct FitPatches {
    std::vector<FitPatch> fitted;  // the first is white
    std::vector<FitPatch> keptOut;
    size_t outOfGamut = 0;
};

// Whether the panel shows a colour when its white has the display's luminance.
bool isInGamut(const Display& display, const Vec3& wanted) {
    const double factor = display.whiteLuminance() / 100;
    const Vec3 xyz = {factor * wanted[0], factor * wanted[1], factor * wanted[2]};
    Vec3 shown = display.panel.xyz(display.panel.drive(xyz));
    for (double& value : shown) value /= factor;
    return deltaE2000(shown, wanted, display.targetWhite) <= kClipped;
}

// Greys, and the colours of a cube and of the ColorChecker.
FitPatches patchesFor(const Display& display, const Target& target) {
    FitPatches patches;
    const auto patchOf = [&target](const Vec3& rgb) {
        return FitPatch{{decoded(rgb[0]), decoded(rgb[1]), decoded(rgb[2])}, xyzOf(target, rgb)};
    };
    for (size_t i = kGreys; i > 0; --i) patches.fitted.push_back(patchOf(grey(i - 1)));
    std::vector<Vec3> colors;
    for (const ChartPatch& patch : colorChecker(target)) colors.push_back(patch.rgb);
    const auto level = [](size_t step) { return static_cast<double>(step) / (kCubeSteps - 1); };
    for (size_t i = 0; i < kCubeSteps * kCubeSteps * kCubeSteps; ++i) {
        const Vec3 rgb = {level(i % kCubeSteps), level(i / kCubeSteps % kCubeSteps),
                          level(i / kCubeSteps / kCubeSteps)};
        if (rgb[0] != rgb[1] || rgb[1] != rgb[2]) colors.push_back(rgb);
    }
    size_t shown = 0;
    for (const Vec3& rgb : colors) {
        const FitPatch patch = patchOf(rgb);
        if (!isInGamut(display, patch.wanted)) {
            ++patches.outOfGamut;
        } else {
            (++shown % kKeptOut == 0 ? patches.keptOut : patches.fitted).push_back(patch);
        }
    }
    return patches;
}

// The parameters of the matrices: the gains of red and blue over that of green, and the colour correction without its
// diagonal, which keeps white.
std::vector<double> parametersOf(const Mat3& matrix) {
    const Vec3 gains = multiply(matrix, kWhite);
    std::vector<double> parameters = {gains[0] / gains[1], gains[2] / gains[1]};
    for (size_t i = 0; i < 9; ++i) {
        if (i % 4 != 0) parameters.push_back(matrix[i] / gains[i / 3]);
    }
    return parameters;
}

Mat3 matrixOf(const std::vector<double>& parameters) {
    const Vec3 gains = {parameters[0], 1, parameters[1]};
    auto next = parameters.begin() + 2;
    Mat3 matrix{};
    for (size_t row = 0; row < 3; ++row) {
        double rest = 1;
        for (size_t column = 0; column < 3; ++column) {
            if (row == column) continue;
            matrix[3 * row + column] = gains[row] * *next;
            rest -= *next++;
        }
        matrix[4 * row] = gains[row] * rest;
    }
    return withinOne(matrix);
}

// Adjusts the matrix. Where white's weight leaves it beyond its limit, it gets more.
void fit(Display& display, const std::vector<FitPatch>& patches) {
    double weight = kWhiteWeight;
    for (int i = 0; i < kMostFits; ++i, weight *= kWhiteWeight) {
        const auto residuals = [&](const std::vector<double>& parameters) {
            Display trial = display;
            trial.matrix = matrixOf(parameters);
            const double luminance = trial.whiteLuminance();
            std::vector<double> result;
            for (const FitPatch& patch : patches) {
                const double factor = result.empty() ? std::sqrt(weight) : 1;
                for (const double part : trial.difference(patch, luminance)) result.push_back(factor * part);
            }
            return result;
        };
        display.matrix = matrixOf(minimizeSquares(residuals, parametersOf(display.matrix)));
        if (display.errors({patches.front()}).front() <= kWhiteLimit) return;
    }
}

}  // namespace

PanelCalibration calibrate(const PanelModel& panel, const Target& target) {
    const auto toPanel = inverse(lightOf(panel));
    if (!toPanel) throw std::runtime_error("the primaries do not mix; expected three different colours");
    const Luminances luminances(panel);
    // Exact if the composer decodes with the target's exponent; otherwise white is, and colours are near.
    const double exponent = target.exponent / kTargetExponent;
    Mat3 exact = multiply(*toPanel, target.toXyz);
    const Vec3 white = multiply(exact, kWhite);
    if (*std::min_element(white.begin(), white.end()) <= 0)
        throw std::runtime_error("the panel cannot show the target's white; expected one inside its gamut");
    for (size_t i = 0; i < 9; ++i) exact[i] *= std::pow(white[i / 3], 1 / exponent - 1);
    Display display{panel, whiteOf(target), withinOne(exact), luminances.gammaTable(white, exponent)};
    const FitPatches patches = patchesFor(display, target);
    for (int pass = 0; pass < kPasses; ++pass) {
        Vec3 light = multiply(display.matrix, kWhite);
        for (double& gain : light) gain = std::pow(gain, exponent);
        display.gamma = luminances.gammaTable(light, exponent);
        fit(display, patches.fitted);
    }

    const Vec3 gains = multiply(display.matrix, kWhite);
    PanelCalibration result{
        scaledToLargest(gains),          display.matrix,    display.gamma, display.errors(patches.fitted),
        display.errors(patches.keptOut), patches.outOfGamut};
    for (size_t i = 0; i < 9; ++i) result.colorCorrection[i] /= gains[i / 3];
    return result;
}

Mat3 lightOf(const PanelModel& panel) {
    const Vec3 black = panel.xyz({0, 0, 0});
    Mat3 light{};
    for (size_t channel = 0; channel < 3; ++channel) {
        Vec3 drive{};
        drive[channel] = 1;
        const Vec3 xyz = panel.xyz(drive);
        for (size_t row = 0; row < 3; ++row) light[3 * row + channel] = xyz[row] - black[row];
    }
    return light;
}

}  // namespace simulator
