#include "tests/fakes/FakeComposer.h"

namespace fakes {

using ::android::hardware::Status;
using ::android::hardware::Void;
using composer::Result;

namespace {

Status deadObject() {
    return Status::fromStatusT(android::DEAD_OBJECT);
}

std::string form(const char* call, uint64_t display, const std::string& rest = "") {
    return std::string(call) + "(" + std::to_string(display) + rest + ")";
}

}  // namespace

Fault FakeComposer::begin(const std::string& call) {
    journal::add("composer " + call);
    for (const auto& [beginning, what] : faults) {
        if (call.rfind(beginning, 0) == 0) return what;
    }
    return Fault::NONE;
}

Return<Result> FakeComposer::answer(const std::string& call) {
    const Fault fault = begin(call);
    if (fault == Fault::UNREACHABLE || fault == Fault::DIES_AFTER_ANSWER) return deadObject();
    return fault == Fault::REFUSES ? kRefusal : Result::OK;
}

template <typename Callback, typename... Values>
Return<void> FakeComposer::answer(const std::string& call, const Callback& callback, const Values&... values) {
    const Fault fault = begin(call);
    const Result result = fault == Fault::REFUSES ? kRefusal : Result::OK;
    if (fault == Fault::LATE) late.push_back([=] { callback(result, values...); });
    if (fault == Fault::UNREACHABLE) return deadObject();
    if (fault == Fault::LATE || fault == Fault::SILENT) return Void();
    callback(result, values...);
    if (fault == Fault::TWICE) callback(result, values...);
    if (fault == Fault::DIES_AFTER_ANSWER) return deadObject();
    return Void();
}

void FakeComposer::deliverLate() {
    for (const auto& deliver : std::exchange(late, {})) deliver();
}

Return<void> FakeComposer::getNumOfDisplay(std::function<void(Result, uint32_t)> callback) {
    return answer("getNumOfDisplay()", callback, count);
}

Return<void> FakeComposer::getDisplayInfo(uint64_t display,
                                          std::function<void(Result, const composer::DisplayInfo&)> callback) {
    const auto base = static_cast<uint32_t>(10 * display);
    const composer::DisplayInfo info{{{base + 1, base + 2, base + 3}}, "display " + std::to_string(display)};
    return answer(form("getDisplayInfo", display), callback, info);
}

Return<Result> FakeComposer::setColorTransformMatrix(uint64_t display, const Matrix& first, const Matrix& last) {
    matrices[display] = {first, last};
    const std::string both = ", " + text(first.elements.data(), 9) + ", " + text(last.elements.data(), 9);
    return answer(form("setColorTransformMatrix", display, both));
}

Return<void> FakeComposer::getColorTransformMatrix(uint64_t display,
                                                   std::function<void(Result, const Matrix&, const Matrix&)> callback) {
    const auto& [first, last] = matrices[display];
    return answer(form("getColorTransformMatrix", display), callback, first, last);
}

Return<Result> FakeComposer::setGlobalGammaLut(uint64_t display, const Table& table) {
    gamma[display] = table;
    return answer(form("setGlobalGammaLut", display));
}

Return<void> FakeComposer::getGlobalGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) {
    return answer(form("getGlobalGammaLut", display), callback, gamma[display]);
}

Return<Result> FakeComposer::setGlobalDeGammaLut(uint64_t display, const Table& table) {
    deGamma[display] = table;
    return answer(form("setGlobalDeGammaLut", display));
}

Return<void> FakeComposer::getGlobalDeGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) {
    return answer(form("getGlobalDeGammaLut", display), callback, deGamma[display]);
}

Return<Result> FakeComposer::setAladParams(uint64_t display, uint32_t enable,
                                           const hidl_vec<composer::AladParamPair>& params) {
    std::string rest = ", " + std::to_string(enable);
    for (const auto& pair : params) {
        rest += ", " + std::to_string(pair.key) + ":";
        for (const int64_t value : pair.values) rest += " " + std::to_string(value);
    }
    return answer(form("setAladParams", display, rest));
}

Return<Result> FakeComposer::setExclusiveMode(uint64_t display, uint32_t enable) {
    return answer(form("setExclusiveMode", display, ", " + std::to_string(enable)));
}

}  // namespace fakes
