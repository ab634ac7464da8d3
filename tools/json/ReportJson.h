// SPDX-License-Identifier: Apache-2.0
// A report's data as the page reads it.
#pragma once

#include "tools/json/Json.h"
#include "tools/report/ReportData.h"

namespace simulator {

Json toJson(const Report& report);

}  // namespace simulator
