#include "tools/report/ReportSession.h"

#include <platform/DeviceFiles.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "service/WhitePointText.h"
#include "tools/picture/Chart.h"
#include "tools/picture/DisplayPipeline.h"
#include "tools/report/Page.h"
#include "tools/session/Command.h"
#include "tools/session/Session.h"
#include "tools/text/LineReader.h"

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

    void run(const LineReader& script) {
        try {
            const ParsedLine parsed = parseLine(script.line());
            if (parsed.command == nullptr || parsed.command->name == "picture") return;
            session.run(script.line(), script.number());
            step = {{"line", script.number()},
                    {"text", parsed.text},
                    {"comment", parsed.comment},
                    {"answers", Json::array()}};
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(script.place() + error.what());
        }
        sortEvents();
        step["before"] = shown;
        step["after"] = shown = look();
        record.steps.push_back(step);
    }

    SessionRecord finish() {
        session.show();
        sortEvents();
        const auto& colors = session.service().displayColors();
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

    void sortEvents() {
        std::istringstream lines(stream.str());
        stream.str("");
        for (std::string line; std::getline(lines, line);) {
            Json event = Json::parse(line);
            const std::string kind = event.at("event");
            event.erase("event");
            if (kind == "answer") {
                step["answers"].push_back(event.at("result"));
            } else if (kind == "state") {
                record.state = std::move(event.at("state"));
            } else if (kind == "composer") {
                record.calls.push_back(shortened(std::move(event)));
            }
        }
    }

    // A long list of values is told by its number of values.
    static Json shortened(Json call) {
        constexpr size_t kLongest = 8;
        if (!call.contains("params")) return call;
        for (Json& param : call["params"]) {
            if (param["values"].size() > kLongest) param["values"] = std::to_string(param["values"].size()) + " values";
        }
        return call;
    }

    const Picture picture = drawChart();
    std::ostringstream stream;
    Timeline timeline{stream, Timeline::Format::JSON};
    Session session;
    Album album;
    SessionRecord record{Json::array(), nullptr, Json::array(), nullptr, std::nullopt, std::nullopt};
    Json shown;
    Json step;
};

}  // namespace

SessionRecord recordSession(std::istream& script, const std::string& name,
                            const std::optional<std::filesystem::path>& calibration) {
    SessionOptions options;
    options.logPriority = ANDROID_LOG_SILENT;
    Recorder recorder(std::move(options));
    if (calibration) recorder.installCalibration(*calibration);
    LineReader lines(script, name, "a script");
    while (lines.next()) recorder.run(lines);
    return recorder.finish();
}

}  // namespace simulator
