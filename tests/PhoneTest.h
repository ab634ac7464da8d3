// SPDX-License-Identifier: Apache-2.0
// The fixture: a simulated phone and its journal as lines.
#pragma once

#include <gmock/gmock.h>

#include "tests/model/Settings.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

using Lines = std::vector<std::string>;

// A phone on which everything works: see model::Settings. Its sensors deliver only what the test delivers.
class PhoneTest : public testing::Test {
protected:
    PhoneTest() {
        model::apply(model::Settings(), phone);
        phone.observe([this](const simulator::Event& event) { lines.push_back(textOf(event)); });
    }

    // The events since the last call, those of one kind if a beginning is given.
    Lines happened(const std::string& beginning = "") {
        phone.clock().settle();
        Lines taken;
        for (const std::string& line : std::exchange(lines, {})) {
            if (line.rfind(beginning, 0) == 0) taken.push_back(line);
        }
        return taken;
    }

    Lines lines;
    simulator::Phone phone{simulator::Phone::Start::EMPTY};
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
