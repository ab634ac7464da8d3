// SPDX-License-Identifier: Apache-2.0
#include "tools/light/LightTrace.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "tools/text/LineReader.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr double kLongestTrace = 1e8;  // seconds

[[noreturn]] void fail(const LineReader& lines, const std::string& what) {
    throw std::runtime_error(lines.place() + what);
}

template <typename T>
std::optional<T> toNumber(std::string_view text) {
    T value{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end) return std::nullopt;
    return value;
}

struct Row {
    std::string_view seconds;
    std::string_view lux;
};

std::optional<Row> splitRow(std::string_view line) {
    const size_t comma = line.find(',');
    if (comma == std::string_view::npos || line.find(',', comma + 1) != std::string_view::npos) return std::nullopt;
    return Row{trimmed(line.substr(0, comma)), trimmed(line.substr(comma + 1))};
}

}  // namespace

LightTrace readLightTrace(const std::filesystem::path& file) {
    requireFile(file, "a light trace, lines of SECONDS,LUX");
    std::ifstream stream(file);
    LightTrace trace;
    LineReader lines(stream, file.string(), "lines of SECONDS,LUX");
    bool isFirst = true;  // of the lines that hold something; the header may be there
    while (lines.next()) {
        const std::string_view content = trimmed(lines.line());
        if (content.empty()) continue;
        const auto row = splitRow(content);
        if (!row) fail(lines, inQuotes(lines.line()) + " is not two columns; expected SECONDS,LUX");
        const auto seconds = toNumber<double>(row->seconds);
        const auto lux = toNumber<float>(row->lux);
        const bool isHeader = std::exchange(isFirst, false) && !seconds && !lux;
        if (isHeader && (row->seconds != "seconds" || row->lux != "lux"))
            fail(lines, inQuotes(content) + " does not name the columns; expected seconds,lux or no header");
        if (isHeader) continue;
        if (!seconds || !(*seconds >= 0 && *seconds <= kLongestTrace))
            fail(lines, inQuotes(row->seconds) + " is not a time; expected seconds from 0 to 1e8");
        if (!lux || !(*lux >= 0)) fail(lines, inQuotes(row->lux) + " is not a light level; expected lux from 0");
        const std::chrono::milliseconds time(std::llround(*seconds * 1000));
        if (!trace.empty() && time < trace.back().time)
            fail(lines, "the time is before that of the line above; expected times that do not fall");
        trace.push_back({time, *lux});
    }
    if (trace.empty()) throw std::runtime_error(file.string() + ": has no sample; expected lines of SECONDS,LUX");
    return trace;
}

}  // namespace simulator
