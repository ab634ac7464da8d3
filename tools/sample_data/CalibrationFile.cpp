// SPDX-License-Identifier: Apache-2.0
#include "tools/sample_data/CalibrationFile.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <vector>

namespace simulator {

namespace {

constexpr size_t kTableEntries = 4096;
constexpr double kPi = 3.14159265358979323846;

// What the toe does has faded to 1/e at this output.
constexpr double kToeReach = 0.08;

constexpr std::string_view kBlocksExplained = R"(
    CTM_WPC       3x3 by rows on linear RGB: brings the panel's white to D65
    CTM_CCM       3x3 by rows on linear RGB, applied before CTM_WPC: sRGB colours on the panel's primaries
    Gamma_Calib   4096 outputs; value i is for the input i / 4096
    Gamma_Tuning  the same, tuned by eye; used instead of Gamma_Calib where present
    UnlimitedCT   white at the warm and at the cold end of the colour temperature control, RRGGBB
    EyeCare       range in kelvin, then the eye-care matrix by rows: for each element the cubic
                  c0 + c1 t + c2 t^2 + c3 t^3, t = 0 at MaxCCT to 1 at MinCCT; all zero: along the Planckian locus
    WPCParam      CIE 1931 x of red, green, blue; y of red, green, blue; three reserved
)";

// How a block sets its values out.
struct Layout {
    int decimals;
    size_t perLine;
};
constexpr Layout kMatrixLayout{6, 3};
constexpr Layout kCubicLayout{5, 4};
constexpr Layout kTableLayout{10, 8};  // decimals enough for every float of 1/512 or more to come back the same

// Unlike printf, heeds no locale.
std::string fixed(double value, int decimals) {
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed, decimals).ptr;
    return {text, end};
}

std::string colorText(uint32_t color) {
    char text[16];
    snprintf(text, sizeof text, "0x%06X", color);
    return text;
}

std::string element(std::string_view name, std::string_view content) {
    std::string text("<");
    return text.append(name).append(">").append(content).append("</").append(name).append(">");
}

std::string block(std::string_view name, const std::string& lines) {
    return "    " + element(name, "\n" + lines + "    ") + "\n";
}

std::string line(const std::string& content) {
    return "        " + content + "\n";
}

template <typename Values>
std::string valueLines(const Values& values, const Layout& layout) {
    std::string lines;
    std::string content;
    size_t count = 0;
    for (const double value : values) {
        content += element("v", fixed(value, layout.decimals));
        if (++count % layout.perLine != 0) continue;
        lines += line(content);
        content.clear();
    }
    return lines;
}

// As floats, for that is what the table's readers keep.
std::string gammaLines(const GammaShape& shape) {
    std::vector<float> table(kTableEntries);
    for (size_t i = 0; i < kTableEntries; ++i) {
        table[i] = static_cast<float>(gammaValue(shape, static_cast<double>(i) / kTableEntries));
    }
    return valueLines(table, kTableLayout);
}

std::string eyeCareLines(const Calibration& calibration) {
    std::string lines = line(element("MaxCCT", std::to_string(calibration.eyeCareMaxCct))) +
                        line(element("MinCCT", std::to_string(calibration.eyeCareMinCct)));
    for (const Cubic& cubic : calibration.eyeCare) lines += valueLines(cubic, kCubicLayout);
    return lines;
}

}  // namespace

double gammaValue(const GammaShape& shape, double x) {
    const double usual = std::pow(x, 1 / 2.2);
    const double bent = usual + shape.bend * std::sin(2 * kPi * usual);
    return bent * (1 + shape.toe * std::exp(-bent / kToeReach));
}

std::string calibrationXml(const Calibration& calibration) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--\n";
    text.append(calibration.about).append(kBlocksExplained).append("-->\n<DisplayCalibration>\n");
    text += block("CTM_WPC", valueLines(calibration.whitePoint, kMatrixLayout));
    text += block("CTM_CCM", valueLines(calibration.colorCorrection, kMatrixLayout));
    text += block("Gamma_Calib", gammaLines(calibration.gamma));
    if (calibration.tunedGamma) text += block("Gamma_Tuning", gammaLines(*calibration.tunedGamma));
    text += block("UnlimitedCT", line(element("Warm", colorText(calibration.warm))) +
                                     line(element("Cold", colorText(calibration.cold))));
    text += block("EyeCare", eyeCareLines(calibration));
    text += block("WPCParam", valueLines(calibration.primaries, kMatrixLayout));
    return text + "</DisplayCalibration>\n";
}

}  // namespace simulator
