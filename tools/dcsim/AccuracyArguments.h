// SPDX-License-Identifier: Apache-2.0
// What the commands about measured panels have in common on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "tools/accuracy/ServiceStates.h"
#include "tools/accuracy/Shown.h"
#include "tools/accuracy/Target.h"

namespace dcsim {

// An option that takes X,Y.
void addChromaticityOption(CLI::App& command, const std::string& name, std::optional<simulator::Chromaticity>& value,
                           const std::string& description);

struct TargetArguments {
    std::string target = "srgb";
    std::optional<simulator::Chromaticity> white;  // D65 if not given
    double gamma = simulator::kTargetExponent;
};

// --target, --white and --gamma.
void addTargetOptions(CLI::App& command, TargetArguments& arguments);

// Throws std::runtime_error for a white outside the target's gamut.
simulator::Target targetOf(const TargetArguments& arguments);

// The patches of a file; the standard list if file is empty. Throws what readPatches throws.
std::vector<simulator::Patch> patchesOf(const std::string& file, const simulator::Target& target);

struct StateArguments {
    std::string script;
    std::string phone;
    std::string calibration;
};

// The script, --phone and --calibration.
void addStateOptions(CLI::App& command, StateArguments& arguments);

// Runs the service. Throws what simulator::statesOf throws.
simulator::ServiceStates statesOf(const StateArguments& arguments);

}  // namespace dcsim
