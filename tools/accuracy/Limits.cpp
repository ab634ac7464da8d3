// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Limits.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace simulator {

namespace {

struct NamedLimit {
    const char* name;
    double Limits::*limit;
};
constexpr NamedLimit kLimits[] = {
    {"white", &Limits::white},
    {"greyChroma", &Limits::greyChroma},
    {"gamma", &Limits::gamma},
    {"colorCheckerMean", &Limits::colorCheckerMean},
    {"colorCheckerLargest", &Limits::colorCheckerLargest},
    {"coverage", &Limits::coverage},
};

std::string names() {
    std::string list;
    for (const auto& [name, limit] : kLimits) list += (list.empty() ? "" : ", ") + std::string(name);
    return list;
}

}  // namespace

Limits readLimits(const std::filesystem::path& file) {
    const auto fail = [&file](const std::string& what) { throw std::runtime_error(file.string() + ": " + what); };
    std::ifstream stream(file);
    if (!stream) fail("could not be read; expected a JSON file of limits");
    const auto json = nlohmann::json::parse(stream, nullptr, /*allow_exceptions=*/false);
    if (!json.is_object()) fail("is not a JSON object; expected one of " + names());
    Limits limits;
    for (const auto& [name, value] : json.items()) {
        const auto known = std::find_if(std::begin(kLimits), std::end(kLimits),
                                        [&key = name](const NamedLimit& limit) { return key == limit.name; });
        if (known == std::end(kLimits)) fail("has a limit \"" + name + "\"; expected one of " + names());
        if (!value.is_number() || value < 0) fail(name + " is " + value.dump() + "; expected a number from 0");
        limits.*(known->limit) = value;
    }
    return limits;
}

std::vector<Verdict> judge(const Figures& figures, const Limits& limits) {
    std::vector<Verdict> verdicts;
    // Written so that NaN fails.
    const auto most = [&verdicts](const char* figure, double value, double limit) {
        verdicts.push_back({figure, value, limit, false, value <= limit});
    };
    const auto least = [&verdicts](const char* figure, double value, double limit) {
        verdicts.push_back({figure, value, limit, true, value >= limit});
    };
    double chroma = 0;
    double gamma = 0;
    for (const GreyFigure& grey : figures.greys) {
        chroma = std::max(chroma, grey.deltaC);
        gamma = std::max(gamma, std::abs(grey.gammaError.value_or(0)));
    }
    most("white", figures.white.deltaE, limits.white);
    most("grey chroma", chroma, limits.greyChroma);
    most("gamma", gamma, limits.gamma);
    most("luminance falls", figures.codes.falls, 0);
    if (const auto errors = errorsOf(figures.colorChecker)) {
        most("ColorChecker mean", errors->mean, limits.colorCheckerMean);
        most("ColorChecker largest", errors->largest, limits.colorCheckerLargest);
    }
    if (figures.coverageXy) least("coverage in xy", *figures.coverageXy, limits.coverage);
    if (figures.coverageUv) least("coverage in u'v'", *figures.coverageUv, limits.coverage);
    return verdicts;
}

}  // namespace simulator
