// SPDX-License-Identifier: Apache-2.0
#include "simulator/Event.h"

#include <android/log.h>
#include <platform/Log.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "simulator/closed/ToneCurve.h"

namespace simulator {

namespace {

// FNV-1a, 32 bits, of the values' bytes.
template <typename T>
std::string digestOf(const T* values, size_t count) {
    uint32_t hash = 0x811C9DC5;
    for (size_t i = 0; i < count; ++i) {
        unsigned char bytes[sizeof(T)];
        memcpy(bytes, &values[i], sizeof(T));
        for (const unsigned char byte : bytes) hash = (hash ^ byte) * 0x01000193;
    }
    char text[16];
    snprintf(text, sizeof text, "#%08x", hash);
    return text;
}

std::string matrixText(const Matrix& matrix) {
    const auto isSame = [](float a, float b) { return a == b && std::signbit(a) == std::signbit(b); };
    if (std::equal(matrix.begin(), matrix.end(), kIdentity.begin(), isSame)) return "identity";
    std::string text = "[";
    for (size_t i = 0; i < matrix.size(); ++i) text += (i == 0 ? "" : i % 3 == 0 ? " | " : " ") + floatText(matrix[i]);
    return text + "]";
}

std::string tableText(const Table& table) {
    if (table == nullptr) return "{}";
    std::string text = "{";
    for (const size_t index : kTableSamples) text += std::to_string(index) + ": " + floatText((*table)[index]) + " ";
    return text + tableDigest(*table) + "}";
}

std::string numberText(int64_t value) {
    return std::to_string(value);
}
std::string numberText(float value) {
    return floatText(value);
}

template <typename T>
std::string joined(const std::vector<T>& values) {
    std::string text;
    for (const T value : values) text += (text.empty() ? "" : " ") + numberText(value);
    return text;
}

std::string paramText(const composer_ext::AladParamPair& pair) {
    constexpr size_t kShort = 16;
    const std::vector<int64_t> values(pair.values.begin(), pair.values.end());
    const std::string key = std::to_string(pair.key) + ": ";
    if (const auto level = levelOfToneCurve(values)) return key + "level " + std::to_string(*level);
    if (values.size() <= kShort) return key + joined(values);
    return key + std::to_string(values.size()) + " values " + digestOf(values.data(), values.size());
}

std::string arrow(const Outcome& outcome, std::string (*nameOfResult)(int32_t)) {
    if (outcome.kind == Outcome::Kind::DEAD_OBJECT) return " -> DEAD_OBJECT";
    if (outcome.kind == Outcome::Kind::NO_CALLBACK) return " -> no callback";
    return " -> " + nameOfResult(outcome.result);
}

// "on" and "off", or the number of a switch that is neither 1 nor 0.
std::string switchText(uint32_t enable) {
    return enable == 0 ? "off" : enable == 1 ? "on" : std::to_string(enable);
}

// Events' lines, without the word that they begin with.

std::string lineOf(const ComposerCall& call) {
    std::string text(nameOf(kComposerOperations, call.operation));
    if (call.display) text += " " + std::to_string(*call.display);
    if (call.enable) text += " " + switchText(*call.enable);
    if (call.first) text += " " + matrixText(*call.first);
    if (call.last) text += " " + matrixText(*call.last);
    if (call.table) text += " " + tableText(call.table);
    const char* separator = " ";
    for (const auto& pair : call.params) text += std::exchange(separator, ", ") + paramText(pair);
    return text + arrow(call.outcome, composerResultName);
}

std::string lineOf(const SensorCall& call) {
    std::string text(nameOf(kSensorOperations, call.operation));
    if (!call.arguments.empty()) text += " " + joined(call.arguments);
    return call.operation == SensorOperation::RELEASE_QUEUE ? text : text + arrow(call.outcome, sensorResultName);
}

std::string lineOf(const ClosedCall& call) {
    std::string text(nameOf(kClosedFunctions, call.function));
    if (call.function == ClosedFunction::SET_PARAMS) {
        char colors[32];
        snprintf(colors, sizeof colors, " %06X %06X", static_cast<unsigned>(call.arguments[0]),
                 static_cast<unsigned>(call.arguments[1]));
        text += colors;
    } else if (!call.arguments.empty()) {
        text += " " + joined(call.arguments);
    }
    if (!call.coefficients.empty())
        text += " " + std::to_string(call.coefficients.size()) + " coefficients " +
                digestOf(call.coefficients.data(), call.coefficients.size());
    if (!call.before.empty()) text += " [" + joined(call.before) + "]";
    if (call.result) text += " -> " + std::to_string(*call.result);
    if (!call.after.empty()) text += " [" + joined(call.after) + "]";
    return text;
}

std::string lineOf(const NodeWrite& write) {
    return write.path.substr(write.path.rfind('/') + 1) + " <- \"" + printable(write.bytes) + "\"";
}

std::string lineOf(const LogLine& line) {
    const bool isForeign = line.tag != platform::kLogTag;
    return std::string(1, letterOf(line.priority)) + " " + (isForeign ? line.tag + " " : "") +
           (line.function.empty() ? "" : line.function + ": ") + line.message;
}

std::string lineOf(const LightSample& sample) {
    return std::to_string(sample.lux) + " lux, mean " + std::to_string(sample.mean);
}

std::string lineOf(const Answer& answer) {
    std::string text = answer.operation + " -> " + valueText(answer.result);
    for (const auto& [name, value] : answer.values) text += " " + name + " " + valueText(value);
    return text;
}

// So that -0 differs from 0 and a NaN equals itself.
template <typename Values>
bool haveSameBits(const Values& a, const Values& b) {
    return a.size() == b.size() && (a.size() == 0 || memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}
template <typename Values>
bool haveSameBitsIfAny(const Values& a, const Values& b) {
    return a && b ? &*a == &*b || haveSameBits(*a, *b) : !a && !b;
}

struct SameBits {
    bool operator()(const ComposerCall& a, const ComposerCall& b) const {
        const auto isSame = [](const auto& x, const auto& y) { return x.key == y.key && x.values == y.values; };
        return a.operation == b.operation && a.display == b.display && haveSameBitsIfAny(a.first, b.first) &&
               haveSameBitsIfAny(a.last, b.last) && haveSameBitsIfAny(a.table, b.table) && a.enable == b.enable &&
               std::equal(a.params.begin(), a.params.end(), b.params.begin(), b.params.end(), isSame) &&
               a.outcome.kind == b.outcome.kind && a.outcome.result == b.outcome.result;
    }
    bool operator()(const SensorCall& a, const SensorCall& b) const {
        return a.operation == b.operation && a.arguments == b.arguments && a.outcome.kind == b.outcome.kind &&
               a.outcome.result == b.outcome.result;
    }
    bool operator()(const ClosedCall& a, const ClosedCall& b) const {
        return a.function == b.function && a.arguments == b.arguments && haveSameBits(a.coefficients, b.coefficients) &&
               haveSameBits(a.before, b.before) && haveSameBits(a.after, b.after) && a.result == b.result;
    }
    bool operator()(const NodeWrite& a, const NodeWrite& b) const { return a.path == b.path && a.bytes == b.bytes; }
    template <typename A, typename B>
    bool operator()(const A&, const B&) const {
        return false;
    }
};

}  // namespace

Matrix matrixOf(const float* elements) {
    Matrix matrix{};
    std::copy_n(elements, matrix.size(), matrix.begin());
    return matrix;
}

Table tableOf(const float* entries) {
    auto table = std::make_shared<std::array<float, 4096>>();
    std::copy_n(entries, table->size(), table->begin());
    return table;
}

std::string tableDigest(const std::array<float, 4096>& table) {
    thread_local std::array<float, 4096> last{};  // one table is often described several times, which takes long
    thread_local std::string digest = digestOf(last.data(), last.size());
    const void* const bits = table.data();  // bits, so that -0 differs from 0 and a NaN equals itself
    if (memcmp(static_cast<const void*>(last.data()), bits, sizeof last) != 0) {
        last = table;
        digest = digestOf(last.data(), last.size());
    }
    return digest;
}

std::optional<int> toneCurveLevelOf(const ComposerCall& call) {
    for (const auto& pair : call.params) {
        if (const auto level = levelOfToneCurve({pair.values.begin(), pair.values.end()})) return level;
    }
    return std::nullopt;
}

bool hasSameBits(const Event::What& a, const Event::What& b) {
    return std::visit(SameBits(), a, b);
}

std::string_view kindOf(const Event::What& what) {
    constexpr std::array<std::string_view, std::variant_size_v<Event::What>> kKinds = {
        "composer", "sensor", "closed", "node", "log", "sample", "answer"};
    return kKinds[what.index()];
}

std::string textOf(const Event::What& what) {
    std::string line = std::visit([](const auto& event) { return lineOf(event); }, what);
    return line.insert(0, 1, ' ').insert(0, kindOf(what));
}

std::string valueText(const Value& value) {
    struct {
        std::string operator()(bool yes) const { return yes ? "yes" : "no"; }
        std::string operator()(int64_t number) const { return std::to_string(number); }
        std::string operator()(uint64_t number) const { return std::to_string(number); }
        std::string operator()(float number) const { return floatText(number); }
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(const Matrix& matrix) const { return matrixText(matrix); }
        std::string operator()(const Table& table) const { return tableText(table); }
        std::string operator()(const std::vector<float>& values) const { return "[" + joined(values) + "]"; }
        std::string operator()(const std::vector<int64_t>& values) const { return "[" + joined(values) + "]"; }
        std::string operator()(const std::vector<std::string>& words) const {
            std::string text;
            for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
            return text.empty() ? "none" : text;
        }
    } const text;
    return std::visit(text, value);
}

std::string floatText(float value) {
    if (std::isnan(value)) return "nan";
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string composerResultName(int32_t result) {
    switch (static_cast<composer_ext::Result>(result)) {
        case composer_ext::Result::OK:
            return "OK";
        case composer_ext::Result::BAD_DISPLAY:
            return "BAD_DISPLAY";
        case composer_ext::Result::FAILED:
            return "FAILED";
    }
    return std::to_string(result);
}

std::string sensorResultName(int32_t result) {
    constexpr std::array<std::string_view, 8> kNames = {
        "OK",        "NOT_EXIST",         "NO_MEMORY",    "NO_INIT", "PERMISSION_DENIED",
        "BAD_VALUE", "INVALID_OPERATION", "UNKNOWN_ERROR"};
    const auto index = static_cast<size_t>(result);
    return result >= 0 && index < kNames.size() ? std::string(kNames[index]) : std::to_string(result);
}

std::string printable(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        if (c >= ' ' && c <= '~') {
            text += c;
        } else if (c == '\n') {
            text += "\\n";
        } else {
            char escaped[8];
            snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
            text += escaped;
        }
    }
    return text;
}

char letterOf(int32_t priority) {
    constexpr std::string_view kLetters = "??VDIWEFS";
    return kLetters[static_cast<size_t>(std::clamp<int32_t>(priority, 0, ANDROID_LOG_SILENT))];
}

}  // namespace simulator
