#include "simulator/SimulatedComposer.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace simulator {

namespace {

using ::android::hardware::Status;
using ::android::hardware::Void;

constexpr double kDisplayGamma = 2.2;
constexpr int32_t kToneCurveKey = 14;  // the ALAD parameter that carries a tone curve

composer_ext::GammaLut powerTable(double exponent) {
    composer_ext::GammaLut table;
    const double size = static_cast<double>(table.entries.size());
    for (size_t i = 0; i < table.entries.size(); ++i) {
        table.entries[i] = static_cast<float>(std::pow(static_cast<double>(i) / size, exponent));
    }
    return table;
}

composer_ext::ColorTransformMatrix identity() {
    return {std::array<float, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}};
}

// Width and height in pixels and the refresh rate in hertz, as this composer describes a display.
composer_ext::DisplayInfo describe(uint64_t display) {
    return {std::array<uint32_t, 3>{720, 1600, 60}, "simulated display " + std::to_string(display)};
}

Status deadObject() {
    return Status::fromStatusT(::android::DEAD_OBJECT);
}

}  // namespace

DisplayState::DisplayState()
    : deGamma(powerTable(kDisplayGamma)), first(identity()), last(identity()), gamma(powerTable(1 / kDisplayGamma)) {}

void SimulatedComposer::setDisplayCount(uint32_t count) {
    const platform::Lock lock(mutex);
    displays.resize(count);
}

uint32_t SimulatedComposer::displayCount() const {
    const platform::Lock lock(mutex);
    return static_cast<uint32_t>(displays.size());
}

void SimulatedComposer::stop() {
    const platform::Lock lock(mutex);
    stopped = true;
}

std::optional<DisplayState> SimulatedComposer::stateOf(uint64_t display) const {
    const platform::Lock lock(mutex);
    if (display >= displays.size()) return std::nullopt;
    return displays[display];
}

void SimulatedComposer::report(const ComposerCall& call) const {
    if (observer) observer(call);
}

template <typename Change>
SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::serve(ComposerCall call, Change change) {
    {
        const platform::Lock lock(mutex);
        const bool known = *call.display < displays.size();
        if (known && !stopped) change(displays[*call.display]);
        if (!stopped) call.result = known ? Result::OK : Result::BAD_DISPLAY;
    }
    report(call);
    if (!call.result) return deadObject();
    return *call.result;
}

template <typename Answer>
SimulatedComposer::Return<void> SimulatedComposer::serveGetter(ComposerCall call, Answer answer) {
    std::optional<DisplayState> state;
    {
        const platform::Lock lock(mutex);
        const bool known = *call.display < displays.size();
        if (known) state = displays[*call.display];
        if (!stopped) call.result = known ? Result::OK : Result::BAD_DISPLAY;
    }
    report(call);
    if (!call.result) return deadObject();
    static const DisplayState kNewDisplay;
    answer(*call.result, state ? *state : kNewDisplay);
    return Void();
}

SimulatedComposer::Return<void> SimulatedComposer::getNumOfDisplay(std::function<void(Result, uint32_t)> callback) {
    ComposerCall call{"getNumOfDisplay"};
    {
        const platform::Lock lock(mutex);
        if (!stopped) call.result = Result::OK;
    }
    report(call);
    if (!call.result) return deadObject();
    callback(Result::OK, displayCount());
    return Void();
}

SimulatedComposer::Return<void> SimulatedComposer::getDisplayInfo(
    uint64_t display, std::function<void(Result, const composer_ext::DisplayInfo&)> callback) {
    return serveGetter({"getDisplayInfo", display}, [&](Result result, const DisplayState&) {
        callback(result, result == Result::OK ? describe(display) : composer_ext::DisplayInfo{});
    });
}

SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::setColorTransformMatrix(
    uint64_t display, const ColorTransformMatrix& first, const ColorTransformMatrix& last) {
    return serve({"setColorTransformMatrix", display, &first, &last}, [&](DisplayState& state) {
        state.first = first;
        state.last = last;
    });
}

SimulatedComposer::Return<void> SimulatedComposer::getColorTransformMatrix(
    uint64_t display, std::function<void(Result, const ColorTransformMatrix&, const ColorTransformMatrix&)> callback) {
    return serveGetter({"getColorTransformMatrix", display},
                       [&](Result result, const DisplayState& state) { callback(result, state.first, state.last); });
}

SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::setGlobalGammaLut(uint64_t display,
                                                                                          const GammaLut& table) {
    return serve({"setGlobalGammaLut", display, nullptr, nullptr, &table},
                 [&](DisplayState& state) { state.gamma = table; });
}

SimulatedComposer::Return<void> SimulatedComposer::getGlobalGammaLut(uint64_t display, TableCallback callback) {
    return serveGetter({"getGlobalGammaLut", display},
                       [&](Result result, const DisplayState& state) { callback(result, state.gamma); });
}

SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::setGlobalDeGammaLut(uint64_t display,
                                                                                            const GammaLut& table) {
    return serve({"setGlobalDeGammaLut", display, nullptr, nullptr, &table},
                 [&](DisplayState& state) { state.deGamma = table; });
}

SimulatedComposer::Return<void> SimulatedComposer::getGlobalDeGammaLut(uint64_t display, TableCallback callback) {
    return serveGetter({"getGlobalDeGammaLut", display},
                       [&](Result result, const DisplayState& state) { callback(result, state.deGamma); });
}

SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::setAladParams(
    uint64_t display, uint32_t enable, const composer_ext::hidl_vec<composer_ext::AladParamPair>& params) {
    return serve({"setAladParams", display, nullptr, nullptr, nullptr, &params, enable}, [&](DisplayState& state) {
        state.aladEnabled = enable != 0;
        if (!state.aladEnabled) state.toneCurve.clear();
        for (const auto& [key, values] : params) {
            if (key == kToneCurveKey && values.size() == DisplayState::kToneCurve) {
                state.toneCurve.assign(values.begin(), values.end());
            }
        }
    });
}

SimulatedComposer::Return<SimulatedComposer::Result> SimulatedComposer::setExclusiveMode(uint64_t display,
                                                                                         uint32_t enable) {
    return serve({"setExclusiveMode", display, nullptr, nullptr, nullptr, nullptr, enable},
                 [&](DisplayState& state) { state.exclusive = enable != 0; });
}

}  // namespace simulator
