#include "cli/commands.h"

#include <map>
#include <string>

int main(int argc, char** argv) {
    CLI::App app{"Zorvane: solver for orthodox chess problems"};
    app.require_subcommand(1);
    const std::map<std::string, zorvane::cli::Runner> commands = {
        {"solve", zorvane::cli::AddSolveCommand(app)},   {"check", zorvane::cli::AddCheckCommand(app)},
        {"format", zorvane::cli::AddFormatCommand(app)}, {"mate", zorvane::cli::AddMateCommand(app)},
        {"bench", zorvane::cli::AddBenchCommand(app)},
    };
    CLI11_PARSE(app, argc, argv);
    return commands.at(app.get_subcommands().front()->get_name())();
}
