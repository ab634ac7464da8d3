// SPDX-License-Identifier: Apache-2.0
// The final matrix, against other ways to compute it.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <random>

#include "bench/peers/FinalCtms.h"

namespace bench {
namespace {

Matrix finalCtmByLibrary(const ColorManager& colors) {
    return colors.finalCtm();
}

// Colour states near what a phone's are.
std::array<ColorManager, 16> someColors() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> onDiagonal(0.6F, 1.1F);
    std::uniform_real_distribution<float> beside(-0.1F, 0.1F);
    std::array<ColorManager, 16> all;
    for (ColorManager& colors : all) {
        for (Matrix* m : {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm}) {
            for (size_t i = 0; i < Matrix::kSize; ++i) (*m)[i] = i % 4 == 0 ? onDiagonal(random) : beside(random);
        }
    }
    return all;
}

bool isNear(const Matrix& a, const Matrix& b) {
    for (size_t i = 0; i < Matrix::kSize; ++i) {
        if (!(std::fabs(a[i] - b[i]) < 1e-5F)) return false;
    }
    return true;
}

template <Matrix (*Compute)(const ColorManager&)>
void finalCtm(benchmark::State& state) {
    const auto all = someColors();
    for (const ColorManager& colors : all) {
        if (!isNear(Compute(colors), colors.finalCtm())) state.SkipWithError("another matrix");
    }
    size_t next = 0;
    for (auto _ : state) {
        const Matrix m = Compute(all[next++ % all.size()]);
        benchmark::DoNotOptimize(&m);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(finalCtm<finalCtmByLibrary>)->Name("finalCtm/ours");
BENCHMARK(finalCtm<finalCtmByPlainLoops>)->Name("finalCtm/plain loops");
BENCHMARK(finalCtm<finalCtmByEigen>)->Name("finalCtm/Eigen");
BENCHMARK(finalCtm<finalCtmByGlm>)->Name("finalCtm/glm");
BENCHMARK(finalCtm<finalCtmByHand>)->Name("finalCtm/by hand");

}  // namespace
}  // namespace bench
