// The fixture for what follows the light: the service with a light sensor, on virtual time.
#pragma once

#include <platform/VirtualClock.h>

#include "tests/ServiceTest.h"
#include "tests/fakes/FakeSensors.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The started service. The tone curve has level 2 indoors, and a level per 2000 lux in brighter light.
class LightTest : public ServiceTest {
protected:
    LightTest() {
        platform::setClock(&clock);
        sensors->registerAsService();
        fakes::closedLibraries().levelOf = [](int lux) { return lux < 1000 ? 2 : lux / 2000; };
        start();
    }
    ~LightTest() override {
        fakes::journal::setAside(nullptr);
        switchAlad(0);
        platform::setClock(nullptr);
    }

    // Returns when the worker, if there is one, waits for its first sample.
    Result switchAlad(uint32_t enable, uint64_t display = 0) {
        const Result result = service.setAlad(7, display, enable);
        clock.settle();
        return result;
    }
    bool aladIsOn() { return service.IsAladEnable(8, 9) == 1; }

    void light(float lux) { sensors->light(lux); }
    // Up to the worker's next wait or pause at or after their end.
    void seconds(int count) { clock.advance(std::chrono::seconds(count)); }

    // What the composer was told since something happened was asked last: "Start(2) Step(3) Off".
    static std::string told() {
        std::string all;
        for (const std::string& line : composerCalls()) all += (all.empty() ? "" : " ") + inShort(line);
        return all;
    }

    platform::VirtualClock clock;
    const sp<fakes::FakeSensors> sensors = new fakes::FakeSensors;

private:
    static std::string inShort(const std::string& line) {
        const std::string kAlad = "composer setAladParams(0, ";
        const std::string behind = line.substr(std::min(line.size(), line.find(')') + 1));
        for (const auto& [name, beginning] :
             {std::pair{"Start(", kAlad + "1, 0: 4, 14: "}, {"Step(", kAlad + "1, 14: "}}) {
            if (line.compare(0, beginning.size(), beginning) != 0) continue;
            return name + line.substr(beginning.size(), line.find(' ', beginning.size()) - beginning.size()) + ")" +
                   behind;
        }
        return line.compare(0, kAlad.size() + 2, kAlad + "0)") == 0 ? "Off" + behind : line;
    }
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
