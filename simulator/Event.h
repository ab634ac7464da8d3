// SPDX-License-Identifier: Apache-2.0
// What crosses the library's border, as typed events, and the one line of text that each of them has.
#pragma once

#include <android/frameworks/sensorservice/1.0/types.h>
#include <platform/Clock.h>
#include <vendor/kov/hardware/composer_ext/1.0/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace simulator {

namespace composer_ext = ::vendor::kov::hardware::composer_ext::V1_0;
namespace sensorservice = ::android::frameworks::sensorservice::V1_0;

using Matrix = std::array<float, 9>;  // by rows
constexpr Matrix kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};
using Table = std::shared_ptr<const std::array<float, 4096>>;

// From the nine elements or 4096 entries of any interface's matrix or table.
Matrix matrixOf(const float* elements);
Table tableOf(const float* entries);

// FNV-1a of all entries, "#8d3c11f0".
std::string tableDigest(const std::array<float, 4096>& table);

// The entries by which people know a table.
constexpr std::array<size_t, 5> kTableSamples = {96, 320, 1024, 2048, 3840};

// The name of an enumerator, of a list in the enumerators' order.
template <typename E, size_t N>
std::string_view nameOf(const std::array<std::string_view, N>& names, E enumerator) {
    return names[static_cast<size_t>(enumerator)];
}

// How a call of a service ended.
struct Outcome {
    enum class Kind {
        ANSWERED,     // with result
        NO_CALLBACK,  // returned without the callback that carries the answer
        DEAD_OBJECT,  // the transport failed
    };
    Kind kind = Kind::ANSWERED;
    int32_t result = 0;  // a Result of the service, when ANSWERED
};

enum class ComposerOperation {
    GET_NUM_OF_DISPLAY,
    GET_DISPLAY_INFO,
    SET_COLOR_TRANSFORM_MATRIX,
    GET_COLOR_TRANSFORM_MATRIX,
    SET_GLOBAL_GAMMA_LUT,
    GET_GLOBAL_GAMMA_LUT,
    SET_GLOBAL_DE_GAMMA_LUT,
    GET_GLOBAL_DE_GAMMA_LUT,
    SET_ALAD_PARAMS,
    SET_EXCLUSIVE_MODE,
};
// As the interface spells them, in the order of the enumerators.
constexpr std::array<std::string_view, 10> kComposerOperations = {
    "getNumOfDisplay",   "getDisplayInfo",    "setColorTransformMatrix", "getColorTransformMatrix",
    "setGlobalGammaLut", "getGlobalGammaLut", "setGlobalDeGammaLut",     "getGlobalDeGammaLut",
    "setAladParams",     "setExclusiveMode"};

// A call of the composer; what an operation does not take is empty.
struct ComposerCall {
    ComposerOperation operation;
    std::optional<uint64_t> display = {};
    std::optional<Matrix> first = {};
    std::optional<Matrix> last = {};
    Table table = {};
    std::optional<uint32_t> enable = {};
    std::vector<composer_ext::AladParamPair> params = {};
    Outcome outcome = {};
};

// The level of the tone curve that a setAladParams carries, if it is a curve of the simulated library.
std::optional<int> toneCurveLevelOf(const ComposerCall& call);

enum class SensorOperation {
    GET_DEFAULT_SENSOR,
    CREATE_EVENT_QUEUE,
    ENABLE_SENSOR,
    DISABLE_SENSOR,
    RELEASE_QUEUE,  // the last reference to the queue is gone; has no outcome and cannot fail
};
constexpr std::array<std::string_view, 5> kSensorOperations = {"getDefaultSensor", "createEventQueue", "enableSensor",
                                                               "disableSensor", "releaseQueue"};

struct SensorCall {
    SensorOperation operation;
    std::vector<int64_t> arguments;  // numbers alone: type; none; handle, period, latency; handle; none
    Outcome outcome = {};
};

enum class ClosedFunction {
    SET_PARAMS,
    GET_UNLIMITED_CT_PARAMS,
    SET_EYE_CARE_PARAMS_OLED,
    GET_EYE_CARE_COEFF_OLED,
    GET_AGTM_LEVEL,
    GET_AGTM_CURVE_PARAMS,
    CONSTRUCT_ALGORITHM,
    WHITE_POINT_CALIBRATE,
    DESTROY_ALGORITHM,
};
constexpr std::array<std::string_view, 9> kClosedFunctions = {"setParams",
                                                              "getUnlimitedCTParams",
                                                              "setEyeCareParamsOled",
                                                              "getEyeCareCoeffOled",
                                                              "getAGTMLevel",
                                                              "getAGTMCurveParams",
                                                              "DisplayPostProcessingAlgorithm",
                                                              "WhitePointCalibrate",
                                                              "~DisplayPostProcessingAlgorithm"};

// A call of a closed library.
struct ClosedCall {
    ClosedFunction function;
    std::vector<int64_t> arguments = {};    // warm, cold; level; maximum, minimum temperature; level; lux; level; none
    std::vector<double> coefficients = {};  // setEyeCareParamsOled's
    std::vector<float> before = {};         // the buffer of floats as it was given, if it takes one
    std::vector<float> after = {};          // and as it was left
    std::optional<int> result = {};         // nothing where it returns nothing
};

// Bytes that the library wrote to a driver's node.
struct NodeWrite {
    std::string path;  // the phone's
    std::string bytes;
};

struct LogLine {
    int32_t priority;  // ANDROID_LOG_*
    std::string tag;
    std::string function;  // that logs; empty, and line 0, for a line that does not begin with its place
    int line;
    std::string message;  // without the place
};

// What the worker of the ambient-light display makes of a sample. It comes in place of the worker's log line.
struct LightSample {
    int32_t mean;  // lux, of the last five
    int32_t lux;
};

// A value that a served operation answers or that a state holds.
using Value = std::variant<bool, int64_t, uint64_t, float, std::string, Matrix, Table, std::vector<float>,
                           std::vector<int64_t>, std::vector<std::string>>;

// What a served operation answered, reported by its caller.
struct Answer {
    std::string operation;
    Value result;                                            // the name of a Result, or a number
    std::vector<std::pair<std::string, Value>> values = {};  // by name
};

struct Event {
    using What = std::variant<ComposerCall, SensorCall, ClosedCall, NodeWrite, LogLine, LightSample, Answer>;

    platform::Clock::Duration time;  // of the phone's clock
    What what;
};

// Receives events one at a time, in their order, on the thread on which they happen. It must not cause another event.
using Observer = std::function<void(const Event&)>;

// One line, exact enough to be compared: floats have the fewest digits that name their bits, a table has a digest.
// clang-format off
//     composer setColorTransformMatrix 0 identity [1 0 0 | 0 0.9 0 | 0 0 0.8] -> OK
//     composer setGlobalGammaLut 0 {96: 0.18 320: 0.31 1024: 0.53 2048: 0.73 3840: 0.97 #8d3c11f0} -> OK
//     composer setAladParams 0 on 0: 4, 14: level 3 -> FAILED          (other values: all up to 16, or their digest)
//     composer getNumOfDisplay -> DEAD_OBJECT                         (or -> no callback)
//     sensor enableSensor 1 1000000 0 -> OK
//     closed getUnlimitedCTParams 30 [1 1 1] -> 0 [0.5 1 1]           (a buffer as given, and as left)
//     node lcd_cabc_mode <- "1\n"
//     log D setStandardMode: enter                                    (text after the tag, if it is not the library's)
//     sample 9000 lux, mean 4200
//     answer getUnlimitedCT -> OK level 30
// clang-format on
std::string textOf(const Event::What& what);
inline std::string textOf(const Event& event) {
    return textOf(event.what);
}

// Whether all that textOf shows of a and b is equal, floats by their bits, which is quicker than to compare the texts.
// False of other kinds of events than calls and node writes: their texts may still be equal.
bool hasSameBits(const Event::What& a, const Event::What& b);

// The word that textOf begins with: the kind of event.
std::string_view kindOf(const Event::What& what);

// The same of a single value, and of a float: "nan", "inf", "-inf" where it is not finite.
std::string valueText(const Value& value);
std::string floatText(float value);

// The name of a Result of the composer or of the sensor service, or its number when it has none.
std::string composerResultName(int32_t result);
std::string sensorResultName(int32_t result);

// Bytes as text: what is not printable ASCII as \n or \xF8.
std::string printable(std::string_view bytes);

// V, D, I, W, E, F, S; ? for other priorities.
char letterOf(int32_t priority);

}  // namespace simulator
