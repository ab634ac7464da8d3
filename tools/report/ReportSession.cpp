// SPDX-License-Identifier: Apache-2.0
#include "tools/report/ReportSession.h"

#include <platform/DeviceFiles.h>

#include <algorithm>
#include <array>

#include "service/WhitePointText.h"
#include "tools/json/SessionJson.h"
#include "tools/picture/Chart.h"
#include "tools/picture/DisplayPipeline.h"
#include "tools/report/Page.h"
#include "tools/session/Command.h"
#include "tools/session/ScriptFile.h"
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

std::string pngText(const Picture& picture) {
    return base64(encodePng(halved(picture)));
}

Picture withClippedMarked(const ShownPicture& shown) {
    Picture marked = shown.picture;
    for (size_t i = 0; i < shown.clipped.size(); ++i) {
        if (shown.clipped[i]) std::copy(kMagenta.begin(), kMagenta.end(), &marked.pixels[3 * i]);
    }
    return marked;
}

// The different pictures of a session, by number.
class Album {
public:
    // The number of a picture; null when the album is full.
    Json add(const ShownPicture& shown) {
        Json entry = {
            {"png", pngText(shown.picture)}, {"pixels", shown.clipped.size()}, {"clippedPixels", shown.clippedPixels}};
        if (shown.clippedPixels > 0) entry["marked"] = pngText(withClippedMarked(shown));
        const auto known = std::find(pictures.begin(), pictures.end(), entry);
        const auto number = known - pictures.begin();
        if (known != pictures.end()) return number;
        if (pictures.size() == kMostPictures) return nullptr;
        pictures.push_back(std::move(entry));
        return number;
    }

    Json pictures = Json::array();
};

// Runs lines and sorts what they cause.
class Recorder {
public:
    explicit Recorder(SessionOptions options) : session(std::move(options), timeline), shown(look()) {}

    void installCalibration(const std::filesystem::path& file) { session.phone().files().installCalibration(file); }

    void run(const ScriptFile::Line& line) {
        const ParsedLine parsed = parseLine(line.text);
        if (parsed.command == nullptr || parsed.command->name == "picture") return;
        try {
            step = {
                {"line", line.number}, {"text", parsed.text}, {"comment", parsed.comment}, {"answers", Json::array()}};
            session.run(line.text, line.number);
        } catch (const std::runtime_error& error) {
            throw ScriptError(line.place + error.what());
        }
        step["before"] = shown;
        step["after"] = shown = look();
        record.steps.push_back(step);
    }

    SessionRecord finish() {
        record.state = stateToJson(session.state());
        const auto& colors = session.library().displayColors();
        if (!colors.empty()) record.colors = colors[0];
        record.driverWhite = askDriver();
        record.pictures = std::move(album.pictures);
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

    // The number of the picture on display 0; null without a composer.
    Json look() {
        const auto state = session.phone().composer().stateOf(0);
        return state ? album.add(showPicture(picture, *state)) : Json();
    }

    void sort(const SessionEvent& event) {
        if (const auto* const answer = phoneEvent<Answer>(event))
            step["answers"].push_back(valueToJson(answer->result));
        const auto* const call = phoneEvent<ComposerCall>(event);
        if (call == nullptr) return;
        record.calls.push_back(callToJson(*call, Curves::AS_LEVELS));
        record.calls.back()["ms"] = event.milliseconds();
    }

    const Picture picture = drawChart();
    Timeline timeline{[this](const SessionEvent& event) { sort(event); }};
    Json step = Json::object();
    SessionRecord record{Json::array(), nullptr, Json::array(), nullptr, std::nullopt, std::nullopt};
    Session session;
    Album album;
    Json shown;
};

}  // namespace

SessionRecord recordSession(std::istream& script, const std::string& name,
                            const std::optional<std::filesystem::path>& calibration) {
    const ScriptFile lines(script, name);
    SessionOptions options;
    options.logPriority = ANDROID_LOG_SILENT;
    Recorder recorder(std::move(options));
    if (calibration) recorder.installCalibration(*calibration);
    for (const ScriptFile::Line& line : lines.lines()) recorder.run(line);
    return recorder.finish();
}

}  // namespace simulator
