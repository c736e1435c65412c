// zorvane-cli mate --fen PLACEMENT --moves N: the keys of a direct mate.
#include "cli/commands.h"
#include "core/chess_exception.h"
#include "core/fen.h"
#include "engine/mate_search.h"

#include <cstdio>
#include <memory>

namespace zorvane::cli {

namespace {

struct MateOptions {
    std::string fen;
    int moves = 0;
    bool safeMode = false;
    bool noRegister = false;
};

int runMate(const MateOptions& options) {
    if (options.moves < 1 || options.moves > MAX_STIPULATION_MOVES) {
        std::fprintf(stderr, "Improper number of moves: %d (a direct mate takes 1 to %d moves)\n", options.moves,
                     MAX_STIPULATION_MOVES);
        return 2;
    }
    TChessboard board = EmptyChessboard();
    const std::string placement = options.fen.substr(0, options.fen.find(' '));
    if (options.fen.find('{') != std::string::npos || !ReadFenPlacement(placement, board.m_aSquares)) {
        std::fprintf(stderr, "Improper FEN code.\n");
        return 2;
    }
    MateProof proof(options.safeMode, !options.noRegister);
    MateKeys keys;
    try {
        SetupChessboard(board, true);
        keys = proof.FindKeys(board, options.moves);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    if (keys.texts.empty()) std::printf("Not found any solutions for #%d\n", options.moves);
    for (const std::string& key : keys.texts) std::printf("%s\n", key.c_str());
    std::printf("nodes: %llu\ntime: %.0f ms\n", static_cast<unsigned long long>(keys.nodes), keys.milliseconds);
    return 0;
}

} // namespace

Runner AddMateCommand(CLI::App& app) {
    auto options = std::make_shared<MateOptions>();
    CLI::App* mate = app.add_subcommand("mate", "Print every key of a direct mate in N moves, White to move");
    mate->add_option("--fen", options->fen, "Placement of the men, as in FEN (the other fields are ignored)")
        ->required();
    mate->add_option("--moves", options->moves, "Number of moves of the stipulation (1 to 255)")->required();
    mate->add_flag("--safe-mode", options->safeMode, "Search repeated positions again instead of pruning them");
    mate->add_flag("--no-register", options->noRegister, "Search without the memory of solved positions");
    return [options] { return runMate(*options); };
}

} // namespace zorvane::cli
