// SPDX-License-Identifier: Apache-2.0
// Operations of the service, against the least that they do.
#include <benchmark/benchmark.h>

#include <array>

#include "bench/QuietLog.h"
#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"

namespace bench {
namespace {

using namespace vendor::kov::hardware::display_control::V1_0::implementation;
using ::vendor::kov::hardware::display_control::V1_0::Result;

// The service on the sample phone, which nobody observes. The closed library does nothing.
struct Service {
    Service() {
        phone.closed().getUnlimitedCTParams = [](int, float*) { return 0; };
    }

    const QuietLog quiet;
    simulator::Phone phone{DISPLAY_CONTROL_DATA_DIR "/phone"};
    DisplayControlImpl impl;
};

void setUnlimitedCT(benchmark::State& state) {
    Service service;
    service.impl.init();
    int32_t level = 0;
    for (auto _ : state) {
        const Result result = service.impl.setUnlimitedCT(7, 0, ++level % 100);
        if (result != Result::OK) state.SkipWithError("it failed");
    }
}
BENCHMARK(setUnlimitedCT)->Name("setUnlimitedCT/ours");

// The least that a setUnlimitedCT does: it stores the gains, composes the matrix and calls the composer.
void finalCtmAndCall(benchmark::State& state) {
    Service service;
    service.impl.init();
    ColorManager colors = service.impl.displayColors()[0];
    simulator::composer_ext::IComposerExt* composer = &service.phone.composer();
    std::array<float, 3> gains{1.0F, 1.0F, 1.0F};
    benchmark::DoNotOptimize(composer);
    simulator::composer_ext::ColorTransformMatrix first{};
    simulator::composer_ext::ColorTransformMatrix last{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(gains);
        for (size_t i = 0; i < gains.size(); ++i) colors.unlimitedCtm[4 * i] = gains[i];
        benchmark::DoNotOptimize(colors);
        last.elements = colors.finalCtm().data();
        auto answer = composer->setColorTransformMatrix(0, first, last);
        if (!answer.isOk()) state.SkipWithError("it failed");
    }
}
BENCHMARK(finalCtmAndCall)->Name("setUnlimitedCT/gains, finalCtm and call");

void setGlobalGamma(benchmark::State& state) {
    Service service;
    service.impl.init();
    for (auto _ : state) {
        const Result result = service.impl.setGlobalGamma(7, 0, 2.2F);
        if (result != Result::OK) state.SkipWithError("it failed");
    }
}
BENCHMARK(setGlobalGamma)->Name("setGlobalGamma/ours");

}  // namespace
}  // namespace bench
