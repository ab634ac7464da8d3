// The fixture for what follows the light: the service with a light sensor, on virtual time.
#pragma once

#include <platform/VirtualClock.h>

#include "tests/ServiceTest.h"
#include "tests/fakes/FakeSensors.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The started service. The tone curve has level 2 indoors, a level per 2000 lux in brighter light, and 1 from 50000 lux
// on.
class LightTest : public ServiceTest {
protected:
    LightTest() {
        platform::setClock(&clock);
        sensors->registerAsService();
        fakes::closedLibraries().levelOf = [](int lux) { return lux < 1000 ? 2 : lux < 50000 ? lux / 2000 : 1; };
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
    void seconds(int count) { clock.advance(std::chrono::seconds(count)); }

    // What the composer was told since something happened was asked last: "Start(2) Step(3) Off()".
    static std::string told() {
        const std::pair<std::string, std::string> kBriefs[] = {{"composer setAladParams(0, 1, 0: 4, 14: ", "Start("},
                                                               {"composer setAladParams(0, 1, 14: ", "Step("},
                                                               {"composer setAladParams(0, 0", "Off("}};
        std::string all;
        for (std::string line : composerCalls()) {
            for (const auto& [beginning, brief] : kBriefs) {
                if (line.rfind(beginning, 0) != 0) continue;
                line = brief + line.substr(beginning.size());
                const size_t rest = line.find_first_of(" )");  // of the curve
                line.erase(rest, line.find(')') - rest);
            }
            all += (all.empty() ? "" : " ") + line;
        }
        return all;
    }

    platform::VirtualClock clock;
    const sp<fakes::FakeSensors> sensors = new fakes::FakeSensors;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
