// SPDX-License-Identifier: Apache-2.0
#include "tools/session/ScriptFile.h"

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "tools/session/Command.h"
#include "tools/text/LineReader.h"
#include "tools/text/Text.h"

namespace simulator {

ScriptFile::ScriptFile(const std::string& fileName) {
    const bool isInput = fileName == "-";
    if (!isInput) requireFile(fileName, "a script");
    std::ifstream file(fileName);
    read(isInput ? std::cin : file, isInput ? "<stdin>" : fileName);
}

ScriptFile::ScriptFile(std::istream& stream, const std::string& name) {
    read(stream, name);
}

void ScriptFile::read(std::istream& stream, const std::string& name) {
    constexpr size_t kMostMistakes = 20;
    LineReader reader(stream, name, "a script");
    std::string mistakes;
    size_t wrong = 0;
    while (reader.next()) {
        try {
            parseLine(reader.line());
        } catch (const ScriptError& error) {
            if (++wrong <= kMostMistakes) mistakes += (wrong == 1 ? "" : "\n") + reader.place() + error.what();
        }
        script.push_back({reader.number(), reader.place(), std::string(reader.line())});
    }
    if (wrong > kMostMistakes)
        mistakes += "\n" + name + ": " + std::to_string(wrong - kMostMistakes) + " more mistakes";
    if (wrong > 0) throw ScriptError(mistakes);
}

void ScriptFile::run(Session& session, const std::ostream& output) const {
    for (const Line& line : script) {
        if (!output) return;
        try {
            session.run(line.text, line.number);
        } catch (const std::runtime_error& error) {
            throw ScriptError(line.place + error.what());
        }
    }
}

SessionDump dumpOf(const ScriptFile& script, SessionOptions options) {
    SessionDump dump;
    Timeline timeline([&dump](const SessionEvent& event) {
        if (const auto* const call = phoneEvent<ComposerCall>(event))
            dump.calls.push_back({event.milliseconds(), *call});
    });
    options.out.clear();
    options.picture = {};
    Session session(std::move(options), timeline);
    script.run(session, std::cout);
    dump.state = session.state();
    return dump;
}

}  // namespace simulator
