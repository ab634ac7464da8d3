// dcsim: the display-control service on a simulated phone.
#include <csignal>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "simulator/dcsim/Commands.h"

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away is an output that cannot be written
    CLI::App app("The display-control service on a simulated phone", "dcsim");
    app.require_subcommand(1);
    app.footer("Example:\n  dcsim run data/demo.script --out pictures");
    int status = dcsim::kAllWell;
    dcsim::addCheck(app, status);
    dcsim::addRun(app, status);
    dcsim::addReplay(app, status);
    dcsim::addReport(app, status);
    try {
        app.parse(argc, argv);
        std::cout.flush();
        if (!std::cout) throw std::runtime_error("standard output could not be written; expected a place for it");
        return status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? dcsim::kAllWell : dcsim::kWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << error.what() << "\n";
        return dcsim::kWrongUse;
    }
}
