#include "simulator/script/ScriptFile.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "simulator/script/Command.h"

namespace simulator {

namespace {

constexpr std::string_view kStandardInput = "-";

}  // namespace

std::string_view withoutByteOrderMark(std::string_view line) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (line.substr(0, kMark.size()) == kMark) line.remove_prefix(kMark.size());
    return line;
}

ScriptFile::ScriptFile(std::string fileName) : name(std::move(fileName)) {
    if (name == kStandardInput) return;
    file.open(name);
    if (!file || std::filesystem::is_directory(name))
        throw std::runtime_error(name + ": could not be read; expected a script");
}

std::istream& ScriptFile::lines() {
    return name == kStandardInput ? std::cin : file;
}

void ScriptFile::run(Session& session, const std::ostream& output) {
    const std::string shown = name == kStandardInput ? "<stdin>" : name;
    std::string line;
    for (size_t number = 1; output && std::getline(lines(), line); ++number) {
        try {
            session.run(number == 1 ? withoutByteOrderMark(line) : line, number);
        } catch (const std::runtime_error& error) {
            throw ScriptError(shown + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    if (lines().bad()) throw std::runtime_error(shown + ": could not be read; expected a script");
}

}  // namespace simulator
