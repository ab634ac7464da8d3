// SPDX-License-Identifier: Apache-2.0
// A file of script lines.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "tools/session/Session.h"

namespace simulator {

// Every line is parsed before the first one runs, so a script with a mistake changes nothing.
class ScriptFile {
public:
    struct Line {
        size_t number;
        std::string place;  // "FILE:NUMBER: "
        std::string text;
    };

    // Reads the file to its end; "-" is standard input. Throws std::runtime_error if it cannot be read, and ScriptError
    // with a line for each mistake, "FILE:LINE: what is wrong; what was expected".
    explicit ScriptFile(const std::string& fileName);
    ScriptFile(std::istream& stream, const std::string& name);

    const std::vector<Line>& lines() const { return script; }

    // Carries out the lines one after another, for as long as output takes what they report. Throws ScriptError, of the
    // same form, for a line that cannot be carried out.
    void run(Session& session, const std::ostream& output) const;

private:
    void read(std::istream& stream, const std::string& name);

    std::vector<Line> script;
};

// What is compared of two sessions. The same on every machine: no path of it, no line of the log.
struct SessionDump {
    struct Call {
        int64_t ms;
        ComposerCall call;
    };
    std::vector<Call> calls;
    State state;  // at the end
};
// Runs the script; its pictures are not written. Throws what ScriptFile::run throws.
SessionDump dumpOf(const ScriptFile& script, SessionOptions options);

}  // namespace simulator
