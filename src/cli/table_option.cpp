#include "cli/table_option.h"

#include "core/chess_exception.h"
#include "global_register/table_file.h"
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
    const std::filesystem::path base = TablesBase(option.dir);
    std::error_code error;
    if (!std::filesystem::is_directory(base / TABLE_FOLDER, error)) return nullptr;
    auto tables = std::make_unique<TTableSet>(base);
    try {
        tables->LoadReachable(root);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s; solving without endgame tables\n", e.what());
        return nullptr;
    }
    return tables->Covers(root) ? std::move(tables) : nullptr;
}

} // namespace zorvane::cli
