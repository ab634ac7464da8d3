// SPDX-License-Identifier: Apache-2.0
// The display composer of the simulated phone.
#pragma once

#include <platform/Mutex.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "simulator/Faults.h"
#include "simulator/Journal.h"

namespace simulator {

// What a composer holds for one display. At first both matrices are the identity, and coded picture values are decoded
// with exponent 2.2 and coded again with 1 / 2.2.
struct DisplayState {
    static constexpr size_t kToneCurve = 256;
    static constexpr int64_t kToneCurveMax = 4095;

    DisplayState();

    // A colour goes through these in this order; see DisplayPipeline.h.
    composer_ext::GammaLut deGamma;
    composer_ext::ColorTransformMatrix first;
    composer_ext::ColorTransformMatrix last;
    composer_ext::GammaLut gamma;
    // The tone curve: entry k is the output for the coded level k / 255, kToneCurveMax for 1. Empty while it is off.
    std::vector<int64_t> toneCurve;

    bool exclusive = false;
    bool aladEnabled = false;
};

// Implements the composer extension. It has one display unless setDisplayCount says otherwise; display d is described
// as 720, 1600, 60 and "simulated display d". A display that it does not have is answered with BAD_DISPLAY and, by a
// getter, with what a new display holds (no description). A refused call answers FAILED unless refuseWith says
// otherwise. Calls may come from several threads; each is added to the journal when it has been carried out, before a
// getter's callback.
class Composer final : public composer_ext::IComposerExt, public Faults<ComposerOperation, composer_ext::Result> {
public:
    Composer(std::shared_ptr<Journal> events, uint32_t displayCount)
        : Faults(Result::FAILED), journal(std::move(events)), count(displayCount) {}

    void setDisplayCount(uint32_t newCount) PLATFORM_EXCLUDES(mutex);
    uint32_t displayCount() const PLATFORM_EXCLUDES(mutex);

    // From now on every call fails at the transport, as calls of a process that has died do. Calls the recipient that
    // is linked to its death.
    void stop() PLATFORM_EXCLUDES(mutex);
    bool hasStopped() const { return stopped; }

    // What it holds for a display; nothing for one that it does not have, or when it has stopped.
    std::optional<DisplayState> stateOf(uint64_t display) const PLATFORM_EXCLUDES(mutex);

    template <typename T>
    using Return = ::android::hardware::Return<T>;
    using Result = composer_ext::Result;
    using ColorTransformMatrix = composer_ext::ColorTransformMatrix;
    using GammaLut = composer_ext::GammaLut;
    using DeathRecipient = ::android::sp<::android::hardware::hidl_death_recipient>;
    using TableCallback = std::function<void(Result, const GammaLut&)>;

    Return<void> getNumOfDisplay(std::function<void(Result, uint32_t)> callback) override;
    Return<void> getDisplayInfo(uint64_t display,
                                std::function<void(Result, const composer_ext::DisplayInfo&)> callback) override;
    Return<Result> setColorTransformMatrix(uint64_t display, const ColorTransformMatrix& first,
                                           const ColorTransformMatrix& last) override;
    Return<void> getColorTransformMatrix(
        uint64_t display,
        std::function<void(Result, const ColorTransformMatrix&, const ColorTransformMatrix&)> callback) override;
    Return<Result> setGlobalGammaLut(uint64_t display, const GammaLut& table) override;
    Return<void> getGlobalGammaLut(uint64_t display, TableCallback callback) override;
    Return<Result> setGlobalDeGammaLut(uint64_t display, const GammaLut& table) override;
    Return<void> getGlobalDeGammaLut(uint64_t display, TableCallback callback) override;
    Return<Result> setAladParams(uint64_t display, uint32_t enable,
                                 const composer_ext::hidl_vec<composer_ext::AladParamPair>& params) override;
    Return<Result> setExclusiveMode(uint64_t display, uint32_t enable) override;

    // Keeps the last recipient alone. Not a call of the extension: it is not in the journal.
    Return<bool> linkToDeath(const DeathRecipient& recipient, uint64_t cookie) override PLATFORM_EXCLUDES(mutex);

private:
    using Operation = ComposerOperation;

    // The failure of a call that begins now.
    Failure beginCall(Operation operation, CallKind kind);
    // Runs change on the display's state and adds the call, which describe completes, to the journal.
    template <typename Change, typename Describe>
    Return<Result> set(Operation operation, uint64_t display, Change change, Describe describe);
    // Adds the call to the journal and hands its result and the display's state to answer.
    template <typename Answer>
    Return<void> get(Operation operation, std::optional<uint64_t> display, Answer answer);

    const std::shared_ptr<Journal> journal;
    mutable platform::Mutex mutex;  // never held while somebody else is called
    uint32_t count PLATFORM_GUARDED_BY(mutex);
    std::map<uint64_t, DisplayState> displays PLATFORM_GUARDED_BY(mutex);   // those that are not as new
    std::pair<DeathRecipient, uint64_t> linked PLATFORM_GUARDED_BY(mutex);  // with its cookie; null: none
    std::atomic<bool> stopped{false};
};

}  // namespace simulator
