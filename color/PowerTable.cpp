// SPDX-License-Identifier: Apache-2.0
#include "color/PowerTable.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr double kStep = 1.0 / kPowerTable;
constexpr size_t kFactors = 64;  // above every smallest prime factor: it is below the square root of kPowerTable

// An index as factor * rest, where factor is its smallest prime factor below 64; 1 for 0, 1 and the larger primes,
// which have none.
struct Split {
    uint16_t factor;
    uint16_t rest;
};

constexpr Split splitOf(uint16_t index) {
    for (uint16_t factor = 2; factor < kFactors && factor <= index; ++factor) {
        if (index % factor == 0) return {factor, static_cast<uint16_t>(index / factor)};
    }
    return {1, index};
}

constexpr std::array<Split, kPowerTable> splitIndices() {
    std::array<Split, kPowerTable> splits{};
    for (size_t i = 0; i < kPowerTable; ++i) splits[i] = splitOf(static_cast<uint16_t>(i));
    return splits;
}
constexpr std::array<Split, kPowerTable> kSplits = splitIndices();

constexpr size_t kUnsplit = 548;  // 0, 1 and 546 primes
constexpr std::array<uint16_t, kUnsplit> listUnsplit() {
    std::array<uint16_t, kUnsplit> indices{};
    size_t count = 0;
    for (const Split& split : kSplits) {
        if (split.factor == 1) indices[count++] = split.rest;
    }
    return indices;
}
constexpr std::array<uint16_t, kUnsplit> kUnsplitIndices = listUnsplit();

double powerOfLevel(size_t index, double exponent) {
    return std::pow(static_cast<double>(index) * kStep, exponent);
}

void fillOneByOne(float* entries, double exponent) {
    for (size_t i = 0; i < kPowerTable; ++i) entries[i] = static_cast<float>(powerOfLevel(i, exponent));
}

// Calls pow for the primes only, because (a * b) ^ e is a ^ e * b ^ e: a seventh of the calls.
//
// A product has at most twelve powers, those of eleven factors and of one step. If the error of each power and of pow's
// result is below 4 units in the last place, the relative difference of product and result is below kError:
//     (13 * 4 + 11 / 2) * 2^-52 < 2^-46
// (The C libraries state an error below 1 unit.) If both ends of that range round to the same float, pow's result does
// too; otherwise pow is called.
void fillByFactors(float* entries, double exponent) {
    constexpr double kError = 0x1p-46;
    std::array<double, kPowerTable> powers;
    std::array<double, kFactors> powerOfFactor;
    for (const uint16_t i : kUnsplitIndices) powers[i] = powerOfLevel(i, exponent);
    for (size_t i = 1; i < kFactors; ++i) {
        if (kSplits[i].rest == 1) powerOfFactor[i] = std::pow(static_cast<double>(i), exponent);
    }
    for (size_t i = 0; i < kPowerTable; i += 2) {
        powers[i] = powerOfFactor[2] * powers[i / 2];
        const auto [factor, rest] = kSplits[i + 1];
        powers[i + 1] = powerOfFactor[factor] * powers[rest];
    }
    for (size_t i = 0; i < kPowerTable; ++i) {
        entries[i] = static_cast<float>(powers[i] * (1 - kError));
        const bool isSure = entries[i] == static_cast<float>(powers[i] * (1 + kError));
        if (!isSure) entries[i] = static_cast<float>(powerOfLevel(i, exponent));
    }
}

}  // namespace

void fillPowerTable(float* entries, float exponent) {
    constexpr float kLargest = 16;  // keeps every factor's power within double's range
    if (std::fabs(exponent) <= kLargest) {
        fillByFactors(entries, static_cast<double>(exponent));
    } else {
        fillOneByOne(entries, static_cast<double>(exponent));
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
