#include "calibration/Decimal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <random>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

bool isAsAtof(const std::string& text) {
    const double converted = toDecimal(text.c_str());
    const double expected = atof(text.c_str());
    return memcmp(&converted, &expected, sizeof converted) == 0;
}

}  // namespace

TEST(Decimal, HasTheBitsOfAtofForChosenTexts) {
    const char* const kTexts[] = {"",
                                  "0",
                                  "-0",
                                  "-0.0",
                                  "+1",
                                  "1.",
                                  ".5",
                                  ".",
                                  "-",
                                  "-.",
                                  "--1",
                                  "1-1",
                                  "1.2.3",
                                  "1..2",
                                  " 1",
                                  "1 ",
                                  "\n1",
                                  "1\t",
                                  "1,5",
                                  "1e2",
                                  "1e",
                                  "0x1p4",
                                  "0x",
                                  "inf",
                                  "-nan",
                                  "nan",
                                  "1f",
                                  "1.5e-7",
                                  "junk",
                                  "-5",
                                  "00000000000000000001.5",
                                  "0.1",
                                  "0.000000",
                                  "0.3333333333333333",
                                  "9007199254740993",
                                  "999999999999999",
                                  "9999999999999999",
                                  "-.000000000000001",
                                  "0.0000000000000001",
                                  "123456789012345.",
                                  "18446744073709551616",
                                  "184467440737095516.16",
                                  "1e400"};
    for (const char* const text : kTexts) EXPECT_TRUE(isAsAtof(text)) << "\"" << text << "\"";
    EXPECT_TRUE(isAsAtof(std::string(1000, '1')));
}

TEST(Decimal, HasTheBitsOfAtofForNumbersOfAllLengths) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 200'000; ++i) {
        std::string text = std::to_string(random());
        text.resize(1 + random() % text.size());
        text.insert(random() % (text.size() + 1), 1, '.');
        if (random() % 2 == 0) text.insert(0, 1, '-');
        ASSERT_TRUE(isAsAtof(text)) << text;
    }
}

// Texts of the characters that numbers are made of, most of which are no numbers.
TEST(Decimal, HasTheBitsOfAtofForJumbledTexts) {
    constexpr char kCharacters[] = {'0', '1', '9', '.', '-', '+', 'e', 'x', ' ', ','};
    std::mt19937 random(1);
    for (int i = 0; i < 200'000; ++i) {
        std::string text(random() % 8, '\0');
        for (char& c : text) c = kCharacters[random() % std::size(kCharacters)];
        ASSERT_TRUE(isAsAtof(text)) << "\"" << text << "\"";
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
