// SPDX-License-Identifier: Apache-2.0
// How time and memory grow. Each run measures one case in its own process and prints one line:
//
//     growth displays COUNT     microseconds of init, nanoseconds of a setUnlimitedCT, peak KiB
//     growth calls COUNT        seconds of that many calls of the service, peak KiB
//     growth run COMMAND...     processor seconds of a command, its peak KiB; its output is dropped
//     growth trace HOURS        a light trace, a sample a second: days with clouds
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#include "bench/QuietLog.h"
#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"

namespace {

using namespace vendor::kov::hardware::display_control::V1_0::implementation;
using ::vendor::kov::hardware::display_control::V1_0::Result;

constexpr uint64_t kHandle = 7;

uint64_t toCount(const std::string& text) {
    uint64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || end != text.data() + text.size() || count == 0) {
        throw std::runtime_error("\"" + text + "\" is not a count; expected a whole number above 0");
    }
    return count;
}

double processorSeconds(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long peakKiB(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    return usage.ru_maxrss;
}

double secondsOf(const std::function<void()>& work) {
    const double before = processorSeconds(RUSAGE_SELF);
    work();
    return processorSeconds(RUSAGE_SELF) - before;
}

void startService(DisplayControlImpl& service) {
    if (service.init() != 0) throw std::runtime_error("the service did not start");
}

void setLevel(DisplayControlImpl& service, uint64_t display, uint64_t level) {
    const Result result = service.setUnlimitedCT(kHandle, display, static_cast<int32_t>(level % 100));
    if (result != Result::OK) throw std::runtime_error("a level could not be set");
}

void growDisplays(uint64_t count) {
    constexpr int kInits = 50;
    constexpr uint64_t kCalls = 1'000'000;
    simulator::Phone phone(simulator::PhoneFiles::at(DISPLAY_CONTROL_DATA_DIR "/phone"));
    phone.composer().setDisplayCount(static_cast<uint32_t>(count));
    DisplayControlImpl service;
    const double init = secondsOf([&] {
        for (int i = 0; i < kInits; ++i) startService(service);
    });
    const double calls = secondsOf([&] {
        for (uint64_t i = 0; i < kCalls; ++i) setLevel(service, i % count, i);
    });
    printf("%.0f %.1f %ld\n", init / kInits * 1e6, calls / kCalls * 1e9, peakKiB(RUSAGE_SELF));
}

// Of each ten calls: a handle given and taken back, levels set and asked for, the matrix, and the gamma table once.
void callService(DisplayControlImpl& service, uint64_t number) {
    const auto dropHandle = [](Result, uint64_t) {};
    const auto dropLevel = [](Result, int32_t) {};
    switch (number % 10) {
        case 0:
            service.allocUserHandle(0, dropHandle);
            break;
        case 1:
            static_cast<void>(service.freeUserHandle(number).isOk());
            break;
        case 2:
            static_cast<void>(service.setGlobalGamma(kHandle, 0, 2.2F).isOk());
            break;
        case 3:
            static_cast<void>(service.setEyeCareCT(kHandle, 0, static_cast<int32_t>(number % 100)).isOk());
            break;
        case 4:
            service.getColorTransformMatrix(kHandle, 0, [](Result, const auto&) {});
            break;
        case 5:
            service.getEyeCareCT(kHandle, 0, dropLevel);
            break;
        case 6:
            service.getUnlimitedCT(kHandle, 0, dropLevel);
            break;
        default:
            setLevel(service, 0, number);
    }
}

void growCalls(uint64_t count) {
    const simulator::Phone phone(simulator::PhoneFiles::at(DISPLAY_CONTROL_DATA_DIR "/phone"));
    DisplayControlImpl service;
    startService(service);
    const double seconds = secondsOf([&] {
        for (uint64_t i = 0; i < count; ++i) callService(service, i);
    });
    printf("%.4f %ld\n", seconds, peakKiB(RUSAGE_SELF));
}

void printTrace(uint64_t hours) {
    constexpr double kDay = 86400;
    constexpr double kPi = 3.14159265358979323846;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> step(-0.02, 0.02);
    double cloud = 0.5;  // of the sun's light that is left
    for (uint64_t second = 0; second <= hours * 3600; ++second) {
        const double sun = 60'000 * std::max(0.0, std::sin(2 * kPi * static_cast<double>(second) / kDay));
        cloud = std::clamp(cloud + step(random), 0.05, 1.0);
        printf("%llu,%.0f\n", static_cast<unsigned long long>(second), 200 + sun * cloud);
    }
}

void runCommand(char** command) {
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        execv(command[0], command);
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(std::string(command[0]) + " failed");
    }
    printf("%.3f %ld\n", processorSeconds(RUSAGE_CHILDREN), peakKiB(RUSAGE_CHILDREN));
}

void run(int argc, char** argv) {
    const std::map<std::string, void (*)(uint64_t)> kCases = {
        {"displays", growDisplays}, {"calls", growCalls}, {"trace", printTrace}};
    const std::string name = argc > 2 ? argv[1] : "";
    if (name == "run") return runCommand(argv + 2);
    const auto found = kCases.find(name);
    if (found == kCases.end() || argc != 3) {
        throw std::runtime_error("expected displays COUNT, calls COUNT, trace HOURS or run COMMAND...");
    }
    found->second(toCount(argv[2]));
}

}  // namespace

int main(int argc, char** argv) {
    const bench::QuietLog quiet;
    try {
        run(argc, argv);
        return 0;
    } catch (const std::exception& error) {
        fprintf(stderr, "growth: %s\n", error.what());
        return 2;
    }
}
