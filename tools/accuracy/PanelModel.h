// SPDX-License-Identifier: Apache-2.0
// What a panel shows for any drive levels, and the levels that show a colour.
#pragma once

#include <array>

#include "tools/accuracy/ChannelCurve.h"
#include "tools/accuracy/Colorimetry.h"
#include "tools/accuracy/Measurement.h"

namespace simulator {

// The mean residual above which a panel's light is not additive enough for the model.
constexpr double kAdditiveResidual = 1.5;  // delta E 2000

// Three tone response curves and a matrix with black level:
//
//     XYZ = black + M * (curve_R(r), curve_G(g), curve_B(b))
//
// XYZ is in the unit of the measurement.
class PanelModel {
public:
    // Fits the model to all patches of a native panel (see readPanel). The same result on every run. Throws
    // std::runtime_error if the primaries do not span XYZ.
    explicit PanelModel(const Measurement& panel);

    Vec3 xyz(const Vec3& drive) const;
    Vec3 white() const { return xyz({1, 1, 1}); }

    // XYZ of red, green and blue at full drive without black, as columns, Y = 1 for the measured white; and the
    // inverse.
    const Mat3& light() const { return matrix; }
    const Mat3& fromLight() const { return toLinear; }

    // The levels that show a colour; a colour outside the panel's gamut is clipped channel by channel in linear light.
    Vec3 drive(const Vec3& xyz) const;

    // Whether the panel comes within delta E 2000 of 0.5 of a colour, relative to that white.
    bool shows(const Vec3& color, const Vec3& white) const {
        return deltaE2000(xyz(drive(color)), color, white) <= 0.5;
    }

    // Difference of the model from the measured patches, in delta E 2000 relative to the measured white.
    const ColorErrors& residual() const { return errors; }
    bool isAdditive() const { return errors.mean <= kAdditiveResidual; }

private:
    std::vector<double> parameters() const;
    void setParameters(const std::vector<double>& parameters);
    // The residuals that the fit minimises.
    std::vector<double> residuals(const std::vector<MeasuredPatch>& patches, const Vec3& measuredWhite) const;

    double unit;  // Y of the measured white; black and matrices are in this unit
    Vec3 black;
    Mat3 matrix{};
    Mat3 toLinear{};
    std::array<ChannelCurve, 3> curves;
    ColorErrors errors{};
};

}  // namespace simulator
