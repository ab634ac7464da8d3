// The display composer as the tests have it.
#pragma once

#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "tests/fakes/Faults.h"

namespace fakes {

namespace composer = ::vendor::kov::hardware::composer_ext::V1_0;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;

// Journals every call, keeps what it is given and gives it back. Display d is {10d + 1, 10d + 2, 10d + 3}, "display d".
class FakeComposer : public composer::IComposerExt, public FaultyService<composer::Result> {
public:
    FakeComposer() : FaultyService("composer") {}

    using Result = composer::Result;
    using Matrix = composer::ColorTransformMatrix;
    using Table = composer::GammaLut;

    uint32_t count = 2;  // displays it tells of
    std::map<uint64_t, std::pair<Matrix, Matrix>> matrices;
    std::map<uint64_t, Table> gamma;
    std::map<uint64_t, Table> deGamma;

    Return<void> getNumOfDisplay(std::function<void(Result, uint32_t)> callback) override {
        return answer("getNumOfDisplay()", [=](Result result) { callback(result, count); });
    }
    Return<void> getDisplayInfo(uint64_t display,
                                std::function<void(Result, const composer::DisplayInfo&)> callback) override {
        const auto base = static_cast<uint32_t>(10 * display);
        const composer::DisplayInfo info{{{base + 1, base + 2, base + 3}}, "display " + std::to_string(display)};
        return answer(form("getDisplayInfo", display), [=](Result result) { callback(result, info); });
    }
    Return<Result> setColorTransformMatrix(uint64_t display, const Matrix& first, const Matrix& last) override {
        matrices[display] = {first, last};
        const std::string both = ", " + text(first.elements.data(), 9) + ", " + text(last.elements.data(), 9);
        return answer(form("setColorTransformMatrix", display, both));
    }
    Return<void> getColorTransformMatrix(uint64_t display,
                                         std::function<void(Result, const Matrix&, const Matrix&)> callback) override {
        return answer(form("getColorTransformMatrix", display), [callback, both = matrices[display]](Result result) {
            callback(result, both.first, both.second);
        });
    }
    Return<Result> setGlobalGammaLut(uint64_t display, const Table& table) override {
        gamma[display] = table;
        return answer(form("setGlobalGammaLut", display));
    }
    Return<void> getGlobalGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) override {
        return answer(form("getGlobalGammaLut", display),
                      [callback, table = gamma[display]](Result result) { callback(result, table); });
    }
    Return<Result> setGlobalDeGammaLut(uint64_t display, const Table& table) override {
        deGamma[display] = table;
        return answer(form("setGlobalDeGammaLut", display));
    }
    Return<void> getGlobalDeGammaLut(uint64_t display, std::function<void(Result, const Table&)> callback) override {
        return answer(form("getGlobalDeGammaLut", display),
                      [callback, table = deGamma[display]](Result result) { callback(result, table); });
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
};

}  // namespace fakes
