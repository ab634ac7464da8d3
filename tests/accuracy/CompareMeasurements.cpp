// SPDX-License-Identifier: Apache-2.0
// Prints mean and largest delta E 2000 of two measurements of the same patches, each scaled to Y = 100 for white,
// relative to the mean of both whites: compare_measurements A.ti3 B.ti3. See scripts/check-accuracy.
#include <cstdio>

#include "tools/accuracy/Shown.h"

int main(int argc, char** argv) {
    using namespace simulator;
    if (argc != 3) return 2;
    std::vector<MeasuredPatch> measured[] = {readMeasurement(argv[1]).patches, readMeasurement(argv[2]).patches};
    Vec3 white{};
    for (auto& patches : measured) {
        const Vec3 own = meanXyz(patches, {1, 1, 1}).value();
        for (size_t i = 0; i < 3; ++i) {
            for (MeasuredPatch& patch : patches) patch.xyz[i] *= 100 / own[1];
            white[i] += own[i] * 50 / own[1];
        }
    }
    const ColorErrors errors = compare(measured[0], measured[1], white);
    printf("%.6f %.6f\n", errors.mean, errors.largest);
}
