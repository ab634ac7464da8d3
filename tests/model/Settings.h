// SPDX-License-Identifier: Apache-2.0
// A phone as plain data: the settings of the simulated phone, which the model uses too.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "simulator/Phone.h"

namespace model {

using simulator::ClosedFunction;
using simulator::ComposerOperation;
using simulator::Failure;
using simulator::SensorOperation;

enum class Kind { FILE, FOLDER, MISSING };

struct Node {
    Kind kind = Kind::FILE;
    std::string text = {};
};

// A block with fewer values than it needs is incomplete; one without values is not in the file.
struct Calibration {
    Kind kind = Kind::FILE;
    bool isWellFormed = true;
    std::vector<float> whitePoint = {};        // 9
    std::vector<float> colorCorrection = {};   // 9
    std::vector<float> whitePointParams = {};  // 9
    std::vector<float> calibrated = {};        // 4096
    std::vector<float> tuned = {};             // 4096
    std::vector<int32_t> endPoints = {};       // 2: warm, cold
    std::vector<double> eyeCare = {};          // 38: maximum, minimum, coefficients
};

// The default file, panel 0a's and panel 0b's.
constexpr std::array<const char*, 3> kCalibrationPaths = {"/vendor/etc/disp_calib_data_default.xml",
                                                          "/vendor/etc/disp_calib_data_0a.xml",
                                                          "/vendor/etc/disp_calib_data_0b.xml"};

constexpr const char* kPanelPath = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";
constexpr const char* kWhitePointPath = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";
constexpr const char* kCabcPath = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode";

// Without changes: a phone with two displays on which everything works, with a complete calibration in the default
// file.
struct Settings {
    Settings();

    bool composer = true;  // found by getService
    int composerLife = 0;  // another number: another process of the composer
    uint32_t displays = 2;
    std::map<ComposerOperation, Failure> composerFailures;

    bool sensors = true;  // found by getService
    bool queue = true;    // createEventQueue delivers one
    bool threads = true;  // can be started
    std::map<SensorOperation, Failure> sensorFailures;

    Node panel;
    Node whitePoint;
    Node cabc;
    std::array<Calibration, kCalibrationPaths.size()> calibrations;

    // What the closed functions write, which may be less than their buffers hold, and return: 0 if nothing is set.
    std::vector<float> gains;         // getUnlimitedCTParams: up to 3
    std::vector<float> coefficients;  // getEyeCareCoeffOled: up to 9
    std::vector<float> whiteGains;    // WhitePointCalibrate: up to 3
    bool curves = true;               // getAGTMCurveParams
    std::map<ClosedFunction, int> results;

    int resultOf(ClosedFunction function) const;
    // getAGTMLevel: 2 indoors, then a level per 2000 lux, but 1 from 50000 lux on; above the result that is set.
    int levelOf(int lux) const;
    // getAGTMCurveParams: the level, in one of the 256 places.
    void writeCurve(int level, int32_t* curve) const;
};

// What refused calls of the composer answer.
constexpr int32_t kRefusal = -42;

// Changes the phone's settings from last to next, without the composer's life. Sensors deliver only what the test
// delivers.
void apply(const Settings& next, const Settings& last, simulator::Phone& phone);
// The same for a new phone.
void apply(const Settings& first, simulator::Phone& phone);

}  // namespace model
