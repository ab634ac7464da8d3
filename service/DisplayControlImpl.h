// SPDX-License-Identifier: Apache-2.0
// The display-control service object.
#pragma once

#include <hidl/Status.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "color/ColorManager.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

using ::android::sp;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::vendor::kov::hardware::composer_ext::V1_0::IComposerExt;

class ConfigXmlParser;
class DisplayAlad;

// Implements the display-control interface: one public method per operation.
//
// One object per process, created by the process that publishes the interface. That process calls init() before it
// serves and deInit() after; no operation overlaps these two. Each operation runs to completion on its caller's thread.
// The caller issues one at a time, because nothing here takes a lock; only allocUserHandle may run on several threads.
//
// handle is a number from allocUserHandle and is only logged. display is an index, 0 for the first display. A callback
// is called exactly once, before the operation returns; its arguments are valid only during the call. At the transport
// each operation succeeds; failures are in the Result. While no composer is connected, an operation reports FAILED and
// changes nothing. Exceptions: handles, the data that init() read, the getters of levels, backlight control,
// IsAladEnable, switching ALAD off and switching it on while it is on work without a composer, and setFeature returns
// OK for a screen mode.
class DisplayControlImpl {
public:
    using Level = std::function<void(Result, int32_t level)>;
    using Matrix = std::function<void(Result, const ColorTransformMatrix& first)>;
    using MatrixPair = std::function<void(Result, const ColorTransformMatrix& first, const ColorTransformMatrix& last)>;
    using FeatureValues = std::function<void(Result, const hidl_vec<double>& values)>;
    using Table = std::function<void(Result, const GammaLut& table)>;

    // Largest display count that init() accepts.
    static constexpr uint32_t kMaxDisplays = 1024;

    DisplayControlImpl() = default;
    DisplayControlImpl(const DisplayControlImpl&) = delete;
    DisplayControlImpl& operator=(const DisplayControlImpl&) = delete;

    // Connects to the composer, reads the displays and applies the panel's calibration to display 0. Returns 0 on
    // success, -1 without a composer, -2 if the display count fails or exceeds kMaxDisplays. May be called again:
    // displays that are still present keep their colour state.
    int init();
    // Releases the composer. All other state stays.
    void deInit();

    // --- Handles and displays (UserHandles.cpp) ---
    // Returns the next handle, never 0. value is ignored. Any thread.
    Return<void> allocUserHandle(uint32_t value, const std::function<void(Result, uint64_t handle)>& callback);
    Return<Result> freeUserHandle(uint64_t handle);
    // The count that init() read; -1 as an unsigned number while it is unknown.
    Return<void> getNumOfDisplay(uint64_t handle, const std::function<void(Result, uint32_t count)>& callback);
    // The record that init() read; BAD_DISPLAY with zeros and the name "0" for an unknown display.
    Return<void> getDisplayInfo(uint64_t handle, uint64_t display,
                                const std::function<void(Result, const DisplayInfo&)>& callback);

    // --- The composer's colour transform (ColorTransform.cpp) ---
    // Forwarded for any display. Return the composer's Result, and FAILED (getters: with zeros) if the transport fails.

    // Sets the first matrix to the identity and the last to matrix.
    Return<Result> setColorTransformMatrix(uint64_t handle, uint64_t display, const ColorTransformMatrix& matrix);
    // Returns the composer's first matrix, not its last.
    Return<void> getColorTransformMatrix(uint64_t handle, uint64_t display, const Matrix& callback);
    Return<Result> setColorTransformMatrix2(uint64_t handle, uint64_t display, const ColorTransformMatrix& first,
                                            const ColorTransformMatrix& last);
    Return<void> getColorTransformMatrix2(uint64_t handle, uint64_t display, const MatrixPair& callback);

    // --- Gamma and de-gamma tables (GammaTables.cpp) ---
    // Forwarded for any display. Setters return OK whatever the composer answers. Getters return the composer's Result,
    // and FAILED with zeros if the transport fails.
    Return<Result> setGlobalGammaLut(uint64_t handle, uint64_t display, const GammaLut& table);
    Return<void> getGlobalGammaLut(uint64_t handle, uint64_t display, const Table& callback);
    Return<Result> setGlobalDeGammaLut(uint64_t handle, uint64_t display, const GammaLut& table);
    Return<void> getGlobalDeGammaLut(uint64_t handle, uint64_t display, const Table& callback);
    // Sets the gamma table to (i / 4096) ^ exponent, for any exponent; 1 / 2.2 is the usual encoding.
    Return<Result> setGlobalGamma(uint64_t handle, uint64_t display, float exponent);

    // --- Colour temperature (ColorTemperature.cpp) ---
    // Any int is a level; the closed libraries define its range and meaning. 0 at first. Returns OK for a known
    // display, whatever the library and the composer answer, otherwise FAILED (getters: with level 0).
    Return<Result> setUnlimitedCT(uint64_t handle, uint64_t display, int32_t level);
    Return<void> getUnlimitedCT(uint64_t handle, uint64_t display, const Level& callback);
    Return<Result> setEyeCareCT(uint64_t handle, uint64_t display, int32_t level);
    Return<void> getEyeCareCT(uint64_t handle, uint64_t display, const Level& callback);

    // --- Screen modes (ScreenModes.cpp) ---
    // A screen mode replaces the display's white-point and colour-correction matrices, and the mode and the backlight
    // control of the whole service; colour temperatures stay. value is ignored. Returns OK for a known display,
    // otherwise FAILED.

    // The panel's calibration matrices; backlight control off.
    Return<int32_t> setStandardMode(uint64_t handle, uint64_t display, int32_t value);
    // The panel's native colour; backlight control off.
    Return<int32_t> setEnhanceScreenMode(uint64_t handle, uint64_t display, int32_t value);
    // The white point that the panel reports, calibrated by the closed library; backlight control on.
    Return<int32_t> setSmartEnvironmentMode(uint64_t handle, uint64_t display, int32_t value);

    // --- Content-adaptive backlight control (Backlight.cpp) ---
    // The panel has one node: handle and display are ignored.

    // Writes a level to the node: the byte level + 48, a digit for 0 to 9. FAILED if the node cannot be opened.
    Return<int32_t> setCabcSysNode(uint64_t handle, uint64_t display, int32_t level);
    // Sets a mode, 0 to 4, in smart environment mode; in other screen modes it does nothing and returns OK. FAILED for
    // any other mode and if the node cannot be opened.
    Return<int32_t> setCabcMode(uint64_t handle, uint64_t display, int32_t mode);

    // --- Features by number (Features.cpp) ---
    // 0 to 2: smart environment, enhanced and standard mode, always OK; 3: eye care and 23: unlimited colour
    // temperature with level value; 7: backlight control with mode value. These return the operation's result; any
    // other number returns FAILED. value2 is ignored.
    Return<int32_t> setFeature(uint64_t handle, uint64_t display, int32_t feature, int32_t value, int32_t value2);
    // setFeature with two values, truncated toward zero; FAILED for any other number of values. Answers with no values.
    Return<void> setMiscFeature(uint64_t handle, uint64_t display, int32_t feature, const hidl_vec<double>& values,
                                const FeatureValues& callback);
    // No feature can be read: FAILED, with no values.
    Return<void> getMiscFeature(uint64_t handle, uint64_t display, int32_t feature, const FeatureValues& callback);

    // --- Ambient-light adaptive display (Alad.cpp) ---
    // Switches ALAD on (any value but 0) or off; OK also if nothing changes. FAILED for a display other than 0 and if
    // ALAD cannot be started. Switching off waits for the composer message in progress.
    Return<Result> setAlad(uint64_t handle, uint64_t display, uint32_t enable);
    // 1 while ALAD is on, otherwise 0.
    Return<int32_t> IsAladEnable(uint64_t handle, uint64_t display);

    // --- Exclusive mode (ExclusiveMode.cpp) ---
    // A state of display 0 at the composer; the service does not store it. value is only logged. OK with a composer.

    // Clears every adjustment at the composer, and switches ALAD and backlight control off. The colour state stays.
    Return<Result> exclusiveModeEnter(uint64_t handle, uint32_t value);
    // Reads the panel's calibration again and restores it and the colour temperatures. ALAD and backlight control stay
    // off.
    Return<Result> exclusiveModeExit(uint64_t handle, uint32_t value);

    // --- State, for inspection ---
    enum ScreenMode : int32_t { NONE = -1, SMART_ENVIRONMENT = 0, ENHANCED = 1, STANDARD = 2 };
    ScreenMode currentScreenMode() const { return screenMode; }
    const std::vector<ColorManager>& displayColors() const { return colorManagers; }

private:
    static constexpr int32_t kOk = static_cast<int32_t>(Result::OK);
    static constexpr int32_t kFailed = static_cast<int32_t>(Result::FAILED);

    struct ColorTransformAnswer;
    struct TableAnswer;

    bool knowsDisplay(uint64_t display) const;
    // The colour state of a display that operations may change; null without a composer and for an unknown display.
    ColorManager* servedColors(uint64_t display);

    int32_t queryNumOfDisplay();
    DisplayInfo queryDisplayInfo(uint64_t display);
    void applyCalibration();

    Result sendColorTransform(uint64_t display, const composer_ext::V1_0::ColorTransformMatrix& first,
                              const composer_ext::V1_0::ColorTransformMatrix& last);
    ColorTransformAnswer queryColorTransform(uint64_t display);

    // Sends the panel's gamma table to display 0: the tuned one if present, else the calibrated one if present.
    void sendCalibratedGamma(const ConfigXmlParser& record);
    Result sendPowerTable(uint64_t display, float exponent);
    Result sendGammaTable(uint64_t display, const float* entries);
    using TableGetter = decltype(&IComposerExt::getGlobalGammaLut);
    TableAnswer queryTable(uint64_t display, TableGetter getter);

    // Sends the final matrix of colors as the last matrix.
    void sendFinalCtm(uint64_t display, const ColorManager& colors);
    using LevelSetter = int (ColorManager::*)(int32_t level);
    Result setLevel(uint64_t display, LevelSetter setter, int32_t level);
    void reportLevel(uint64_t display, int32_t ColorManager::*level, const Level& callback) const;
    // The end of every screen mode: sends the final matrix, stores the mode and writes the backlight control level.
    int32_t enterScreenMode(uint64_t display, const ColorManager& colors, ScreenMode mode, int32_t cabcLevel);
    void stopAlad();

    sp<IComposerExt> composerExt;  // null while not connected
    int32_t numOfDisplay = -1;     // -1 while unknown
    std::vector<DisplayInfo> displayInfos;
    TMat33<float> firstCtm;                   // identity: the first matrix of requests that give only one
    std::vector<ColorManager> colorManagers;  // index: display
    DisplayAlad* displayAlad = nullptr;       // null while ALAD is off; not deleted with this object
    float wpcParam[9] = {};                   // parameters of the white-point calibration, in the order of the file
    bool hasWpcParam = false;
    ScreenMode screenMode = NONE;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
