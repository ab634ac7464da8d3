// SPDX-License-Identifier: Apache-2.0
// The model of a measured panel.
#include "tools/accuracy/PanelModel.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "tests/accuracy/SyntheticPanel.h"

namespace simulator {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

constexpr Vec3 kColors[] = {{0, 0, 0},       {1, 1, 1},       {0.5, 0.5, 0.5}, {0.03, 0.03, 0.03},
                            {0.2, 0.5, 0.8}, {0.9, 0.1, 0.4}, {0, 1, 0.33},    {0.71, 0.02, 0}};

SyntheticPanel wideGamutPanel() {
    return {{{0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06}}, {0.300, 0.320}, {2.235, 2.2, 2.165}, 0.05, 4.5};
}

double errorOf(const PanelModel& model, const Vec3& rgb) {
    return deltaE2000(model.xyz(rgb), wideGamutPanel().xyz(rgb), model.white());
}

TEST(PanelModelTest, PredictsColorsThatWereNotMeasured) {
    const PanelModel model(wideGamutPanel().measure(16));
    EXPECT_LT(model.residual().largest, 0.05);
    for (const Vec3& rgb : kColors) EXPECT_LT(errorOf(model, rgb), 0.1);

    SyntheticPanel linear;
    linear.exponents = {1, 1, 1};
    EXPECT_LT(PanelModel(linear.measure(32)).residual().largest, 0.05) << "far from the curve that the fit begins with";

    const PanelModel shipped(readPanel(std::filesystem::path(DISPLAY_CONTROL_DATA_DIR) / "panels/cool.ti3"));
    EXPECT_LT(shipped.residual().mean, 0.05);
    EXPECT_LT(shipped.residual().largest, 0.2);
}

TEST(PanelModelTest, NoiseAveragesOutAndACurveNeverFalls) {
    const PanelModel model(wideGamutPanel().measure(40, 5, 0.005));
    for (const Vec3& rgb : kColors) EXPECT_LT(errorOf(model, rgb), 0.5);

    auto stuck = wideGamutPanel().measure();
    for (auto& patch : stuck.patches) {
        if (patch.rgb == Vec3{0, 0.5, 0}) patch.xyz = wideGamutPanel().xyz({0, 0.3, 0});  // below the step before
    }
    const PanelModel flat(stuck);
    for (int i = 0; i < 1000; ++i) EXPECT_GE(flat.xyz({0, (i + 1) / 1e3, 0})[1], flat.xyz({0, i / 1e3, 0})[1] - 1e-9);
}

TEST(PanelModelTest, TheDriveOfAColorShowsIt) {
    const PanelModel model(wideGamutPanel().measure());
    for (const Vec3& rgb : kColors) EXPECT_THAT(model.drive(model.xyz(rgb)), Pointwise(DoubleNear(1e-6), rgb));
    EXPECT_THAT(model.drive({900, 900, -900}), Pointwise(DoubleNear(1e-6), {1.0, 1.0, 0.0})) << "outside its gamut";
}

TEST(PanelModelTest, LightThatDoesNotAddUpIsReported) {
    // Four subpixels: a white one lights up with the darkest of the others.
    auto panel = wideGamutPanel().measure();
    const Vec3 white = wideGamutPanel().xyz({1, 1, 1});
    for (auto& patch : panel.patches) {
        const double light = std::pow(*std::min_element(patch.rgb.begin(), patch.rgb.end()), 2.2);
        for (size_t i = 0; i < 3; ++i) patch.xyz[i] += 0.6 * light * white[i];
    }
    EXPECT_FALSE(PanelModel(panel).isAdditive());

    for (auto& patch : panel.patches) patch.xyz = {patch.xyz[1], patch.xyz[1], patch.xyz[1]};
    EXPECT_THROW(PanelModel{panel}, std::runtime_error) << "one colour";
}

}  // namespace
}  // namespace simulator
