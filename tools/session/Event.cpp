#include "tools/session/Event.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "simulator/closed/ToneCurve.h"

namespace simulator {

Json toJson(float value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    return value;
}

Json matrixToJson(const float* elements) {
    Json matrix = Json::array();
    for (size_t i = 0; i < 9; ++i) matrix.push_back(toJson(elements[i]));
    return matrix;
}

Json tableToJson(const float* entries) {
    constexpr std::array<size_t, 5> kSamples = {96, 320, 1024, 2048, 3840};
    Json table = Json::object();
    for (const size_t index : kSamples) table[std::to_string(index)] = toJson(entries[index]);
    return table;
}

Json resultToJson(int32_t result) {
    switch (static_cast<composer_ext::Result>(result)) {
        case composer_ext::Result::OK:
            return "OK";
        case composer_ext::Result::BAD_DISPLAY:
            return "BAD_DISPLAY";
        case composer_ext::Result::FAILED:
            return "FAILED";
    }
    return result;
}

std::string harmless(std::string_view text) {
    constexpr char kDelete = '\x7F';
    constexpr char kSecondSet = '\xC2';  // in UTF-8 the first byte of the control characters from U+0080 to U+009F
    std::string shown;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isFirst = (byte < ' ' && byte != '\n') || text[i] == kDelete;
        const bool isSecond = i > 0 && text[i - 1] == kSecondSet && byte >= 0x80 && byte < 0xA0;
        shown += isFirst || isSecond ? printable(text.substr(i, 1)) : std::string(1, text[i]);
    }
    return shown;
}

std::string inQuotes(std::string_view bytes) {
    constexpr size_t kLongest = 60;
    return "\"" + printable(bytes.substr(0, kLongest)) + (bytes.size() > kLongest ? "...\"" : "\"");
}

Json toEvent(const ComposerCall& call) {
    Json event = {{"event", "composer"}, {"call", kComposerOperations[static_cast<size_t>(call.operation)]}};
    if (call.display) event["display"] = *call.display;
    if (call.enable) event["enable"] = *call.enable;
    if (call.first) event["first"] = matrixToJson(call.first->data());
    if (call.last) event["last"] = matrixToJson(call.last->data());
    if (call.table) event["table"] = tableToJson(call.table->data());
    if (call.operation == ComposerOperation::SET_ALAD_PARAMS) {
        event["params"] = Json::array();
        for (const auto& [key, values] : call.params)
            event["params"].push_back({{"key", key}, {"values", std::vector<int64_t>(values.begin(), values.end())}});
        if (const auto level = toneCurveLevelOf(call)) event["toneCurveLevel"] = *level;
    }
    switch (call.outcome.kind) {
        case Outcome::Kind::ANSWERED:
            event["result"] = resultToJson(call.outcome.result);
            break;
        case Outcome::Kind::NO_CALLBACK:
            event["result"] = "no callback";
            break;
        case Outcome::Kind::DEAD_OBJECT:
            event["result"] = "DEAD_OBJECT";
            break;
    }
    return event;
}

}  // namespace simulator
