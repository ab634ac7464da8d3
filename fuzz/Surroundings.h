// What the service finds around it, as plain data: the fuzzer sets the fakes to it, the model answers by it.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/fakes/Faults.h"

namespace fuzz {

using Table = std::array<float, 4096>;

// A calibration file. A block with fewer values than it needs is incomplete; one without any is not in the file.
struct Calibration {
    enum class File { MISSING, MALFORMED, GOOD };

    File file = File::MISSING;
    std::vector<float> whitePoint;        // 9
    std::vector<float> colorCorrection;   // 9
    std::vector<float> whitePointParams;  // 9
    std::vector<float> calibrated;        // 4096
    std::vector<float> tuned;             // 4096
    std::vector<int32_t> endPoints;       // 2: warm, cold
    std::vector<double> eyeCare;          // 38: maximum, minimum, coefficients
};

// The files that the panel's name chooses from: the default, panel 0a's and panel 0b's.
constexpr size_t kCalibrationFiles = 3;

using Faults = std::map<std::string, fakes::Fault>;  // by the call's journal form up to its first bracket

struct Surroundings {
    bool composer = true;  // can be found
    uint32_t displays = 2;
    Faults composerFaults;

    bool sensors = true;  // can be found
    bool queue = true;    // the answer that there is one brings one
    Faults sensorFaults;

    size_t calibrationFile = 0;  // that the panel's name chooses
    std::array<Calibration, kCalibrationFiles> calibrations;
    bool cabcNode = true;
    std::optional<std::string> whitePoint;  // the node's text; nothing when it is not there

    // What the closed libraries write; nothing when they leave their buffers.
    std::vector<float> gains;         // 3
    std::vector<float> coefficients;  // 9
    std::vector<float> whiteGains;    // 3
};

// The closed tone-curve library: the level of a light, and where it writes the level in the curve.
inline int levelOf(int lux) {
    return lux < 1000 ? 2 : lux < 50000 ? lux / 4000 : 1;
}
inline size_t placeOf(int level) {
    return static_cast<size_t>(level) % 256;
}

}  // namespace fuzz
