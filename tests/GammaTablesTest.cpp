#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::ElementsAre;

std::unique_ptr<GammaLut> ramp() {
    auto table = std::make_unique<GammaLut>();
    for (size_t i = 0; i < 4096; ++i) table->entries[i] = static_cast<float>(i) / 64;
    return table;
}

template <typename Table>
bool isRamp(const Table& table) {
    return memcmp(table.entries.data(), ramp()->entries.data(), sizeof table) == 0;
}

}  // namespace

class GammaTablesTest : public ServiceTest {
protected:
    GammaTablesTest() { start(); }

    // What a getter answers, one word per call of the callback: the Result, and ramp, zeros or other.
    DisplayControlImpl::Table appendTo(std::string& answers) {
        return [&answers](Result result, const GammaLut& table) {
            const auto* const entries = table.entries.data();
            const bool zeros = std::all_of(entries, entries + 4096, [](float entry) { return entry == 0; });
            answers += std::to_string(static_cast<int32_t>(result)) + (isRamp(table) ? "ramp"
                                                                       : zeros       ? "zeros"
                                                                                     : "other");
        };
    }
    std::string bothTables(uint64_t display) {
        std::string answers;
        service.getGlobalGammaLut(7, display, appendTo(answers));
        service.getGlobalDeGammaLut(7, display, appendTo(answers));
        return answers;
    }
};

TEST_F(GammaTablesTest, TablesGoToTheComposerAndBackWhole) {
    const std::string samples =
        "setGlobalGammaLut 96:1.500000 320:5.000000 1024:16.000000 2048:32.000000 3840:60.000000";
    EXPECT_EQ(service.setGlobalGammaLut(18, 0, *ramp()), Result::OK);
    EXPECT_THAT(happened(), ElementsAre("log D setGlobalGammaLut: 18", "log D setGlobalGammaLut: " + samples,
                                        "composer setGlobalGammaLut(0)"));
    EXPECT_EQ(bothTables(0), "0ramp0zeros");
    happened();
    EXPECT_EQ(service.setGlobalDeGammaLut(18, 1, *ramp()), Result::OK);
    EXPECT_THAT(happened(), ElementsAre("log D setGlobalDeGammaLut: 18", "log D setGlobalDeGammaLut: " + samples,
                                        "composer setGlobalDeGammaLut(1)"));
    EXPECT_EQ(bothTables(1), "0zeros0ramp");
    EXPECT_THAT(happened(), ElementsAre("log D getGlobalGammaLut: 7", "composer getGlobalGammaLut(1)",
                                        "log D getGlobalDeGammaLut: 7", "composer getGlobalDeGammaLut(1)"));
}

TEST_F(GammaTablesTest, SettersAlwaysReportOkAndGettersTheComposersResult) {
    const struct {
        const char* name;
        Fault fault;
        const char* answers;
    } kCases[] = {
        {"none", Fault::NONE, "0ramp0ramp"},
        {"refuses", Fault::REFUSES, "-42ramp-42ramp"},
        {"silent", Fault::SILENT, "0zeros0zeros"},
        {"unreachable", Fault::UNREACHABLE, "-5zeros-5zeros"},
        {"dies after its answer", Fault::DIES_AFTER_ANSWER, "-5zeros-5zeros"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        composer->fault("", c.fault);
        EXPECT_EQ(service.setGlobalGamma(7, 0, 1.0F), Result::OK);
        EXPECT_EQ(service.setGlobalGammaLut(7, 0, *ramp()), Result::OK);
        EXPECT_EQ(service.setGlobalDeGammaLut(7, 0, *ramp()), Result::OK);
        EXPECT_EQ(bothTables(0), c.answers);
    }
}

TEST_F(GammaTablesTest, AnExponentGivesThePowersOfTheInputLevels) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float exponents[] = {0.0F, 1.0F,   2.2F,  1.0F / 2.2F, -1.0F,     -2.2F,      0.5F,
                               3.0F, 1e-30F, 1e30F, -1e30F,      kInfinity, -kInfinity, NAN};
    for (const float exponent : exponents) {
        EXPECT_EQ(service.setGlobalGamma(18, 1, exponent), Result::OK);
        EXPECT_THAT(happened(), ElementsAre("log D setGlobalGamma: 18", "log I " + std::to_string(exponent),
                                            "composer setGlobalGammaLut(1)"));
        std::vector<float> expected;
        for (int i = 0; i < 4096; ++i) {
            const volatile double level = i / 4096.0;
            expected.push_back(static_cast<float>(pow(level, static_cast<double>(exponent))));
        }
        EXPECT_EQ(fakes::text(composer->gamma[1].entries.data(), 4096), fakes::text(expected.data(), 4096)) << exponent;
    }
    EXPECT_TRUE(composer->deGamma.empty());
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
