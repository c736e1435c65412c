// zorvane-cli mate --fen PLACEMENT --moves N: the keys of a direct mate.
#include "cli/commands.h"
#include "cli/fen_option.h"
#include "cli/number_option.h"
#include "cli/table_option.h"
#include "core/chess_exception.h"
#include "core/fen.h"
#include "engine/mate_search.h"
#include "engine/solver.h"

#include <cstdio>
#include <memory>

namespace zorvane::cli {

namespace {

struct MateOptions {
    std::string fen;
    int moves = 0;
    bool safeMode = false;
    bool noRegister = false;
    TableOption tables;
};

int runMate(const MateOptions& options) {
    const std::optional<FenPosition> read = ReadFenOption(options.fen, 2 * options.moves - 1);
    if (!read) return 2;
    const TChessboard& board = read->board;
    const FenNotes& notes = read->notes;
    if (notes.enPassantNamed && notes.enPassantSquare < 0) {
        std::fprintf(stderr, "Improper FEN code.\n");
        return 2;
    }
    // A placement alone allows every castling the board allows; a full FEN
    // is obeyed: its castling field and en passant square hold for the solve.
    TChessProblem problem;
    problem.startPosition = board;
    SetStipulation(problem, options.moves);
    SolveRequest request;
    request.options.allSolutions = true;
    request.options.quickMode = !options.safeMode;
    request.options.useRegister = !options.noRegister;
    request.options.start.deniedCastling = notes.deniedCastling;
    request.options.start.enPassantSquare = notes.enPassantSquare;
    const std::unique_ptr<TTableSet> tables = TablesFor(options.tables, board);
    request.options.tables = tables.get();
    SolveResult result;
    try {
        result = Solver().Solve(problem, request);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    if (result.texts.empty()) std::printf("Not found any solutions for #%d\n", options.moves);
    for (const std::string& key : result.texts) std::printf("%s\n", key.c_str());
    std::printf("nodes: %llu\ntime: %.0f ms\n", static_cast<unsigned long long>(result.nodes),
                result.milliseconds);
    return 0;
}

} // namespace

Runner AddMateCommand(CLI::App& app) {
    auto options = std::make_shared<MateOptions>();
    CLI::App* mate = app.add_subcommand("mate", "Print every key of a direct mate in N moves, White to move");
    mate->add_option(
            "--fen", options->fen,
            "The position as FEN: the placement alone (every castling the board allows), or a full FEN "
            "whose castling rights and en passant square are obeyed; White to move")
        ->required();
    AddWholeNumber(mate, "--moves", options->moves, 1, MAX_STIPULATION_MOVES,
                   "Number of moves of the stipulation")
        ->required();
    mate->add_flag("--safe-mode", options->safeMode,
                   "Search repeated positions again instead of pruning them");
    mate->add_flag("--no-register", options->noRegister, "Search without the memory of solved positions");
    AddTableOptions(mate, options->tables);
    return [options] { return runMate(*options); };
}

} // namespace zorvane::cli
