// The panel's calibration as its XML file gives it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Reads the calibration file of the panel that the phone reports. The data members are the record that it fills.
//
// Made by whoever needs the calibration, value-initialised (all zero, all flags false) and on the heap, for it holds
// two 4096-entry tables; destroyed as soon as the values have been copied out. One thread at a time: reading ends with
// a clean-up of libxml2's global state.
//
// A flag says that its block was complete; a block that was short leaves what it had in place and its flag false.
// Values are converted as C's atof does: no number gives 0. Entities from outside the document are never loaded, and
// those inside make at most a mebibyte of text. What refusalOf refuses (DocumentBounds.h) and what is no regular file
// are as unreadable as a file that is not well-formed.
class ConfigXmlParser {
public:
    static constexpr size_t kMatrix = 9;
    static constexpr size_t kTable = 4096;
    static constexpr size_t kEyeCareCoeffs = 36;

    // Chooses the file by the panel's name and reads it into the members. The file does not change meanwhile. Nothing
    // is reported but log lines and flags: a file that is missing, unreadable or not well-formed leaves the record as
    // it was, and one for which libxml2 finds no memory leaves it empty.
    void parser();

    float ctmWpc[kMatrix];  // white-point matrix by rows
    bool hasCtmWpc;
    float ctmCcm[kMatrix];  // colour-correction matrix by rows
    bool hasCtmCcm;
    float gammaCalib[kTable];  // entry i is the output for the input level i / 4096
    bool hasGammaCalib;
    float gammaTuning[kTable];  // the same, tuned; wins over gammaCalib
    bool hasGammaTuning;
    int32_t unlimitedWarm;  // end points of the unlimited colour temperature, colours 0xRRGGBB
    int32_t unlimitedCold;
    bool hasUnlimitedCT;
    double eyeCareMaxCCT;  // kelvin
    double eyeCareMinCCT;  // kelvin
    double eyeCareCoeffs[kEyeCareCoeffs];
    bool hasEyeCare;
    float wpcParam[9];  // parameters of the white-point calibration, in the order of the file
    bool hasWpcParam;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
