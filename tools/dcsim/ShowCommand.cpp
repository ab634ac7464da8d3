// SPDX-License-Identifier: Apache-2.0
// dcsim show: the state that a script leaves.
#include <iostream>
#include <memory>
#include <optional>

#include "tools/dcsim/Commands.h"
#include "tools/dcsim/Progress.h"
#include "tools/dcsim/SessionArguments.h"
#include "tools/session/ScriptFile.h"

namespace dcsim {

namespace {

struct Options : SessionArguments {
    std::string script;
};

int show(const Options& options) {
    std::optional<simulator::ScriptFile> script;
    if (!options.script.empty()) script.emplace(options.script);
    Progress progress("waiting");
    simulator::SessionOptions unseen = unseenSession(options);
    showWaits(unseen, progress);
    simulator::Timeline silence([](const simulator::SessionEvent&) {});
    simulator::Session session(std::move(unseen), silence);
    if (script) {
        script->run(session, std::cout);
    } else {
        session.run("init", 1);
    }
    writerOf(options, /*commands=*/false)({session.phone().clock().now(), session.state()});
    return kAllWell;
}

}  // namespace

void addShow(CLI::App& app, int& status) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("show", "Prints the state of the service and of the composer after a script");
    command->add_option("SCRIPT", options->script,
                        "Script; - is standard input; without one the service is only started");
    addPhoneOption(*command, *options);
    addJsonFlag(*command, *options);
    command->footer(
        "Pictures are not written. dcsim run --help lists the commands of a script.\n\n"
        "Example:\n  printf 'init\\nsetEyeCareCT 0 50\\n' | dcsim show -");
    command->callback([options, &status] { status = show(*options); });
}

}  // namespace dcsim
