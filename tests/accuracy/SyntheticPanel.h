// SPDX-License-Identifier: Apache-2.0
// A panel that is a formula, an instrument that measures it, and what a call complains of.
#pragma once

#include <cmath>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/ErrorOf.h"
#include "tools/accuracy/Measurement.h"

namespace simulator {

// XYZ = unit * (black + M * (r^exponent, g^exponent, b^exponent)), Y = 100 * unit for white without black.
struct SyntheticPanel {
    Primaries primaries = kSrgbPrimaries;
    Chromaticity white = kD65;
    Vec3 exponents = {2.2, 2.2, 2.2};
    double black = 0;  // Y
    double unit = 1;

    Vec3 xyz(const Vec3& rgb) const {
        Vec3 linear;
        for (size_t i = 0; i < 3; ++i) linear[i] = std::pow(rgb[i], exponents[i]);
        Vec3 xyz = multiply(*rgbToXyz(primaries, white), linear);
        for (double& value : xyz) value = unit * (100 * value + black);
        return xyz;
    }

    // Ramps of the primaries and of grey, and a cube, of that many steps. noise: the largest, relative.
    Measurement measure(size_t rampSteps = 8, size_t cubeSteps = 4, double noise = 0) const {
        Measurement panel;
        std::mt19937 random(1);
        const auto add = [&](const Vec3& rgb) {
            Vec3 measured = xyz(rgb);
            for (double& value : measured) value *= 1 + noise * (static_cast<double>(random() % 2001) / 1000 - 1);
            panel.patches.push_back({{std::to_string(panel.patches.size() + 1), rgb}, measured});
        };
        for (size_t i = 0; i <= rampSteps; ++i) {
            const double level = static_cast<double>(i) / static_cast<double>(rampSteps);
            for (const Vec3& rgb : {Vec3{level, 0, 0}, Vec3{0, level, 0}, Vec3{0, 0, level}, Vec3{level, level, level}})
                add(rgb);
        }
        const auto step = [cubeSteps](size_t i) { return static_cast<double>(i) / static_cast<double>(cubeSteps); };
        for (size_t r = 0; r < cubeSteps; ++r) {
            for (size_t g = 0; g < cubeSteps; ++g) {
                for (size_t b = 0; b < cubeSteps; ++b) add({step(r + 1), step(g), step(b)});
            }
        }
        return panel;
    }
};

using tests::errorOf;

// The text of a CTI3 file.
inline std::string toTi3(const Measurement& panel) {
    std::string text =
        "CTI3\n\nORIGINATOR \"a formula\"\nCOLOR_REP \"RGB_XYZ\"\nNUMBER_OF_FIELDS 7\nBEGIN_DATA_FORMAT\n"
        "SAMPLE_ID RGB_R RGB_G RGB_B XYZ_X XYZ_Y XYZ_Z\nEND_DATA_FORMAT\nNUMBER_OF_SETS " +
        std::to_string(panel.patches.size()) + "\nBEGIN_DATA\n";
    for (const auto& patch : panel.patches) {
        text += patch.id;
        for (const double level : patch.rgb) text += " " + std::to_string(100 * level);
        for (const double value : patch.xyz) text += " " + std::to_string(value);
        text += "\n";
    }
    return text + "END_DATA\n";
}

}  // namespace simulator
