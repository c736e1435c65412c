#include "engine/find_mate.h"

#include "core/castling.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/rays.h"
#include "core/thread_context.h"
#include "engine/register_hooks.h"
#include "engine/search_config.h"
#include "problems/chess_problem.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace zorvane {

namespace {

// Plies left below which the steps count nodes and Black's replies come lazily.
constexpr int SHALLOW_PLIES = 4;
// Repetitions are looked for in safe mode only this deep.
constexpr int SAFE_MODE_REPETITION_PLIES = 14;
constexpr auto PAUSE_POLL = std::chrono::milliseconds(100);
constexpr auto SUSPEND_POLL = std::chrono::milliseconds(10);

// What a step does after reading the command word.
enum class Command { Go, Return, Jumped };

// The command word, read without the lock at each move. Stop returns 0; a
// pause holds the thread here; a jump unwinds to its ply, where the list is
// rearranged so that the step goes on with another move.
Command pollCommand(TChessProblem& problem, const TThreadContext& ctx, int n, TMove* moves, int count, int& index,
                    int8_t& result) {
    for (;;) {
        const uint8_t command = problem.m_nCommand.load(std::memory_order_acquire);
        if (command == COMMAND_RUN) return Command::Go;
        const uint16_t target = problem.m_wCommandThread.load(std::memory_order_relaxed);
        if (target != ALL_THREADS && target != ctx.m_shThreadId) return Command::Go;
        if (command >= COMMAND_STOP) {
            result = RESULT_NO_MATE;
            return Command::Return;
        }
        if (command == COMMAND_PAUSE) {
            std::this_thread::sleep_for(PAUSE_POLL);
            continue;
        }
        // A jump.
        const int depth = problem.m_wCommandDepth;
        if (n < depth) {
            // The White step right below the target answers "mate", so that
            // the Black step there simply goes on with its next reply.
            result = (n & 1) && n + 1 == depth ? RESULT_MATE : RESULT_NO_MATE;
            return Command::Return;
        }
        problem.LockCommand();
        if (problem.m_nCommand.load(std::memory_order_relaxed) == COMMAND_JUMP) {
            if (index > 0) {
                if (problem.m_nCommandMode == 1 && index < count) {
                    std::swap(moves[index], moves[index - 1]);
                } else if (problem.m_nCommandMode == 2) {
                    const TMove interrupted = moves[index - 1];
                    std::memmove(moves + index - 1, moves + index, sizeof(TMove) * static_cast<size_t>(count - index));
                    moves[count - 1] = interrupted;
                }
                --index;
            }
            problem.m_wCommandThread.store(problem.m_wSavedCommandThread, std::memory_order_relaxed);
            problem.m_nCommand.store(problem.m_nSavedCommand, std::memory_order_release);
        }
        problem.UnlockCommand();
        return Command::Jumped;
    }
}

// A ply that can be taken back: no pawn move, no capture, no promotion.
inline bool reversible(const TChessboard& position) {
    const TMove move = position.m_LastMove;
    if (move.from == move.to) return true;
    if (move.promotion & KIND_MASK || move.enPassant) return false;
    if ((position.m_aSquares[move.to] & KIND_MASK_MARKED) == KIND_PAWN) return false;
    return position.m_pParent->m_aSquares[move.to] == 0;
}

inline bool samePosition(const TChessboard& a, const TChessboard& b) {
    return std::memcmp(a.m_aSquares, b.m_aSquares, 64) == 0 && LiveCastlingRooks(a) == LiveCastlingRooks(b);
}

// The plies left of the position four plies back if the child repeats it, else 0.
int repetitionOf(const TChessboard& child, int limit) {
    const TChessboard* back = &child;
    for (int i = 0; i < 4; ++i) {
        if (!back->m_pParent || !reversible(*back)) return 0;
        back = back->m_pParent;
    }
    if (back->m_shPliesLeft == 0 || back->m_shPliesLeft > limit) return 0;
    if ((back->m_shPliesLeft ^ child.m_shPliesLeft) & 1) return 0;
    return samePosition(*back, child) ? back->m_shPliesLeft : 0;
}

// Whether the same position stands once more, further back along reversible plies.
bool repeatedTwice(const TChessboard& child) {
    const TChessboard* back = &child;
    for (int plies = 1; back->m_pParent && reversible(*back); ++plies) {
        back = back->m_pParent;
        if (plies > 4 && (plies & 1) == 0 && samePosition(*back, child)) return true;
    }
    return false;
}

template <class Config> struct Steps {
    static int8_t whiteStep(TChessboard& b, bool bProbe);
    static int8_t blackStep(TChessboard& b);
};

// Whether a White move could give check: the moved man aims at the king from
// `to`, it leaves a line on which a White slider stands behind it, or it takes
// en passant and so may open a line through the taken pawn's square.
inline bool mayCheck(const TChessboard& b, const TMove& m, int kind, bool discoverer) {
    if (discoverer) return true;
    if (kind == KIND_PAWN && ((m.from ^ m.to) & 7) && !b.m_aSquares[m.to]) return true;
    const int king = b.blackKing();
    const int dc = absInt(colOf(king) - colOf(m.to)), dr = rowOf(king) - rowOf(m.to);
    const int movedKind = (m.promotion & KIND_MASK) ? (m.promotion & KIND_MASK) : kind;
    switch (movedKind) {
    case KIND_KNIGHT: return dc * absInt(dr) == 2;
    case KIND_PAWN: return dc == 1 && dr == 1;
    case KIND_BISHOP: return dc == absInt(dr);
    case KIND_ROOK: return dc == 0 || dr == 0;
    case KIND_QUEEN: return dc == 0 || dr == 0 || dc == absInt(dr);
    case KIND_KING: return absInt(colOf(m.to) - colOf(m.from)) >= 2; // castling brings a rook
    default: return false;
    }
}

// Whether the man on `square` screens the black king from a White slider.
inline bool screensKing(const TChessboard& b, int square) {
    const int king = b.blackKing();
    const int step = LineStep(king, square);
    if (step == 0 || FirstManOnLine(b.m_aSquares, king, step) != square) return false;
    const int behind = FirstManOnLine(b.m_aSquares, square, step);
    const uint8_t mask = IsDiagonalStep(step) ? WHITE_DIAGONAL : WHITE_LINE;
    return behind >= 0 && (b.m_aSquares[behind] & mask) == mask;
}

inline bool tryMate(const TChessboard& b, TChessboard& child, TMove& move) {
    CopyToChild(child, b);
    return MakeWhiteMove(child, move) && child.m_cBlackChecker >= 0 && !BlackHasLegalMove(child);
}

bool mateInOne(TChessboard& b, TMove* mateMove) {
    TThreadContext& ctx = *b.m_pThread;
    TChessboard& child = ctx.m_aBoards[b.m_shPliesLeft];
    TMove moves[MAX_MOVES];
    auto found = [&](const TMove& move) {
        if (mateMove) *mateMove = move;
        return true;
    };
    if (b.m_cWhiteChecker >= 0) {
        const int count = GenerateWhiteEvasions(b, moves);
        for (int i = 0; i < count; ++i)
            if (tryMate(b, child, moves[i])) return found(moves[i]);
        return false;
    }
    // Only moves that can give check are played, man by man in square order.
    for (int sq = 0; sq < 64; ++sq) {
        const uint8_t man = b.m_aSquares[sq];
        if (!isWhite(man)) continue;
        const int count = GenerateWhiteManMoves(b, sq, moves);
        if (count == 0) continue;
        const bool discoverer = screensKing(b, sq);
        const int kind = man & KIND_MASK;
        for (int i = 0; i < count; ++i)
            if (mayCheck(b, moves[i], kind, discoverer) && tryMate(b, child, moves[i])) return found(moves[i]);
    }
    return false;
}

template <class Config> int8_t Steps<Config>::whiteStep(TChessboard& b, bool bProbe) {
    TThreadContext& ctx = *b.m_pThread;
    TChessProblem& problem = *b.m_pProblem;
    const int n = b.m_shPliesLeft;
    const int pliesDone = b.m_shPliesTotal - n;

    // 1. The tables of the global register.
    if constexpr (Config::kGlobalRegister) {
        if (b.m_wFlags & FLAG_GLOBAL_REGISTER) {
            const int plies = search_hooks::ProbeGlobalRegister<Config>(b);
            if (plies == 0) return RESULT_NO_MATE;
            if (plies != -2) return plies <= n ? RESULT_MATE : RESULT_NO_MATE;
        }
    }
    // 2. The temporary register.
    if constexpr (Config::kTemporaryRegister) {
        if (bProbe && b.m_shPliesTotal >= 10 && n >= 3) {
            const int8_t known = search_hooks::ProbeTemporaryRegister<Config>(b);
            if (known >= RESULT_DOUBTFUL && (known != RESULT_DOUBTFUL || b.m_bPass < 2)) return known;
        }
    } else {
        (void)bProbe;
    }
    // 3. The last plies.
    if (n < SHALLOW_PLIES) {
        problem.m_nNodes.fetch_add(1, std::memory_order_relaxed);
        if (n == 1) {
            TMove mate;
            if (!mateInOne(b, &mate)) return RESULT_NO_MATE;
            ctx.m_bRecaptured = mate.to == b.m_LastMove.to;
            return RESULT_MATE;
        }
        // Mate in two starts by looking for a mate at once.
        TMove mate;
        if (mateInOne(b, &mate)) {
            ctx.m_bRecaptured = mate.to == b.m_LastMove.to;
            return RESULT_MATE;
        }
    }
    // 5. The regular visit to the outside world.
    if ((n & 15) == 9 && (n == 9 || pliesDone >= 9) && problem.m_pfnProgress)
        problem.m_pfnProgress(problem, ctx, problem.m_pProgressUser);

    // 7. The moves: one stage, in base order unless ordering is on.
    TMove moves[MAX_MOVES];
    int count = GenerateWhiteMovesOrEvasions(b, moves);
    if constexpr (Config::kOrdering) search_hooks::SortWhiteMoves<Config>(b, moves, count);
    // 8. Hand-off to the thread levels near the top.
    if constexpr (Config::kLevels) {
        const int8_t levels = search_hooks::HandToLevels<Config>(b, moves, count);
        if (levels != -128) return levels;
    }

    ctx.m_aRepetition[n] = 0;
    ctx.m_aMoveCount[n] = static_cast<uint8_t>(count);
    ctx.m_apMoves[n] = moves;
    int doubtful = 0, repetitions = 0;
    TChessboard& child = ctx.m_aBoards[n];
    for (int i = 0; i < count; ++i) {
        // 9. Command word, then the move.
        int8_t commanded;
        switch (pollCommand(problem, ctx, n, moves, count, i, commanded)) {
        case Command::Return: return commanded;
        case Command::Jumped: --i; continue;
        case Command::Go: break;
        }
        ctx.m_aMoveIndex[n] = static_cast<uint8_t>(i);
        CopyToChild(child, b);
        if (!MakeWhiteMove(child, moves[i])) continue;

        // 10. A repeated position is not searched again.
        if (const int first = repetitionOf(child, problem.m_shRepetitionLimit)) {
            const bool skip = !problem.m_bSafeMode ||
                              (n >= SAFE_MODE_REPETITION_PLIES && (!ctx.m_bForcedMate || n > 15 || repeatedTwice(child)));
            if (skip) {
                ctx.m_aRepetition[n] = std::max<uint16_t>(ctx.m_aRepetition[n], static_cast<uint16_t>(first));
                ++repetitions;
                continue;
            }
        }
        // 11. The heuristics' bets, then Black's step.
        if constexpr (Config::kHeuristics) {
            if (b.m_bPass == 1 && search_hooks::HeuristicsRejectChild<Config>(child)) {
                ++doubtful;
                continue;
            }
        }
        const int8_t result = blackStep(child);
        if (result == RESULT_NO_MATE) continue;
        if (result == RESULT_DOUBTFUL) {
            ++doubtful;
            continue;
        }
        if (result < RESULT_REFUTED_EARLY) {
            ++repetitions;
            continue;
        }
        if (result > 0) {
            ctx.m_bRecaptured = moves[i].to == b.m_LastMove.to;
            if constexpr (Config::kTemporaryRegister) {
                // A line cut short by a stop or held by a pause proves nothing.
                if (b.m_shPliesTotal >= 10 && n >= 3 && problem.m_nCommand.load(std::memory_order_relaxed) == COMMAND_RUN)
                    search_hooks::StoreTemporaryRegister<Config>(b, RESULT_MATE);
            }
            return RESULT_MATE;
        }
    }

    // 12. Verdict.
    if (problem.StopMeant(ctx.m_shThreadId)) return RESULT_NO_MATE;
    int8_t verdict;
    if (!problem.m_bSafeMode) {
        verdict = repetitions ? RESULT_REPETITION : doubtful ? RESULT_DOUBTFUL : RESULT_NO_MATE;
        if (repetitions) ctx.m_aRepetition[n + 1] = std::max(ctx.m_aRepetition[n + 1], ctx.m_aRepetition[n]);
        // Below the last pass a repetition is a doubt, and so the register keeps it.
        if (repetitions && b.m_bPass < 2) ++doubtful;
    } else if (n < ctx.m_aRepetition[n]) {
        ctx.m_aRepetition[n + 1] = std::max(ctx.m_aRepetition[n + 1], ctx.m_aRepetition[n]);
        verdict = RESULT_REPETITION;
    } else {
        verdict = doubtful == 0 && b.m_uHeuristics == 0 ? RESULT_NO_MATE : RESULT_DOUBTFUL;
    }
    if constexpr (Config::kTemporaryRegister) {
        if (b.m_shPliesTotal >= 10 && n >= 3) {
            if (!doubtful && (!problem.m_bSafeMode || !repetitions))
                search_hooks::StoreTemporaryRegister<Config>(b, RESULT_NO_MATE);
            else if (doubtful && (!problem.m_bSafeMode || b.m_uHeuristics))
                search_hooks::StoreTemporaryRegister<Config>(b, RESULT_DOUBTFUL);
        }
    }
    return verdict;
}

template <class Config> int8_t Steps<Config>::blackStep(TChessboard& b) {
    TThreadContext& ctx = *b.m_pThread;
    TChessProblem& problem = *b.m_pProblem;
    const int n = b.m_shPliesLeft;

    // 1. A held thread waits here; a stopped one unwinds.
    while (uint8_t suspended = ctx.m_nSuspended.load(std::memory_order_acquire)) {
        if (suspended > 1 || problem.StopMeant(ctx.m_shThreadId)) return RESULT_NO_MATE;
        std::this_thread::sleep_for(SUSPEND_POLL);
    }
    // 2. No plies left: mate or not.
    if (n == 0) return b.m_cBlackChecker >= 0 && !BlackHasLegalMove(b) ? int8_t{RESULT_MATE} : int8_t{RESULT_NO_MATE};

    // 3. Replies: all at once deeper down, one man at a time near the leaves,
    // where the first refutation usually ends the node.
    TMove moves[MAX_MOVES];
    const bool lazy = n < SHALLOW_PLIES && b.m_cBlackChecker < 0;
    int count = 0;
    int nextMan = 0;
    if (!lazy) {
        count = GenerateBlackMovesOrEvasions(b, moves);
        if constexpr (Config::kOrdering) {
            const int settled = search_hooks::SortBlackMoves<Config>(b, moves, count);
            if (settled == -2) return RESULT_NO_MATE;
            if (settled == -1) return RESULT_DOUBTFUL;
            if (settled < -2) return n < ctx.m_aRepetition[n + 1] ? static_cast<int8_t>(settled) : int8_t{RESULT_DOUBTFUL};
        }
    }
    ctx.m_aRepetition[n] = 0;
    ctx.m_aMoveCount[n] = static_cast<uint8_t>(count);
    ctx.m_apMoves[n] = moves;

    TChessboard& child = ctx.m_aBoards[n];
    bool anyLegal = false;
    for (;;) {
        if (lazy) {
            while (count == 0 && nextMan < 64) {
                if (isBlack(b.m_aSquares[nextMan])) count = GenerateBlackManMoves(b, nextMan, moves);
                ++nextMan;
            }
            if (count == 0) break;
        }
        for (int i = 0; i < count; ++i) {
            // 6. Command word, then the reply.
            int8_t commanded;
            switch (pollCommand(problem, ctx, n, moves, count, i, commanded)) {
            case Command::Return: return commanded;
            case Command::Jumped: --i; continue;
            case Command::Go: break;
            }
            CopyToChild(child, b);
            const int made = MakeBlackMove(child, moves[i], Config::kOrdering && n > 3);
            if (made == BLACK_MOVE_ILLEGAL) continue;
            anyLegal = true;
            ctx.m_aMoveIndex[n] = static_cast<uint8_t>(i);
            if (made == BLACK_MOVE_BEATS_WHITE) return RESULT_NO_MATE;

            // 8./9. White's step on the child; the register, once asked here, is not asked again there.
            bool probeInWhiteStep = true;
            if constexpr (Config::kTemporaryRegister) {
                if (n >= 3 && b.m_shPliesTotal >= 10) {
                    const int8_t known = search_hooks::ProbeTemporaryRegister<Config>(child);
                    if (known == RESULT_MATE) continue;
                    if (known >= RESULT_DOUBTFUL && (known != RESULT_DOUBTFUL || b.m_bPass < 2)) return known;
                    probeInWhiteStep = false;
                }
            }
            const int8_t result = whiteStep(child, probeInWhiteStep);
            // 10. One refutation or one doubt settles the node.
            if (result == RESULT_NO_MATE || result == RESULT_DOUBTFUL || result == RESULT_REFUTED_EARLY) return result;
            if (result < RESULT_REFUTED_EARLY) {
                if (n < ctx.m_aRepetition[n]) {
                    ctx.m_aRepetition[n + 1] = std::max(ctx.m_aRepetition[n + 1], ctx.m_aRepetition[n]);
                    return result;
                }
                return b.m_bPass == 1 ? RESULT_DOUBTFUL : RESULT_NO_MATE;
            }
            // A promotion answered by taking the new man is answered so whatever it became.
            if ((moves[i].promotion & KIND_MASK) && ctx.m_bRecaptured) {
                int kept = i + 1;
                for (int j = i + 1; j < count; ++j)
                    if (moves[j].from != moves[i].from || moves[j].to != moves[i].to) moves[kept++] = moves[j];
                count = kept;
            }
        }
        if (!lazy) break;
        count = 0;
    }
    // 11. No legal reply: mate or stalemate.
    if (!anyLegal) return b.m_cBlackChecker >= 0 ? int8_t{RESULT_MATE} : int8_t{RESULT_NO_MATE};
    return RESULT_MATE;
}

} // namespace

bool FindMateInOne(TChessboard& position, TMove* mateMove) { return mateInOne(position, mateMove); }
// The configuration is chosen once, at the entry: the steps below it test nothing for it.
int8_t FindMate(TChessboard& position, bool bProbe) {
    return position.m_pProblem->m_pRegister ? Steps<RegisterSearch>::whiteStep(position, bProbe)
                                            : Steps<PlainSearch>::whiteStep(position, bProbe);
}
int8_t FindMateBlackStep(TChessboard& position) {
    return position.m_pProblem->m_pRegister ? Steps<RegisterSearch>::blackStep(position)
                                            : Steps<PlainSearch>::blackStep(position);
}

} // namespace zorvane
