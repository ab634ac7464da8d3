// SPDX-License-Identifier: Apache-2.0
// Digests of what a PC computes. Every other processor, compiler and level of optimization must compute the same bits.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "color/ColorManager.h"
#include "color/PowerTable.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// FNV-1a (Fowler, Noll and Vo) over the bits of floats.
class Digest {
public:
    void add(const float* values, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            uint32_t bits = 0;
            memcpy(&bits, &values[i], sizeof bits);
            for (int shift = 0; shift < 32; shift += 8) hash = (hash ^ ((bits >> shift) & 0xFF)) * 0x100000001B3U;
        }
    }
    uint64_t value() const { return hash; }

private:
    uint64_t hash = 0xCBF29CE484222325U;
};

}  // namespace

TEST(SameBits, FinalMatrices) {
    std::mt19937 random(1);
    Digest digest;
    for (int sample = 0; sample < 2000; ++sample) {
        ColorManager colors;
        for (auto* const matrix : {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm}) {
            for (size_t i = 0; i < TMat33<float>::kSize; ++i)
                (*matrix)[i] = static_cast<float>(static_cast<int>(random() % 2001) - 500) / 1000;
        }
        digest.add(colors.composedCtm().data(), TMat33<float>::kSize);
        digest.add(colors.finalCtm().data(), TMat33<float>::kSize);
    }
    EXPECT_EQ(digest.value(), 1615351765379094539U);
}

// Of a C library whose pow is as exact as glibc's: a less exact one may round some entries differently.
TEST(SameBits, GammaTables) {
    std::vector<float> table(kPowerTable);
    Digest digest;
    for (int hundredths = -300; hundredths <= 900; ++hundredths) {
        fillPowerTable(table.data(), static_cast<float>(hundredths) / 100);
        digest.add(table.data(), table.size());
    }
    EXPECT_EQ(digest.value(), 17594891642246983212U);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
