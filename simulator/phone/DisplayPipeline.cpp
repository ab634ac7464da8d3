#include "simulator/phone/DisplayPipeline.h"

#include <array>
#include <cmath>

namespace simulator {

namespace {

constexpr size_t kCodes = 256;
constexpr float kMaxCode = 255.0F;
constexpr float kClipTolerance = 1.0F / 8192;

using Matrix = std::array<float, 9>;
using Color = std::array<float, 3>;

// Also takes what is no number, to 0.
float clamp01(float value) {
    if (!(value > 0.0F)) return 0.0F;
    return value < 1.0F ? value : 1.0F;
}

// entries[0..last] belong to the positions 0 to last; position is not negative.
template <typename T>
float interpolate(const T* entries, size_t last, float position) {
    const auto below = static_cast<size_t>(position);
    if (below >= last) return static_cast<float>(entries[last]);
    const auto low = static_cast<float>(entries[below]);
    const auto high = static_cast<float>(entries[below + 1]);
    return low + (high - low) * (position - static_cast<float>(below));
}

float readTable(const composer_ext::GammaLut& table, float level) {
    constexpr size_t kSize = std::decay_t<decltype(table.entries)>::size();
    return interpolate(table.entries.data(), kSize - 1, level * static_cast<float>(kSize));
}

float readToneCurve(const std::vector<int64_t>& curve, float level) {
    if (curve.empty()) return level;
    const float output = interpolate(curve.data(), curve.size() - 1, level * static_cast<float>(curve.size() - 1));
    return output / static_cast<float>(DisplayState::kToneCurveMax);
}

// Both matrices in one: first works before last.
Matrix combine(const composer_ext::ColorTransformMatrix& first, const composer_ext::ColorTransformMatrix& last) {
    Matrix product{};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            for (size_t k = 0; k < 3; ++k) {
                product[3 * row + column] += last.elements[3 * row + k] * first.elements[3 * k + column];
            }
        }
    }
    return product;
}

Color apply(const Matrix& m, const Color& in) {
    return {m[0] * in[0] + m[1] * in[1] + m[2] * in[2], m[3] * in[0] + m[4] * in[1] + m[5] * in[2],
            m[6] * in[0] + m[7] * in[1] + m[8] * in[2]};
}

bool isClipped(float value) {
    return !(value >= -kClipTolerance && value <= 1.0F + kClipTolerance);
}

uint8_t toCode(float level) {
    return static_cast<uint8_t>(std::lround(clamp01(level) * kMaxCode));
}

}  // namespace

ShownPicture showPicture(const Picture& input, const DisplayState& state) {
    std::array<float, kCodes> decoded{};
    for (size_t code = 0; code < kCodes; ++code) {
        decoded[code] = readTable(state.deGamma, static_cast<float>(code) / kMaxCode);
    }
    const Matrix matrix = combine(state.first, state.last);

    ShownPicture shown{input, 0, std::vector<bool>(input.pixels.size() / 3)};
    auto& pixels = shown.picture.pixels;
    for (size_t i = 0; i + 2 < pixels.size(); i += 3) {
        const Color out = apply(matrix, {decoded[pixels[i]], decoded[pixels[i + 1]], decoded[pixels[i + 2]]});
        shown.clipped[i / 3] = isClipped(out[0]) || isClipped(out[1]) || isClipped(out[2]);
        if (shown.clipped[i / 3]) ++shown.clippedPixels;
        for (size_t channel = 0; channel < 3; ++channel) {
            const float coded = clamp01(readTable(state.gamma, clamp01(out[channel])));
            pixels[i + channel] = toCode(readToneCurve(state.toneCurve, coded));
        }
    }
    return shown;
}

}  // namespace simulator
