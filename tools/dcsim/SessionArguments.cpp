// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/SessionArguments.h"

#include <unistd.h>

#include <chrono>
#include <iostream>
#include <map>

#include "tools/dcsim/Progress.h"
#include "tools/dcsim/Terminal.h"
#include "tools/json/SessionJson.h"
#include "tools/session/DataFolder.h"

namespace dcsim {

namespace {

const std::map<std::string, int32_t> kLogLevels = {{"debug", ANDROID_LOG_DEBUG},
                                                   {"info", ANDROID_LOG_INFO},
                                                   {"error", ANDROID_LOG_ERROR},
                                                   {"none", ANDROID_LOG_SILENT}};

// What is wrong with a word, or nothing.
std::string isLogLevel(const std::string& word) {
    return kLogLevels.count(word) != 0 ? ""
                                       : "\"" + word + "\" is not a log level; expected debug, info, error or none";
}

}  // namespace

void addPhoneOption(CLI::App& command, SessionArguments& arguments) {
    command
        .add_option("--phone", arguments.phone,
                    "Folder of the phone's files, of which a copy is used; the sample phone if not given")
        ->type_name("DIR");
}

void addJsonFlag(CLI::App& command, SessionArguments& arguments) {
    command.add_flag("--json", arguments.json, "Prints one JSON object a line instead of text");
}

void addPictureOptions(CLI::App& command, SessionArguments& arguments) {
    command.add_option("--picture", arguments.picture, "Picture to show; the test chart if not given")
        ->type_name("IN.png");
    command.add_option("--out", arguments.out, "Folder for the pictures; ./out if not given")->type_name("DIR");
    command
        .add_option("--log", arguments.log,
                    "Lowest priority of the log lines printed: debug, info, error or none; debug if not given")
        ->check(isLogLevel)
        ->type_name("LEVEL");
    command.add_flag("--in-place", arguments.inPlace, "Uses and changes the files of --phone themselves, not a copy")
        ->needs("--phone");
    command.add_flag("--all", arguments.all,
                     "Prints each message of a tone-curve ramp, and the calls of the closed libraries");
}

simulator::SessionOptions unseenSession(const SessionArguments& arguments) {
    simulator::SessionOptions session;
    if (!arguments.phone.empty()) session.phone = arguments.phone;
    session.inPlace = arguments.inPlace;
    return session;
}

simulator::SessionOptions seenSession(const SessionArguments& arguments) {
    simulator::SessionOptions session = unseenSession(arguments);
    const std::filesystem::path picture = arguments.picture;
    session.picture = simulator::loadPng(picture.empty() ? simulator::dataFolder() / "chart.png" : picture);
    session.out = arguments.out.empty() ? "." : arguments.out;
    session.logPriority = kLogLevels.at(arguments.log);
    return session;
}

simulator::Timeline::Sink writerOf(const SessionArguments& arguments, bool commands) {
    if (arguments.json) return simulator::jsonWriter(std::cout, arguments.all);
    return simulator::textWriter(std::cout, {useColor(STDOUT_FILENO), commands, arguments.all});
}

void showWaits(simulator::SessionOptions& session, Progress& progress) {
    session.goOnWaiting = [&progress](std::chrono::milliseconds passed, std::chrono::milliseconds whole) {
        progress.show(passed < whole ? static_cast<double>(passed.count()) / static_cast<double>(whole.count()) : 1);
        return true;
    };
}

}  // namespace dcsim
