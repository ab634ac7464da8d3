// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/CalibrationFile.h"

#include <cmath>
#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "tools/check/Document.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr double kMatrixUnit = 1e-6;
constexpr double kTableUnit = 1e-7;
constexpr size_t kPerMatrixLine = 3;
constexpr size_t kPerCubicLine = 4;
constexpr size_t kPerTableLine = 8;

struct ExplainedBlock {
    bool ConfigXmlParser::*isComplete;
    std::string_view lines;
};
constexpr ExplainedBlock kExplained[] = {
    {&ConfigXmlParser::hasCtmWpc,
     "    CTM_WPC       3x3 by rows on linear RGB: brings the panel's white to the target's\n"},
    {&ConfigXmlParser::hasCtmCcm,
     "    CTM_CCM       3x3 by rows on linear RGB, applied before CTM_WPC: the target's colours on the panel's "
     "primaries\n"},
    {&ConfigXmlParser::hasGammaCalib, "    Gamma_Calib   4096 outputs; value i is for the input i / 4096\n"},
};
constexpr std::string_view kSimulatedExplained = R"(    As the simulated libraries read them:
    UnlimitedCT   white at the warm and at the cold end of the colour temperature control, RRGGBB
    EyeCare       range in kelvin, then the eye-care matrix by rows: for each element the cubic
                  c0 + c1 t + c2 t^2 + c3 t^3, t = 0 at MaxCCT to 1 at MinCCT
    WPCParam      CIE 1931 x of red, green, blue; y of red, green, blue; three reserved
)";

std::string colorText(int32_t color) {
    char text[16];
    snprintf(text, sizeof text, "0x%06X", static_cast<uint32_t>(color));
    return text;
}

std::string element(std::string_view name, std::string_view content) {
    std::string text("<");
    return text.append(name).append(">").append(content).append("</").append(name).append(">");
}

std::string line(const std::string& content) {
    return "        " + content + "\n";
}

template <typename Real>
std::string valueLines(const Real* values, size_t count, size_t perLine) {
    std::string lines;
    std::string content;
    for (size_t i = 0; i < count; ++i) {
        content += element("v", shortest(values[i]));
        if ((i + 1) % perLine != 0) continue;
        lines += line(content);
        content.clear();
    }
    return lines;
}

std::string linesOf(const CalibrationBlock& block, const ConfigXmlParser& record) {
    if (block.isComplete == &ConfigXmlParser::hasUnlimitedCT)
        return line(element("Warm", colorText(record.unlimitedWarm))) +
               line(element("Cold", colorText(record.unlimitedCold)));
    if (block.isComplete == &ConfigXmlParser::hasEyeCare)
        return line(element("MaxCCT", shortest(record.eyeCareMaxCCT))) +
               line(element("MinCCT", shortest(record.eyeCareMinCCT))) +
               valueLines(record.eyeCareCoeffs, std::size(record.eyeCareCoeffs), kPerCubicLine);
    const size_t perLine = block.elements == ConfigXmlParser::kTable ? kPerTableLine : kPerMatrixLine;
    return valueLines(floatsOf(block, record), block.elements, perLine);
}

// A comment must not contain two hyphens in a row.
std::string forComment(const std::string& text) {
    std::string result;
    for (const char c : harmless(text)) result += c == '-' && !result.empty() && result.back() == '-' ? '_' : c;
    return result;
}

template <typename Values>
void copyValues(const Values& from, Values& to) {
    std::copy(std::begin(from), std::end(from), std::begin(to));
}

}  // namespace

double rounded(double value, double unit) {
    return std::round(value / unit) / std::round(1 / unit) + 0.0;  // no -0
}

std::unique_ptr<ConfigXmlParser> readCalibrationFile(const std::filesystem::path& file) {
    requireFile(file, "a calibration file");
    auto record = std::make_unique<ConfigXmlParser>();
    if (readDocument(file, *record).refusal != Refusal::NONE)
        throw std::runtime_error(file.string() + ": the library refuses it; expected a calibration file (dcsim check)");
    return record;
}

void setCalibration(const PanelCalibration& calibration, ConfigXmlParser& record) {
    for (size_t i = 0; i < ConfigXmlParser::kMatrix; ++i) {
        record.ctmWpc[i] = i % 4 == 0 ? static_cast<float>(rounded(calibration.gains[i / 4], kMatrixUnit)) : 0;
        record.ctmCcm[i] = static_cast<float>(rounded(calibration.colorCorrection[i], kMatrixUnit));
    }
    for (size_t i = 0; i < ConfigXmlParser::kTable; ++i)
        record.gammaCalib[i] = static_cast<float>(rounded(calibration.gamma[i], kTableUnit));
    record.hasCtmWpc = record.hasCtmCcm = record.hasGammaCalib = true;
}

void copyLibraryBlocks(const ConfigXmlParser& from, ConfigXmlParser& record) {
    record.unlimitedWarm = from.unlimitedWarm;
    record.unlimitedCold = from.unlimitedCold;
    record.hasUnlimitedCT = from.hasUnlimitedCT;
    record.eyeCareMaxCCT = from.eyeCareMaxCCT;
    record.eyeCareMinCCT = from.eyeCareMinCCT;
    copyValues(from.eyeCareCoeffs, record.eyeCareCoeffs);
    record.hasEyeCare = from.hasEyeCare;
    copyValues(from.wpcParam, record.wpcParam);
    record.hasWpcParam = from.hasWpcParam;
}

std::string calibrationXml(const ConfigXmlParser& record, const std::string& about, bool isForSimulated) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--\n";
    text.append(forComment(about)).append("\n");
    for (const ExplainedBlock& block : kExplained) {
        if (record.*block.isComplete) text.append(block.lines);
    }
    if (isForSimulated) text.append(kSimulatedExplained);
    text += "-->\n<DisplayCalibration>\n";
    for (const CalibrationBlock& block : kCalibrationBlocks) {
        if (record.*block.isComplete)
            text += "    " + element(block.name, "\n" + linesOf(block, record) + "    ") + "\n";
    }
    return text + "</DisplayCalibration>\n";
}

}  // namespace simulator
