// SPDX-License-Identifier: Apache-2.0
#include "tools/session/ScriptFile.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "tools/session/Command.h"
#include "tools/text/LineReader.h"

namespace simulator {

namespace {

constexpr std::string_view kStandardInput = "-";

}  // namespace

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
    LineReader script(lines(), name == kStandardInput ? "<stdin>" : name, "a script");
    while (output && script.next()) {
        try {
            session.run(script.line(), script.number());
        } catch (const std::runtime_error& error) {
            throw ScriptError(script.place() + error.what());
        }
    }
}

}  // namespace simulator
