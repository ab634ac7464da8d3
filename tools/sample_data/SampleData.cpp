// SPDX-License-Identifier: Apache-2.0
#include "tools/sample_data/SampleData.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tools/picture/Chart.h"
#include "tools/picture/Picture.h"
#include "tools/sample_data/CalibrationFile.h"
#include "tools/sample_data/LightTraces.h"
#include "tools/sample_data/SamplePanels.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;

constexpr const char* kChart = "chart.png";
constexpr const char* kCalibrations = "phone/vendor/etc";
constexpr const char* kTraces = "traces";
constexpr const char* kPanelNodes = "phone/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0";

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw std::runtime_error(folder.string() + ": " + error.message() + "; expected a folder to write to");
}

void writeText(const fs::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) throw std::runtime_error(file.string() + ": writing failed; expected a file that can be written");
}

}  // namespace

void writeSampleData(const fs::path& folder) {
    const fs::path calibrations = folder / kCalibrations;
    const fs::path nodes = folder / kPanelNodes;
    makeFolder(calibrations);
    const fs::path traces = folder / kTraces;
    makeFolder(nodes);
    makeFolder(traces);

    savePng(drawChart(), folder / kChart);
    writeText(calibrations / "disp_calib_data_0a.xml", calibrationXml(kPanel0a));
    writeText(calibrations / "disp_calib_data_0b.xml", calibrationXml(kPanel0b));
    writeText(calibrations / "disp_calib_data_default.xml", calibrationXml(kUnknownPanel));
    writeText(nodes / "lcd_panel_name", "dornel R7TK 35 02 0a hd+ video dsi panel\n");
    writeText(nodes / "lcd_cabc_mode", "0\n");
    writeText(nodes / "lcd_whitepoint_info", "x=301,y=317\n");  // this one is bluer than its kind
    for (const NamedLightTrace& trace : sampleLightTraces()) writeText(traces / (trace.name + ".csv"), trace.csv);
}

}  // namespace simulator
