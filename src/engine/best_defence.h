#pragma once
// Black's best defence: the reverse of a solve. At a position with Black to
// move and White to mate in the plies left, it says whether the mate holds
// and, if so, which black move holds out longest; if not, which move refutes
// it. Cheap answers come first (a single reply, mates at once, the register)
// and a search only when they say nothing.
//
// The routines below take a position with Black to move whose m_pThread is set
// (with the task's job in its context) and whose m_shPliesLeft is the task's
// even number of plies. Their children are built in the thread's board stack.
#include "core/chessboard.h"
#include "core/move.h"
#include "engine/solve_driver.h"
#include "engine/solve_job.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zorvane {

// m_cResult before anything is known; it reads as negative (-2) in a signed byte.
constexpr int DEFENCE_RESULT_UNKNOWN = 254;
// The search's repetition result (-3) in the same unsigned reading; it counts as no mate.
constexpr int DEFENCE_RESULT_REPETITION = 253;
// m_wRegisterDepth when no table of the program knows the position.
constexpr uint16_t REGISTER_DEPTH_UNKNOWN = 65535;

// A black move and its long notation.
struct DefenceMove {
    TMove move;
    std::string text;
};

struct TDefenceResult {
    bool m_bOnlyReply = false;    // one black move, or one that avoids a quick mate
    bool m_bFastMateOnly = false; // that move only avoids a quick mate
    uint16_t m_wRegisterDepth = REGISTER_DEPTH_UNKNOWN;
    // DEFENCE_RESULT_UNKNOWN, 1 the mate holds, 0 refuted, below 0 doubtful.
    int m_cResult = DEFENCE_RESULT_UNKNOWN;
    bool m_bFromRegister = false; // the temporary register answered for the position
    std::vector<DefenceMove> refutations;
    std::vector<DefenceMove> equivalentMoves;
};

// What the task is asked: `position` with Black to move (its parents, when
// it has them, are the line played to it) and `plies` (even) left; the plain
// command, or the thorough one.
struct DefenceRequest {
    const TChessboard* position = nullptr;
    int plies = 0;
    bool thorough = false;
    SolveOptions options; // of the solves the task runs; languageId for its texts
};

// A box for the user beside the status line.
struct DefenceBox {
    std::wstring title;
    std::wstring text;
};

// The answer: the move to play on the board (null for none) and the text for
// the status line, with the boxes the window shows before it.
struct DefenceOutcome {
    TDefenceResult result;
    TMove move;
    std::string moveText; // long notation; empty without a move
    std::wstring text;
    std::vector<DefenceBox> boxes;
    std::string heuristics;  // the set the full search started with, as text; empty for none
    bool stopped = false;    // the user stopped the task
    bool repetition = false; // the position repeats one of the line: nothing was searched
};

// The whole task for the job's problem, on the calling thread. The problem's
// temporary register is swapped for one of the task's own while it runs.
// Throws ChessException for a position that cannot be set up or a white king
// in check; std::invalid_argument for a request that is not Black to move.
DefenceOutcome FindBestDefence(SolveJob& job, const DefenceRequest& request);

// What the endgame tables of the solve say of every black move: the plies of
// White's mate after the longest defence (the move of `list`, with the other
// refuting ones behind it in the thorough form), 0 when a move refutes, and
// REGISTER_DEPTH_UNKNOWN when a move lies beyond the tables and none refutes.
int FindDefenceInGlobalRegister(TChessboard& position, std::vector<DefenceMove>& list, bool bThorough);

// True when exactly one black move avoids a mate in one (and, with more
// plies left, in two, three and four); that move goes to `move`.
bool FindOnlyDefence(TChessboard& position, TMove& move);

// The fast look at Black's moves, for long stipulations: 0 with the
// refutations in `list`, 1 with the longest defences in `list`, and
// DEFENCE_RESULT_UNKNOWN when it cannot tell (the caller searches).
int FindRefutationsQuickly(TChessboard& position, std::vector<DefenceMove>& list, bool bThorough);

// Against a mate of `depth` White plies: the black move after which White has
// the fewest solutions, `expected` first among equals. `list` gets the moves
// as good as the best. False, with a null move, when no move was found.
// Throws std::runtime_error("Thread stopped") on a stop; `move` then holds
// the best found so far.
bool FindLongestDefence(TChessboard& position, TMove& move, int depth, const TMove& expected,
                        std::vector<DefenceMove>& list);

// `afterBlack` with White to move: whether `key` leaves White one mating move
// only, at each of his turns, in every line of a mate of `depth` plies.
bool IsSolutionForced(const TChessboard& afterBlack, const TMove& key, int depth);

// The last resort: moves that allow a mate of 1, 3, 5... plies are dropped
// until one is left. `uncertain` is set when several are left at the end and
// the first is given.
TMove FindDefenceByElimination(TChessboard& position, bool& uncertain);

// Whether White mates in `plies` (odd) against every black move of `position`.
bool FindMateOfDepth(const TChessboard& position, int plies);

} // namespace zorvane
