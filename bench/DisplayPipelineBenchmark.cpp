// SPDX-License-Identifier: Apache-2.0
// What a display shows of a picture of 12 megapixels, against a colour management engine with an equal pipeline.
#include <benchmark/benchmark.h>
#include <lcms2.h>

#include <array>
#include <random>

#include "tools/picture/DisplayPipeline.h"

namespace bench {
namespace {

using simulator::DisplayState;
using simulator::Picture;

constexpr double kGamma = 2.2;

// A gain on each channel and a little of its neighbours: nothing but white leaves the range.
constexpr std::array<float, 9> kMatrix = {0.90F, 0.06F, 0.02F, 0.03F, 0.88F, 0.05F, 0.01F, 0.04F, 0.80F};

// Slopes and grain, as a photograph has.
const Picture& photograph() {
    static const Picture kPicture = [] {
        Picture picture{4000, 3000, {}};
        picture.pixels.reserve(size_t{3} * picture.width * picture.height);
        std::mt19937 random(1);
        for (uint32_t y = 0; y < picture.height; ++y) {
            for (uint32_t x = 0; x < picture.width; ++x) {
                const uint32_t grain = random() % 16;
                picture.pixels.push_back(static_cast<uint8_t>(x * 239 / picture.width + grain));
                picture.pixels.push_back(static_cast<uint8_t>(y * 239 / picture.height + grain));
                picture.pixels.push_back(static_cast<uint8_t>((x + y) / 4 % 240 + grain));
            }
        }
        return picture;
    }();
    return kPicture;
}

DisplayState displayState() {
    DisplayState state;
    state.last.elements = kMatrix;
    return state;
}

void ours(benchmark::State& state, unsigned workers) {
    const Picture& input = photograph();
    const DisplayState display = displayState();
    for (auto _ : state) {
        const simulator::ShownPicture shown = showPicture(input, display, workers);
        benchmark::DoNotOptimize(shown.picture.pixels.data());
    }
}
BENCHMARK_CAPTURE(ours, one, 1)
    ->Name("picture/ours, one core")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK_CAPTURE(ours, two, 2)
    ->Name("picture/ours, two cores")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

// Profiles whose transform is the matrix: the destination has the primaries P, the source P times the matrix.
class Transform {
public:
    Transform() {
        const cmsHPROFILE source = profile(times(kPrimaries, kMatrix));
        const cmsHPROFILE destination = profile(kPrimaries);
        transform = cmsCreateTransform(source, TYPE_RGB_8, destination, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, 0);
        cmsCloseProfile(source);
        cmsCloseProfile(destination);
    }
    ~Transform() { cmsDeleteTransform(transform); }
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;

    Picture operator()(const Picture& input) const {
        Picture output{input.width, input.height, simulator::Bytes(input.pixels.size())};
        cmsDoTransform(transform, input.pixels.data(), output.pixels.data(), input.width * input.height);
        return output;
    }

private:
    using Matrix = std::array<float, 9>;

    // sRGB's, adapted to D50.
    static constexpr Matrix kPrimaries = {0.4360F, 0.3851F, 0.1431F, 0.2225F, 0.7169F,
                                          0.0606F, 0.0139F, 0.0971F, 0.7141F};

    static Matrix times(const Matrix& a, const Matrix& b) {
        Matrix product{};
        for (size_t i = 0; i < 9; ++i) {
            for (size_t k = 0; k < 3; ++k) product[i] += a[i / 3 * 3 + k] * b[3 * k + i % 3];
        }
        return product;
    }

    static cmsHPROFILE profile(const Matrix& primaries) {
        const cmsHPROFILE made = cmsCreateProfilePlaceholder(nullptr);
        cmsSetProfileVersion(made, 4.3);
        cmsSetDeviceClass(made, cmsSigDisplayClass);
        cmsSetColorSpace(made, cmsSigRgbData);
        cmsSetPCS(made, cmsSigXYZData);
        cmsWriteTag(made, cmsSigMediaWhitePointTag, cmsD50_XYZ());
        const cmsTagSignature colorants[] = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
        const cmsTagSignature curves[] = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
        cmsToneCurve* const curve = cmsBuildGamma(nullptr, kGamma);
        for (size_t channel = 0; channel < 3; ++channel) {
            const cmsCIEXYZ colorant{primaries[channel], primaries[3 + channel], primaries[6 + channel]};
            cmsWriteTag(made, colorants[channel], &colorant);
            cmsWriteTag(made, curves[channel], curve);
        }
        cmsFreeToneCurve(curve);
        return made;
    }

    cmsHTRANSFORM transform;
};

// Mean difference of two pictures of the same size, in codes.
double meanDifference(const Picture& a, const Picture& b) {
    uint64_t sum = 0;
    for (size_t i = 0; i < a.pixels.size(); ++i) sum += static_cast<uint64_t>(std::abs(a.pixels[i] - b.pixels[i]));
    return static_cast<double>(sum) / static_cast<double>(a.pixels.size());
}

void engine(benchmark::State& state) {
    const Picture& input = photograph();
    const Transform transform;
    if (meanDifference(transform(input), showPicture(input, displayState()).picture) > 0.5) {
        state.SkipWithError("another picture");
    }
    for (auto _ : state) benchmark::DoNotOptimize(transform(input).pixels.data());
}
BENCHMARK(engine)->Name("picture/lcms2")->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

}  // namespace
}  // namespace bench
