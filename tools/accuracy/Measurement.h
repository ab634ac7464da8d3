// SPDX-License-Identifier: Apache-2.0
// Patch lists (.ti1) and measurements (.ti3) in the CGATS text format.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Colorimetry.h"

namespace simulator {

struct Patch {
    std::string id;  // SAMPLE_ID: unique in its file, no quotes
    Vec3 rgb;        // 0 to 1; files hold 0 to 100
};

struct MeasuredPatch : Patch {
    Vec3 xyz;  // in the file's unit, which is usually chosen so that Y = 100 for white
};

struct Measurement {
    std::vector<MeasuredPatch> patches;
    std::optional<double> candelas;  // cd/m2 per unit of Y, if the file states it
    std::string instrument = {};     // or the program, where the file names no instrument; empty if it names none
    std::string date = {};           // as the file states it; empty if it does not
};

// The functions below throw std::runtime_error, "FILE:LINE: what is wrong; what was expected", the line where there is
// one, for a file that is larger than 8 MiB, names another file (.INCLUDE), is rejected by lcms2, repeats a field or a
// SAMPLE_ID, or has a row whose values are not one finite number in range for each field. Each row is on a line of its
// own. Only the first table of a file is read.

// A CTI1 file. XYZ values, which are estimates there, are ignored.
std::vector<Patch> readPatches(const std::filesystem::path& file);

// A CTI3 file from RGB to XYZ.
Measurement readMeasurement(const std::filesystem::path& file);

// A measurement of a panel's native state. Throws also if it lacks white, black or the ramp of a primary (from 0 to 100
// in steps of at most 25), or if white is not brighter than black.
Measurement readPanel(const std::filesystem::path& file);

// The levels of one primary (0 red, 1 green, 2 blue) that are measured with the others at 0: rising, each once.
std::vector<double> rampOf(const std::vector<MeasuredPatch>& patches, size_t primary);

// The mean XYZ of the patches with that RGB; nothing if there is none.
std::optional<Vec3> meanXyz(const std::vector<MeasuredPatch>& patches, const Vec3& rgb);

// The text of a CTI1 file, RGB with 10 decimals.
std::string toTi1(const std::vector<Patch>& patches);

}  // namespace simulator
