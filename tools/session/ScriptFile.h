// SPDX-License-Identifier: Apache-2.0
// A file of script lines.
#pragma once

#include <fstream>
#include <istream>
#include <ostream>
#include <string>

#include "tools/session/Session.h"

namespace simulator {

class ScriptFile {
public:
    // Opens the file; "-" is standard input. Throws std::runtime_error when it cannot be read.
    explicit ScriptFile(std::string fileName);

    // Carries out the lines one after another, for as long as output takes what they report. Throws ScriptError,
    // "FILE:LINE: what is wrong; what was expected", and std::runtime_error when the file cannot be read to its end
    // (LineReader).
    void run(Session& session, const std::ostream& output);

private:
    std::istream& lines();

    const std::string name;
    std::ifstream file;
};

}  // namespace simulator
