// The display composer as the tests have it.
#pragma once

#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/Journal.h"

namespace fakes {

namespace composer = ::vendor::kov::hardware::composer_ext::V1_0;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;

// How a call goes wrong.
enum class Fault {
    NONE,
    REFUSES,            // answers kRefusal, with its values all the same
    SILENT,             // returns without calling back
    TWICE,              // calls back twice
    LATE,               // calls back only when deliverLate is called
    UNREACHABLE,        // the transport fails before the call
    DIES_AFTER_ANSWER,  // calls back, then the transport fails
};
constexpr composer::Result kRefusal = static_cast<composer::Result>(-42);

// Journals every call, keeps what it is given and gives it back. Display d is {10d + 1, 10d + 2, 10d + 3}, "display d".
class FakeComposer : public composer::IComposerExt {
public:
    using Result = composer::Result;
    using Matrix = composer::ColorTransformMatrix;
    using Table = composer::GammaLut;

    uint32_t count = 2;  // displays it tells of
    std::map<uint64_t, std::pair<Matrix, Matrix>> matrices;
    std::map<uint64_t, Table> gamma;
    std::map<uint64_t, Table> deGamma;

    // From now on this happens to every call whose journal form, without the word composer, begins with call.
    void fault(const std::string& call, Fault what) { faults[call] = what; }
    void deliverLate() {
        for (const auto& deliver : std::exchange(late, {})) deliver();
    }

    Return<void> getNumOfDisplay(std::function<void(Result, uint32_t)> callback) override {
        return answer("getNumOfDisplay()", callback, count);
    }
    Return<void> getDisplayInfo(uint64_t display,
                                std::function<void(Result, const composer::DisplayInfo&)> callback) override {
        const auto base = static_cast<uint32_t>(10 * display);
        const composer::DisplayInfo info{{{base + 1, base + 2, base + 3}}, "display " + std::to_string(display)};
        return answer(form("getDisplayInfo", display), callback, info);
    }
    Return<Result> setColorTransformMatrix(uint64_t display, const Matrix& first, const Matrix& last) override {
        matrices[display] = {first, last};
        const std::string both = ", " + text(first.elements.data(), 9) + ", " + text(last.elements.data(), 9);
        return answer(form("setColorTransformMatrix", display, both));
    }
    Return<void> getColorTransformMatrix(uint64_t display,
                                         std::function<void(Result, const Matrix&, const Matrix&)> callback) override {
        return answer(form("getColorTransformMatrix", display), callback, matrices[display].first,
                      matrices[display].second);
    }
    Return<Result> setGlobalGammaLut(uint64_t display, const Table& table) override {
        gamma[display] = table;
        return answer(form("setGlobalGammaLut", display));
    }
    Return<void> getGlobalGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) override {
        return answer(form("getGlobalGammaLut", display), callback, gamma[display]);
    }
    Return<Result> setGlobalDeGammaLut(uint64_t display, const Table& table) override {
        deGamma[display] = table;
        return answer(form("setGlobalDeGammaLut", display));
    }
    Return<void> getGlobalDeGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) override {
        return answer(form("getGlobalDeGammaLut", display), callback, deGamma[display]);
    }
    Return<Result> setAladParams(uint64_t display, uint32_t enable,
                                 const hidl_vec<composer::AladParamPair>& params) override {
        std::string rest = ", " + std::to_string(enable);
        for (const auto& pair : params) {
            rest += ", " + std::to_string(pair.key) + ":";
            for (const int64_t value : pair.values) rest += " " + std::to_string(value);
        }
        return answer(form("setAladParams", display, rest));
    }
    Return<Result> setExclusiveMode(uint64_t display, uint32_t enable) override {
        return answer(form("setExclusiveMode", display, ", " + std::to_string(enable)));
    }

private:
    static std::string form(const char* call, uint64_t display, const std::string& rest = "") {
        return std::string(call) + "(" + std::to_string(display) + rest + ")";
    }

    Fault begin(const std::string& call) {
        journal::add("composer " + call);
        for (const auto& [beginning, what] : faults) {
            if (call.compare(0, beginning.size(), beginning) == 0) return what;
        }
        return Fault::NONE;
    }

    Return<Result> answer(const std::string& call) {
        const Fault fault = begin(call);
        if (fault == Fault::UNREACHABLE || fault == Fault::DIES_AFTER_ANSWER) return deadObject();
        return fault == Fault::REFUSES ? kRefusal : Result::OK;
    }

    template <typename Callback, typename... Values>
    Return<void> answer(const std::string& call, const Callback& callback, const Values&... values) {
        const Fault fault = begin(call);
        const Result result = fault == Fault::REFUSES ? kRefusal : Result::OK;
        if (fault == Fault::LATE) late.push_back([=] { callback(result, values...); });
        if (fault == Fault::UNREACHABLE) return deadObject();
        if (fault == Fault::LATE || fault == Fault::SILENT) return {};
        callback(result, values...);
        if (fault == Fault::TWICE) callback(result, values...);
        if (fault == Fault::DIES_AFTER_ANSWER) return deadObject();
        return {};
    }

    static ::android::hardware::Status deadObject() {
        return ::android::hardware::Status::fromStatusT(::android::DEAD_OBJECT);
    }

    std::map<std::string, Fault> faults;
    std::vector<std::function<void()>> late;
};

}  // namespace fakes
