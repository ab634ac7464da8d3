// SPDX-License-Identifier: Apache-2.0
// Any light trace: it is read or its error says what was expected, and short ones are replayed.
#include <algorithm>
#include <optional>

#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "tests/TemporaryFolder.h"
#include "tools/light/Replay.h"

namespace fuzz {

namespace {

using namespace std::chrono_literals;
using simulator::Decision;
using simulator::LightTrace;

constexpr size_t kMostSamples = 16;
constexpr auto kLongest = 40s;

// A decision whose messages have all been sent; active is how it was before.
void requireCarriedOut(const Decision& decision, bool active) {
    require(!decision.reason().empty(), "a decision has a reason");
    require(!decision.targetLevel || decision.composerLevel == decision.targetLevel, "at the requested level");
    require(decision.composerLevel.has_value() == active || !decision.messages.empty(), "a change sends messages");
}

void replayTrace(const LightTrace& trace) {
    std::optional<Decision> previous;
    bool active = false;
    replay(trace, [&](const Decision& decision) {
        if (previous) {
            require(decision.time >= previous->time + 1s, "a sample a second");
            requireCarriedOut(*previous, active);
            active = previous->composerLevel.has_value();
        }
        previous = decision;
    });
    require(previous.has_value(), "there is a decision");
}

void readTrace(const std::string& text) {
    static const tests::TemporaryFolder kFolder;
    beQuiet();
    try {
        const LightTrace trace = simulator::readLightTrace(kFolder.write("trace.csv", text));
        require(!trace.empty(), "a trace has a sample");
        require(
            std::is_sorted(trace.begin(), trace.end(), [](const auto& a, const auto& b) { return a.time < b.time; }),
            "times do not fall");
        if (trace.size() <= kMostSamples && trace.back().time - trace.front().time <= kLongest) replayTrace(trace);
    } catch (const std::runtime_error& error) {
        const std::string said = error.what();
        require(said.find("; expected ") != std::string::npos, "an error says what was expected: " + said);
    }
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readTrace({data, data + size});
    return 0;
}
