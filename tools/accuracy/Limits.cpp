// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Limits.h"

#include <algorithm>
#include <cmath>

namespace simulator {

std::vector<Verdict> judge(const Figures& figures, const Limits& limits) {
    std::vector<Verdict> verdicts;
    const auto most = [&verdicts](const char* figure, double value, double limit) {
        verdicts.push_back({figure, value, limit, false, value <= limit});
    };
    const auto least = [&verdicts](const char* figure, double value, double limit) {
        verdicts.push_back({figure, value, limit, true, value >= limit});
    };
    double chroma = 0;
    double gamma = 0;
    bool hasGamma = false;
    for (const GreyFigure& grey : figures.greys) {
        chroma = std::max(chroma, grey.deltaC);
        gamma = std::max(gamma, std::abs(grey.gammaError.value_or(0)));
        hasGamma = hasGamma || grey.gammaError;
    }
    most("white, dE2000", figures.white.deltaE, limits.white);
    most("grey, largest dC", chroma, limits.greyChroma);
    if (hasGamma) most("gamma, largest error", gamma, limits.gamma);
    most("luminance falls, of 256 codes", figures.codes.falls, 0);
    if (const auto errors = errorsOf(figures.colorChecker)) {
        most("ColorChecker, mean dE2000", errors->mean, limits.colorCheckerMean);
        most("ColorChecker, largest dE2000", errors->largest, limits.colorCheckerLargest);
    }
    if (figures.coverageXy) least("coverage in xy", *figures.coverageXy, limits.coverage);
    if (figures.coverageUv) least("coverage in u'v'", *figures.coverageUv, limits.coverage);
    return verdicts;
}

}  // namespace simulator
