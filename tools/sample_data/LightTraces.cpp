// SPDX-License-Identifier: Apache-2.0
#include "tools/sample_data/LightTraces.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace simulator {

namespace {

constexpr double kPi = 3.14159265358979323846;

class Recording {
public:
    void add(double seconds, double lux) {
        std::array<char, 64> line{};
        snprintf(line.data(), line.size(), "%g,%.1f\n", seconds, lux);
        csv += line.data();
    }
    // Samples a second apart, from the last one's second on.
    void addSecond(double lux) { add(next++, lux); }
    void addText(int seconds, const char* lux) { csv += std::to_string(seconds) + "," + lux + "\n"; }
    void skip(int seconds) { next += seconds; }
    int second() const { return next; }

    std::string csv = "seconds,lux\n";

private:
    int next = 0;
};

// Clouds let through from a third to all of the light; two slow waves without a common period.
double clouds(double hour) {
    const double cover = 0.5 + 0.3 * std::sin(2 * kPi * hour / 1.3) + 0.2 * std::sin(2 * kPi * hour / 0.31);
    return 1.0 - 0.66 * cover;
}

// From six in the morning to nine in the evening, every half minute: the sun behind clouds, and two hours indoors.
std::string dayOutdoors() {
    constexpr int kSeconds = 15 * 3600;
    constexpr double kSun = 90000;  // lux on a clear noon
    constexpr double kTwilight = 20;
    constexpr double kOffice = 420;
    Recording recording;
    for (int second = 0; second <= kSeconds; second += 30) {
        const double hour = second / 3600.0;
        const bool indoors = hour >= 3 && hour < 5;
        const double sun = kSun * std::pow(std::sin(kPi * second / kSeconds), 1.5) * clouds(hour);
        recording.add(second, indoors ? kOffice + 15 * std::sin(hour * 40) : kTwilight + sun);
    }
    return recording.csv;
}

// Light that dances about the two thresholds, 8000 and 5000 lux, and single bright and dark samples.
std::string flickeringEdge() {
    Recording recording;
    const auto alternate = [&recording](double a, double b, int count) {
        for (int i = 0; i < count; ++i) recording.addSecond(i % 2 == 0 ? a : b);
    };
    alternate(7900, 8100, 60);   // one bright sample in two: the mean stays below
    alternate(8000, 8000, 10);   // exactly the threshold does not switch on
    alternate(8001, 8001, 10);   // one lux more does
    alternate(4900, 5100, 60);   // dark ones one at a time: stays on
    alternate(5000, 5000, 10);   // exactly the threshold keeps it on
    alternate(30000, 4999, 20);  // every second sample dark
    alternate(4999, 4999, 10);   // two in a row switch off
    alternate(90000, 300, 20);   // camera flashes in a room
    alternate(300, 300, 20);
    return recording.csv;
}

// A drive through a tunnel with lamps, twice.
std::string tunnel() {
    Recording recording;
    for (int drive = 0; drive < 2; ++drive) {
        for (int i = 0; i < 60; ++i) recording.addSecond(40000 + 8000 * std::sin(i / 5.0));
        recording.addSecond(12000);
        for (int i = 0; i < 45; ++i) recording.addSecond(i % 4 == 0 ? 160 : 35);
        recording.addSecond(15000);
        for (int i = 0; i < 60; ++i) recording.addSecond(65000 - 200 * i);
    }
    return recording.csv;
}

// What a sensor delivers that is wet, loose or dying.
std::string brokenSensor() {
    Recording recording;
    const auto steady = [&recording](double lux, int count) {
        for (int i = 0; i < count; ++i) recording.addSecond(lux);
    };
    const auto odd = [&recording](const char* lux) {
        recording.addText(recording.second(), lux);
        recording.skip(1);
    };
    steady(350, 10);
    for (const char* lux : {"1000000", "inf", "1e30"}) {
        odd(lux);
        steady(350, 5);
    }
    steady(20000, 10);
    recording.skip(90);  // says nothing at all
    steady(20000, 5);
    steady(0, 30);  // stuck at zero in the sun
    steady(20000, 10);
    return recording.csv;
}

}  // namespace

std::vector<NamedLightTrace> sampleLightTraces() {
    return {{"day-outdoors", dayOutdoors()},
            {"flickering-edge", flickeringEdge()},
            {"tunnel", tunnel()},
            {"broken-sensor", brokenSensor()}};
}

}  // namespace simulator
