// SPDX-License-Identifier: Apache-2.0
// From the file of a measured panel to the verdicts on a state, and to a calibration file.
#include <benchmark/benchmark.h>

#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"
#include "tools/accuracy/CalibrationFile.h"
#include "tools/accuracy/Limits.h"

namespace bench {
namespace {

using namespace simulator;

void countSeconds(benchmark::State& state) {
    state.counters["seconds"] =
        benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

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
    countSeconds(state);
}
BENCHMARK(accuracy)->Name("accuracy/1000 patches")->Unit(benchmark::kMillisecond);

void calibration(benchmark::State& state) {
    const tests::TemporaryFolder folder;
    SyntheticPanel differing{kDisplayP3Primaries, {0.300, 0.318}, {2.235, 2.2, 2.165}, 0.05, 1};
    const Measurement measurement = differing.measure(31, 5, 0.005);
    const auto file = folder.write("panel.ti3", toTi3(measurement));
    if (measurement.patches.size() < 250) state.SkipWithError("fewer patches");
    const Target target = makeTarget(kSrgbPrimaries).value();
    for (auto _ : state) {
        const PanelModel panel(readPanel(file));
        ConfigXmlParser record{};
        setCalibration(calibrate(panel, target), record);
        benchmark::DoNotOptimize(calibrationXml(record, "").data());
    }
    countSeconds(state);
}
BENCHMARK(calibration)->Name("calibrate/250 patches")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
