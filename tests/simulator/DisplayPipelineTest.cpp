// What a display shows of a picture.
#include "simulator/phone/DisplayPipeline.h"

#include <gtest/gtest.h>

#include <limits>

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

TEST(DisplayPipeline, PlainTablesAndIdentityMatricesChangeNothing) {
    const ShownPicture shown = showPicture(greys(), plainDisplay());
    EXPECT_EQ(shown.picture.pixels, greys().pixels);
    EXPECT_EQ(shown.clippedPixels, 0U);
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
    EXPECT_EQ(shown.picture.pixels, (std::vector<uint8_t>{100, 30, 10}));
}

TEST(DisplayPipeline, WhatLeavesTheRangeIsClampedAndCountedOncePerPixel) {
    DisplayState state = plainDisplay();
    state.last.elements = std::array<float, 9>{2, 0, 0, 0, -1, 0, 0, 0, 1}.data();
    const ShownPicture shown = showPicture({3, 1, {200, 0, 9, 100, 0, 9, 0, 100, 9}}, state);
    EXPECT_EQ(shown.picture.pixels, (std::vector<uint8_t>{255, 0, 9, 200, 0, 9, 0, 0, 9}));
    EXPECT_EQ(shown.clippedPixels, 2U);

    state.last.elements[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(showPicture({1, 1, {200, 0, 9}}, state).picture.pixels[0], 0);
    EXPECT_EQ(showPicture({1, 1, {200, 0, 9}}, state).clippedPixels, 1U);
}

TEST(DisplayPipeline, TheToneCurveComesAfterTheGammaTable) {
    DisplayState state = plainDisplay();
    for (size_t i = 0; i < state.gamma.entries.size(); ++i) state.gamma.entries[i] = 100.0F / 255;
    state.toneCurve.assign(DisplayState::kToneCurve, 0);
    state.toneCurve[100] = DisplayState::kToneCurveMax;
    EXPECT_EQ(showPicture({1, 1, {7, 7, 7}}, state).picture.pixels[0], 255);
}

}  // namespace
}  // namespace simulator
