// The display composer of the simulated phone.
#pragma once

#include <platform/Mutex.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace simulator {

namespace composer_ext = ::vendor::kov::hardware::composer_ext::V1_0;

// What a composer holds for one display.
struct DisplayState {
    static constexpr size_t kToneCurve = 256;
    static constexpr int64_t kToneCurveMax = 4095;

    DisplayState();

    // A colour goes through these in this order; see DisplayPipeline.h. Coded picture values are decoded with exponent
    // 2.2 and coded again with 1 / 2.2 until somebody sends other tables.
    composer_ext::GammaLut deGamma;
    composer_ext::ColorTransformMatrix first;
    composer_ext::ColorTransformMatrix last;
    composer_ext::GammaLut gamma;
    // The tone curve: entry k is the output for the coded level k / 255, kToneCurveMax for 1. Empty while it is off.
    std::vector<int64_t> toneCurve;

    bool exclusive = false;
    bool aladEnabled = false;
};

// One call as the composer got it; what the pointers point to is valid while the observer runs.
struct ComposerCall {
    std::string_view operation;
    std::optional<uint64_t> display = std::nullopt;
    const composer_ext::ColorTransformMatrix* first = nullptr;
    const composer_ext::ColorTransformMatrix* last = nullptr;
    const composer_ext::GammaLut* table = nullptr;
    const composer_ext::hidl_vec<composer_ext::AladParamPair>* params = nullptr;
    std::optional<uint32_t> enable = std::nullopt;
    // The answer; nothing when the transport failed because the composer has stopped.
    std::optional<composer_ext::Result> result = std::nullopt;
};

// Implements the composer extension for any number of displays and holds what it is told. A display that it does not
// have is answered with BAD_DISPLAY. Calls may come from several threads; the observer is called after each, on the
// calling thread, and is set before the first call.
class SimulatedComposer final : public composer_ext::IComposerExt {
public:
    using Observer = std::function<void(const ComposerCall&)>;

    explicit SimulatedComposer(uint32_t displayCount) : displays(displayCount) {}

    void setObserver(Observer newObserver) { observer = std::move(newObserver); }

    // Displays added hold what a new one holds.
    void setDisplayCount(uint32_t count);
    uint32_t displayCount() const;

    // From now on every call fails at the transport, as calls of a process that has died do.
    void stop();

    // What it holds for a display; nothing for one that it does not have.
    std::optional<DisplayState> stateOf(uint64_t display) const;

    template <typename T>
    using Return = ::android::hardware::Return<T>;
    using Result = composer_ext::Result;
    using ColorTransformMatrix = composer_ext::ColorTransformMatrix;
    using GammaLut = composer_ext::GammaLut;
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

private:
    // Runs change on the display's state and tells the observer. call is completed with the answer.
    template <typename Change>
    Return<Result> serve(ComposerCall call, Change change);
    // Hands the display's state, or a new display's with BAD_DISPLAY, to answer, and tells the observer before.
    template <typename Answer>
    Return<void> serveGetter(ComposerCall call, Answer answer);
    void report(const ComposerCall& call) const;

    mutable platform::Mutex mutex;                                  // never held while somebody else is called
    std::vector<DisplayState> displays PLATFORM_GUARDED_BY(mutex);  // index: display
    bool stopped PLATFORM_GUARDED_BY(mutex) = false;
    Observer observer;
};

}  // namespace simulator
