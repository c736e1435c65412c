#include "engine/find_mate.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/rays.h"
#include "core/square_sets.h"
#include "core/thread_context.h"
#include "engine/command_poll.h"
#include "engine/ffm_candidates.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristic_tests.h"
#include "engine/heuristics_catalogue.h"
#include "engine/move_ordering.h"
#include "engine/register_hooks.h"
#include "engine/table_hooks.h"
#include "engine/repetition.h"
#include "engine/search_config.h"
#include "engine/solve_job.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace zorvane {

namespace {

// Plies left below which the steps count nodes and Black's replies come lazily.
constexpr int SHALLOW_PLIES = 4;
// White's lists come man by man below this many plies left in any position,
// below the second limit in thin positions, and at the third under heuristic 2.
constexpr int MAN_BY_MAN_BELOW_PLIES = 11;
constexpr int MAN_BY_MAN_THIN_BELOW_PLIES = 13;
constexpr int MAN_BY_MAN_HEURISTIC_2_PLIES = 13;
// A thin position: fewer White heavy men and black bishops together than this.
constexpr int THIN_POSITION_MEN = 4;
constexpr auto SUSPEND_POLL = std::chrono::milliseconds(10);

// The next stage of a man-by-man list: the moves of `first` (a square, or -1)
// before all others, then the men square by square from a1, skipping `skip`.
// The strong move of the depth, when `first` has it, is put at the front.
template <bool White>
int nextManStage(const TChessboard& b, TMove* moves, int first, int skip, int& nextSquare,
                 const TMove& strong) {
    auto generate = [&](int square) {
        return White ? GenerateWhiteManMoves(b, square, moves) : GenerateBlackManMoves(b, square, moves);
    };
    if (first >= 0) {
        const int count = generate(first);
        for (int i = 1; i < count; ++i)
            if (moves[i] == strong) {
                std::swap(moves[0], moves[i]);
                break;
            }
        if (count) return count;
    }
    if (nextSquare >= 64) return 0;
    // The men of the side from `nextSquare` on, lowest square first.
    SquareSet men = MenOfColour(b, White ? WHITE : BLACK) & (~SquareSet{0} << nextSquare);
    for (; men; men &= men - 1) {
        const int square = __builtin_ctzll(men);
        nextSquare = square + 1;
        if (square == skip) continue;
        if (const int count = generate(square)) return count;
    }
    nextSquare = 64;
    return 0;
}

// Whether White's list at `n` plies left comes man by man: at moderate depths
// always, deeper only in thin positions, where sorting costs more than it gains.
bool incrementalStages(const TChessboard& b, int n) {
    if (n < MAN_BY_MAN_BELOW_PLIES) return true;
    if (n < MAN_BY_MAN_THIN_BELOW_PLIES && !(b.m_wFlags & FLAG_HEURISTIC_32) &&
        b.m_nWhiteQueens + b.m_nWhiteRooks + b.m_nBlackBishops < THIN_POSITION_MEN)
        return true;
    return n == MAN_BY_MAN_HEURISTIC_2_PLIES && (b.m_wFlags & FLAG_HEURISTIC_2);
}

template <class Config> struct Steps {
    static int8_t whiteStep(TChessboard& b, bool bProbe);
    static int8_t blackStep(TChessboard& b);
};

template <class Config> int8_t Steps<Config>::whiteStep(TChessboard& b, bool bProbe) {
    TThreadContext& ctx = *b.m_pThread;
    SolveJob& job = *ctx.m_pJob;
    const int n = b.m_shPliesLeft;
    const int pliesDone = b.m_shPliesTotal - n;

    // A forcing-moves run that started on its own lets the other bets in near the end of the line.
    if constexpr (Config::kForcedMate) {
        if (n <= ctx.m_shFfmOthersFromPlies && b.m_uHeuristics == ctx.m_uFfmAloneWord) {
            b.m_uHeuristics = ctx.m_uFfmFullWord;
            b.m_uHeuristicParams = ctx.m_uFfmFullParams;
        }
    }
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
        if (bProbe && RegisterDepth(b, n)) {
            const int8_t known = search_hooks::ProbeTemporaryRegister<Config>(b);
            if (known >= RESULT_DOUBTFUL && (known != RESULT_DOUBTFUL || b.m_bPass < 2)) return known;
        }
    } else {
        (void)bProbe;
    }
    // 3. The last plies.
    if (n < SHALLOW_PLIES) {
        job.m_nNodes.fetch_add(1, std::memory_order_relaxed);
        if (n == 1) {
            TMove mate;
            if (!FindMateInOne(b, &mate)) return RESULT_NO_MATE;
            ctx.m_bRecaptured = mate.to == b.m_LastMove.to;
            return RESULT_MATE;
        }
        // Mate in two starts by looking for a mate at once.
        TMove mate;
        if (FindMateInOne(b, &mate)) {
            ctx.m_bRecaptured = mate.to == b.m_LastMove.to;
            return RESULT_MATE;
        }
    }
    // 4. The regular visit to the outside world.
    // The register's memory is looked at there too: a purge before the quota
    // is reached spares the stores the wait of an urgent one.
    if ((n & 15) == 9 && (n == 9 || pliesDone >= 9)) {
        job.NoteLine(ctx, ctx.m_shRootPlies, n);
        if constexpr (Config::kTemporaryRegister) {
            if (job.m_pRegister->SoftPurgeDue()) job.m_pRegister->EmptySomeDataWhenRegisterFull(true);
        }
    }

    // 5. The moves, by stages: one man at a time from a1 at moderate depths, so
    // that a mate by the first men costs no generation of the rest; in check
    // the evasions; deep down all moves at once, ordered.
    MoveBuffer moves;
    const bool incremental = !Config::kForcedMate && b.m_cWhiteChecker < 0 && incrementalStages(b, n);
    int count = 0;
    int nextSquare = 0;
    int firstMan = -1;
    // In a forcing-moves run: whether a legal move was left out, and whether
    // the level's threats were shortened to the plies left.
    [[maybe_unused]] bool ffmPartial = false, ffmDepthCut = false;
    if constexpr (Config::kForcedMate) {
        const FfmList ffm =
            BuildFfmCandidates(b, ctx.m_nFfmLevel, ctx.m_bFfmAddCaptures != 0, ctx.m_aStrongMove[n], moves);
        count = ffm.count;
        ffmPartial = !ffm.complete;
        ffmDepthCut = ffm.depthCut;
        if (count == 0 && ffmPartial) {
            ctx.m_nDoubtfulReason = FFM_DOUBTFUL_REASON;
            return RESULT_DOUBTFUL;
        }
        // The candidates in the order of the ordinary search: its guess at the mating move holds here too.
        WhiteSortOutcome sorted;
        count = SortWhiteMoves(b, moves, count, false, sorted);
        if (sorted.mateFound) {
            ctx.m_bRecaptured = sorted.mate.to == b.m_LastMove.to;
            return RESULT_MATE;
        }
    } else if (!incremental) {
        count = GenerateWhiteMovesOrEvasions(b, moves);
        if constexpr (Config::kOrdering) {
            WhiteSortOutcome sorted;
            count = SortWhiteMoves(b, moves, count, false, sorted);
            if (sorted.mateFound) {
                ctx.m_bRecaptured = sorted.mate.to == b.m_LastMove.to;
                return RESULT_MATE;
            }
        }
    } else if constexpr (Config::kOrdering) {
        // The man that mated last time at this depth goes first.
        const TMove strong = ctx.m_aStrongMove[n];
        if (!strong.isNull() && isWhite(b.m_aSquares[strong.from])) firstMan = strong.from;
    }
    // 6. Hand-off to the thread levels near the top.
    if constexpr (Config::kLevels) {
        const int8_t levels = search_hooks::HandToLevels<Config>(b, moves, count);
        if (levels != -128) return levels;
    }

    ctx.m_aRepetition[n] = 0;
    ctx.m_apMoves[n] = moves;
    int doubtful = 0, repetitions = 0;
    TChessboard& child = ctx.m_aBoards[n];
    for (bool firstStage = true;; firstStage = false) {
        if (incremental) {
            count = nextManStage<true>(b, moves, firstStage ? firstMan : -1, firstMan, nextSquare,
                                       firstStage ? ctx.m_aStrongMove[n] : TMove{});
            if (count == 0) break;
        } else if (!firstStage) {
            break;
        }
        ctx.m_aMoveCount[n] = static_cast<uint8_t>(count);
        for (int i = 0; i < count; ++i) {
            // 7. Command word, then the move.
            if (int8_t commanded; CommandEndsStep(job, ctx, n, moves, count, i, commanded)) return commanded;
            ctx.m_aMoveIndex[n] = static_cast<uint8_t>(i);
            CopyToChild(child, b);
            if (!MakeWhiteMove(child, moves[i])) continue;

            // 8. A repeated position is not searched again.
            if (const int first = RepetitionOf(child, job.m_shRepetitionLimit)) {
                const bool skip = RepetitionSettles(job, ctx, n, child);
                if (skip) {
                    ctx.m_aRepetition[n] =
                        std::max<uint16_t>(ctx.m_aRepetition[n], static_cast<uint16_t>(first));
                    ++repetitions;
                    continue;
                }
            }
            // 9. The heuristics' bets, then Black's step.
            if constexpr (Config::kHeuristics) {
                if (b.m_bPass == 1 && (child.m_uHeuristics & SH_WHITE_MOVE_TESTS_MASK) &&
                    IsWhiteMoveDoubtful(child, ctx)) {
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
                    if (RegisterDepth(b, n) && job.m_nCommand.load(std::memory_order_relaxed) == COMMAND_RUN)
                        search_hooks::StoreTemporaryRegister<Config>(b, RESULT_MATE);
                }
                if constexpr (Config::kOrdering) ctx.m_aStrongMove[n] = moves[i];
                return RESULT_MATE;
            }
        }
    }

    // 10. Verdict. A forcing-moves node that left moves out proves no absence of mate.
    if (job.StopMeant(ctx.m_shThreadId)) return RESULT_NO_MATE;
    if constexpr (Config::kForcedMate) {
        if (ffmPartial) ++doubtful;
    }
    int8_t verdict;
    if (!job.m_bSafeMode) {
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
        if (RegisterDepth(b, n)) {
            if (!doubtful && (!job.m_bSafeMode || !repetitions))
                search_hooks::StoreTemporaryRegister<Config>(b, RESULT_NO_MATE);
            else if (doubtful && (!job.m_bSafeMode || b.m_uHeuristics))
                search_hooks::StoreTemporaryRegister<Config>(b, RESULT_DOUBTFUL);
        }
    }
    if constexpr (Config::kForcedMate) {
        if (ffmPartial && ffmDepthCut && verdict == RESULT_DOUBTFUL) return RESULT_FFM_DEPTH_END;
    }
    return verdict;
}

template <class Config> int8_t Steps<Config>::blackStep(TChessboard& b) {
    TThreadContext& ctx = *b.m_pThread;
    SolveJob& job = *ctx.m_pJob;
    const int n = b.m_shPliesLeft;

    // 1. A held thread waits here; a stopped one unwinds.
    while (uint8_t suspended = ctx.m_nSuspended.load(std::memory_order_acquire)) {
        if (suspended > 1 || job.StopMeant(ctx.m_shThreadId)) return RESULT_NO_MATE;
        std::this_thread::sleep_for(SUSPEND_POLL);
    }
    // 2. No plies left: mate or not.
    if (n == 0)
        return b.m_cBlackChecker >= 0 && !BlackHasLegalMove(b) ? int8_t{RESULT_MATE} : int8_t{RESULT_NO_MATE};

    // 3. Replies: all at once deeper down, ordered when ordering is on; one man
    // at a time near the leaves, where the first refutation usually ends the node.
    MoveBuffer moves;
    const bool lazy = n < SHALLOW_PLIES && b.m_cBlackChecker < 0;
    int count = 0;
    int nextSquare = 0;
    int firstMan = -1;
    if (!lazy) {
        count = GenerateBlackMovesOrEvasions(b, moves);
        if constexpr (Config::kOrdering) {
            if (n >= SHALLOW_PLIES) {
                // The ordering may settle the node; it notes a repetition in
                // m_aRepetition[n], which is cleared first for that.
                ctx.m_aRepetition[n] = 0;
                // Under bets the sort holds every reply against them first; near
                // the leaves the search is cheaper than the tests.
                count = SortBlackMoves<Config::kHeuristics>(b, moves, count, ctx.m_aStrongMove[n]);
                if (count == BLACK_SORT_NO_REPLY)
                    return b.m_cBlackChecker >= 0 ? int8_t{RESULT_MATE} : int8_t{RESULT_NO_MATE};
                if (count == BLACK_SORT_NO_MATE) return RESULT_NO_MATE;
                if (count == BLACK_SORT_DOUBTFUL) return RESULT_DOUBTFUL;
                if (count == BLACK_SORT_REPETITION) {
                    if (n < ctx.m_aRepetition[n]) {
                        ctx.m_aRepetition[n + 1] = std::max(ctx.m_aRepetition[n + 1], ctx.m_aRepetition[n]);
                        return RESULT_REPETITION;
                    }
                    return b.m_bPass == 1 ? RESULT_DOUBTFUL : RESULT_NO_MATE;
                }
            }
        }
    } else if constexpr (Config::kOrdering) {
        // The man that refuted last time at this depth goes first, else the king.
        const TMove strong = ctx.m_aStrongMove[n];
        firstMan = !strong.isNull() && isBlack(b.m_aSquares[strong.from]) ? strong.from : b.blackKing();
    }
    ctx.m_aRepetition[n] = 0;
    ctx.m_aMoveCount[n] = static_cast<uint8_t>(count);
    ctx.m_apMoves[n] = moves;

    TChessboard& child = ctx.m_aBoards[n];
    bool anyLegal = false;
    for (bool firstStage = true;; firstStage = false) {
        if (lazy) {
            count = nextManStage<false>(b, moves, firstStage ? firstMan : -1, firstMan, nextSquare,
                                        firstStage ? ctx.m_aStrongMove[n] : TMove{});
            if (count == 0) break;
        }
        for (int i = 0; i < count; ++i) {
            // 4. Command word, then the reply.
            if (int8_t commanded; CommandEndsStep(job, ctx, n, moves, count, i, commanded)) return commanded;
            CopyToChild(child, b);
            const int made = MakeBlackMove(child, moves[i], Config::kOrdering && n > 3);
            if (made == BLACK_MOVE_ILLEGAL) continue;
            anyLegal = true;
            ctx.m_aMoveIndex[n] = static_cast<uint8_t>(i);
            if (made == BLACK_MOVE_BEATS_WHITE) {
                if constexpr (Config::kOrdering) ctx.m_aStrongMove[n] = moves[i];
                return RESULT_NO_MATE;
            }
            // The sort found that this reply starts a band bet's wait.
            if constexpr (Config::kHeuristics) {
                if (moves[i].promotion & MOVE_MARK_DEFERS_BAND_CHECK) {
                    child.m_wFlags2 |= FLAGS2_BAND_CHECK_DEFERRED;
                    child.m_uHeuristicParams = HeuristicFingerprintOf(child, ctx);
                }
            }

            // 5. White's step on the child; the register, once asked here, is not asked again there.
            bool probeInWhiteStep = true;
            if constexpr (Config::kTemporaryRegister) {
                if (RegisterDepth(b, n)) {
                    const int8_t known = search_hooks::ProbeTemporaryRegister<Config>(child);
                    if (known == RESULT_MATE) continue;
                    if (known >= RESULT_DOUBTFUL && (known != RESULT_DOUBTFUL || b.m_bPass < 2)) return known;
                    probeInWhiteStep = false;
                }
            }
            int8_t result = whiteStep(child, probeInWhiteStep);
            // The end of a forcing run's depth is a doubt like any other.
            if constexpr (Config::kForcedMate) {
                if (result == RESULT_FFM_DEPTH_END) result = RESULT_DOUBTFUL;
            }
            // 6. One refutation or one doubt settles the node.
            if (result == RESULT_NO_MATE || result == RESULT_DOUBTFUL || result == RESULT_REFUTED_EARLY) {
                if constexpr (Config::kOrdering) ctx.m_aStrongMove[n] = moves[i];
                return result;
            }
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
                    if (moves[j].from != moves[i].from || moves[j].to != moves[i].to)
                        moves[kept++] = moves[j];
                count = kept;
            }
        }
        if (!lazy) break;
    }
    // 7. No legal reply: mate or stalemate.
    if (!anyLegal) return b.m_cBlackChecker >= 0 ? int8_t{RESULT_MATE} : int8_t{RESULT_NO_MATE};
    return RESULT_MATE;
}

} // namespace

// The configuration is chosen once, at the entry: the steps below it test nothing for it.
template <bool Tables, class Search>
auto dispatchSearch(const SolveJob& job, const TThreadContext& ctx, Search&& search) {
    // With the tables the same searches ask them too.
    auto run = [&](auto config) {
        using Config = decltype(config);
        if constexpr (Tables)
            return search(Steps<WithTables<Config>>{});
        else
            return search(Steps<Config>{});
    };
    if (ctx.m_bForcedMate) return job.m_pRegister ? run(ForcedMateRegisterSearch{}) : run(ForcedMateSearch{});
    if (job.m_bHeuristics && job.m_bMoveOrdering)
        return job.m_pRegister ? run(OrderedRegisterHeuristicSearch{}) : run(OrderedHeuristicSearch{});
    if (job.m_pRegister) return job.m_bMoveOrdering ? run(OrderedRegisterSearch{}) : run(RegisterSearch{});
    return job.m_bMoveOrdering ? run(OrderedSearch{}) : run(PlainSearch{});
}
template <class Search> auto dispatch(const TThreadContext& ctx, Search&& search) {
    const SolveJob& job = *ctx.m_pJob;
    return job.m_pTables ? dispatchSearch<true>(job, ctx, search) : dispatchSearch<false>(job, ctx, search);
}
int8_t FindMate(TChessboard& position, bool bProbe) {
    return dispatch(*position.m_pThread, [&](auto steps) { return steps.whiteStep(position, bProbe); });
}
int8_t FindMateBlackStep(TChessboard& position) {
    return dispatch(*position.m_pThread, [&](auto steps) { return steps.blackStep(position); });
}
int8_t FindMateWithoutBets(TChessboard& position) {
    return Steps<OrderedSearch>::whiteStep(position, false);
}

} // namespace zorvane
