// SPDX-License-Identifier: Apache-2.0
// Replayed light as JSON.
#pragma once

#include <string>

#include "tools/json/Json.h"
#include "tools/light/Replay.h"

namespace simulator {

Json toJson(const Decision& decision);
// timeline is the name of the file with every sample.
Json toJson(const ReplaySummary& summary, const std::string& timeline);

}  // namespace simulator
