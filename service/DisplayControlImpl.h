// The display-control service object.
#pragma once

#include <hidl/Status.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "color/ColorManager.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

using ::android::sp;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;
using ::android::hardware::Void;
using ::vendor::kov::hardware::composer_ext::V1_0::IComposerExt;
namespace composer_types = ::vendor::kov::hardware::composer_ext::V1_0;

class ConfigXmlParser;
class DisplayAlad;

// What a client of the display-control interface reaches: one public method per operation of the interface.
//
// One object per process, made by the process that publishes the interface. That process calls init() before it serves
// and deInit() after; no operation overlaps these two. Operations run to completion on their caller's thread, one at a
// time, and nothing here takes a lock; only allocUserHandle may be called by several threads at once.
//
// handle is what allocUserHandle gave; it is only logged. display is an index, 0 for the first display. A callback is
// called exactly once, before the operation returns, and what it is given is valid during that call only. Every
// operation succeeds at the transport; failures are in the Result. While no composer is connected, an operation reports
// FAILED and changes nothing; only handles, what init() learned, the getters of levels, backlight control, IsAladEnable
// and switching ALAD off do without it, and setFeature answers OK for a screen mode all the same.
class DisplayControlImpl {
public:
    using Level = std::function<void(Result, int32_t level)>;
    using Matrix = std::function<void(Result, const ColorTransformMatrix& first)>;
    using MatrixPair = std::function<void(Result, const ColorTransformMatrix& first, const ColorTransformMatrix& last)>;
    using FeatureValues = std::function<void(Result, const hidl_vec<double>& values)>;
    using Table = std::function<void(Result, const GammaLut& table)>;

    DisplayControlImpl() = default;
    DisplayControlImpl(const DisplayControlImpl&) = delete;
    DisplayControlImpl& operator=(const DisplayControlImpl&) = delete;

    // Connects to the composer, learns the displays and applies the panel's calibration to display 0. 0 on success, -1
    // without a composer, -2 when the composer does not tell how many displays there are. May be called again: displays
    // that remain keep their colour state.
    int init();
    // Lets go of the composer; all other state stays.
    void deInit();

    // --- Handles and displays (UserHandles.cpp) ---
    // Gives the next handle, never 0. value is ignored. May be called from several threads at once.
    Return<void> allocUserHandle(uint32_t value, const std::function<void(Result, uint64_t handle)>& callback);
    Return<Result> freeUserHandle(uint64_t handle);
    // The count that init learned; the unsigned image of -1 while it is unknown.
    Return<void> getNumOfDisplay(uint64_t handle, const std::function<void(Result, uint32_t count)>& callback);
    // What init learned of a display; BAD_DISPLAY with zeros and the name "0" for one that is not known.
    Return<void> getDisplayInfo(uint64_t handle, uint64_t display,
                                const std::function<void(Result, const DisplayInfo&)>& callback);

    // --- The composer's colour transform (ColorTransform.cpp) ---
    // Passed on with any display; the composer's Result comes back. FAILED (and zeros) when the transport fails.

    // Sets the identity as the first matrix and matrix as the last.
    Return<Result> setColorTransformMatrix(uint64_t handle, uint64_t display, const ColorTransformMatrix& matrix);
    // The composer's first matrix, not its last.
    Return<void> getColorTransformMatrix(uint64_t handle, uint64_t display, const Matrix& callback);
    Return<Result> setColorTransformMatrix2(uint64_t handle, uint64_t display, const ColorTransformMatrix& first,
                                            const ColorTransformMatrix& last);
    Return<void> getColorTransformMatrix2(uint64_t handle, uint64_t display, const MatrixPair& callback);

    // --- Gamma and de-gamma tables (GammaTables.cpp) ---
    // Passed on with any display. The setters report OK whatever the composer answers; the getters its Result, and
    // FAILED with zeros when the transport fails.
    Return<Result> setGlobalGammaLut(uint64_t handle, uint64_t display, const GammaLut& table);
    Return<void> getGlobalGammaLut(uint64_t handle, uint64_t display, const Table& callback);
    Return<Result> setGlobalDeGammaLut(uint64_t handle, uint64_t display, const GammaLut& table);
    Return<void> getGlobalDeGammaLut(uint64_t handle, uint64_t display, const Table& callback);
    // Sets the gamma table whose entry i is (i / 4096) ^ exponent, for any exponent: 1 / 2.2 gives the usual encoding.
    Return<Result> setGlobalGamma(uint64_t handle, uint64_t display, float exponent);

    // --- Colour temperature (ColorTemperature.cpp) ---
    // The range and meaning of a level are the closed libraries'; any int is stored and handed to them, 0 is the level
    // at first. OK for a known display, whatever the library and the composer answer, otherwise FAILED (with level 0).
    Return<Result> setUnlimitedCT(uint64_t handle, uint64_t display, int32_t level);
    Return<void> getUnlimitedCT(uint64_t handle, uint64_t display, const Level& callback);
    Return<Result> setEyeCareCT(uint64_t handle, uint64_t display, int32_t level);
    Return<void> getEyeCareCT(uint64_t handle, uint64_t display, const Level& callback);

    // --- Screen modes (ScreenModes.cpp) ---
    // A mode replaces the display's white-point and colour-correction matrices and the screen mode of the whole
    // service, and switches content-adaptive backlight control; colour temperatures stay. value is ignored. OK for a
    // known display, otherwise FAILED.

    // The panel's calibration matrices; backlight control off.
    Return<int32_t> setStandardMode(uint64_t handle, uint64_t display, int32_t value);
    // The panel's native colour; backlight control off.
    Return<int32_t> setEnhanceScreenMode(uint64_t handle, uint64_t display, int32_t value);
    // The white point that the panel reports, calibrated by the closed library; backlight control on.
    Return<int32_t> setSmartEnvironmentMode(uint64_t handle, uint64_t display, int32_t value);

    // --- Content-adaptive backlight control (Backlight.cpp) ---
    // The driver has one node, so handle and display make no difference.

    // Writes a level to the node: 0 to 9 as its digit. OK, or FAILED when the node cannot be opened.
    Return<int32_t> setCabcSysNode(uint64_t handle, uint64_t display, int32_t level);
    // Sets one of the modes 0 to 4, in smart environment mode only: in another screen mode it does nothing and is OK.
    // FAILED for another mode or when the node cannot be opened.
    Return<int32_t> setCabcMode(uint64_t handle, uint64_t display, int32_t mode);

    // --- Features by number (Features.cpp) ---
    // 0 to 2: smart environment, enhanced and standard mode, always OK; 3: eye care and 23: unlimited colour
    // temperature at level value; 7: backlight control mode value. These report what their operation reports; any other
    // number is FAILED. value2 is ignored.
    Return<int32_t> setFeature(uint64_t handle, uint64_t display, int32_t feature, int32_t value, int32_t value2);
    // setFeature with the two values truncated toward zero; FAILED with more or fewer. Answers with no values.
    Return<void> setMiscFeature(uint64_t handle, uint64_t display, int32_t feature, const hidl_vec<double>& values,
                                const FeatureValues& callback);
    // No feature can be read: FAILED, with no values.
    Return<void> getMiscFeature(uint64_t handle, uint64_t display, int32_t feature, const FeatureValues& callback);

    // --- Ambient-light adaptive display (Alad.cpp) ---
    // Switches it on (any value but 0) or off. OK also when it is so already; FAILED for a display other than 0 and
    // when it cannot be started. Switching off waits for the end of a composer message in flight.
    Return<Result> setAlad(uint64_t handle, uint64_t display, uint32_t enable);
    // 1 while it is on, otherwise 0.
    Return<int32_t> IsAladEnable(uint64_t handle, uint64_t display);

    // --- Exclusive mode (ExclusiveMode.cpp) ---
    // A state of display 0 at the composer; the service does not remember it. value is only logged. OK with a composer.

    // Clears every adjustment at the composer and switches ALAD and backlight control off; the colour state stays.
    Return<Result> exclusiveModeEnter(uint64_t handle, uint32_t value);
    // Puts the panel's calibration, read anew, and the colour temperatures back; ALAD and backlight control stay off.
    Return<Result> exclusiveModeExit(uint64_t handle, uint32_t value);

    // --- For a dump of the state ---
    enum ScreenMode : int32_t { NONE = -1, SMART_ENVIRONMENT = 0, ENHANCED = 1, STANDARD = 2 };
    ScreenMode currentScreenMode() const { return screenMode; }
    const std::vector<ColorManager>& displayColors() const { return colorManagers; }

private:
    struct Matrices;
    struct ComposerTable;

    bool knowsDisplay(uint64_t display) const;
    // The colour state of a display that can be changed: null without a composer or for a display that is not known.
    ColorManager* servedColors(uint64_t display);

    int32_t askNumOfDisplay();
    bool reserveDisplays(int32_t count);
    void askDisplayInfos();
    DisplayInfo askDisplayInfo(int32_t display);
    void applyCalibration();
    // The panel's calibration as its file gives it now; null, and a log line, when there is no memory for it.
    static std::unique_ptr<ConfigXmlParser> readCalibration();

    Result sendColorTransform(uint64_t display, const composer_types::ColorTransformMatrix& first,
                              const composer_types::ColorTransformMatrix& last);
    Matrices askColorTransform(uint64_t display);

    // Sends the panel's gamma table to display 0: the tuned one before the calibrated one, nothing without either.
    void sendCalibratedGamma(const ConfigXmlParser& record);
    // Sends the table whose entry i is (i / 4096) ^ exponent.
    Result sendPowerTable(uint64_t display, float exponent);
    // Sends 4096 entries as the gamma table; the composer's answer is dropped.
    Result sendGammaTable(uint64_t display, const float* entries);
    using TableGetter = Return<void> (IComposerExt::*)(
        uint64_t display, std::function<void(composer_types::Result, const composer_types::GammaLut&)>);
    ComposerTable askTable(uint64_t display, TableGetter getter);

    // Sends the display's final matrix as the last one; the composer's answer is dropped.
    void sendFinalCtm(uint64_t display);
    void reportLevel(uint64_t display, int32_t ColorManager::*level, const Level& callback) const;
    // What every screen mode ends with: the final matrix, the mode, and the backlight control level, in this order.
    int32_t enterScreenMode(uint64_t display, ScreenMode mode, int32_t cabcLevel);
    // Nothing when it is off.
    void stopAlad();

    sp<IComposerExt> composerExt;  // null while not connected
    int32_t numOfDisplay = -1;     // -1 while unknown
    std::vector<DisplayInfo> displayInfos;
    TMat33<float> firstCtm;                   // identity: the first matrix of every request that names one matrix only
    std::vector<ColorManager> colorManagers;  // index: display
    DisplayAlad* displayAlad = nullptr;  // owned; enabled, null while ALAD is off. It outlives this object if left on
    float wpcParam[9] = {};              // parameters of the white-point calibration, in the order of the file
    bool hasWpcParam = false;
    ScreenMode screenMode = NONE;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
