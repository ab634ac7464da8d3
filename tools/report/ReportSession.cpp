// SPDX-License-Identifier: Apache-2.0
#include "tools/report/ReportSession.h"

#include <platform/DeviceFiles.h>

#include <algorithm>
#include <array>

#include "service/WhitePointText.h"
#include "tools/picture/Chart.h"
#include "tools/picture/DisplayPipeline.h"
#include "tools/session/Command.h"
#include "tools/session/Session.h"

namespace simulator {

namespace {

constexpr size_t kMostPictures = 60;
constexpr std::array<uint8_t, 3> kMagenta = {255, 0, 255};

// Every second pixel of every second row. The chart's fields stay what they are.
Picture halved(const Picture& picture) {
    Picture half{picture.width / 2, picture.height / 2, {}};
    half.pixels.reserve(size_t{3} * half.width * half.height);
    for (size_t row = 0; row < half.height; ++row) {
        for (size_t column = 0; column < half.width; ++column) {
            const auto pixel = picture.pixels.begin() + static_cast<std::ptrdiff_t>(6 * (row * picture.width + column));
            half.pixels.insert(half.pixels.end(), pixel, pixel + 3);
        }
    }
    return half;
}

Picture withClippedMarked(const ShownPicture& shown) {
    Picture marked = shown.picture;
    for (size_t i = 0; i < shown.clipped.size(); ++i) {
        if (shown.clipped[i]) std::copy(kMagenta.begin(), kMagenta.end(), &marked.pixels[3 * i]);
    }
    return marked;
}

// Runs lines and sorts what they cause.
class Recorder {
public:
    explicit Recorder(SessionOptions options) : session(std::move(options), timeline), shown(look()) {}

    void installCalibration(const std::filesystem::path& file) { session.phone().files().installCalibration(file); }

    void run(const ScriptFile::Line& line) {
        const ParsedLine parsed = parseLine(line.text);
        if (parsed.command == nullptr || parsed.command->name == "picture") return;
        step = {line.number, std::string(parsed.text), std::string(parsed.comment), {}, shown, {}};
        try {
            session.run(line.text, line.number);
        } catch (const std::runtime_error& error) {
            throw ScriptError(line.place + error.what());
        }
        step.after = shown = look();
        record.steps.push_back(step);
    }

    SessionRecord finish() {
        record.state = session.state();
        const auto& colors = session.library().displayColors();
        if (!colors.empty()) record.colors = colors[0];
        record.driverWhite = askDriver();
        return std::move(record);
    }

private:
    static std::optional<Chromaticity> askDriver() {
        constexpr size_t kLimit = 64;  // bytes
        constexpr double kThousandth = 0.001;
        const platform::NodeText node = platform::readNode(kWhitePointNode, kLimit);
        if (node.status != platform::NodeStatus::OK) return std::nullopt;
        const auto white = display_control::implementation::parseWhitePoint(node.text);
        if (!white) return std::nullopt;
        return Chromaticity{white->x * kThousandth, white->y * kThousandth};
    }

    // The number of the picture on display 0, added if it is new; nothing without a composer, and for a new one when
    // there are enough.
    std::optional<size_t> look() {
        const auto state = session.phone().composer().stateOf(0);
        if (!state) return std::nullopt;
        const ShownPicture picture = showPicture(chart, *state);
        auto& pictures = record.pictures;
        PictureRecord entry{encodePng(halved(picture.picture)), picture.clipped.size(), picture.clippedPixels, {}};
        if (entry.clippedPixels > 0) entry.marked = encodePng(halved(withClippedMarked(picture)));
        const auto known = std::find_if(pictures.begin(), pictures.end(), [&entry](const PictureRecord& each) {
            return each.png == entry.png && each.clippedPixels == entry.clippedPixels && each.marked == entry.marked;
        });
        const auto number = static_cast<size_t>(known - pictures.begin());
        if (known != pictures.end()) return number;
        if (number == kMostPictures) return std::nullopt;
        pictures.push_back(std::move(entry));
        return number;
    }

    void sort(const SessionEvent& event) {
        if (const auto* const answer = phoneEvent<Answer>(event)) step.answers.push_back(answer->result);
        if (const auto* const call = phoneEvent<ComposerCall>(event))
            record.calls.push_back({event.milliseconds(), *call});
    }

    const Picture chart = drawChart();
    Timeline timeline{[this](const SessionEvent& event) { sort(event); }};
    StepRecord step{};
    SessionRecord record{};
    Session session;
    std::optional<size_t> shown;
};

}  // namespace

SessionRecord recordSession(const ScriptFile& script, const std::optional<std::filesystem::path>& calibration) {
    SessionOptions options;
    options.logPriority = ANDROID_LOG_SILENT;
    Recorder recorder(std::move(options));
    if (calibration) recorder.installCalibration(*calibration);
    for (const ScriptFile::Line& line : script.lines()) recorder.run(line);
    return recorder.finish();
}

}  // namespace simulator
