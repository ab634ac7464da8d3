// What the library makes of a calibration, for people and for programs.
#pragma once

#include <string>

#include "tools/check/Check.h"
#include "tools/json/Json.h"

namespace simulator {

// Each block's name, line, values, what they come to and what is done with them, and the gamma table that is sent.
Json summaryOf(const CheckedCalibration& checked);

Json toJson(const Finding& finding);

// A line a block, as summaryOf gives it, each indented by two; just one line when there are none.
std::string textOf(const Json& summary);

}  // namespace simulator
