// SPDX-License-Identifier: Apache-2.0
#include "tools/picture/DisplayPipeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <future>
#include <limits>
#include <thread>

namespace simulator {

namespace {

constexpr size_t kCodes = 256;
constexpr float kMaxCode = 255.0F;
constexpr size_t kSteps = 4096;  // a table's entries
constexpr float kClipTolerance = 1.0F / 8192;

// NaN gives 0.
template <typename Real>
Real notBelow0(Real value) {
    return value > 0 ? value : 0;
}

template <typename Real>
Real notAbove1(Real value) {
    return value < 1 ? value : 1;
}

template <typename Real>
Real clamp01(Real value) {
    return notAbove1(notBelow0(value));
}

// entries[0..last] belong to the positions 0 to last; position is not negative.
template <typename Real, typename T>
Real interpolate(const T* entries, size_t last, Real position) {
    const auto below = static_cast<size_t>(position);
    if (below >= last) return static_cast<Real>(entries[last]);
    const auto low = static_cast<Real>(entries[below]);
    const auto high = static_cast<Real>(entries[below + 1]);
    return low + (high - low) * (position - static_cast<Real>(below));
}

template <typename Real>
Real readTable(const composer_ext::GammaLut& table, Real level) {
    constexpr size_t kSize = std::decay_t<decltype(table.entries)>::size();
    return interpolate(table.entries.data(), kSize - 1, level * static_cast<Real>(kSize));
}

template <typename Real>
Real readToneCurve(const std::vector<int64_t>& curve, Real level) {
    if (curve.empty()) return level;
    const Real output = interpolate(curve.data(), curve.size() - 1, level * static_cast<Real>(curve.size() - 1));
    return output / static_cast<Real>(DisplayState::kToneCurveMax);
}

// Both matrices in one, by rows: first works before last.
template <typename Real>
std::array<Real, 9> combine(const composer_ext::ColorTransformMatrix& first,
                            const composer_ext::ColorTransformMatrix& last) {
    std::array<Real, 9> product{};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            for (size_t k = 0; k < 3; ++k) {
                product[3 * row + column] +=
                    static_cast<Real>(last.elements[3 * row + k]) * static_cast<Real>(first.elements[3 * k + column]);
            }
        }
    }
    return product;
}

// The output for a level that leaves the matrices.
template <typename Real>
Real encode(const DisplayState& state, Real level) {
    const Real coded = clamp01(readTable(state.gamma, clamp01(level)));
    return clamp01(readToneCurve(state.toneCurve, coded));
}

bool isClipped(float value) {
    return !(value >= -kClipTolerance) | !(value <= 1.0F + kClipTolerance);
}

uint8_t codeOf(const DisplayState& state, float level) {
    return static_cast<uint8_t>(std::lround(encode(state, level) * kMaxCode));
}

float levelOfStep(size_t step) {
    return static_cast<float>(step) / static_cast<float>(kSteps);
}

// codeOf as a table, for gamma tables and tone curves that never fall, as nearly all are: code k begins at one level.
class CodeTable {
public:
    explicit CodeTable(const DisplayState& state) : display(state), usable(neverFalls(state)) {
        if (!usable) return;
        for (size_t code = 0; code < kCodes; ++code) begins[code] = firstLevelOf(code);
        begins[kCodes] = std::numeric_limits<float>::infinity();
        for (size_t step = 0; step <= kSteps; ++step) codeOfStep[step] = codeOf(state, levelOfStep(step));
    }

    // The code of a level from 0 to 1, step being level * kSteps, rounded down.
    uint8_t operator()(float level, int32_t step) const {
        if (!usable) return codeOf(display, level);
        size_t code = codeOfStep[static_cast<size_t>(step)];
        code += level >= begins[code + 1] ? 1 : 0;
        while (level >= begins[code + 1]) ++code;  // in the dark only, where codes are dense
        return static_cast<uint8_t>(code);
    }

private:
    // Whether a higher level never has a lower code. Between two entries of the gamma table each operation, rounded,
    // keeps the order of levels, and so does a rising tone curve of whole numbers that a float holds exactly: it is
    // enough to look at both ends of each step.
    static bool neverFalls(const DisplayState& state) {
        constexpr int64_t kExactInFloat = 1 << 24;
        const auto& curve = state.toneCurve;
        if (!std::is_sorted(curve.begin(), curve.end())) return false;
        if (!curve.empty() && (curve.front() < 0 || curve.back() > kExactInFloat)) return false;
        for (size_t step = 0; step < kSteps; ++step) {
            const uint8_t last = codeOf(state, std::nextafter(levelOfStep(step + 1), 0.0F));
            if (codeOf(state, levelOfStep(step)) > last || last > codeOf(state, levelOfStep(step + 1))) return false;
        }
        return true;
    }

    // The lowest level from 0 to 1 of that code or a higher one, above 1 when there is none. Levels are in the order of
    // their bits.
    float firstLevelOf(size_t code) const {
        uint32_t low = 0;
        uint32_t high = bitsOf(1.0F) + 1;
        while (low < high) {
            const uint32_t middle = low + (high - low) / 2;
            if (codeOf(display, levelOfBits(middle)) >= code) {
                high = middle;
            } else {
                low = middle + 1;
            }
        }
        return levelOfBits(low);
    }

    static uint32_t bitsOf(float level) {
        uint32_t bits = 0;
        memcpy(&bits, &level, sizeof bits);
        return bits;
    }
    static float levelOfBits(uint32_t bits) {
        float level = 0;
        memcpy(&level, &bits, sizeof level);
        return level;
    }

    const DisplayState& display;
    const bool usable;
    std::array<float, kCodes + 1> begins{};        // the lowest level of each code; no level has the last one
    std::array<uint8_t, kSteps + 1> codeOfStep{};  // of the lowest level of each step of the gamma table, and of 1
};

// A display's way from codes to codes.
class Pipeline {
public:
    explicit Pipeline(const DisplayState& state) : codes(state) {
        const std::array<float, 9> matrix = combine<float>(state.first, state.last);
        for (size_t code = 0; code < kCodes; ++code) {
            const float decoded = readTable(state.deGamma, static_cast<float>(code) / kMaxCode);
            for (size_t channel = 0; channel < 3; ++channel) {
                for (size_t row = 0; row < 3; ++row) terms[channel][code][row] = matrix[3 * row + channel] * decoded;
            }
        }
    }

    // Shows the pixels of input; clipped[i] says whether one is clipped. Counts those.
    uint64_t show(const uint8_t* input, uint8_t* pixels, uint8_t* clipped, size_t count) const {
        uint64_t clippedPixels = 0;
        for (size_t begin = 0; begin < count; begin += kBlock) {
            clippedPixels +=
                showBlock(input + 3 * begin, pixels + 3 * begin, clipped + begin, std::min(kBlock, count - begin));
        }
        return clippedPixels;
    }

private:
    static constexpr size_t kBlock = 256;  // pixels
    static constexpr size_t kLanes = 4;    // a pixel's red, green and blue, and a 0 that makes them even

    // One step a loop, so that it is done to several levels at a time.
    uint64_t showBlock(const uint8_t* input, uint8_t* pixels, uint8_t* clipped, size_t count) const {
        const size_t lanes = kLanes * count;
        std::array<float, kLanes * kBlock> levels;
        for (size_t pixel = 0; pixel < count; ++pixel) {
            const auto& red = terms[0][input[3 * pixel]];
            const auto& green = terms[1][input[3 * pixel + 1]];
            const auto& blue = terms[2][input[3 * pixel + 2]];
            for (size_t lane = 0; lane < kLanes; ++lane) {
                levels[kLanes * pixel + lane] = (red[lane] + green[lane]) + blue[lane];
            }
        }

        std::array<int32_t, kLanes * kBlock> outside;
        std::array<int32_t, kLanes * kBlock> steps;
        for (size_t i = 0; i < lanes; ++i) outside[i] = isClipped(levels[i]);
        for (size_t i = 0; i < lanes; ++i) levels[i] = notBelow0(levels[i]);
        for (size_t i = 0; i < lanes; ++i) levels[i] = notAbove1(levels[i]);
        for (size_t i = 0; i < lanes; ++i) steps[i] = static_cast<int32_t>(levels[i] * static_cast<float>(kSteps));

        uint64_t clippedPixels = 0;
        for (size_t pixel = 0; pixel < count; ++pixel) {
            const size_t i = kLanes * pixel;
            clipped[pixel] = static_cast<uint8_t>(outside[i] | outside[i + 1] | outside[i + 2]);
            clippedPixels += clipped[pixel];
            for (size_t lane = 0; lane < 3; ++lane) pixels[3 * pixel + lane] = codes(levels[i + lane], steps[i + lane]);
        }
        return clippedPixels;
    }

    CodeTable codes;
    std::array<std::array<std::array<float, kLanes>, kCodes>, 3> terms{};  // what a channel's code adds to each output
};

}  // namespace

Vec3 driveLevels(const DisplayState& state, const Vec3& color) {
    Vec3 decoded;
    for (size_t i = 0; i < 3; ++i) decoded[i] = readTable(state.deGamma, color[i]);
    Vec3 levels = multiply(combine<double>(state.first, state.last), decoded);
    for (double& level : levels) level = encode(state, level);
    return levels;
}

ShownPicture showPicture(const Picture& input, const DisplayState& state, size_t threads) {
    const Pipeline pipeline(state);
    const size_t pixels = input.pixels.size() / 3;
    ShownPicture shown{{input.width, input.height, Bytes(3 * pixels)}, 0, Bytes(pixels)};
    const auto showPart = [&](size_t begin, size_t end) {
        return pipeline.show(input.pixels.data() + 3 * begin, shown.picture.pixels.data() + 3 * begin,
                             shown.clipped.data() + begin, end - begin);
    };
    const size_t count = threads > 0 ? threads : std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::future<uint64_t>> parts;
    for (size_t part = 0; part < count; ++part) {
        parts.push_back(std::async(showPart, pixels * part / count, pixels * (part + 1) / count));
    }
    for (auto& part : parts) shown.clippedPixels += part.get();
    return shown;
}

}  // namespace simulator
