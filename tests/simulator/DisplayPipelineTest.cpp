// SPDX-License-Identifier: Apache-2.0
// What a display shows of a picture.
#include "tools/picture/DisplayPipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace simulator {
namespace {

// Tables that change nothing, so that only what a test sets has an effect.
DisplayState plainDisplay() {
    DisplayState state;
    for (size_t i = 0; i < state.gamma.entries.size(); ++i) {
        state.gamma.entries[i] = state.deGamma.entries[i] = static_cast<float>(i) / 4096;
    }
    return state;
}

// Every grey from black to white.
Picture greys() {
    Picture picture{256, 1, {}};
    for (int code = 0; code < 256; ++code) picture.pixels.insert(picture.pixels.end(), 3, static_cast<uint8_t>(code));
    return picture;
}

float clamped(float value) {
    return value > 0 ? std::min(value, 1.0F) : 0;
}

// Between two of the values at 0, 1, 2 and so on.
template <typename Values>
float between(const Values& values, size_t last, float position) {
    const auto below = static_cast<size_t>(position);
    if (below >= last) return static_cast<float>(values[last]);
    const auto low = static_cast<float>(values[below]);
    return low + (static_cast<float>(values[below + 1]) - low) * (position - static_cast<float>(below));
}

// One channel of one pixel, step by step, on a display whose matrices are a gain.
uint8_t shownStepByStep(uint8_t code, const DisplayState& state) {
    const float decoded = between(state.deGamma.entries, 4095, static_cast<float>(code) / 255 * 4096);
    const float level = clamped(state.last.elements[0] * decoded);
    const float coded = clamped(between(state.gamma.entries, 4095, level * 4096));
    const auto& curve = state.toneCurve;
    const float shown = curve.empty() ? coded : between(curve, curve.size() - 1, coded * 255) / 4095;
    return static_cast<uint8_t>(std::lround(clamped(shown) * 255));
}

TEST(DisplayPipeline, ANewDisplayDecodesAndEncodesToTheSamePictureAboveTheDarkestSteps) {
    const ShownPicture shown = showPicture(greys(), DisplayState());
    for (size_t code = 0; code < 256; ++code) {
        // The first entry of a gamma table lies at code 5.8, and the way there is straight.
        EXPECT_NEAR(shown.picture.pixels[3 * code], static_cast<int>(code), code < 8 ? 3 : 0) << code;
    }
}

TEST(DisplayPipeline, TheFirstMatrixWorksBeforeTheLast) {
    DisplayState state = plainDisplay();
    state.first.elements = std::array<float, 9>{0, 1, 0, 0, 0, 1, 1, 0, 0}.data();  // red from green, and so on
    state.last.elements = std::array<float, 9>{.5F, 0, 0, 0, 1, 0, 0, 0, 1}.data();
    const ShownPicture shown = showPicture({1, 1, {10, 200, 30}}, state);
    EXPECT_EQ(shown.picture.pixels, (Bytes{100, 30, 10}));
}

TEST(DisplayPipeline, WhatLeavesTheRangeIsClampedAndCountedOncePerPixel) {
    DisplayState state = plainDisplay();
    state.last.elements = std::array<float, 9>{2, 0, 0, 0, -1, 0, 0, 0, 1}.data();
    const ShownPicture shown = showPicture({3, 1, {200, 0, 9, 100, 0, 9, 0, 100, 9}}, state);
    EXPECT_EQ(shown.picture.pixels, (Bytes{255, 0, 9, 200, 0, 9, 0, 0, 9}));
    EXPECT_EQ(shown.clippedPixels, 2U);

    state.last.elements[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(showPicture({1, 1, {200, 0, 9}}, state).picture.pixels[0], 0);
    EXPECT_EQ(showPicture({1, 1, {200, 0, 9}}, state).clippedPixels, 1U);
}

// Tables and curves of every kind, at many levels: what is looked up has to be what would be computed.
TEST(DisplayPipeline, EveryCodeIsTheOneThatTheStepsGive) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> anything(-0.2F, 1.2F);
    DisplayState falling;
    DisplayState wild;
    DisplayState notFinite;
    DisplayState steep;
    for (size_t i = 0; i < 4096; ++i) {
        falling.gamma.entries[i] = 1 - static_cast<float>(i) / 4096;
        wild.gamma.entries[i] = anything(random);
        notFinite.gamma.entries[i] = i < 1000 ? std::numeric_limits<float>::quiet_NaN() : HUGE_VALF;
        steep.gamma.entries[i] = i < 2000 ? 0 : 1;
    }
    DisplayState fallingCurve;
    DisplayState risingCurve;
    for (int64_t i = 0; i < 256; ++i) {
        fallingCurve.toneCurve.push_back(4095 - 16 * i);
        risingCurve.toneCurve.push_back(std::min<int64_t>(4095, 24 * i));
    }
    for (DisplayState* const state : {&falling, &wild, &notFinite, &steep, &fallingCurve, &risingCurve}) {
        for (const float gain : {0.1F, 0.37F, 0.999F, 1.0F, 1.7F, -1.0F, 50.0F}) {
            state->last.elements = std::array<float, 9>{gain, 0, 0, 0, gain, 0, 0, 0, gain};
            Bytes expected;
            for (const uint8_t code : greys().pixels) expected.push_back(shownStepByStep(code, *state));
            EXPECT_EQ(showPicture(greys(), *state).picture.pixels, expected) << gain;
        }
    }
}

TEST(DisplayPipeline, ThreadsShareThePictureOut) {
    DisplayState state = plainDisplay();
    state.last.elements = std::array<float, 9>{2, 0, 0, 0, 1, 0, 0, 0, 1};
    const ShownPicture alone = showPicture(greys(), state, 1);
    for (const size_t threads : {0U, 2U, 7U, 300U}) {
        const ShownPicture shared = showPicture(greys(), state, threads);
        EXPECT_EQ(shared.picture.pixels, alone.picture.pixels) << threads;
        EXPECT_EQ(shared.clipped, alone.clipped) << threads;
        EXPECT_EQ(shared.clippedPixels, 128U) << threads;
    }
}

}  // namespace
}  // namespace simulator
