// SPDX-License-Identifier: Apache-2.0
// Makes the table of ratios: ratios ROWS.json RESULTS.json
//
// ROWS.json says what is compared, and what has to hold; RESULTS.json is what the benchmarks reported. A row compares
// the median times of two benchmarks, "ours" and "theirs": "ratio" is the most that one may be of the other, "extraNs"
// the most that it may be above it; a row without either is for information. "counter" looks at a count of one
// benchmark instead, and "most" is the most of it. With "each" the row represents one row for each, with {} replaced,
// and shows the worst.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using Json = nlohmann::json;
using Medians = std::map<std::string, Json>;  // what was reported, by the benchmark's name

struct Line {
    double measure;  // the larger the worse
    std::vector<std::string> cells;
};

Json readJson(const char* file) {
    std::ifstream stream(file);
    if (!stream) throw std::runtime_error(std::string(file) + ": could not be read; expected a JSON file");
    return Json::parse(stream);
}

Medians mediansOf(const Json& results) {
    Medians medians;
    for (const Json& result : results.at("benchmarks")) {
        if (result.value("error_occurred", false)) {
            throw std::runtime_error(result.at("name").get<std::string>() + ": " +
                                     result.at("error_message").get<std::string>());
        }
        if (result.value("aggregate_name", "") == "median") medians[result.at("run_name")] = result;
    }
    return medians;
}

std::string filledIn(std::string text, const std::string& value) {
    if (const size_t place = text.find("{}"); place != std::string::npos) text.replace(place, 2, value);
    return text;
}

std::string format(const char* form, double value) {
    char text[32];
    snprintf(text, sizeof text, form, value);
    return text;
}

double nanoseconds(const Json& result, const std::string& time) {
    const std::map<std::string, double> units = {{"ns", 1}, {"us", 1e3}, {"ms", 1e6}};
    return result.at(time).get<double>() * units.at(result.at("time_unit"));
}

std::string duration(double ns) {
    if (ns < 1e3) return format("%.2f ns", ns);
    return ns < 1e6 ? format("%.2f us", ns / 1e3) : format("%.2f ms", ns / 1e6);
}

constexpr const char* kExceeded = "**no**";

std::string verdict(bool holds) {
    return holds ? "holds" : kExceeded;
}

Line countedLine(const Json& row, const std::string& what, const Json& ours) {
    const double count = ours.at(row.at("counter"));
    const double most = row.at("most");
    return {count, {what, format("%.3g", count), "", "", "", format("at most %g", most), verdict(count <= most)}};
}

Line timedLine(const Json& row, const std::string& what, const Json& ourResult, const Json& theirResult) {
    const std::string time = row.value("time", "cpu_time");
    const double ours = nanoseconds(ourResult, time);
    const double theirs = nanoseconds(theirResult, time);
    std::vector<std::string> cells = {what, duration(ours), row.at("against"), duration(theirs)};
    const auto finish = [&cells](double measure, std::initializer_list<std::string> rest) {
        cells.insert(cells.end(), rest);
        return Line{measure, cells};
    };
    if (row.contains("extraNs")) {
        const double most = row.at("extraNs");
        return finish(ours - theirs, {format("%+.2f ns", ours - theirs), format("at most +%g ns", most),
                                      verdict(ours - theirs <= most)});
    }
    const double ratio = ours / theirs;
    if (!row.contains("ratio")) return finish(ratio, {format("%.3f", ratio), "", ""});
    const double most = row.at("ratio");
    return finish(ratio, {format("%.3f", ratio), format("at most %g", most), verdict(ratio <= most)});
}

Line lineOf(const Json& row, const std::string& value, const Medians& medians) {
    const auto result = [&](const char* side) -> const Json& {
        const std::string name = filledIn(row.at(side), value);
        const auto found = medians.find(name);
        if (found == medians.end()) throw std::runtime_error("\"" + name + "\" was not measured");
        return found->second;
    };
    const std::string what = filledIn(row.at("what"), value);
    return row.contains("counter") ? countedLine(row, what, result("ours"))
                                   : timedLine(row, what, result("ours"), result("theirs"));
}

Line worstLineOf(const Json& row, const Medians& medians) {
    Line worst;
    for (const std::string& value : row.value("each", std::vector<std::string>{""})) {
        Line line = lineOf(row, value, medians);
        if (worst.cells.empty() || line.measure > worst.measure) worst = std::move(line);
    }
    return worst;
}

void print(const std::vector<std::vector<std::string>>& lines) {
    std::vector<size_t> widths(lines.front().size());
    for (const auto& cells : lines) {
        for (size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    }
    for (const auto& cells : lines) {
        for (size_t i = 0; i < cells.size(); ++i) {
            std::cout << "| " << cells[i] << std::string(widths[i] - cells[i].size() + 1, ' ');
        }
        std::cout << "|\n";
    }
}

// False if a limit is exceeded.
bool printTable(const Json& rows, const Medians& medians) {
    std::vector<std::vector<std::string>> lines = {{"what", "ours", "against", "theirs", "ratio", "target", ""},
                                                   {"---", "---", "---", "---", "---", "---", "---"}};
    for (const Json& row : rows) lines.push_back(worstLineOf(row, medians).cells);
    print(lines);
    return std::none_of(lines.begin(), lines.end(), [](const auto& cells) { return cells.back() == kExceeded; });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: ratios ROWS.json RESULTS.json\n";
        return 2;
    }
    try {
        return printTable(readJson(argv[1]), mediansOf(readJson(argv[2]))) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "ratios: " << error.what() << "\n";
        return 2;
    }
}
