// SPDX-License-Identifier: Apache-2.0
// The test chart.
#pragma once

#include "tools/picture/Picture.h"

namespace simulator {

// Draws the test chart, 960 x 640. From the top: 24 colour patches with the primaries and their complements beside
// them; skin tones from light to dark; the grey scale in 16 even steps; single steps near black (0 to 24) and near
// white (231 to 255); gradients from black to white, red, green and blue. The same bytes on every machine.
Picture drawChart();

}  // namespace simulator
