#include "cli/table_option.h"

#include "platform/data_directory.h"

#include <cstdio>

namespace zorvane::cli {

void AddTableOptions(CLI::App* command, TableOption& option) {
    CLI::Option* dir = command->add_option(
        "--tables", option.dir,
        "Folder of the endgame tables (default: the program's data folder); made by zorvane-cli tables make");
    command->add_flag("--no-tables", option.off, "Ask no endgame table")->excludes(dir);
}

std::filesystem::path TablesBase(const std::string& dir) {
    return dir.empty() ? platform::ProgramDataDirectory() : std::filesystem::path(dir);
}

std::unique_ptr<TTableSet> TablesFor(const TableOption& option, const TChessboard& root) {
    if (option.off) return nullptr;
    std::string error;
    std::unique_ptr<TTableSet> tables = LoadTablesFor(TablesBase(option.dir), root, error);
    if (!error.empty()) std::fprintf(stderr, "%s; solving without endgame tables\n", error.c_str());
    return tables;
}

} // namespace zorvane::cli
