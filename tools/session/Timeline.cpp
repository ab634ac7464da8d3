#include "tools/session/Timeline.h"

#include <platform/Clock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string_view>
#include <utility>

namespace simulator {

namespace {

constexpr size_t kNameColumn = 12;  // where the kind of an event begins, after its time
constexpr size_t kTextColumn = 22;  // where what it says begins
constexpr size_t kMatrixSize = 9;

std::string blanks(size_t count) {
    return std::string(count, ' ');
}

std::string padded(std::string_view text, size_t width) {
    return std::string(text) + blanks(text.size() < width ? width - text.size() : 1);
}

bool isMatrix(const Json& value) {
    return value.is_array() && value.size() == kMatrixSize && !value[0].is_structured();
}

bool isIdentity(const Json& matrix) {
    static const Json identity = matrixToJson(std::array<float, kMatrixSize>{1, 0, 0, 0, 1, 0, 0, 0, 1}.data());
    return matrix == identity;
}

std::string scalarText(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (!value.is_number_float()) return value.dump();
    std::array<char, 64> text{};
    snprintf(text.data(), text.size(), "%.6f", static_cast<double>(value.get<float>()));
    return text.data();
}

// Three rows, each below the one before.
std::string matrixText(const Json& matrix, size_t indent) {
    constexpr size_t kColumnWidth = 11;
    std::string text;
    for (size_t i = 0; i < kMatrixSize; ++i) {
        const std::string element = scalarText(matrix[i]);
        const bool rowBegins = i % 3 == 0;
        if (rowBegins && i > 0) text += "\n" + blanks(indent);
        const size_t width = rowBegins ? kColumnWidth - 2 : kColumnWidth;
        text += blanks(element.size() < width ? width - element.size() : 1) + element;
    }
    return text;
}

std::string listText(const Json& list) {
    constexpr size_t kLongest = 16;
    if (list.empty()) return "none";
    if (list.size() > kLongest) return std::to_string(list.size()) + " values";
    std::string text;
    for (const Json& value : list) text += (text.empty() ? "" : ", ") + scalarText(value);
    return text;
}

std::string valueText(const Json& value, size_t indent) {
    if (isMatrix(value)) return isIdentity(value) ? "identity" : matrixText(value, indent);
    if (value.is_array()) return listText(value);
    if (!value.is_object()) return scalarText(value);
    std::string pairs;
    for (const auto& [key, element] : value.items()) {
        pairs += (pairs.empty() ? "" : "  ") + key + ": " + valueText(element, indent);
    }
    return pairs;
}

// The samples of a table, named by their index, fit on one line; other objects are a block of lines.
bool isBlock(const Json& value) {
    constexpr std::string_view kDigits = "0123456789";
    return value.is_object() && value.begin().key().find_first_not_of(kDigits) != std::string::npos;
}

// One named value a line; values of values indented below their name.
std::string blockText(const Json& object, size_t indent) {
    constexpr size_t kNesting = 2;
    size_t nameWidth = 0;
    for (const auto& [key, value] : object.items()) {
        if (!isBlock(value)) nameWidth = std::max(nameWidth, key.size() + 2);
    }
    std::string text;
    for (const auto& [key, value] : object.items()) {
        text += (text.empty() ? "" : "\n" + blanks(indent));
        text += isBlock(value) ? key + "\n" + blanks(indent + kNesting) + blockText(value, indent + kNesting)
                               : padded(key, nameWidth) + valueText(value, indent + nameWidth);
    }
    return text;
}

// The scalars of an event's parts on one line, then end, and what is larger below.
std::string partsText(const Json& event, std::initializer_list<std::string_view> elsewhere,
                      const std::string& end = "") {
    std::string line;
    Json larger = Json::object();
    for (const auto& [key, value] : event.items()) {
        if (std::find(elsewhere.begin(), elsewhere.end(), key) != elsewhere.end()) continue;
        if (value.is_structured()) {
            larger[key] = value;
        } else {
            line += "  " + key + " " + scalarText(value);
        }
    }
    if (larger.empty()) return line + end;
    return line + end + "\n" + blanks(kTextColumn + 2) + blockText(larger, kTextColumn + 2);
}

std::string textOf(const Json& event, const char* key) {
    return event.at(key).get<std::string>();
}

std::string answerText(const Json& event) {
    return scalarText(event.at("result")) + partsText(event, {"event", "result", "ms"});
}

std::string composerText(const Json& event) {
    const std::string result = "  -> " + textOf(event, "result");
    return textOf(event, "call") + partsText(event, {"event", "call", "result", "params", "ms"}, result);
}

std::string logText(const Json& event) {
    return textOf(event, "priority") + "  " + textOf(event, "message");
}

std::string sampleText(const Json& event) {
    return event.at("lux").dump() + " lux, mean " + event.at("mean").dump();
}

std::string nodeText(const Json& event) {
    const std::string path = textOf(event, "path");
    return path.substr(path.rfind('/') + 1) + " <- \"" + textOf(event, "bytes") + "\"";
}

std::string fileText(const Json& event) {
    return textOf(event, "path") + " <- " + textOf(event, "from");
}

std::string xmlText(const Json& event) {
    return textOf(event, "file") + ":" + event.at("line").dump() + ": " + textOf(event, "message");
}

std::string pictureText(const Json& event) {
    return textOf(event, "file") + "  display " + event.at("display").dump() + ": " + event.at("clippedPixels").dump() +
           " of " + event.at("pixels").dump() + " pixels clipped";
}

// One row per kind of event that stands below a command.
struct Kind {
    std::string_view name;
    std::string (*text)(const Json& event);
};
constexpr std::array<Kind, 9> kKinds = {{
    {"answer", answerText},
    {"composer", composerText},
    {"node", nodeText},
    {"file", fileText},
    {"log", logText},
    {"sample", sampleText},
    {"xml", xmlText},
    {"picture", pictureText},
    {"state", [](const Json& event) { return blockText(event.at("state"), kTextColumn); }},
}};

// A script's line as it stands, its comment aligned with those of its neighbours.
std::string commandText(const Json& event) {
    constexpr size_t kCommentColumn = 40;
    std::array<char, 16> number{};
    snprintf(number.data(), number.size(), "%4d  ", event.at("line").get<int>());
    const std::string command = textOf(event, "text");
    const std::string comment = event.value("comment", "");
    if (command.empty()) return number.data() + comment;
    return number.data() + (comment.empty() ? command : padded(command, kCommentColumn) + comment);
}

// Seconds, as wide as kNameColumn.
std::string timeText(const Json& event) {
    constexpr double kMillisecondsPerSecond = 1000;
    std::array<char, 32> text{};
    snprintf(text.data(), text.size(), "%10.3f  ", event.at("ms").get<double>() / kMillisecondsPerSecond);
    return text.data();
}

std::string eventText(const Json& event) {
    const std::string name = textOf(event, "event");
    if (name == "command") return commandText(event);
    const auto* const kind =
        std::find_if(kKinds.begin(), kKinds.end(), [&name](const Kind& candidate) { return candidate.name == name; });
    return timeText(event) + padded(name, kTextColumn - kNameColumn) + kind->text(event);
}

std::string jsonText(const Json& event) {
    return event.dump(-1, ' ', false, Json::error_handler_t::replace);
}

class TextWriter {
public:
    TextWriter(std::ostream& output, Timeline::Look textLook) : stream(output), look(textLook) {}

    void operator()(const Json& event) {
        const bool isCommand = event.at("event") == "command";
        const bool isRemark = isCommand && event.at("text") == "";
        if (isCommand && !look.commands) return;
        if (isCommand && !(isRemark && lastWasRemark)) stream << "\n";
        lastWasRemark = isRemark;
        stream << colored(event, harmless(eventText(event))) << "\n" << std::flush;
    }

private:
    // A script's lines bold, errors of the log red.
    std::string colored(const Json& event, const std::string& text) const {
        const bool isError = event.value("priority", "") == "E";
        if (!look.color || (!isError && event.at("event") != "command")) return text;
        return (isError ? "\x1b[31m" : "\x1b[1m") + text + "\x1b[0m";
    }

    std::ostream& stream;
    const Timeline::Look look;
    bool lastWasRemark = false;  // lines of comment stand together
};

Timeline::Sink writerTo(std::ostream& output, Timeline::Format format, Timeline::Look look) {
    if (format == Timeline::Format::TEXT) return TextWriter(output, look);
    return [&output](const Json& event) { output << jsonText(event) << "\n" << std::flush; };
}

}  // namespace

Timeline::Timeline(std::ostream& output, Format format, Look look) : sink(writerTo(output, format, look)) {}

void Timeline::report(Json event) {
    event["ms"] = std::chrono::duration_cast<std::chrono::milliseconds>(platform::clock().now()).count();
    const platform::Lock lock(mutex);
    if (!closed) sink(event);
}

void Timeline::close() {
    const platform::Lock lock(mutex);
    closed = true;
}

}  // namespace simulator
