// SPDX-License-Identifier: Apache-2.0
// The gamma table of an exponent, against asking pow for every entry.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "color/PowerTable.h"

namespace bench {
namespace {

using vendor::kov::hardware::display_control::V1_0::implementation::fillPowerTable;
using vendor::kov::hardware::display_control::V1_0::implementation::kPowerTable;
using Table = std::array<float, kPowerTable>;

void ours(benchmark::State& state, float exponent) {
    Table table;
    for (auto _ : state) {
        benchmark::DoNotOptimize(exponent);
        fillPowerTable(table.data(), exponent);
        benchmark::DoNotOptimize(table);
    }
}

void plain(benchmark::State& state, float exponent) {
    Table table;
    for (auto _ : state) {
        benchmark::DoNotOptimize(exponent);
        for (size_t i = 0; i < table.size(); ++i) {
            table[i] = static_cast<float>(std::pow(static_cast<double>(i) * 0x1p-12, static_cast<double>(exponent)));
        }
        benchmark::DoNotOptimize(table);
    }
}

const bool kRegistered = [] {
    using Limits = std::numeric_limits<float>;
    const std::pair<const char*, float> kExponents[] = {{"1/2.2", 1 / 2.2F},
                                                        {"2.2", 2.2F},
                                                        {"1/1.8", 1 / 1.8F},
                                                        {"1.8", 1.8F},
                                                        {"2.4", 2.4F},
                                                        {"0", 0.0F},
                                                        {"1", 1.0F},
                                                        {"3", 3.0F},
                                                        {"4", 4.0F},
                                                        {"-2.2", -2.2F},
                                                        {"16", 16.0F},
                                                        {"17", 17.0F},
                                                        {"1e-30", 1e-30F},
                                                        {"1e30", 1e30F},
                                                        {"inf", Limits::infinity()},
                                                        {"nan", Limits::quiet_NaN()}};
    for (const auto& [name, exponent] : kExponents) {
        benchmark::RegisterBenchmark(("gamma table/ours/" + std::string(name)).c_str(), ours, exponent);
        benchmark::RegisterBenchmark(("gamma table/pow/" + std::string(name)).c_str(), plain, exponent);
    }
    return true;
}();

}  // namespace
}  // namespace bench
