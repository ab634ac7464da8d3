// SPDX-License-Identifier: Apache-2.0
#include "tools/json/SessionJson.h"

namespace simulator {

namespace {

Json toJson(const Event::What& what) {
    return eventToJson(what);
}

Json toJson(const XmlMessage& message) {
    return {{"event", "xml"}, {"file", message.file}, {"line", message.line}, {"message", message.message}};
}

Json toJson(const ScriptLine& line) {
    Json json = {{"event", "command"}, {"line", line.number}, {"text", line.text}};
    if (!line.comment.empty()) json["comment"] = line.comment;
    return json;
}

Json toJson(const LineDone& /*done*/) {
    return nullptr;
}

Json toJson(const InstalledFile& file) {
    return {{"event", "file"}, {"path", file.path}, {"from", file.from}};
}

Json toJson(const WrittenPicture& picture) {
    return {{"event", "picture"},
            {"file", picture.file},
            {"display", picture.display},
            {"pixels", picture.pixels},
            {"clippedPixels", picture.clippedPixels}};
}

Json toJson(const State& state) {
    return {{"event", "state"}, {"state", stateToJson(state)}};
}

}  // namespace

Json stateToJson(const State& state) {
    Json json = Json::object();
    for (const StateEntry& entry : state)
        json[entry.name] = entry.entries.empty() ? valueToJson(entry.value) : stateToJson(entry.entries);
    return json;
}

Timeline::Sink jsonWriter(std::ostream& output, bool all) {
    return [&output, all](const SessionEvent& event) {
        if (std::holds_alternative<LineDone>(event.what)) return;
        if (!all && phoneEvent<ClosedCall>(event) != nullptr) return;
        Json json = std::visit([](const auto& what) { return toJson(what); }, event.what);
        json["ms"] = event.milliseconds();
        output << lineOf(json) << "\n" << std::flush;
    };
}

}  // namespace simulator
