// zorvane-cli defend --fen PLACEMENT --moves N: Black's best defence against
// a direct mate in N moves, Black to move.
#include "cli/commands.h"
#include "cli/fen_option.h"
#include "cli/number_option.h"
#include "cli/table_option.h"
#include "core/chess_exception.h"
#include "core/fen.h"
#include "engine/mate_search.h"
#include "engine/solver.h"
#include "problems/text_encoding.h"

#include <cstdio>
#include <memory>
#include <string>

namespace zorvane::cli {

namespace {

struct DefendOptions {
    std::string fen;
    int moves = 0;
    bool thorough = false;
    bool safeMode = false;
    TableOption tables;
};

int runDefend(const DefendOptions& options) {
    // The position stands alone: Black to move with 2N plies left, every
    // castling the board allows, no en passant capture.
    const int plies = 2 * options.moves;
    const std::optional<FenPosition> read = ReadFenOption(options.fen, plies);
    if (!read) return 2;
    const TChessboard& board = read->board;
    TChessProblem problem;
    problem.startPosition = board;
    SetStipulation(problem, options.moves);
    DefenceRequest request;
    request.position = &problem.startPosition;
    request.plies = plies;
    request.thorough = options.thorough;
    request.options.quickMode = !options.safeMode;
    const std::unique_ptr<TTableSet> tables = TablesFor(options.tables, board);
    request.options.tables = tables.get();
    DefenceOutcome outcome;
    try {
        outcome = Solver().Defend(problem, request);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    for (const DefenceBox& box : outcome.boxes)
        std::printf("[%s] %s\n", WideToUtf8(box.title).c_str(), WideToUtf8(box.text).c_str());
    std::printf("%s\n", WideToUtf8(outcome.text).c_str());
    return 0;
}

} // namespace

Runner AddDefendCommand(CLI::App& app) {
    auto options = std::make_shared<DefendOptions>();
    CLI::App* defend = app.add_subcommand(
        "defend", "Find Black's best defence against a direct mate in N moves, Black to move");
    defend
        ->add_option(
            "--fen", options->fen,
            "The position as FEN: the placement alone, or a full FEN with Black to move (\"b\"); every "
            "castling the board allows")
        ->required();
    AddWholeNumber(defend, "--moves", options->moves, 1, MAX_STIPULATION_MOVES,
                   "White's moves left: the mate in N moves to defend against")
        ->required();
    defend->add_flag("--thorough", options->thorough,
                     "The more thorough search: an only reply is searched behind as well");
    defend->add_flag("--safe-mode", options->safeMode,
                     "Search repeated positions again instead of pruning them");
    AddTableOptions(defend, options->tables);
    return [options] { return runDefend(*options); };
}

} // namespace zorvane::cli
