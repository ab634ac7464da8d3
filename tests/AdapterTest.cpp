// SPDX-License-Identifier: Apache-2.0
// The adapter of the served interface.
#include "phone/DisplayControl.h"
#include "tests/PhoneTest.h"
#include "tests/model/Call.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// A call with arguments that all differ; the display and the number are those that reach most of the operation.
model::Call callOf(const std::string& operation) {
    model::Call call{operation, 1, 3, 41, 42, {43, 44}, 0.5F};
    if (operation == "setAlad") call = {operation, 0, 0};
    if (operation == "setFeature" || operation == "setMiscFeature") call.number = 23;
    call.first[1] = 0.25F;
    call.last[2] = 0.125F;
    std::array<float, 4096> table{};
    table[96] = 0.75F;
    call.table = simulator::tableOf(table.data());
    return call;
}

}  // namespace

class AdapterTest : public PhoneTest {
protected:
    // A call's answer and events, in smart environment mode on both displays and with ALAD on.
    template <typename Target>
    Lines resultOf(Target& target, const model::Call& call) {
        for (const uint64_t display : {0U, 1U}) model::answerOf(service, {"setSmartEnvironmentMode", display});
        model::answerOf(service, {"setAlad", 0, 1});
        phone.clock().settle();
        happened();
        const std::string answer = model::answerOf(target, call);
        phone.clock().settle();
        Lines result = happened();
        result.push_back(answer);
        return result;
    }

    DisplayControlImpl service;
    const sp<IDisplayControl> adapter = new DisplayControl(service);
};

TEST_F(AdapterTest, EveryOperationIsTheLibrarysOwn) {
    phone.composer().setDisplayCount(2);
    model::answerOf(service, {"init"});
    for (const std::string& operation : model::operations()) {
        if (operation == "init" || operation == "deInit" || operation == "allocUserHandle") continue;
        const model::Call call = callOf(operation);
        EXPECT_EQ(resultOf(*adapter, call), resultOf(service, call)) << operation;
    }
    model::answerOf(service, {"setAlad", 0, 0});
}

TEST_F(AdapterTest, HandlesComeFromTheLibrary) {
    uint64_t direct = 0;
    uint64_t served = 0;
    service.allocUserHandle(0, [&](Result, uint64_t handle) { direct = handle; });
    adapter->allocUserHandle(0, [&](Result, uint64_t handle) { served = handle; });
    EXPECT_EQ(served, direct + 1);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
