// SPDX-License-Identifier: Apache-2.0
#include "tools/sample_data/SampleData.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/TemporaryFolder.h"
#include "tools/picture/Picture.h"

namespace {

namespace fs = std::filesystem;

const fs::path kShipped = DISPLAY_CONTROL_DATA_DIR;

std::set<fs::path> filesUnder(const fs::path& folder) {
    std::set<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) files.insert(entry.path().lexically_relative(folder));
    }
    return files;
}

std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(SampleData, TheShippedDataIsWhatTheGeneratorWrites) {
    const tests::TemporaryFolder temporary;
    const fs::path& folder = temporary.path();
    simulator::writeSampleData(folder);
    for (const char* part : {"phone", "traces"}) ASSERT_EQ(filesUnder(kShipped / part), filesUnder(folder / part));
    for (const fs::path& file : filesUnder(folder)) {
        SCOPED_TRACE(file);
        if (file.extension() == ".png") {
            EXPECT_TRUE(simulator::loadPng(kShipped / file).pixels == simulator::loadPng(folder / file).pixels);
        } else {
            EXPECT_TRUE(textOf(kShipped / file) == textOf(folder / file));
        }
    }
}

}  // namespace
