// SPDX-License-Identifier: Apache-2.0
#include "tools/sample_data/SamplePanels.h"

namespace simulator {

namespace {

constexpr std::array<double, 9> kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr Cubic kZero{};
constexpr Cubic kOne{1, 0, 0, 0};

}  // namespace

const Calibration kPanel0a = {
    /*about=*/R"(    Display calibration of the panel dornel R7TK 35 02 0a (hd+, video mode, DSI)

    White as delivered 0.307, 0.323: a little blue, taken back in green and blue. Soft midtones. The tuned table
    closes the deepest shadows, which the backlight would turn grey.
)",
    /*whitePoint=*/{1, 0, 0, 0, 0.967346, 0, 0, 0, 0.915211},
    /*colorCorrection=*/{1.0600, -0.0546, -0.0054, -0.0126, 1.0168, -0.0042, 0.0019, -0.0014, 0.9995},
    /*gamma=*/{/*bend=*/0.012, /*toe=*/0.0},
    /*tunedGamma=*/GammaShape{/*bend=*/0.012, /*toe=*/-0.25},
    /*warm=*/0xFFD9A0,
    /*cold=*/0xCFE2FF,
    /*eyeCareMaxCct=*/6500,
    /*eyeCareMinCct=*/2900,
    /*eyeCare=*/
    {{
        kOne,
        kZero,
        kZero,
        kZero,
        {1, -0.76515, 0.26093, -0.02847},
        kZero,
        kZero,
        kZero,
        {1, -1.86099, 1.45261, -0.46033},
    }},
    /*primaries=*/{0.634, 0.309, 0.152, 0.337, 0.592, 0.063, 0, 0, 0},
};

const Calibration kPanel0b = {
    /*about=*/R"(    Display calibration of the panel dornel R7TK 43 03 0b (hd+, video mode, DSI)

    White as delivered 0.319, 0.336: yellowish, taken back in red and green. Narrow primaries and a steep middle. The
    tuned table opens the shadows. At warm eye-care levels red and green carry a little of the blue, so that blue text
    stays readable; white keeps its place.
)",
    /*whitePoint=*/{0.904639, 0, 0, 0, 0.932197, 0, 0, 0, 1},
    /*colorCorrection=*/{1.1317, -0.1440, 0.0123, -0.0292, 1.0704, -0.0412, -0.0013, -0.0246, 1.0259},
    /*gamma=*/{/*bend=*/-0.024, /*toe=*/0.0},
    /*tunedGamma=*/GammaShape{/*bend=*/-0.018, /*toe=*/0.30},
    /*warm=*/0xFFE0B4,
    /*cold=*/0xD8E8FF,
    /*eyeCareMaxCct=*/6500,
    /*eyeCareMinCct=*/2800,
    /*eyeCare=*/
    {{
        {1, -0.03, 0, 0},
        kZero,
        {0, 0.03, 0, 0},
        kZero,
        {1, -0.83489, 0.28078, -0.02856},
        {0, 0.02, 0, 0},
        kZero,
        kZero,
        {1, -2.03490, 1.70091, -0.56640},
    }},
    /*primaries=*/{0.622, 0.318, 0.154, 0.342, 0.571, 0.079, 0, 0, 0},
};

const Calibration kUnknownPanel = {
    /*about=*/R"(    Display calibration of any panel that has no file of its own

    Corrects nothing: identity matrices and the plain gamma 2.2.
)",
    /*whitePoint=*/kIdentity,
    /*colorCorrection=*/kIdentity,
    /*gamma=*/{/*bend=*/0.0, /*toe=*/0.0},
    /*tunedGamma=*/{},
    /*warm=*/0xFFFFEA,
    /*cold=*/0xEDFDFF,
    /*eyeCareMaxCct=*/6500,
    /*eyeCareMinCct=*/2900,
    /*eyeCare=*/{},
    /*primaries=*/{0.660, 0.295, 0.150, 0.334, 0.656, 0.055, 0, 0, 0},
};

}  // namespace simulator
