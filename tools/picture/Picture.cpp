// SPDX-License-Identifier: Apache-2.0
#include "tools/picture/Picture.h"

#include <png.h>

#include <stdexcept>
#include <string>

namespace simulator {

namespace {

constexpr size_t kChannels = 3;

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& wrong, const std::string& expected) {
    throw std::runtime_error(file.string() + ": " + wrong + "; expected " + expected);
}

// libpng's record of one picture being read or written; frees what libpng attached to it.
class PngImage {
public:
    PngImage() { record.version = PNG_IMAGE_VERSION; }
    explicit PngImage(const Picture& picture) : PngImage() {
        record.width = picture.width;
        record.height = picture.height;
        record.format = PNG_FORMAT_RGB;
    }
    ~PngImage() { png_image_free(&record); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;

    // Why libpng refused.
    std::string reason() const { return record.message; }

    png_image record{};
};

std::string sizeText(uint32_t width, uint32_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

Picture loadPng(const std::filesystem::path& file) {
    constexpr const char* kExpected = "a PNG picture that can be read";
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) fail(file, "is a folder", kExpected);

    PngImage image;
    if (png_image_begin_read_from_file(&image.record, file.c_str()) == 0) fail(file, image.reason(), kExpected);
    const uint64_t pixelCount = uint64_t{image.record.width} * image.record.height;
    if (pixelCount > kMaxPicturePixels) {
        fail(file, "the picture has " + sizeText(image.record.width, image.record.height) + " pixels",
             std::to_string(kMaxPicturePixels) + " pixels at most");
    }

    image.record.format = PNG_FORMAT_RGB;
    image.record.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;  // else 16-bit samples without a stated gamma count as linear
    Picture picture{image.record.width, image.record.height, Bytes(kChannels * pixelCount)};
    const png_color black{};
    const int read = png_image_finish_read(&image.record, &black, picture.pixels.data(), /*row_stride=*/0, nullptr);
    if (read == 0) fail(file, image.reason(), kExpected);
    return picture;
}

void savePng(const Picture& picture, const std::filesystem::path& file) {
    const size_t expectedBytes = kChannels * picture.width * picture.height;
    if (expectedBytes == 0 || picture.pixels.size() != expectedBytes) {
        fail(file, "the picture holds " + std::to_string(picture.pixels.size()) + " bytes",
             "3 for each of " + sizeText(picture.width, picture.height) + " pixels, and at least one pixel");
    }

    PngImage image(picture);
    const int written = png_image_write_to_file(&image.record, file.c_str(), /*convert_to_8bit=*/0,
                                                picture.pixels.data(), /*row_stride=*/0, nullptr);
    if (written == 0) fail(file, image.reason(), "a file that can be written");
}

std::vector<uint8_t> encodePng(const Picture& picture) {
    PngImage image(picture);
    std::vector<uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image.record));
    png_alloc_size_t size = bytes.size();
    const int written =
        png_image_write_to_memory(&image.record, bytes.data(), &size, /*convert_to_8bit=*/0, picture.pixels.data(),
                                  /*row_stride=*/0, nullptr);
    if (written == 0) throw std::runtime_error("a picture could not be coded: " + image.reason());
    bytes.resize(size);
    return bytes;
}

}  // namespace simulator
