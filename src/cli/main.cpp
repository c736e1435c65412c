#include "cli/commands.h"

#include <cstdio>
#include <map>
#include <string>

int main(int argc, char** argv) {
    CLI::App app{"Zorvane: solver for orthodox chess problems"};
    app.require_subcommand(1);
    const std::map<std::string, zorvane::cli::Runner> commands = {
        {"solve", zorvane::cli::AddSolveCommand(app)},   {"check", zorvane::cli::AddCheckCommand(app)},
        {"format", zorvane::cli::AddFormatCommand(app)}, {"mate", zorvane::cli::AddMateCommand(app)},
        {"bench", zorvane::cli::AddBenchCommand(app)},   {"defend", zorvane::cli::AddDefendCommand(app)},
        {"tables", zorvane::cli::AddTablesCommand(app)},
    };
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        // Bad input on the command line is bad input like any other: its
        // message on stderr and exit code 2, as the README says.
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    return commands.at(app.get_subcommands().front()->get_name())();
}
