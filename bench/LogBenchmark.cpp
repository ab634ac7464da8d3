// SPDX-License-Identifier: Apache-2.0
// A log line, suppressed and printed.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <platform/Log.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include "bench/QuietLog.h"

namespace bench {
namespace {

// Standard error goes nowhere as long as it lives.
class NoStandardError {
public:
    NoStandardError() : kept(dup(STDERR_FILENO)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~NoStandardError() {
        dup2(kept, STDERR_FILENO);
        close(kept);
    }
    NoStandardError(const NoStandardError&) = delete;
    NoStandardError& operator=(const NoStandardError&) = delete;

private:
    const int kept;
};

[[gnu::noinline]] void logLine(int level, float r, float g, float b) {
    PLATFORM_LOG_DEBUG("%d  %f %f %f", level, r, g, b);
}

[[gnu::noinline]] void doNothing(int level, float r, float g, float b) {
    benchmark::DoNotOptimize(level);
    benchmark::DoNotOptimize(r);
    benchmark::DoNotOptimize(g);
    benchmark::DoNotOptimize(b);
}

[[gnu::noinline, gnu::format(printf, 1, 2)]] void formatAndWrite(const char* format, ...) {
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is not
    const int length = vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    benchmark::DoNotOptimize(write(STDERR_FILENO, line, static_cast<size_t>(length)));
}

void suppressed(benchmark::State& state) {
    const QuietLog quiet;
    for (auto _ : state) logLine(7, 0.5F, 0.25F, 0.125F);
}
BENCHMARK(suppressed)->Name("log/suppressed");

void emptyCall(benchmark::State& state) {
    for (auto _ : state) doNothing(7, 0.5F, 0.25F, 0.125F);
}
BENCHMARK(emptyCall)->Name("log/empty call");

void printed(benchmark::State& state) {
    const NoStandardError nowhere;
    for (auto _ : state) logLine(7, 0.5F, 0.25F, 0.125F);
}
BENCHMARK(printed)->Name("log/printed");

void formatted(benchmark::State& state) {
    const NoStandardError nowhere;
    for (auto _ : state) {
        formatAndWrite("D/%s(%5d): %s:%d: %d  %f %f %f\n", platform::kLogTag, 12345, "logLine", 57, 7, 0.5, 0.25,
                       0.125);
    }
}
BENCHMARK(formatted)->Name("log/vsnprintf and write");

}  // namespace
}  // namespace bench
