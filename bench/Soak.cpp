// SPDX-License-Identifier: Apache-2.0
// Endurance: the service on the simulated phone, for minutes of real time at full speed and through days of virtual
// light. Ends with 1 when memory grows, a descriptor stays open, calls become slower or something is answered wrongly.
#include <android/log.h>
#include <platform/Answer.h>
#include <platform/Services.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"

namespace {

using namespace vendor::kov::hardware::display_control::V1_0;
using Service = implementation::DisplayControlImpl;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr uint64_t kHandle = 1;
constexpr size_t kMostGrowth = 1 << 20;  // bytes of resident memory
constexpr double kMostSlowdown = 1.5;    // of the last calls against the first; other load slows calls too

std::atomic<uint64_t> logLines{0};
std::atomic<uint64_t> errorLines{0};

void countLine(const simulator::Event& event) {
    const auto* const line = std::get_if<simulator::LogLine>(&event.what);
    if (line != nullptr || std::holds_alternative<simulator::LightSample>(event.what)) ++logLines;
    if (line != nullptr && line->priority >= ANDROID_LOG_ERROR) ++errorLines;
}

size_t residentBytes() {
    size_t pages = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

size_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

// Reorders the values.
double median(std::vector<double>& values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The medians of the first tenth and of the last.
std::pair<double, double> ends(const std::vector<double>& times) {
    if (times.empty()) return {0, 0};
    const auto tenth = static_cast<std::ptrdiff_t>(std::max<size_t>(times.size() / 10, 1));
    std::vector<double> first(times.begin(), times.begin() + tenth);
    std::vector<double> last(times.end() - tenth, times.end());
    return {median(first), median(last)};
}

// Prints what holds and what fails.
class Verdict {
public:
    void expect(bool holds, const std::string& what) {
        printf("  %s  %s\n", holds ? "holds" : "FAILS", what.c_str());
        all = all && holds;
    }
    bool holds() const { return all; }

private:
    bool all = true;
};

std::string text(const char* format, double a, double b = 0, double c = 0) {
    char line[160];
    snprintf(line, sizeof line, format, a, b, c);
    return line;
}

// Growth of memory and descriptors since its construction.
class Household {
public:
    void judge(Verdict& verdict) const {
        const size_t after = residentBytes();
        const size_t growth = after > resident ? after - resident : 0;
        verdict.expect(growth <= kMostGrowth,
                       text("resident memory %.1f MiB after the warm-up, %.1f MiB at the end",
                            static_cast<double>(resident) / 1048576, static_cast<double>(after) / 1048576));
        verdict.expect(openDescriptors() == descriptors, "descriptors open: " + std::to_string(descriptors) +
                                                             " before, " + std::to_string(openDescriptors()) +
                                                             " after");
    }

private:
    const size_t resident = residentBytes();
    const size_t descriptors = openDescriptors();
};

// Calls the operations again and again and counts answers that are wrong or missing.
class Client {
public:
    explicit Client(Service& served) : service(served) {}

    static constexpr uint64_t kRound = 26;  // calls

    void callAll(int32_t level) {
        const uint64_t before = made;
        service.allocUserHandle(0, [this](Result result, uint64_t) { expect(result); });
        service.getNumOfDisplay(kHandle, [this](Result result, uint32_t) { expect(result); });
        service.getDisplayInfo(kHandle, 0, [this](Result result, const DisplayInfo&) { expect(result); });
        expect(service.freeUserHandle(kHandle));
        expect(service.setUnlimitedCT(kHandle, 0, level % 100));
        service.getUnlimitedCT(kHandle, 0, [this](Result result, int32_t) { expect(result); });
        expect(service.setEyeCareCT(kHandle, 0, level % 100));
        service.getEyeCareCT(kHandle, 0, [this](Result result, int32_t) { expect(result); });
        expect(service.setColorTransformMatrix(kHandle, 0, matrix));
        service.getColorTransformMatrix2(kHandle, 0,
                                         [this](Result result, const auto&, const auto&) { expect(result); });
        expect(service.setColorTransformMatrix2(kHandle, 0, matrix, matrix));
        service.getColorTransformMatrix(kHandle, 0, [this](Result result, const auto&) { expect(result); });
        expect(service.setGlobalGammaLut(kHandle, 0, *table));
        service.getGlobalGammaLut(kHandle, 0, [this](Result result, const auto&) { expect(result); });
        expect(service.setGlobalDeGammaLut(kHandle, 0, *table));
        service.getGlobalDeGammaLut(kHandle, 0, [this](Result result, const auto&) { expect(result); });
        expect(service.setGlobalGamma(kHandle, 0, 2.2F));
        expect(service.setStandardMode(kHandle, 0, 0));
        expect(service.setEnhanceScreenMode(kHandle, 0, 0));
        expect(service.setSmartEnvironmentMode(kHandle, 0, 0));
        expect(service.setCabcSysNode(kHandle, 0, level % 10));
        expect(service.setCabcMode(kHandle, 0, level % 5));
        expect(service.setFeature(kHandle, 0, 23, level % 100, 0));
        expect(
            service.setMiscFeature(kHandle, 0, 3, {1.0, 0.0}, [this](Result result, const auto&) { expect(result); }));
        service.getMiscFeature(kHandle, 0, 3, [this](Result result, const auto&) { expect(result == Result::FAILED); });
        expect(service.IsAladEnable(kHandle, 0).withDefault(0) == 1);
        if (made != before + kRound) ++failed;
    }
    // Exclusive mode, which reads the calibration again, and ALAD off and on.
    void callSeldom() {
        expect(service.exclusiveModeEnter(kHandle, 1));
        expect(service.exclusiveModeExit(kHandle, 1));
        expect(service.setAlad(kHandle, 0, 1));
        expect(service.setAlad(kHandle, 0, 0));
        expect(service.setAlad(kHandle, 0, 1));
    }

    uint64_t calls() const { return made; }
    uint64_t failures() const { return failed; }

private:
    void expect(bool well) {
        ++made;
        if (!well) ++failed;
    }
    void expect(Result result) { expect(result == Result::OK); }
    void expect(implementation::Return<Result> result) { expect(result.withDefault(Result::FAILED)); }
    void expect(implementation::Return<int32_t> result) { expect(result.withDefault(-5) == 0); }
    void expect(const implementation::Return<void>& result) { platform::dropAnswer(result); }

    Service& service;
    uint64_t made = 0;
    uint64_t failed = 0;
    ColorTransformMatrix matrix{};
    const std::unique_ptr<GammaLut> table = std::make_unique<GammaLut>();
};

void startUp(Service& service, Verdict& verdict) {
    verdict.expect(service.init() == 0, "the service starts");
    errorLines = 0;  // the sample phone's first start logs what its panel lacks
    verdict.expect(service.setAlad(kHandle, 0, 1).withDefault(Result::FAILED) == Result::OK,
                   "the ambient-light display switches on");
}

// Calls without a pause; the light changes from dark to bright and back every few seconds.
bool soakInRealTime(double minutes) {
    printf("%.1f minutes of real time\n", minutes);
    simulator::Phone phone(simulator::Phone::Start::SAMPLE);
    phone.observe(countLine);
    platform::setClock(nullptr);
    Service service;
    Client client(service);
    Verdict verdict;
    startUp(service, verdict);
    for (int i = 0; i < 2000; ++i) client.callAll(i);
    client.callSeldom();

    std::vector<double> rounds;   // microseconds of the rounds of a second
    std::vector<double> medians;  // of each second
    rounds.reserve(1'000'000);
    std::fill_n(std::back_inserter(rounds), rounds.capacity(), 0.0);  // allocates before memory is measured
    rounds.clear();
    const Household household;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(60 * minutes));
    auto nextSecond = start + 1s;
    for (int32_t round = 0; Clock::now() < end; ++round) {
        const auto before = Clock::now();
        client.callAll(round);
        rounds.push_back(std::chrono::duration<double, std::micro>(Clock::now() - before).count());
        if (Clock::now() < nextSecond) continue;
        nextSecond += 1s;
        medians.push_back(median(rounds));
        rounds.clear();
        const auto second = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count();
        phone.sensors().light(second % 20 < 10 ? 20000.0F : 100.0F);
        if (second % 15 == 0) client.callSeldom();
    }
    household.judge(verdict);
    const auto [first, last] = ends(medians);
    verdict.expect(last <= kMostSlowdown * first, text("26 calls take %.1f us at first, %.1f us at last", first, last));
    verdict.expect(client.calls() >= 1'000'000, std::to_string(client.calls()) + " calls, a million at least");
    verdict.expect(client.failures() == 0, std::to_string(client.failures()) + " answered wrongly");
    verdict.expect(errorLines == 0,
                   std::to_string(logLines) + " log lines, errors among them: " + std::to_string(errorLines));
    platform::dropAnswer(service.setAlad(kHandle, 0, 0));
    return verdict.holds();
}

// Light in lux: night, and a day under passing clouds.
float lightAt(int64_t second) {
    const double ofDay = static_cast<double>(second % 86400) / 86400;
    const double sun = std::max(0.0, std::sin(2 * M_PI * (ofDay - 0.25)));
    const double clouds = 0.5 + 0.5 * std::sin(static_cast<double>(second) / 731.0);
    return static_cast<float>(5 + 60000 * sun * clouds);
}

// The tone curve follows the light for days; a client calls every hour.
bool soakInVirtualTime(int days) {
    printf("%d days of virtual light\n", days);
    uint64_t messages = 0;
    simulator::Phone phone(simulator::Phone::Start::SAMPLE);
    phone.observe(countLine);
    phone.composer().onCall([&messages](simulator::ComposerOperation operation) {
        if (operation == simulator::ComposerOperation::SET_ALAD_PARAMS) ++messages;
    });
    Service service;
    Client client(service);
    Verdict verdict;
    startUp(service, verdict);
    std::vector<double> times;  // of each day, seconds of real time
    auto begin = Clock::now();
    std::unique_ptr<const Household> household;
    for (int hour = 0; hour < 24 * days; ++hour) {
        if (hour == 24) household = std::make_unique<Household>();
        for (int64_t second = 3600LL * hour; second < 3600LL * (hour + 1); second += 10) {
            phone.sensors().light(lightAt(second));
            phone.clock().advance(10s);
        }
        client.callAll(hour);
        if (hour % 24 == 12) client.callSeldom();
        if (hour % 24 == 23) {
            times.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
            begin = Clock::now();
        }
    }
    household->judge(verdict);
    const auto [first, last] = ends(times);
    verdict.expect(last <= kMostSlowdown * first, text("a day takes %.2f s at first, %.2f s at last", first, last));
    verdict.expect(messages > 0, std::to_string(messages) + " messages of the tone curve");
    verdict.expect(client.failures() == 0,
                   std::to_string(client.calls()) + " calls, answered wrongly: " + std::to_string(client.failures()));
    verdict.expect(errorLines == 0, std::to_string(errorLines) + " error lines");
    platform::dropAnswer(service.setAlad(kHandle, 0, 0));
    return verdict.holds();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Endurance of the display-control service", "soak");
    double minutes = 1;
    int days = 2;
    app.add_option("--minutes", minutes, "of real time, without a pause")->check(CLI::Range(0.0, 100000.0));
    app.add_option("--days", days, "of virtual light")->check(CLI::Range(0, 10000));
    app.get_option("--days")->check([](const std::string& value) {
        return std::string(value == "1" ? "at least 2, the first of which is the warm-up; or 0" : "");
    });
    CLI11_PARSE(app, argc, argv);
    setvbuf(stdout, nullptr, _IOLBF, 0);
    bool holds = true;
    if (minutes > 0) holds = soakInRealTime(minutes) && holds;
    if (days > 0) holds = soakInVirtualTime(days) && holds;
    return holds ? 0 : 1;
}
