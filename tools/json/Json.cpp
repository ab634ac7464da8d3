// SPDX-License-Identifier: Apache-2.0
#include "tools/json/Json.h"

#include <charconv>
#include <cmath>

#include "simulator/closed/ToneCurve.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

template <typename Range>
Json listToJson(const Range& values) {
    Json list = Json::array();
    for (const auto value : values) list.push_back(toJson(static_cast<float>(value)));
    return list;
}

Json tableToJson(const Table& table) {
    Json samples = Json::object();
    for (const size_t index : kTableSamples) samples[std::to_string(index)] = toJson((*table)[index]);
    samples["digestOfAllEntries"] = tableDigest(*table);
    return samples;
}

// The name of a result that has one, otherwise its number.
Json composerResult(int32_t result) {
    const std::string name = composerResultName(result);
    return name == std::to_string(result) ? Json(result) : Json(name);
}

Json outcomeToJson(const Outcome& outcome, const Json& result) {
    if (outcome.kind == Outcome::Kind::DEAD_OBJECT) return "DEAD_OBJECT";
    return outcome.kind == Outcome::Kind::NO_CALLBACK ? Json("no callback") : result;
}

Json paramToJson(const composer_ext::AladParamPair& pair, Curves curves) {
    const std::vector<int64_t> values(pair.values.begin(), pair.values.end());
    const auto level = levelOfToneCurve(values);
    if (level && curves == Curves::AS_LEVELS) return {{"key", pair.key}, {"toneCurveLevel", *level}};
    return {{"key", pair.key}, {"values", values}};
}

Json partsOf(const ComposerCall& call) {
    Json parts = callToJson(call, Curves::AS_VALUES);
    if (const auto level = toneCurveLevelOf(call)) parts["toneCurveLevel"] = *level;
    return parts;
}

Json partsOf(const SensorCall& call) {
    Json parts = {{"call", nameOf(kSensorOperations, call.operation)}, {"arguments", call.arguments}};
    if (call.operation != SensorOperation::RELEASE_QUEUE)
        parts["result"] = outcomeToJson(call.outcome, sensorResultName(call.outcome.result));
    return parts;
}

Json partsOf(const ClosedCall& call) {
    Json parts = {{"call", nameOf(kClosedFunctions, call.function)}, {"arguments", call.arguments}};
    if (!call.coefficients.empty()) parts["coefficients"] = listToJson(call.coefficients);
    if (!call.before.empty()) parts["before"] = listToJson(call.before);
    if (!call.after.empty()) parts["after"] = listToJson(call.after);
    if (call.result) parts["result"] = *call.result;
    return parts;
}

Json partsOf(const NodeWrite& write) {
    return {{"path", write.path}, {"bytes", printable(write.bytes)}};
}

Json partsOf(const LogLine& line) {
    Json parts = {{"priority", std::string(1, letterOf(line.priority))}, {"tag", line.tag}};
    if (!line.function.empty()) parts.update({{"function", line.function}, {"line", line.line}});
    parts["message"] = line.message;
    return parts;
}

Json partsOf(const LightSample& sample) {
    return {{"lux", sample.lux}, {"mean", sample.mean}};
}

Json partsOf(const Answer& answer) {
    Json parts = {{"operation", answer.operation}, {"result", valueToJson(answer.result)}};
    for (const auto& [name, value] : answer.values) parts[name] = valueToJson(value);
    return parts;
}

}  // namespace

Json numberToJson(const std::string& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return std::isfinite(value) ? Json(value) : Json(text);
}

Json toJson(float value) {
    return std::isnan(value) ? Json("nan") : numberToJson(shortest(value));  // of any sign
}

Json matrixToJson(const float* elements) {
    return listToJson(matrixOf(elements));
}

Json valueToJson(const Value& value) {
    struct {
        Json operator()(bool yes) const { return yes; }
        Json operator()(int64_t number) const { return number; }
        Json operator()(uint64_t number) const { return number; }
        Json operator()(float number) const { return toJson(number); }
        Json operator()(const std::string& text) const { return text; }
        Json operator()(const Matrix& matrix) const { return listToJson(matrix); }
        Json operator()(const Table& table) const { return tableToJson(table); }
        Json operator()(const std::vector<float>& values) const { return listToJson(values); }
        Json operator()(const std::vector<int64_t>& values) const { return values; }
        Json operator()(const std::vector<std::string>& words) const { return words; }
    } const json;
    return std::visit(json, value);
}

Json callToJson(const ComposerCall& call, Curves curves) {
    Json parts = {{"call", nameOf(kComposerOperations, call.operation)}};
    if (call.display) parts["display"] = *call.display;
    if (call.enable) parts["enable"] = *call.enable;
    if (call.first) parts["first"] = listToJson(*call.first);
    if (call.last) parts["last"] = listToJson(*call.last);
    if (call.table) parts["table"] = tableToJson(call.table);
    if (call.operation == ComposerOperation::SET_ALAD_PARAMS) {
        parts["params"] = Json::array();
        for (const auto& pair : call.params) parts["params"].push_back(paramToJson(pair, curves));
    }
    parts["result"] = outcomeToJson(call.outcome, composerResult(call.outcome.result));
    return parts;
}

Json eventToJson(const Event::What& what) {
    Json event = {{"event", kindOf(what)}};
    event.update(std::visit([](const auto& each) { return partsOf(each); }, what));
    return event;
}

std::string lineOf(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace simulator
