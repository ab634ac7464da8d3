// SPDX-License-Identifier: Apache-2.0
#include "color/PowerTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "tests/model/Service.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// The first entry whose bits differ from pow's; the table's size if there is none.
size_t firstDifference(float exponent) {
    std::vector<float> table(kPowerTable, 7);
    fillPowerTable(table.data(), exponent);
    const auto expected = model::powerTable(exponent);
    size_t i = 0;
    while (i < kPowerTable && memcmp(&table[i], &(*expected)[i], sizeof(float)) == 0) ++i;
    return i;
}

}  // namespace

TEST(PowerTable, HasTheBitsOfPowForChosenExponents) {
    using Limits = std::numeric_limits<float>;
    std::vector<float> exponents = {Limits::infinity(),
                                    Limits::quiet_NaN(),
                                    Limits::max(),
                                    Limits::denorm_min(),
                                    1 / 2.2F,
                                    1 / 2.4F,
                                    1e30F,
                                    16.000002F,
                                    std::sqrt(2.F),
                                    3e-8F,
                                    1e-7F};
    for (int halves = 0; halves <= 80; ++halves) exponents.push_back(static_cast<float>(halves) / 2);
    for (int tenths = 1; tenths < 50; ++tenths) exponents.push_back(static_cast<float>(tenths) / 10);
    for (const float exponent : exponents) {
        EXPECT_EQ(firstDifference(exponent), kPowerTable) << exponent;
        EXPECT_EQ(firstDifference(-exponent), kPowerTable) << -exponent;
    }
}

TEST(PowerTable, HasTheBitsOfPowForThousandsOfExponents) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> usual(-17, 17);
    std::uniform_real_distribution<float> magnitude(-40, 8);
    for (int i = 0; i < 5'000; ++i) {
        const float exponent = i % 2 == 0 ? usual(random) : std::exp2(magnitude(random));
        ASSERT_EQ(firstDifference(exponent), kPowerTable) << exponent;
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
