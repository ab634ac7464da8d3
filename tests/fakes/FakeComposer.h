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
    using Matrix = composer::ColorTransformMatrix;
    using Table = composer::GammaLut;

    uint32_t count = 2;  // displays it tells of
    std::map<uint64_t, std::pair<Matrix, Matrix>> matrices;
    std::map<uint64_t, Table> gamma;
    std::map<uint64_t, Table> deGamma;

    // From now on this happens to every call whose journal form, without the word composer, begins with call.
    void fault(const std::string& call, Fault what) { faults[call] = what; }
    void deliverLate();

    Return<void> getNumOfDisplay(std::function<void(composer::Result, uint32_t)> callback) override;
    Return<void> getDisplayInfo(uint64_t display,
                                std::function<void(composer::Result, const composer::DisplayInfo&)> callback) override;
    Return<composer::Result> setColorTransformMatrix(uint64_t display, const Matrix& first,
                                                     const Matrix& last) override;
    Return<void> getColorTransformMatrix(
        uint64_t display, std::function<void(composer::Result, const Matrix&, const Matrix&)> callback) override;
    Return<composer::Result> setGlobalGammaLut(uint64_t display, const Table& table) override;
    Return<void> getGlobalGammaLut(uint64_t display,
                                   std::function<void(composer::Result, const Table&)> callback) override;
    Return<composer::Result> setGlobalDeGammaLut(uint64_t display, const Table& table) override;
    Return<void> getGlobalDeGammaLut(uint64_t display,
                                     std::function<void(composer::Result, const Table&)> callback) override;
    Return<composer::Result> setAladParams(uint64_t display, uint32_t enable,
                                           const hidl_vec<composer::AladParamPair>& params) override;
    Return<composer::Result> setExclusiveMode(uint64_t display, uint32_t enable) override;

private:
    Fault begin(const std::string& call);
    Return<composer::Result> answer(const std::string& call);
    template <typename Callback, typename... Values>
    Return<void> answer(const std::string& call, const Callback& callback, const Values&... values);

    std::map<std::string, Fault> faults;
    std::vector<std::function<void()>> late;
};

}  // namespace fakes
