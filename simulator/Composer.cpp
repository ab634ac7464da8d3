// SPDX-License-Identifier: Apache-2.0
#include "simulator/Composer.h"

#include <string>

#include "color/PowerTable.h"

namespace simulator {

namespace {

using vendor::kov::hardware::display_control::V1_0::implementation::fillPowerTable;

constexpr float kDisplayGamma = 2.2F;
constexpr int32_t kToneCurveKey = 14;  // the ALAD parameter that carries a tone curve

composer_ext::GammaLut powerTable(float exponent) {
    composer_ext::GammaLut table;
    fillPowerTable(table.entries.data(), exponent);
    return table;
}

// Width and height in pixels and the refresh rate in hertz.
composer_ext::DisplayInfo describeDisplay(uint64_t display) {
    return {std::array<uint32_t, 3>{720, 1600, 60}, "simulated display " + std::to_string(display)};
}

const DisplayState& newDisplay() {
    static const DisplayState kState;
    return kState;
}

}  // namespace

DisplayState::DisplayState() : first{kIdentity}, last{kIdentity} {
    static const composer_ext::GammaLut kDecoding = powerTable(kDisplayGamma);
    static const composer_ext::GammaLut kEncoding = powerTable(1 / kDisplayGamma);
    deGamma = kDecoding;
    gamma = kEncoding;
}

void Composer::setDisplayCount(uint32_t newCount) {
    const platform::Lock lock(mutex);
    count = newCount;
    displays.erase(displays.lower_bound(count), displays.end());
}

uint32_t Composer::displayCount() const {
    const platform::Lock lock(mutex);
    return count;
}

void Composer::stop() {
    std::pair<DeathRecipient, uint64_t> notified;
    {
        const platform::Lock lock(mutex);
        stopped = true;
        std::swap(notified, linked);
    }
    if (notified.first != nullptr) notified.first->serviceDied(notified.second, {});
}

Composer::Return<bool> Composer::linkToDeath(const DeathRecipient& recipient, uint64_t cookie) {
    const platform::Lock lock(mutex);
    if (stopped) return deadObject();
    linked = {recipient, cookie};
    return true;
}

std::optional<DisplayState> Composer::stateOf(uint64_t display) const {
    const platform::Lock lock(mutex);
    if (stopped || display >= count) return std::nullopt;
    const auto found = displays.find(display);
    return found == displays.end() ? newDisplay() : found->second;
}

Failure Composer::beginCall(Operation operation, CallKind kind) {
    const Failure failure = begin(operation, kind);
    return stopped ? Failure::TRANSPORT_BEFORE : failure;
}

template <typename Change, typename Describe>
Composer::Return<Composer::Result> Composer::set(Operation operation, uint64_t display, Change change,
                                                 Describe describe) {
    const Failure failure = beginCall(operation, CallKind::SETTER);
    bool known = false;
    {
        const platform::Lock lock(mutex);
        known = display < count;
        if (known && hasEffect(CallKind::SETTER, failure)) change(displays.try_emplace(display).first->second);
    }
    const Outcome outcome = outcomeOf(failure, known ? Result::OK : Result::BAD_DISPLAY);
    if (journal->isObserved()) {
        ComposerCall call{operation, display};
        describe(call);
        call.outcome = outcome;
        journal->add(std::move(call));
    }
    return returnOf<Result>(outcome);
}

template <typename Answer>
Composer::Return<void> Composer::get(Operation operation, std::optional<uint64_t> display, Answer answer) {
    const Failure failure = beginCall(operation, CallKind::GETTER);
    const bool known = !display || *display < displayCount();
    const Outcome outcome = outcomeOf(failure, known ? Result::OK : Result::BAD_DISPLAY);
    if (journal->isObserved()) {
        ComposerCall call{operation, display};
        call.outcome = outcome;
        journal->add(std::move(call));
    }
    if (hasEffect(CallKind::GETTER, failure)) answer(static_cast<Result>(outcome.result));
    return returnVoid(outcome);
}

Composer::Return<void> Composer::getNumOfDisplay(std::function<void(Result, uint32_t)> callback) {
    return get(Operation::GET_NUM_OF_DISPLAY, std::nullopt, [&](Result result) { callback(result, displayCount()); });
}

Composer::Return<void> Composer::getDisplayInfo(
    uint64_t display, std::function<void(Result, const composer_ext::DisplayInfo&)> callback) {
    return get(Operation::GET_DISPLAY_INFO, display, [&](Result result) {
        callback(result, display < displayCount() ? describeDisplay(display) : composer_ext::DisplayInfo{{}, ""});
    });
}

Composer::Return<Composer::Result> Composer::setColorTransformMatrix(uint64_t display,
                                                                     const ColorTransformMatrix& first,
                                                                     const ColorTransformMatrix& last) {
    return set(
        Operation::SET_COLOR_TRANSFORM_MATRIX, display,
        [&](DisplayState& state) {
            state.first = first;
            state.last = last;
        },
        [&](ComposerCall& call) {
            call.first = matrixOf(first.elements.data());
            call.last = matrixOf(last.elements.data());
        });
}

Composer::Return<void> Composer::getColorTransformMatrix(
    uint64_t display, std::function<void(Result, const ColorTransformMatrix&, const ColorTransformMatrix&)> callback) {
    return get(Operation::GET_COLOR_TRANSFORM_MATRIX, display, [&](Result result) {
        const DisplayState state = stateOf(display).value_or(newDisplay());
        callback(result, state.first, state.last);
    });
}

Composer::Return<Composer::Result> Composer::setGlobalGammaLut(uint64_t display, const GammaLut& table) {
    return set(
        Operation::SET_GLOBAL_GAMMA_LUT, display, [&](DisplayState& state) { state.gamma = table; },
        [&](ComposerCall& call) { call.table = tableOf(table.entries.data()); });
}

Composer::Return<void> Composer::getGlobalGammaLut(uint64_t display, TableCallback callback) {
    return get(Operation::GET_GLOBAL_GAMMA_LUT, display,
               [&](Result result) { callback(result, stateOf(display).value_or(newDisplay()).gamma); });
}

Composer::Return<Composer::Result> Composer::setGlobalDeGammaLut(uint64_t display, const GammaLut& table) {
    return set(
        Operation::SET_GLOBAL_DE_GAMMA_LUT, display, [&](DisplayState& state) { state.deGamma = table; },
        [&](ComposerCall& call) { call.table = tableOf(table.entries.data()); });
}

Composer::Return<void> Composer::getGlobalDeGammaLut(uint64_t display, TableCallback callback) {
    return get(Operation::GET_GLOBAL_DE_GAMMA_LUT, display,
               [&](Result result) { callback(result, stateOf(display).value_or(newDisplay()).deGamma); });
}

Composer::Return<Composer::Result> Composer::setAladParams(
    uint64_t display, uint32_t enable, const composer_ext::hidl_vec<composer_ext::AladParamPair>& params) {
    return set(
        Operation::SET_ALAD_PARAMS, display,
        [&](DisplayState& state) {
            state.aladEnabled = enable != 0;
            if (!state.aladEnabled) state.toneCurve.clear();
            for (const auto& [key, values] : params) {
                if (key == kToneCurveKey && values.size() == DisplayState::kToneCurve) {
                    state.toneCurve.assign(values.begin(), values.end());
                }
            }
        },
        [&](ComposerCall& call) {
            call.enable = enable;
            call.params.assign(params.begin(), params.end());
        });
}

Composer::Return<Composer::Result> Composer::setExclusiveMode(uint64_t display, uint32_t enable) {
    return set(
        Operation::SET_EXCLUSIVE_MODE, display, [&](DisplayState& state) { state.exclusive = enable != 0; },
        [&](ComposerCall& call) { call.enable = enable; });
}

}  // namespace simulator
