// SPDX-License-Identifier: Apache-2.0
// Any script, in a session on a small phone: it runs to its end or to a line whose error says what was expected, what
// is reported is JSON, and whatever is typed can be completed.
#include <array>
#include <sstream>

#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "tests/TemporaryFolder.h"
#include "tools/json/SessionJson.h"
#include "tools/session/Completion.h"
#include "tools/session/ScriptFile.h"

namespace fuzz {

namespace {

using namespace std::chrono_literals;
using simulator::Json;

constexpr auto kLongestWait = 60s;  // of a whole script

// A folder to work in, with a phone and the files that scripts may name: c.xml, t.txt.
class Desk {
public:
    Desk() {
        std::string table;
        for (int i = 0; i < 4096; ++i) table += "0." + std::to_string(i) + "\n";
        folder.write("t.txt", table);
        folder.write("c.xml", kCalibration);
        std::filesystem::current_path(folder.path());
    }

    // The phone as it is at first.
    std::filesystem::path freshPhone() const {
        std::filesystem::remove_all(phone());
        std::filesystem::create_directories(phone() / "vendor/etc");
        for (const auto& node : simulator::kPhoneNodes)
            write(node.path, node.name == "whitepoint" ? "x=313,y=329\n" : "1\n");
        write("/vendor/etc/disp_calib_data_default.xml", kCalibration);
        return phone();
    }
    std::filesystem::path pictures() const { return folder.path() / "pictures"; }
    const tests::TemporaryFolder folder;

private:
    static constexpr const char* kCalibration =
        "<p><CTM_WPC><v>1</v><v>0</v><v>0</v><v>0</v><v>.9</v><v>0</v><v>0</v><v>0</v><v>.8</v></CTM_WPC>"
        "<UnlimitedCT><Warm>FFE0C0</Warm><Cold>C0E0FF</Cold></UnlimitedCT></p>";

    std::filesystem::path phone() const { return folder.path() / "phone"; }
    void write(std::string_view path, const char* text) const { folder.write("phone" + std::string(path), text); }
};

simulator::SessionOptions optionsOn(const Desk& desk) {
    simulator::SessionOptions options;
    options.phone = desk.freshPhone();
    options.inPlace = true;
    options.picture = {2, 2, {0, 0, 0, 255, 255, 255, 200, 100, 50, 1, 2, 3}};
    options.out = desk.pictures();
    options.goOnWaiting = [waited = std::chrono::milliseconds(0)](auto passed, auto) mutable {
        waited += std::min<std::chrono::milliseconds>(passed, 1s);
        return waited < kLongestWait;
    };
    return options;
}

void requireJson(const std::string& events) {
    std::istringstream lines(events);
    for (std::string line; std::getline(lines, line);) require(Json::accept(line), "an event is JSON: " + line);
}

void complete(const std::string& script) {
    const std::string firstLine = script.substr(0, script.find('\n'));
    for (const auto& word : simulator::completionsOf(firstLine, {simulator::commands(), 2}))
        require(!word.empty(), "a completion has characters");
}

void runScript(const std::string& script) {
    static const Desk kDesk;
    beQuiet();
    complete(script);
    std::ostringstream events;
    {
        simulator::Timeline timeline(simulator::jsonWriter(events, /*all=*/true));
        simulator::Session session(optionsOn(kDesk), timeline);
        std::istringstream lines(script);
        for (std::string line; std::getline(lines, line);) {  // a wrong line keeps no other line from running
            try {
                std::istringstream one(line);
                simulator::ScriptFile(one, "script").run(session, events);
            } catch (const simulator::ScriptError& error) {
                const std::string text = error.what();
                require(text.find("; expected ") != std::string::npos, "an error says what was expected: " + text);
            }
        }
        require(!stateToJson(session.state()).dump().empty(), "the state can be shown");
    }
    requireJson(events.str());
    std::filesystem::remove_all(kDesk.pictures());
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::runScript({data, data + size});
    return 0;
}
