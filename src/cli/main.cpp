#include "cli/commands.h"

int main(int argc, char** argv) {
    CLI::App app{"Zorvane: solver for orthodox chess problems"};
    app.require_subcommand(1);
    const auto runMate = zorvane::cli::AddMateCommand(app);
    const auto runBench = zorvane::cli::AddBenchCommand(app);
    CLI11_PARSE(app, argc, argv);
    if (app.got_subcommand("mate")) return runMate();
    return runBench();
}
