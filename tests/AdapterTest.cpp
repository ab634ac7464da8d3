// SPDX-License-Identifier: Apache-2.0
// The adapter of the served interface.
#include "phone/DisplayControl.h"
#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

std::string text(Result result) {
    return std::to_string(static_cast<int32_t>(result));
}
template <typename T>
std::string text(T number) {
    return std::to_string(number);
}
template <typename T>
std::string text(const Return<T>& answer) {
    return text(static_cast<T>(answer));
}
std::string text(const DisplayInfo& info) {
    return text(info.values[0]) + info.name.c_str();
}
std::string text(const ColorTransformMatrix& matrix) {
    return fakes::text(matrix.elements.data(), 9);
}
std::string text(const GammaLut& table) {
    return text(table.entries[0]);
}
std::string text(const hidl_vec<double>& values) {
    return text(values.size()) + " values";
}

// The arguments of every call of the callback that is passed to call.
template <typename Call>
std::string answers(Call call) {
    std::string all;
    EXPECT_TRUE(call([&all](const auto&... arguments) { ((all += text(arguments) + " "), ...); }).isOk());
    return all;
}

ColorTransformMatrix diagonal(float value) {
    ColorTransformMatrix matrix{};
    for (const size_t i : {0U, 4U, 8U}) matrix.elements[i] = value;
    return matrix;
}

const GammaLut& halves() {
    static const GammaLut table = [] {
        GammaLut filled;
        std::fill_n(filled.entries.data(), filled.entries.size(), 0.5F);
        return filled;
    }();
    return table;
}

// One call, made at the library and at the interface.
struct Operation {
    template <typename Call>
    Operation(const char* operationName, Call call) : name(operationName), direct(call), served(call) {}

    const char* name;
    std::string (*direct)(DisplayControlImpl&);
    std::string (*served)(IDisplayControl&);
};

const Operation kOperations[] = {
    {"freeUserHandle", [](auto& s) { return text(s.freeUserHandle(7)); }},
    {"getNumOfDisplay", [](auto& s) { return answers([&](auto reply) { return s.getNumOfDisplay(7, reply); }); }},
    {"getDisplayInfo", [](auto& s) { return answers([&](auto reply) { return s.getDisplayInfo(7, 1, reply); }); }},
    {"setColorTransformMatrix", [](auto& s) { return text(s.setColorTransformMatrix(7, 1, diagonal(2))); }},
    {"getColorTransformMatrix",
     [](auto& s) { return answers([&](auto reply) { return s.getColorTransformMatrix(7, 1, reply); }); }},
    {"setColorTransformMatrix2",
     [](auto& s) { return text(s.setColorTransformMatrix2(7, 1, diagonal(3), diagonal(4))); }},
    {"getColorTransformMatrix2",
     [](auto& s) { return answers([&](auto reply) { return s.getColorTransformMatrix2(7, 1, reply); }); }},
    {"setGlobalGammaLut", [](auto& s) { return text(s.setGlobalGammaLut(7, 1, halves())); }},
    {"getGlobalGammaLut",
     [](auto& s) { return answers([&](auto reply) { return s.getGlobalGammaLut(7, 1, reply); }); }},
    {"setGlobalDeGammaLut", [](auto& s) { return text(s.setGlobalDeGammaLut(7, 1, halves())); }},
    {"getGlobalDeGammaLut",
     [](auto& s) { return answers([&](auto reply) { return s.getGlobalDeGammaLut(7, 1, reply); }); }},
    {"setGlobalGamma", [](auto& s) { return text(s.setGlobalGamma(7, 1, 0.5F)); }},
    {"exclusiveModeEnter", [](auto& s) { return text(s.exclusiveModeEnter(7, 1)); }},
    {"exclusiveModeExit", [](auto& s) { return text(s.exclusiveModeExit(7, 1)); }},
    {"setAlad", [](auto& s) { return text(s.setAlad(7, 0, 0)); }},
    {"setAlad, display 1", [](auto& s) { return text(s.setAlad(7, 1, 0)); }},
    {"IsAladEnable", [](auto& s) { return text(s.IsAladEnable(7, 1)); }},
    {"setCabcSysNode", [](auto& s) { return text(s.setCabcSysNode(7, 1, 3)); }},
    {"setSmartEnvironmentMode", [](auto& s) { return text(s.setSmartEnvironmentMode(7, 1, 0)); }},
    {"setCabcMode", [](auto& s) { return text(s.setCabcMode(7, 1, 4)); }},
    {"setCabcMode, unknown", [](auto& s) { return text(s.setCabcMode(7, 1, 5)); }},
    {"setUnlimitedCT", [](auto& s) { return text(s.setUnlimitedCT(7, 1, 40)); }},
    {"getUnlimitedCT", [](auto& s) { return answers([&](auto reply) { return s.getUnlimitedCT(7, 1, reply); }); }},
    {"setEyeCareCT", [](auto& s) { return text(s.setEyeCareCT(7, 1, 41)); }},
    {"getEyeCareCT", [](auto& s) { return answers([&](auto reply) { return s.getEyeCareCT(7, 1, reply); }); }},
    {"setStandardMode", [](auto& s) { return text(s.setStandardMode(7, 1, 0)); }},
    {"setEnhanceScreenMode", [](auto& s) { return text(s.setEnhanceScreenMode(7, 1, 0)); }},
    {"setFeature", [](auto& s) { return text(s.setFeature(7, 1, 23, 42, 43)); }},
    {"setMiscFeature",
     [](auto& s) { return answers([&](auto reply) {
                       return s.setMiscFeature(7, 1, 23, {44, 45}, reply);
                   }); }},
    {"getMiscFeature", [](auto& s) { return answers([&](auto reply) { return s.getMiscFeature(7, 1, 23, reply); }); }},
};

}  // namespace

using AdapterTest = LightTest;

TEST_F(AdapterTest, EveryOperationIsTheLibrarysOwn) {
    const sp<IDisplayControl> adapter = new DisplayControl(service);
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        switchAlad(1);
        happened();
        const std::string answer = operation.direct(service);
        const Lines events = happened();
        switchAlad(1);
        happened();
        EXPECT_EQ(operation.served(*adapter), answer);
        EXPECT_EQ(happened(), events);
    }
}

TEST_F(AdapterTest, HandlesComeFromTheLibrary) {
    const sp<IDisplayControl> adapter = new DisplayControl(service);
    uint64_t direct = 0;
    uint64_t served = 0;
    service.allocUserHandle(0, [&](Result, uint64_t handle) { direct = handle; });
    adapter->allocUserHandle(0, [&](Result result, uint64_t handle) {
        EXPECT_EQ(result, Result::OK);
        served = handle;
    });
    EXPECT_EQ(served, direct + 1);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
