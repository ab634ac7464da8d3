// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

namespace tests {

// The message of the std::runtime_error that a call throws; "no error" if it returns.
template <typename Call>
std::string errorOf(Call call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace tests
