// SPDX-License-Identifier: Apache-2.0
// The panel's calibration, read from its XML file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Reads the calibration file of the panel that the phone reports. The data members are the record that it fills.
//
// Create it value-initialised (all values zero, all flags false) and on the heap, because it holds two 4096-entry
// tables; readCalibration() does. Use it on one thread at a time: reading ends with a clean-up of libxml2's global
// state.
//
// A flag is set if its block is complete. A short block stores the values that it has and leaves its flag false. Text
// that is not a number becomes 0, as with C's atof and strtol.
class ConfigXmlParser {
public:
    static constexpr size_t kMatrix = 9;
    static constexpr size_t kTable = 4096;
    static constexpr size_t kEyeCareCoeffs = 36;
    static constexpr size_t kWpcParams = 9;

    // Chooses the file by the panel's name and reads it into the members. Failures are logged, not returned: the record
    // stays unchanged if the file is missing, is not a regular file of at most 16 MiB, cannot be parsed or declares
    // entities (a few entities can expand to any amount of text).
    void parser();

    float ctmWpc[kMatrix];  // white-point matrix by rows
    bool hasCtmWpc;
    float ctmCcm[kMatrix];  // colour-correction matrix by rows
    bool hasCtmCcm;
    float gammaCalib[kTable];  // entry i is the output for the input level i / 4096
    bool hasGammaCalib;
    float gammaTuning[kTable];  // a tuned gamma table; used instead of gammaCalib
    bool hasGammaTuning;
    int32_t unlimitedWarm;  // end points of the unlimited colour temperature, colours 0xRRGGBB
    int32_t unlimitedCold;
    bool hasUnlimitedCT;
    double eyeCareMaxCCT;  // kelvin
    double eyeCareMinCCT;  // kelvin
    double eyeCareCoeffs[kEyeCareCoeffs];
    bool hasEyeCare;
    float wpcParam[kWpcParams];  // parameters of the white-point calibration, in the order of the file
    bool hasWpcParam;
};

// Creates a record and calls parser().
std::unique_ptr<ConfigXmlParser> readCalibration();

// One block of a calibration file.
struct CalibrationBlock {
    const char* name;
    size_t elements;                    // element children that complete the block; more are ignored
    bool ConfigXmlParser::*isComplete;  // set when the block is complete
    // Stores one element's text. place is the index of the next value that is stored by position.
    void (*store)(ConfigXmlParser& record, const char* elementName, const char* text, size_t& place);
};
extern const std::array<CalibrationBlock, 7> kCalibrationBlocks;

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
