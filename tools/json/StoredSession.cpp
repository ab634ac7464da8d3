// SPDX-License-Identifier: Apache-2.0
#include "tools/json/StoredSession.h"

#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tools/json/SessionJson.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;
using Path = Json::json_pointer;

bool isSame(const Json& a, const Json& b) {
    if (a != b) return false;
    return !a.is_number_float() || !b.is_number_float() || std::signbit(a.get<float>()) == std::signbit(b.get<float>());
}

std::optional<Json> valueAt(const Json& object, const std::string& key) {
    const auto found = object.find(key);
    return found == object.end() ? std::nullopt : std::optional<Json>(*found);
}

std::optional<Json> valueAt(const Json& array, size_t index) {
    return index < array.size() ? std::optional<Json>(array[index]) : std::nullopt;
}

std::optional<Difference> compare(const Path& path, const std::optional<Json>& expected,
                                  const std::optional<Json>& got);

std::optional<Difference> compareObjects(const Path& path, const Json& expected, const Json& got) {
    for (const auto& [key, value] : expected.items()) {
        if (auto difference = compare(path / key, value, valueAt(got, key))) return difference;
    }
    for (const auto& [key, value] : got.items()) {
        if (!expected.contains(key)) return Difference{(path / key).to_string(), std::nullopt, value};
    }
    return std::nullopt;
}

std::optional<Difference> compareArrays(const Path& path, const Json& expected, const Json& got) {
    for (size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
        auto difference = compare(path / i, valueAt(expected, i), valueAt(got, i));
        if (difference && path == Path("/calls")) difference->call = i + 1;
        if (difference) return difference;
    }
    return std::nullopt;
}

std::optional<Difference> compare(const Path& path, const std::optional<Json>& expected,
                                  const std::optional<Json>& got) {
    if (expected && got && expected->is_object() && got->is_object()) return compareObjects(path, *expected, *got);
    if (expected && got && expected->is_array() && got->is_array()) return compareArrays(path, *expected, *got);
    if (expected && got && isSame(*expected, *got)) return std::nullopt;
    return Difference{path.to_string(), expected, got};
}

// Objects of objects over several lines, every other value on one.
void write(std::ostream& stream, const Json& value, const std::string& indent) {
    const bool holdsStructures = value.is_structured() && !value.empty() && value.begin()->is_structured();
    if (!value.is_object() && !holdsStructures) {
        stream << lineOf(value);
        return;
    }
    stream << (value.is_object() ? "{" : "[");
    const char* separator = "\n";
    for (const auto& [key, element] : value.items()) {
        stream << std::exchange(separator, ",\n") << indent << "  ";
        if (value.is_object()) stream << lineOf(key) << ": ";
        if (value.is_array()) {
            stream << lineOf(element);
        } else {
            write(stream, element, indent + "  ");
        }
    }
    stream << "\n" << indent << (value.is_object() ? "}" : "]");
}

}  // namespace

Json toJson(const SessionDump& dump) {
    Json calls = Json::array();
    for (const auto& [ms, call] : dump.calls) {
        calls.push_back(callToJson(call, Curves::AS_LEVELS));
        calls.back()["ms"] = ms;
    }
    return {{"calls", calls}, {"state", stateToJson(dump.state)}};
}

std::optional<Difference> firstDifference(const Json& expected, const Json& got) {
    return compare(Path(), expected, got);
}

Json verdictToJson(const char* event, const SessionDump& dump) {
    return {{"event", event}, {"calls", dump.calls.size()}};
}

Json toJson(const Difference& difference, const SessionDump& got) {
    Json event = {{"event", "difference"}, {"path", difference.path}};
    if (difference.call) event["call"] = *difference.call;
    if (difference.call && *difference.call <= got.calls.size())
        event["operation"] = nameOf(kComposerOperations, got.calls[*difference.call - 1].call.operation);
    if (difference.expected) event["expected"] = *difference.expected;
    if (difference.got) event["got"] = *difference.got;
    return event;
}

Json readDump(const fs::path& file) {
    requireFile(file, "a stored session; --update writes it");
    std::ifstream stream(file);
    Json dump = Json::parse(stream, nullptr, /*allow_exceptions=*/false);
    const auto calls = dump.find("calls");
    if (calls == dump.end() || !calls->is_array() || !dump.contains("state"))
        throw std::runtime_error(file.string() + ": is not a stored session; expected one that --update has written");
    return dump;
}

void writeDump(const Json& dump, const fs::path& file) {
    std::ostringstream text;
    write(text, dump, "");
    text << "\n";
    replaceFile(file, text.str());
}

}  // namespace simulator
