// What happens in a session, as data: one JSON object an event, with the key "event" and its parts in reading order.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Event.h"

namespace simulator {

// Objects keep the order of their keys, and a float is written with as few digits as name it exactly.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, int64_t, uint64_t, float>;

// A number, or the text "inf", "-inf" or "nan", which JSON has no numbers for.
Json toJson(float value);

// Nine elements by rows.
Json matrixToJson(const float* elements);

// The five entries at which a 4096-entry table is sampled, by their index.
Json tableToJson(const float* entries);

// The name of a Result, or its number when it has none.
Json resultToJson(int32_t result);

// Text with names and remarks that others chose: control characters, which would steer a terminal, as \x1B; all else,
// line ends and UTF-8 too, as it stands.
std::string harmless(std::string_view text);

// What somebody wrote, for a message: printable, in double quotes, cut when it is long.
std::string inQuotes(std::string_view bytes);

// A call that the composer got. A tone curve is named by its level where it is one of the stand-in's.
Json toEvent(const ComposerCall& call);

}  // namespace simulator
