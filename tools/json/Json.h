// SPDX-License-Identifier: Apache-2.0
// What the phone's events hold, as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/Event.h"

namespace simulator {

// Objects keep the order of their keys.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, int64_t, uint64_t, double>;

// The number that a text names, written with the same digits; "inf", "-inf" and "nan" stay text, as JSON has no numbers
// for them.
Json numberToJson(const std::string& text);
// With the fewest digits that name it exactly.
Json toJson(float value);
// Nine elements by rows.
Json matrixToJson(const float* elements);
// A matrix is a list of nine, a table an object of its samples by their index and the digest of all entries.
Json valueToJson(const Value& value);

// How the values of a tone curve of the simulated library are given.
enum class Curves { AS_VALUES, AS_LEVELS };
// The parts of a composer call, without the key "event".
Json callToJson(const ComposerCall& call, Curves curves);

// An object with the key "event" and the event's parts in reading order.
Json eventToJson(const Event::What& what);

// One line, or several with that many blanks a level; bytes that are not UTF-8 become U+FFFD.
std::string lineOf(const Json& json, int indent = -1);

}  // namespace simulator
