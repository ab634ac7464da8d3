// SPDX-License-Identifier: Apache-2.0
#include "tools/picture/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/ErrorOf.h"
#include "tests/TemporaryFolder.h"
#include "tools/picture/Chart.h"

namespace {

namespace fs = std::filesystem;
using simulator::Bytes;
using simulator::loadPng;
using simulator::Picture;
using simulator::savePng;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// What the PNG of a case says of itself.
struct PngHead {
    int colorType = PNG_COLOR_TYPE_RGB;
    int bitDepth = 8;
    uint32_t width = 1;
    uint32_t height = 1;
    double gamma = 0;  // 0: the file states none
};

const Bytes kPalette = {10, 20, 30, 200, 100, 50};

// A PNG as other programs write them: every row the same bytes.
void writePng(const fs::path& file, const PngHead& head, const Bytes& row) {
    FILE* const stream = fopen(file.c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, stream);
    png_set_IHDR(png, info, head.width, head.height, head.bitDepth, head.colorType, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (head.gamma > 0) png_set_gAMA(png, info, head.gamma);
    if (head.colorType == PNG_COLOR_TYPE_PALETTE) {
        const png_color colors[] = {{kPalette[0], kPalette[1], kPalette[2]}, {kPalette[3], kPalette[4], kPalette[5]}};
        png_set_PLTE(png, info, colors, 2);
    }
    png_write_info(png, info);
    for (uint32_t y = 0; y < head.height; ++y) png_write_row(png, row.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    fclose(stream);
}

// Every value of every channel.
Bytes allValues() {
    Bytes bytes(768);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7);
    return bytes;
}

// The same with a fourth, opaque sample in each pixel.
Bytes opaque(const Bytes& rgb) {
    Bytes rgba;
    for (size_t i = 0; i < rgb.size(); i += 3) rgba.insert(rgba.end(), {rgb[i], rgb[i + 1], rgb[i + 2], 255});
    return rgba;
}

class PictureTest : public ::testing::Test {
protected:
    std::string loadError() const {
        return tests::errorOf([this] { loadPng(file); });
    }

    const tests::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    const fs::path file = folder / "picture.png";
};

TEST_F(PictureTest, WhatIsSavedIsLoadedAndTheShippedChartIsTheChart) {
    const Picture chart = simulator::drawChart();
    savePng(chart, file);
    for (const fs::path& each : {file, fs::path(DISPLAY_CONTROL_DATA_DIR "/chart.png")}) {
        EXPECT_EQ(loadPng(each).width, chart.width);
        EXPECT_TRUE(loadPng(each).pixels == chart.pixels) << each;
    }
}

TEST_F(PictureTest, EveryKindOfPngIsReadAsRgb) {
    const struct {
        const char* name;
        PngHead head;
        Bytes row;
        Bytes expected;
    } kCases[] = {
        {"RGB keeps every value", {PNG_COLOR_TYPE_RGB, 8, 256}, allValues(), allValues()},
        {"so it does with the usual gamma", {PNG_COLOR_TYPE_RGB, 8, 256, 1, 0.45455}, allValues(), allValues()},
        {"and with opaque alpha", {PNG_COLOR_TYPE_RGB_ALPHA, 8, 256}, opaque(allValues()), allValues()},
        {"alpha over black", {PNG_COLOR_TYPE_RGB_ALPHA, 8, 2}, {9, 9, 9, 0, 255, 0, 200, 128}, {0, 0, 0, 186, 0, 146}},
        {"grey", {PNG_COLOR_TYPE_GRAY, 8, 3}, {0, 100, 255}, {0, 0, 0, 100, 100, 100, 255, 255, 255}},
        {"one bit", {PNG_COLOR_TYPE_GRAY, 1, 2}, {0x40}, {0, 0, 0, 255, 255, 255}},
        {"palette", {PNG_COLOR_TYPE_PALETTE, 8, 2}, {1, 0}, {200, 100, 50, 10, 20, 30}},
        {"16 bits are rounded", {PNG_COLOR_TYPE_RGB, 16, 1}, {0x12, 0x34, 0x80, 0xFF, 0xFF, 0xFF}, {18, 128, 255}},
        {"linear light is coded", {PNG_COLOR_TYPE_GRAY, 8, 1, 1, 1.0}, {55}, {127, 127, 127}},
    };
    for (const auto& [name, head, row, expected] : kCases) {
        SCOPED_TRACE(name);
        writePng(file, head, row);
        const Picture picture = loadPng(file);
        EXPECT_EQ(picture.width, head.width);
        EXPECT_EQ(picture.height, head.height);
        EXPECT_EQ(picture.pixels, expected);
    }
}

TEST_F(PictureTest, FilesThatAreNoPictureAreNamedWithTheReason) {
    EXPECT_EQ(loadError(), file.string() + ": No such file or directory; expected a PNG picture that can be read");

    fs::create_directory(file);
    EXPECT_EQ(loadError(), file.string() + ": is a folder; expected a PNG picture that can be read");
    fs::remove(file);

    writePng(file, {PNG_COLOR_TYPE_RGB, 8, 256}, allValues());
    fs::resize_file(file, fs::file_size(file) / 2);
    EXPECT_THAT(loadError(), StartsWith(file.string() + ": "));
    EXPECT_THAT(loadError(), HasSubstr("; expected a PNG"));

    fs::resize_file(file, 4);
    fs::resize_file(file, 400);
    EXPECT_THAT(loadError(), HasSubstr("; expected a PNG"));
}

TEST_F(PictureTest, PicturesBeyondTheLimitAreRefused) {
    writePng(file, {PNG_COLOR_TYPE_GRAY, 1, 1000, 100'001}, Bytes(125));
    EXPECT_EQ(loadError(), file.string() + ": the picture has 1000 x 100001 pixels; expected 100000000 pixels at most");
}

}  // namespace
