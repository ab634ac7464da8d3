// SPDX-License-Identifier: Apache-2.0
// A call of a served operation as plain data.
#pragma once

#include <vendor/kov/hardware/display_control/1.0/IDisplayControl.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "service/DisplayControlImpl.h"
#include "simulator/Event.h"

namespace model {

using simulator::Matrix;
using simulator::Table;

constexpr uint64_t kHandle = 5'000'000'007;  // above 32 bits

inline const Table kZeros = simulator::tableOf(std::array<float, 4096>{}.data());

// What an operation does not take is not used.
struct Call {
    std::string operation;  // by its name
    uint64_t display = 0;
    int32_t number = 0;               // level, mode, feature, switch
    int32_t value = 0;                // of a feature
    int32_t value2 = 0;               // of a feature
    std::vector<double> values = {};  // of a feature
    float exponent = 1;
    Matrix first = simulator::kIdentity;
    Matrix last = simulator::kIdentity;
    Table table = kZeros;
};

// The operation and the arguments that are numbers.
std::string textOf(const Call& call);

// Calls the service and returns the answer: the name of the Result or the number that is returned, then the values that
// the callback receives. A callback that is not called, or called twice, shows.
std::string answerOf(::vendor::kov::hardware::display_control::V1_0::implementation::DisplayControlImpl& service,
                     const Call& call);
// The same for a client's call of the interface; init and deInit are not part of it.
std::string answerOf(::vendor::kov::hardware::display_control::V1_0::IDisplayControl& service, const Call& call);

// The name of every operation.
std::vector<std::string> operations();

}  // namespace model
