// SPDX-License-Identifier: Apache-2.0
// What the commands that run a session have in common on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "tools/session/Session.h"

namespace dcsim {

class Progress;

struct SessionArguments {
    std::string phone;
    bool inPlace = false;
    std::string picture;  // empty: the test chart
    std::string out = "out";
    bool json = false;
    std::string log = "debug";
    bool all = false;
};

void addPhoneOption(CLI::App& command, SessionArguments& arguments);
void addJsonFlag(CLI::App& command, SessionArguments& arguments);
// --picture, --out, --log, --in-place and --all: for commands that show the session while it runs.
void addPictureOptions(CLI::App& command, SessionArguments& arguments);

// A session that is not seen: its phone, without a picture.
simulator::SessionOptions unseenSession(const SessionArguments& arguments);
// Throws std::runtime_error when the picture cannot be read.
simulator::SessionOptions seenSession(const SessionArguments& arguments);

// Writes a session's events to standard output as text, with the script's lines or without, or as JSON.
simulator::Timeline::Sink writerOf(const SessionArguments& arguments, bool commands);

// What the session does while it waits: it draws the bar, which outlives it.
void showWaits(simulator::SessionOptions& session, Progress& progress);

}  // namespace dcsim
