// SPDX-License-Identifier: Apache-2.0
// Checked calibrations as JSON.
#pragma once

#include "tools/check/Summary.h"
#include "tools/json/Json.h"

namespace simulator {

Json toJson(const Summary& summary);
Json toJson(const Finding& finding);
Json toJson(const CheckedFiles& all);

}  // namespace simulator
