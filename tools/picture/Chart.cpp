// SPDX-License-Identifier: Apache-2.0
#include "tools/picture/Chart.h"

#include <cstddef>
#include <iterator>

namespace simulator {

namespace {

using Rgb = uint32_t;  // 0xRRGGBB, coded as sRGB

struct Rect {
    uint32_t left;
    uint32_t top;
    uint32_t width;
    uint32_t height;
};

constexpr uint32_t kWidth = 960;
constexpr uint32_t kHeight = 640;
constexpr Rgb kFrame = 0x1C1C1C;
constexpr Rgb kSurround = 0x5E5E5E;  // halfway between two steps of the grey scale, so that no step vanishes in it
constexpr uint32_t kFrameWidth = 12;
constexpr uint32_t kMargin = 24;
constexpr uint32_t kGap = 12;
constexpr uint32_t kInnerWidth = kWidth - 2 * kMargin;

// Twelve square cells and the gaps between them fill the inner width.
constexpr uint32_t kColumns = 12;
constexpr uint32_t kCell = (kInnerWidth + kGap) / kColumns - kGap;
constexpr uint32_t kPitch = kCell + kGap;
static_assert(kColumns * kPitch - kGap == kInnerWidth);

constexpr uint32_t kPatchColumns = 8;
constexpr Rgb kPatches[][kPatchColumns] = {
    // light tints, eight hues at equal distances
    {0xFDC3C4, 0xF1CAAD, 0xD3D4AA, 0xB0DCBF, 0x9ADDDF, 0xA6D8F6, 0xCCCFF8, 0xF0C5E3},
    // the same hues, full
    {0xE67C82, 0xCE8D54, 0x99A14F, 0x50AD79, 0x1AAEB4, 0x26A6DD, 0x8A96E5, 0xD180BD},
    // what the eye knows by heart: brick, clay, straw, leaf, pine, sea, denim, plum
    {0x9C4238, 0xB4703C, 0xC9A74E, 0x6F8B3A, 0x2F5D46, 0x1F6C83, 0x3C4F86, 0x6B3A63},
};

// Primaries, each beside its complement.
constexpr uint32_t kPrimaryColumns = 2;
constexpr Rgb kPrimaries[][kPrimaryColumns] = {
    {0xFF0000, 0x00FFFF},
    {0x00FF00, 0xFF00FF},
    {0x0000FF, 0xFFFF00},
};

constexpr Rgb kSkinTones[kColumns] = {0xF7E2D4, 0xF2D1BC, 0xEAC1A3, 0xDFAE8B, 0xD19B75, 0xBF8660,
                                      0xAA714D, 0x935D3E, 0x7A4A31, 0x623A28, 0x4A2C20, 0x352019};

constexpr Rgb kGradients[] = {0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF};  // each from black to this

constexpr uint32_t kGreySteps = 16;
constexpr uint32_t kGreyStep = 255 / (kGreySteps - 1);
constexpr uint32_t kFineSteps = 25;
constexpr uint32_t kFineWidth = (kInnerWidth - kGap) / 2 / kFineSteps;
constexpr uint32_t kGreyHeight = 60;
constexpr uint32_t kFineHeight = 48;
constexpr uint32_t kGradientHeight = 35;
constexpr uint32_t kGradientGap = 4;

static_assert(kInnerWidth % kGreySteps == 0 && kFineWidth * kFineSteps * 2 + kGap == kInnerWidth);
static_assert(kMargin + (std::size(kPatches) + 1) * kPitch + kGreyHeight + kGap + kFineHeight + kGap +
                  std::size(kGradients) * (kGradientHeight + kGradientGap) - kGradientGap + kMargin ==
              kHeight);

constexpr Rgb grey(uint32_t value) {
    return value * 0x010101;
}

void fill(Picture& picture, const Rect& rect, Rgb color) {
    for (uint32_t y = rect.top; y < rect.top + rect.height; ++y) {
        for (uint32_t x = rect.left; x < rect.left + rect.width; ++x) {
            uint8_t* const pixel = &picture.pixels[3 * (size_t{y} * picture.width + x)];
            pixel[0] = static_cast<uint8_t>(color >> 16);
            pixel[1] = static_cast<uint8_t>(color >> 8);
            pixel[2] = static_cast<uint8_t>(color);
        }
    }
}

// The cell at that column and row, as wide as that many columns.
Rect cell(uint32_t column, uint32_t row, uint32_t columns = 1) {
    return {kMargin + column * kPitch, kMargin + row * kPitch, columns * kPitch - kGap, kCell};
}

void drawPatches(Picture& picture) {
    uint32_t row = 0;
    for (const auto& colors : kPatches) {
        for (uint32_t column = 0; column < kPatchColumns; ++column) fill(picture, cell(column, row), colors[column]);
        ++row;
    }
}

void drawPrimaries(Picture& picture) {
    constexpr uint32_t kSpan = (kColumns - kPatchColumns) / kPrimaryColumns;
    uint32_t row = 0;
    for (const auto& colors : kPrimaries) {
        for (uint32_t i = 0; i < kPrimaryColumns; ++i) {
            fill(picture, cell(kPatchColumns + i * kSpan, row, kSpan), colors[i]);
        }
        ++row;
    }
}

void drawSkinTones(Picture& picture, uint32_t row) {
    for (uint32_t column = 0; column < kColumns; ++column) fill(picture, cell(column, row), kSkinTones[column]);
}

// A staircase of greys from first upward, its steps side by side from rect's left edge; rect is the first step.
void drawSteps(Picture& picture, Rect rect, uint32_t count, uint32_t first, uint32_t step) {
    for (uint32_t i = 0; i < count; ++i) {
        fill(picture, rect, grey(first + i * step));
        rect.left += rect.width;
    }
}

// That fraction of each channel, rounded to the nearest.
Rgb scaled(Rgb full, uint32_t numerator, uint32_t denominator) {
    Rgb result = 0;
    for (const uint32_t shift : {16U, 8U, 0U}) {
        const uint32_t channel = full >> shift & 0xFFU;
        result |= (channel * numerator + denominator / 2) / denominator << shift;
    }
    return result;
}

void drawGradient(Picture& picture, uint32_t top, Rgb full) {
    for (uint32_t x = 0; x < kInnerWidth; ++x) {
        fill(picture, {kMargin + x, top, 1, kGradientHeight}, scaled(full, x, kInnerWidth - 1));
    }
}

}  // namespace

Picture drawChart() {
    Picture picture{kWidth, kHeight, Bytes(size_t{3} * kWidth * kHeight, 0)};
    fill(picture, {0, 0, kWidth, kHeight}, kFrame);
    fill(picture, {kFrameWidth, kFrameWidth, kWidth - 2 * kFrameWidth, kHeight - 2 * kFrameWidth}, kSurround);

    drawPatches(picture);
    drawPrimaries(picture);
    const auto skinRow = static_cast<uint32_t>(std::size(kPatches));
    drawSkinTones(picture, skinRow);

    uint32_t top = cell(0, skinRow + 1).top;
    drawSteps(picture, {kMargin, top, kInnerWidth / kGreySteps, kGreyHeight}, kGreySteps, 0, kGreyStep);
    top += kGreyHeight + kGap;
    drawSteps(picture, {kMargin, top, kFineWidth, kFineHeight}, kFineSteps, 0, 1);
    const uint32_t whiteLeft = kWidth - kMargin - kFineSteps * kFineWidth;
    drawSteps(picture, {whiteLeft, top, kFineWidth, kFineHeight}, kFineSteps, 256 - kFineSteps, 1);
    top += kFineHeight + kGap;
    for (const Rgb full : kGradients) {
        drawGradient(picture, top, full);
        top += kGradientHeight + kGradientGap;
    }
    return picture;
}

}  // namespace simulator
