// SPDX-License-Identifier: Apache-2.0
// Any measurement file: it is read or its error says what was expected, and the model of a small panel is finite.
#include <cmath>
#include <stdexcept>
#include <string>

#include "fuzz/Require.h"
#include "tests/TemporaryFolder.h"
#include "tools/accuracy/PanelModel.h"

namespace fuzz {

namespace {

constexpr size_t kMostPatches = 40;  // of a panel that is fitted

void requireModel(const simulator::PanelModel& model) {
    for (int i = 0; i <= 64; ++i) {
        const double level = i / 64.0;
        const simulator::Vec3 xyz = model.xyz({level, 1 - level, level / 2});
        for (const double value : xyz) require(std::isfinite(value), "a predicted colour is finite");
        for (const double drive : model.drive(xyz)) require(drive >= 0 && drive <= 1, "a drive level is in range");
    }
}

// Runs what may throw.
template <typename Call>
void requireAnswer(Call call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        require(std::string(error.what()).find("; expected ") != std::string::npos, error.what());
    }
}

void readFile(const std::string& text) {
    static const tests::TemporaryFolder kFolder;
    const auto file = kFolder.write("panel.ti3", text);
    requireAnswer([&file] { simulator::readPatches(file); });
    requireAnswer([&file] {
        const auto panel = simulator::readPanel(file);
        if (panel.patches.size() <= kMostPatches) requireModel(simulator::PanelModel(panel));
    });
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readFile({data, data + size});
    return 0;
}
