// SPDX-License-Identifier: Apache-2.0
// What a display shows of a picture.
#pragma once

#include <vector>

#include "simulator/Colorimetry.h"
#include "simulator/Composer.h"
#include "tools/picture/Picture.h"

namespace simulator {

struct ShownPicture {
    Picture picture;
    uint64_t clippedPixels = 0;  // pixels with a channel that left the matrices below 0 or above 1
    Bytes clipped;               // for each pixel, 1 if it is one of them, otherwise 0
};

// Pushes a picture through what the composer holds for a display: each coded value through the de-gamma table, the
// three through the first matrix and then the last, clamped to 0 to 1, through the gamma table and, while there is one,
// the tone curve. Tables are read at level * 4096 between two entries by linear interpolation; beyond the last entry it
// holds. A channel counts as clipped when it is out of range by more than half a table step, 1 / 8192; NaN is
// taken as 0 and counts.
// threads share the picture; 0: one for each core of the machine.
ShownPicture showPicture(const Picture& input, const DisplayState& state, size_t threads = 0);

// The levels of red, green and blue, 0 to 1, that drive the panel for one coded colour, 0 to 1 as well: the same steps
// in double precision, not rounded to codes.
Vec3 driveLevels(const DisplayState& state, const Vec3& color);

}  // namespace simulator
