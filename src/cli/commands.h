#pragma once
// The subcommands of zorvane-cli. Each registers its options on the parser and
// returns the process exit code when run: 0 done, 1 a check failed, 2 bad input.
#include <CLI/CLI.hpp>

#include <functional>

namespace zorvane::cli {

using Runner = std::function<int()>;

Runner AddMateCommand(CLI::App& app);
Runner AddDefendCommand(CLI::App& app);
Runner AddBenchCommand(CLI::App& app);
Runner AddCheckCommand(CLI::App& app);
Runner AddFormatCommand(CLI::App& app);
Runner AddSolveCommand(CLI::App& app);
Runner AddTablesCommand(CLI::App& app);

} // namespace zorvane::cli
