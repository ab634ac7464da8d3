// dcsim: the display-control service on a simulated phone.
#include <exception>
#include <iostream>

#include "simulator/dcsim/Commands.h"

int main(int argc, char** argv) {
    CLI::App app("The display-control service on a simulated phone", "dcsim");
    app.require_subcommand(1);
    app.footer("Example:\n  dcsim run data/demo.script --out pictures");
    int status = dcsim::kAllWell;
    dcsim::addRun(app, status);
    dcsim::addReplay(app, status);
    try {
        app.parse(argc, argv);
        return status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? dcsim::kAllWell : dcsim::kWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "dcsim: " << error.what() << "\n";
        return dcsim::kWrongUse;
    }
}
