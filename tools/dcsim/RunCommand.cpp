// SPDX-License-Identifier: Apache-2.0
// dcsim run: a script on the simulated phone.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Progress.h"
#include "tools/dcsim/SessionArguments.h"
#include "tools/session/Command.h"
#include "tools/session/ScriptFile.h"

namespace dcsim {

namespace {

struct Options : SessionArguments {
    std::string script;
};

int run(const Options& options) {
    const simulator::ScriptFile script(options.script);
    simulator::Timeline timeline(writerOf(options, /*commands=*/true));
    simulator::SessionOptions session = seenSession(options);
    Progress progress("waiting");
    if (isatty(STDOUT_FILENO) == 0) showWaits(session, progress);  // no bar among the events
    simulator::Session phone(std::move(session), timeline);
    script.run(phone, std::cout);
    return kAllWell;
}

std::string help() {
    std::string names;
    size_t column = 0;
    for (const simulator::Command& row : simulator::commands()) {
        constexpr size_t kWidth = 78;
        const bool breaks = column + row.name.size() + 1 > kWidth;
        names += (breaks || names.empty() ? "\n  " : " ") + std::string(row.name);
        column = breaks || column == 0 ? row.name.size() + 2 : column + row.name.size() + 1;
    }
    return "Commands of a script, which help COMMAND in dcsim shell explains:" + names +
           "\n\nExample:\n  printf 'init\\nsetUnlimitedCT 0 -40\\npicture warm\\n' | dcsim run -";
}

}  // namespace

void addRun(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("run", "Runs a script on a simulated phone and prints what happens");
    command->add_option("SCRIPT", options->script, "Script, one command a line; - is standard input")->required();
    addPhoneOption(*command, *options);
    addPictureOptions(*command, *options);
    addJsonFlag(*command, *options);
    command->footer(help());
    command->callback([options, &status] { status = run(*options); });
}

}  // namespace dcsim
