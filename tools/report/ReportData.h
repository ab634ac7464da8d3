// SPDX-License-Identifier: Apache-2.0
// What a report shows, as data: one function a section, and one that gathers them all.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "simulator/Colorimetry.h"
#include "tools/check/Check.h"
#include "tools/json/Json.h"
#include "tools/light/LightTrace.h"
#include "tools/report/ReportSession.h"

namespace simulator {

struct ReportInput {
    std::optional<std::filesystem::path> script;       // - is standard input; otherwise a short built-in session
    std::optional<std::filesystem::path> calibration;  // otherwise the sample phone's
    std::optional<std::filesystem::path> trace;        // of light; without it there is no timeline
    std::function<void(double)> progress;              // called with the share of the trace that is replayed, 0 to 1
};

struct Report {
    Json data;        // everything that the page shows
    size_t findings;  // in the calibration
};

// Runs the session, and the trace on another phone. Throws std::runtime_error, "WHERE: what is wrong; what was
// expected", for what cannot be read or carried out.
Report gatherReport(const ReportInput& input);

// Number of different levels that a table gives on an output with that many bits: entries are clamped to 0 to 1 (NaN
// to 0) and rounded to the nearest of 2^bits - 1 steps.
size_t uniqueLevels(const std::vector<float>& table, int bits);

// The tables of 4096 entries that the file gives (null for one that it does not), and unique levels at 8, 10 and 12
// bits of these, the identity and 1/2.2.
Json gammaSection(const ConfigXmlParser& record);

// The colours of a panel: from the calibration and the driver, or else what the library takes for any panel.
struct PanelColors {
    PanelColors(const ConfigXmlParser& record, const std::optional<Chromaticity>& driverWhite);

    Primaries primaries;
    Chromaticity white;  // with nothing done to it
    Json assumptions;    // in words, one for each that is not the panel's own
};

// Loci, triangles, the white after each stage of colors, and where white goes over the levels of both colour
// temperatures, beginning from the calibrated white. Whites and sweeps are null where no display can be like the panel.
Json chromaticitySection(const ConfigXmlParser& record, const PanelColors& panel,
                         const std::optional<ColorManager>& colors);

// Each stage's matrix and the white-point, product and final one, with their largest output; null without a display.
Json matricesSection(const std::optional<ColorManager>& colors);

// The decisions and messages that follow from a trace. Of decisions that say the same only the first and last of a run
// are kept: between them nothing happens.
Json lightSection(const LightTrace& trace, const std::function<void(double)>& progress = {});

}  // namespace simulator
