// SPDX-License-Identifier: Apache-2.0
#include "tools/session/SessionDump.h"

#include <iostream>
#include <utility>

namespace simulator {

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
