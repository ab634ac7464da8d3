// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Limits.h"

#include <algorithm>
#include <cmath>

namespace simulator {

std::vector<Verdict> judge(const Figures& figures, const Limits& limits) {
    std::vector<Verdict> verdicts;
    const auto most = [&verdicts](const char* figure, const std::optional<double>& value, double limit) {
        verdicts.push_back({figure, value, limit, false, value ? std::optional(*value <= limit) : std::nullopt});
    };
    const auto least = [&verdicts](const char* figure, const std::optional<double>& value, double limit) {
        verdicts.push_back({figure, value, limit, true, value ? std::optional(*value >= limit) : std::nullopt});
    };
    const auto chart = [&](const char* figure, double ColorErrors::*error, double limit) {
        const auto errors = errorsOf(figures.colorChecker);
        most(figure, errors ? std::optional((*errors).*error) : std::nullopt, limit);
        if (!errors && !figures.colorChecker.empty()) verdicts.back().isKept = false;
    };
    double chroma = 0;
    std::optional<double> gamma;
    for (const GreyFigure& grey : figures.greys) {
        chroma = std::max(chroma, grey.deltaC);
        if (grey.gammaError) gamma = std::max(gamma, std::optional(std::abs(*grey.gammaError)));
    }
    most("white, dE2000", figures.white.deltaE, limits.white);
    most("grey, largest dC", chroma, limits.greyChroma);
    most("gamma, largest error", gamma, limits.gamma);
    most("luminance falls, of 256 codes", figures.codes.falls, 0);
    chart("ColorChecker, mean dE2000", &ColorErrors::mean, limits.colorCheckerMean);
    chart("ColorChecker, largest dE2000", &ColorErrors::largest, limits.colorCheckerLargest);
    least("coverage in xy", figures.coverageXy, limits.coverage);
    least("coverage in u'v'", figures.coverageUv, limits.coverage);
    return verdicts;
}

}  // namespace simulator
