// dcsim run: a script on the simulated phone.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "simulator/dcsim/Commands.h"
#include "simulator/dcsim/Progress.h"
#include "simulator/dcsim/SessionArguments.h"
#include "simulator/dcsim/Terminal.h"
#include "simulator/script/Command.h"
#include "simulator/script/ScriptFile.h"

namespace dcsim {

namespace {

using simulator::Timeline;

struct Options : SessionArguments {
    std::string script;
};

int run(const Options& options) {
    simulator::ScriptFile script(options.script);
    Timeline timeline(std::cout, options.json ? Timeline::Format::JSON : Timeline::Format::TEXT,
                      {useColor(STDOUT_FILENO), true});
    simulator::SessionOptions session = seenSession(options);
    Progress progress("waiting");
    if (isatty(STDOUT_FILENO) == 0) showWaits(session, progress);  // no bar among the events
    simulator::Session phone(std::move(session), timeline);
    script.run(phone, std::cout);
    return kAllWell;
}

std::string help() {
    constexpr size_t kSummaryColumn = 50;
    std::string text = "Commands of a script:\n";
    for (const simulator::Command& row : simulator::commands()) {
        std::string usage = "  " + simulator::usageOf(row);
        usage += usage.size() + 2 > kSummaryColumn ? "\n" + std::string(kSummaryColumn, ' ')
                                                   : std::string(kSummaryColumn - usage.size(), ' ');
        text += usage + std::string(row.summary) + "\n";
    }
    return text + "\nExample:\n  printf 'init\\nsetUnlimitedCT 0 -40\\npicture warm\\n' | dcsim run -";
}

}  // namespace

void addRun(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("run", "Runs a script on a simulated phone and shows what happens");
    command->add_option("script", options->script, "Script, one command a line; - for standard input")->required();
    addPhoneOption(*command, *options);
    addPictureOptions(*command, *options);
    addJsonFlag(*command, *options);
    command->footer(help);
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
