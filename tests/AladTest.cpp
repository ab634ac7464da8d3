// SPDX-License-Identifier: Apache-2.0
// The controller of the ambient-light adaptive display by itself: what it keeps and releases, and late events.
#include "alad/DisplayAlad.h"

#include <chrono>
#include <cmath>

#include "tests/PhoneTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

namespace sensorservice = ::android::frameworks::sensorservice::V1_0;
namespace sensors = ::android::hardware::sensors::V1_0;
using ::android::sp;
using simulator::Failure;
using simulator::SensorOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

}  // namespace

class AladTest : public PhoneTest {
protected:
    // The samples and messages of a second.
    Lines second() {
        happened();
        phone.clock().advance(1s);
        Lines seen;
        for (const std::string& line : happened()) {
            if (line.rfind("sample", 0) == 0 || line.rfind("composer", 0) == 0) seen.push_back(line);
        }
        return seen;
    }
    static void deliver(const sp<sensorservice::IEventQueueCallback>& callback, float lux) {
        sensors::Event event{-1, 99, {}, {}};  // only the light counts
        event.u.scalar = lux;
        callback->onEvent(event).isOk();
    }
    void atSensor(SensorOperation operation, const std::function<void()>& what) {
        phone.sensors().onCall([=](SensorOperation current) {
            if (current == operation) what();
        });
    }

    DisplayAlad alad{&phone.composer()};
};

TEST_F(AladTest, AFailedStartKeepsNothing) {
    const struct {
        int result;
        std::function<void(model::Settings&)> fault;
    } kCases[] = {
        {-2, [](auto& s) { s.sensorFailures[SensorOperation::GET_DEFAULT_SENSOR] = Failure::REFUSED; }},
        {-3, [](auto& s) { s.queue = false; }},
        {-3, [](auto& s) { s.sensorFailures[SensorOperation::CREATE_EVENT_QUEUE] = Failure::TRANSPORT_AFTER; }},
        {-4, [](auto& s) { s.sensorFailures[SensorOperation::ENABLE_SENSOR] = Failure::REFUSED; }},
        {-5, [](auto& s) { s.threads = false; }},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.result);
        model::Settings faulty;
        c.fault(faulty);
        model::apply(faulty, {}, phone);
        EXPECT_EQ(alad.enable(), c.result);
        happened();
        alad.disable();
        EXPECT_THAT(happened(), IsEmpty()) << "it is not enabled";

        const auto late = phone.sensors().callback();
        model::apply({}, faulty, phone);
        EXPECT_EQ(alad.enable(), 0);
        if (late != nullptr) deliver(late, 9000);
        EXPECT_THAT(second(), ElementsAre("sample 300 lux, mean 300"));
        alad.disable();
    }
    phone.setSensorsPresent(false);
    EXPECT_EQ(alad.enable(), -1);
}

TEST_F(AladTest, TheSensorServiceIsReleasedAtTheEnd) {
    const int32_t before = phone.sensors().getStrongCount();
    EXPECT_EQ(alad.enable(), 0);
    EXPECT_EQ(phone.sensors().getStrongCount(), before + 2) << "the manager is kept, and the queue with it";
    alad.disable();
    EXPECT_EQ(phone.sensors().getStrongCount(), before);
}

TEST_F(AladTest, EventsCountFromTheStartUntilTheCallbackIsDetached) {
    atSensor(SensorOperation::CREATE_EVENT_QUEUE, [this] { phone.sensors().deliver(7000); });
    EXPECT_EQ(alad.enable(), 0);
    EXPECT_EQ(alad.enable(), 0) << "it is on";
    EXPECT_THAT(second(), ElementsAre("sample 300 lux, mean 300")) << "the light is 300 lux once the queue exists";
    atSensor(SensorOperation::RELEASE_QUEUE, [this] {
        phone.sensors().deliver(7000);
        phone.clock().advance(1s);
    });
    alad.disable();
    alad.disable();
    EXPECT_THAT(happened("sample"), ElementsAre("sample 300 lux, mean 300")) << "detached before the release";

    atSensor(SensorOperation::ENABLE_SENSOR, [this] { phone.sensors().deliver(7000); });
    EXPECT_EQ(alad.enable(), 0);
    EXPECT_THAT(second(), ElementsAre("sample 7000 lux, mean 7000"));
    alad.disable();
}

TEST_F(AladTest, AnotherStartBeginsAnew) {
    phone.composer().onCall([this](auto) { alad.notifyData(9000); });  // light during a call blocks nothing
    alad.enable();
    const auto old = phone.sensors().callback();
    alad.notifyData(9000);
    second();
    EXPECT_EQ(second().size(), 2U) << "the steps to the level of the light";
    alad.disable();
    alad.notifyData(9000);
    alad.enable();
    deliver(old, 9000);
    EXPECT_THAT(second(), ElementsAre("sample 300 lux, mean 300"));
    alad.notifyData(100);
    EXPECT_THAT(second(), ElementsAre("sample 100 lux, mean 300")) << "the curve is off";
    alad.disable();
    alad.enable();
    alad.notifyData(100);
    EXPECT_THAT(second(), ElementsAre("sample 100 lux, mean 100")) << "the ring is empty";
    alad.disable();
}

TEST_F(AladTest, ALuminanceBecomesAGrayValue) {
    EXPECT_EQ(DisplayAlad::nitToGray(1), 1);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(0.5), 0.7297400528407231);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(500), 16.857941694076086);
    EXPECT_TRUE(std::isnan(DisplayAlad::nitToGray(-1)));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
