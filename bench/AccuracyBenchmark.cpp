// SPDX-License-Identifier: Apache-2.0
// From the file of a measured panel to the verdicts on a state.
#include <benchmark/benchmark.h>

#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"
#include "tools/accuracy/Limits.h"

namespace bench {
namespace {

using namespace simulator;

void accuracy(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    const Measurement measurement = SyntheticPanel().measure(67, 9, 0.002);
    const auto file = folder.write("panel.ti3", toTi3(measurement));
    if (measurement.patches.size() < 1000) state.SkipWithError("fewer patches");
    const Target target = makeTarget(kSrgbPrimaries).value();
    const DisplayState display;
    for (auto _ : state) {
        const PanelModel panel(readPanel(file));
        benchmark::DoNotOptimize(judge(figuresOf(display, panel, target, predicted(display, panel)), {}).data());
    }
    state.counters["seconds"] =
        benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(accuracy)->Name("accuracy/1000 patches")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
