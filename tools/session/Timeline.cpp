// SPDX-License-Identifier: Apache-2.0
#include "tools/session/Timeline.h"

#include <android/log.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr size_t kTextColumn = 22;  // where an event's text begins, after its time and kind

std::string blanks(size_t count) {
    return std::string(count, ' ');
}

std::string padded(std::string_view text, size_t width) {
    return std::string(text) + blanks(text.size() < width ? width - text.size() : 1);
}

// Seconds, and the kind of event.
std::string headOf(const SessionEvent& event, std::string_view kind) {
    constexpr size_t kKindColumn = 12;
    char seconds[32];
    snprintf(seconds, sizeof seconds, "%10.3f  ", static_cast<double>(event.milliseconds()) / 1000);
    return seconds + padded(kind, kTextColumn - kKindColumn);
}

// --- The state: numbers with six decimals, matrices in three rows ---

std::string decimals(float value) {
    char text[64];
    snprintf(text, sizeof text, "%.6f", static_cast<double>(value));
    return text;
}

std::string rowsOf(const Matrix& matrix, size_t indent) {
    constexpr size_t kColumnWidth = 11;
    std::string text;
    for (size_t i = 0; i < matrix.size(); ++i) {
        const std::string element = decimals(matrix[i]);
        const bool rowBegins = i % 3 == 0;
        if (rowBegins && i > 0) text += "\n" + blanks(indent);
        const size_t width = rowBegins ? kColumnWidth - 2 : kColumnWidth;
        text += blanks(element.size() < width ? width - element.size() : 1) + element;
    }
    return text;
}

std::string samplesOf(const Table& table) {
    std::string text;
    for (const size_t index : kTableSamples)
        text += (text.empty() ? "" : "  ") + std::to_string(index) + ": " + decimals((*table)[index]);
    return text + "  " + tableDigest(*table);
}

std::string stateValueText(const Value& value, size_t indent) {
    if (const auto* const number = std::get_if<float>(&value)) return decimals(*number);
    if (const auto* const table = std::get_if<Table>(&value)) return samplesOf(*table);
    const auto* const matrix = std::get_if<Matrix>(&value);
    return matrix == nullptr || *matrix == kIdentity ? valueText(value) : rowsOf(*matrix, indent);
}

// An entry a line; a group's entries are indented below its name.
std::string stateText(const State& state, size_t indent) {
    constexpr size_t kNesting = 2;
    size_t nameWidth = 0;
    for (const StateEntry& entry : state) {
        if (entry.entries.empty()) nameWidth = std::max(nameWidth, entry.name.size() + 2);
    }
    std::string text;
    for (const StateEntry& entry : state) {
        text += text.empty() ? "" : "\n" + blanks(indent);
        text += entry.entries.empty()
                    ? padded(entry.name, nameWidth) + stateValueText(entry.value, indent + nameWidth)
                    : entry.name + "\n" + blanks(indent + kNesting) + stateText(entry.entries, indent + kNesting);
    }
    return text;
}

// --- Ramps of the tone curve ---

// The level of a message that carries a tone curve alone and that the composer took; nothing for other events.
std::optional<int> stepLevel(const SessionEvent& event) {
    const ComposerCall* const call = phoneEvent<ComposerCall>(event);
    if (call == nullptr || call->params.size() != 1 || call->display != 0 || call->enable != 1) return std::nullopt;
    if (call->outcome.kind != Outcome::Kind::ANSWERED || call->outcome.result != 0) return std::nullopt;
    return toneCurveLevelOf(*call);
}

// Messages in a row whose levels are one apart, in one direction and at equal intervals.
class Ramp {
public:
    // False if event does not continue the ramp; then it has not been added.
    bool add(const SessionEvent& event) {
        const auto level = stepLevel(event);
        if (!level || !continues(event, *level)) return false;
        events.push_back(event);
        levels.push_back(*level);
        return true;
    }

    std::vector<SessionEvent> take() {
        levels.clear();
        return std::exchange(events, {});
    }

    // "setAladParams 0 on, levels 3 to 41 in 39 messages, 20 ms apart"; empty for less than three messages.
    std::string text() const {
        if (events.size() < 3) return "";
        return "setAladParams 0 on, levels " + std::to_string(levels.front()) + " to " + std::to_string(levels.back()) +
               " in " + std::to_string(events.size()) + " messages, " +
               std::to_string(events[1].milliseconds() - events[0].milliseconds()) + " ms apart";
    }

private:
    bool continues(const SessionEvent& event, int level) const {
        if (events.empty()) return true;
        const int step = level - levels.back();
        if (step != 1 && step != -1) return false;
        return events.size() < 2 ||
               (step == levels[1] - levels[0] && event.time - events.back().time == events[1].time - events[0].time);
    }

    std::vector<SessionEvent> events;
    std::vector<int> levels;
};

// --- All of it ---

// A script's line as it is, its comment aligned with those of its neighbours.
std::string commandText(const ScriptLine& line) {
    constexpr size_t kCommentColumn = 40;
    char number[24];
    snprintf(number, sizeof number, "%4zu  ", line.number);
    if (line.text.empty()) return number + line.comment;
    return number + (line.comment.empty() ? line.text : padded(line.text, kCommentColumn) + line.comment);
}

std::string pictureText(const WrittenPicture& picture) {
    return picture.file + "  display " + std::to_string(picture.display) + ": " +
           std::to_string(picture.clippedPixels) + " of " + std::to_string(picture.pixels) + " pixels clipped";
}

class TextWriter {
public:
    TextWriter(std::ostream& output, Look textLook) : stream(output), look(textLook) {}

    void operator()(const SessionEvent& event) {
        if (!look.all && phoneEvent<ClosedCall>(event) != nullptr) return;
        if (!look.all && ramp.add(event)) return;
        writeRamp();
        if (!look.all && ramp.add(event)) return;
        std::visit([&](const auto& what) { write(event, what); }, event.what);
    }

private:
    void writeRamp() {
        const std::string text = ramp.text();
        const std::vector<SessionEvent> events = ramp.take();
        if (!text.empty()) return writeLine(headOf(events.front(), "composer") + text);
        for (const SessionEvent& event : events) write(event, std::get<Event::What>(event.what));
    }

    void write(const SessionEvent& event, const Event::What& what) {
        const std::string_view kind = kindOf(what);
        const auto* const line = std::get_if<LogLine>(&what);
        const bool isError = line != nullptr && line->priority >= ANDROID_LOG_ERROR;
        writeLine(headOf(event, kind) + textOf(what).substr(kind.size() + 1), isError ? kRed : nullptr);
    }
    void write(const SessionEvent& event, const XmlMessage& message) {
        writeLine(headOf(event, "xml") + message.file + ":" + std::to_string(message.line) + ": " + message.message);
    }
    void write(const SessionEvent& /*event*/, const ScriptLine& line) {
        const bool isRemark = line.text.empty();
        if (!look.commands) return;
        if (!(isRemark && lastWasRemark)) stream << "\n";  // lines of comment stay together
        writeLine(commandText(line), kBold);
        lastWasRemark = isRemark;
    }
    void write(const SessionEvent& /*event*/, const LineDone& /*done*/) {}
    void write(const SessionEvent& event, const InstalledFile& file) {
        writeLine(headOf(event, "file") + file.path + " <- " + file.from);
    }
    void write(const SessionEvent& event, const WrittenPicture& picture) {
        writeLine(headOf(event, "picture") + pictureText(picture));
    }
    void write(const SessionEvent& event, const State& state) {
        writeLine(headOf(event, "state") + stateText(state, kTextColumn));
    }

    void writeLine(const std::string& line, const char* color = nullptr) {
        lastWasRemark = false;
        const std::string text = harmless(line);
        stream << (look.color && color != nullptr ? colored(color, text) : text) << "\n" << std::flush;
    }

    std::ostream& stream;
    const Look look;
    Ramp ramp;
    bool lastWasRemark = false;
};

}  // namespace

Timeline::Sink textWriter(std::ostream& output, Look look) {
    return TextWriter(output, look);
}

void Timeline::report(const SessionEvent& event) {
    const platform::Lock lock(mutex);
    sink(event);
}

}  // namespace simulator
