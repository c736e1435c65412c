#pragma once
// The endgame tables of the solving commands: --tables DIR and --no-tables.
#include "core/chessboard.h"
#include "global_register/table_set.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <string>

namespace zorvane::cli {

struct TableOption {
    std::string dir; // empty: the program's data folder
    bool off = false;
};

void AddTableOptions(CLI::App* command, TableOption& option);

// The base folder of the tables: `dir`, or the program's data folder.
std::filesystem::path TablesBase(const std::string& dir);

// The tables of a position's men and of all they can come to, read from the
// option's folder; none when the option is off or no table holds the men. A
// damaged file is told on stderr and the solve goes on without tables.
std::unique_ptr<TTableSet> TablesFor(const TableOption& option, const TChessboard& root);

} // namespace zorvane::cli
