// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Call.h"

#include <map>
#include <type_traits>

namespace model {

namespace {

namespace dc = ::vendor::kov::hardware::display_control::V1_0;
using Service = dc::implementation::DisplayControlImpl;
using ::android::hardware::Return;

template <typename Number, typename = std::enable_if_t<std::is_integral_v<Number>>>
std::string textOf(Number value) {
    return std::to_string(value);
}
std::string textOf(dc::Result result) {
    return simulator::composerResultName(static_cast<int32_t>(result));
}
std::string textOf(const dc::DisplayInfo& info) {
    const auto& v = info.values;
    return textOf(v[0]) + " " + textOf(v[1]) + " " + textOf(v[2]) + " \"" + info.name.c_str() + "\"";
}
std::string textOf(const dc::ColorTransformMatrix& matrix) {
    return simulator::valueText(simulator::matrixOf(matrix.elements.data()));
}
std::string textOf(const dc::GammaLut& table) {
    return simulator::valueText(simulator::tableOf(table.entries.data()));
}
std::string textOf(const ::android::hardware::hidl_vec<double>& values) {
    return std::to_string(values.size()) + " values";
}

// Receives what an operation returns and, as its callback, what it delivers.
struct Recorder {
    template <typename... Values>
    void operator()(const Values&... values) const {
        if (!answer.empty()) answer += "; ";
        ((answer += (answer.empty() ? "" : " ") + textOf(values)), ...);
    }
    template <typename T>
    void take(Return<T> returned) const {
        (*this)(static_cast<T>(returned));
    }
    void take(const Return<void>& returned) const {
        if (!returned.isOk()) answer += "transport failed";
    }

    std::string& answer;
};

uint32_t bitsOf(const Call& call) {
    return static_cast<uint32_t>(call.number);
}

template <typename Service>
using Operations = std::map<std::string, void (*)(Service& s, const Call& c, const Recorder& r)>;

// Of the interface, at the library or at the interface itself.
template <typename Service>
const Operations<Service> kServed = {
    {"allocUserHandle", [](auto& s, auto& c, auto& r) { r.take(s.allocUserHandle(bitsOf(c), r)); }},
    {"freeUserHandle", [](auto& s, auto&, auto& r) { r.take(s.freeUserHandle(kHandle)); }},
    {"getNumOfDisplay", [](auto& s, auto&, auto& r) { r.take(s.getNumOfDisplay(kHandle, r)); }},
    {"getDisplayInfo", [](auto& s, auto& c, auto& r) { r.take(s.getDisplayInfo(kHandle, c.display, r)); }},
    {"setColorTransformMatrix",
     [](auto& s, auto& c, auto& r) { r.take(s.setColorTransformMatrix(kHandle, c.display, {c.last})); }},
    {"getColorTransformMatrix",
     [](auto& s, auto& c, auto& r) { r.take(s.getColorTransformMatrix(kHandle, c.display, r)); }},
    {"setColorTransformMatrix2",
     [](auto& s, auto& c, auto& r) { r.take(s.setColorTransformMatrix2(kHandle, c.display, {c.first}, {c.last})); }},
    {"getColorTransformMatrix2",
     [](auto& s, auto& c, auto& r) { r.take(s.getColorTransformMatrix2(kHandle, c.display, r)); }},
    {"setGlobalGammaLut",
     [](auto& s, auto& c, auto& r) { r.take(s.setGlobalGammaLut(kHandle, c.display, {*c.table})); }},
    {"getGlobalGammaLut", [](auto& s, auto& c, auto& r) { r.take(s.getGlobalGammaLut(kHandle, c.display, r)); }},
    {"setGlobalDeGammaLut",
     [](auto& s, auto& c, auto& r) { r.take(s.setGlobalDeGammaLut(kHandle, c.display, {*c.table})); }},
    {"getGlobalDeGammaLut", [](auto& s, auto& c, auto& r) { r.take(s.getGlobalDeGammaLut(kHandle, c.display, r)); }},
    {"setGlobalGamma", [](auto& s, auto& c, auto& r) { r.take(s.setGlobalGamma(kHandle, c.display, c.exponent)); }},
    {"setUnlimitedCT", [](auto& s, auto& c, auto& r) { r.take(s.setUnlimitedCT(kHandle, c.display, c.number)); }},
    {"getUnlimitedCT", [](auto& s, auto& c, auto& r) { r.take(s.getUnlimitedCT(kHandle, c.display, r)); }},
    {"setEyeCareCT", [](auto& s, auto& c, auto& r) { r.take(s.setEyeCareCT(kHandle, c.display, c.number)); }},
    {"getEyeCareCT", [](auto& s, auto& c, auto& r) { r.take(s.getEyeCareCT(kHandle, c.display, r)); }},
    {"setStandardMode", [](auto& s, auto& c, auto& r) { r.take(s.setStandardMode(kHandle, c.display, c.number)); }},
    {"setEnhanceScreenMode",
     [](auto& s, auto& c, auto& r) { r.take(s.setEnhanceScreenMode(kHandle, c.display, c.number)); }},
    {"setSmartEnvironmentMode",
     [](auto& s, auto& c, auto& r) { r.take(s.setSmartEnvironmentMode(kHandle, c.display, c.number)); }},
    {"setCabcSysNode", [](auto& s, auto& c, auto& r) { r.take(s.setCabcSysNode(kHandle, c.display, c.number)); }},
    {"setCabcMode", [](auto& s, auto& c, auto& r) { r.take(s.setCabcMode(kHandle, c.display, c.number)); }},
    {"setFeature",
     [](auto& s, auto& c, auto& r) { r.take(s.setFeature(kHandle, c.display, c.number, c.value, c.value2)); }},
    {"setMiscFeature",
     [](auto& s, auto& c, auto& r) { r.take(s.setMiscFeature(kHandle, c.display, c.number, c.values, r)); }},
    {"getMiscFeature", [](auto& s, auto& c, auto& r) { r.take(s.getMiscFeature(kHandle, c.display, c.number, r)); }},
    {"setAlad", [](auto& s, auto& c, auto& r) { r.take(s.setAlad(kHandle, c.display, bitsOf(c))); }},
    {"IsAladEnable", [](auto& s, auto& c, auto& r) { r.take(s.IsAladEnable(kHandle, c.display)); }},
    {"exclusiveModeEnter", [](auto& s, auto& c, auto& r) { r.take(s.exclusiveModeEnter(kHandle, bitsOf(c))); }},
    {"exclusiveModeExit", [](auto& s, auto& c, auto& r) { r.take(s.exclusiveModeExit(kHandle, bitsOf(c))); }},
};
const Operations<Service> kOwn = {
    {"init", [](auto& s, auto&, auto& r) { r(s.init()); }},
    {"deInit", [](auto& s, auto&, auto&) { s.deInit(); }},
};

}  // namespace

std::string textOf(const Call& call) {
    return call.operation + " " + std::to_string(call.display) + " " + std::to_string(call.number) + " " +
           std::to_string(call.value);
}

std::string answerOf(Service& service, const Call& call) {
    std::string answer;
    const auto own = kOwn.find(call.operation);
    (own == kOwn.end() ? kServed<Service>.at(call.operation) : own->second)(service, call, {answer});
    return answer;
}

std::string answerOf(dc::IDisplayControl& service, const Call& call) {
    std::string answer;
    kServed<dc::IDisplayControl>.at(call.operation)(service, call, {answer});
    return answer;
}

std::vector<std::string> operations() {
    std::vector<std::string> names;
    for (const auto& [name, run] : kServed<Service>) names.push_back(name);
    for (const auto& [name, run] : kOwn) names.push_back(name);
    return names;
}

}  // namespace model
