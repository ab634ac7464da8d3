// SPDX-License-Identifier: Apache-2.0
// Pictures in memory, and the PNG files that they come from and go to.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace simulator {

// Memory that is left as it is until somebody writes it: several threads can then share the system's work for its first
// use, which takes a quarter of the time of showing a picture.
template <typename T>
struct UntouchedMemory : std::allocator<T> {
    template <typename Other>
    struct rebind {
        using other = UntouchedMemory<Other>;
    };
    template <typename Element>
    void construct(Element* place) noexcept {
        ::new (static_cast<void*>(place)) Element;
    }
    template <typename Element, typename... Arguments>
    void construct(Element* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) Element(std::forward<Arguments>(arguments)...);
    }
};
using Bytes = std::vector<uint8_t, UntouchedMemory<uint8_t>>;  // of no value when only a size is given

// 8-bit RGB, coded as sRGB.
struct Picture {
    uint32_t width = 0;   // pixels
    uint32_t height = 0;  // pixels
    Bytes pixels;         // 3 * width * height bytes: rows from the top, R G B from the left
};

// What loadPng accepts at most; a larger file is refused before memory is taken for it.
constexpr uint64_t kMaxPicturePixels = 100'000'000;

// Reads any PNG as 8-bit RGB: grey and palette are expanded, 16 bits rounded to 8, transparency laid over black.
// Samples are taken for sRGB unless the file states another gamma; 8-bit RGB then comes through unchanged. Where a
// gamma is converted or pixels are partly transparent, gamma 2.2 represents sRGB's curve.
// Throws std::runtime_error, "FILE: what is wrong; what was expected".
Picture loadPng(const std::filesystem::path& file);

// Writes the picture as an 8-bit RGB PNG that loadPng reads back exactly; replaces the file if it exists.
// Throws std::runtime_error as loadPng does, also for a picture whose pixels do not fit its size. No half-written file
// is left behind.
void savePng(const Picture& picture, const std::filesystem::path& file);

// The bytes that savePng writes, for a picture whose pixels fit its size and are not none. Throws std::runtime_error.
std::vector<uint8_t> encodePng(const Picture& picture);

}  // namespace simulator
