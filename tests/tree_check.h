#pragma once
// Checks a solution tree line by line against solves of its own positions:
// each White continuation mates within the moves left after its defence and
// in the number of moves the tree says, where the tree lists all replies it
// lists every legal Black move and every mating continuation, each
// refutation leaves no mate, each threat mates after a Black pass, and each
// try is refuted by exactly the moves it names.
#include "core/movegen.h"
#include "engine/mate_search.h"
#include "engine/solution_tree_text.h"
#include "engine/solve_driver.h"
#include "problems/notation.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>

namespace zorvane {

class TreeChecker {
  public:
    TreeChecker(const TChessboard& start, int moves, std::string name)
        : m_start(start), m_moves(moves), m_name(std::move(name)) {
        m_start.m_pParent = nullptr;
        m_start.m_LastMove = TMove{};
        m_start.m_shPliesLeft = m_start.m_shPliesTotal = static_cast<uint16_t>(2 * moves - 1);
        m_problem.startPosition = m_start;
        SetStipulation(m_problem, moves);
        m_options.allSolutions = true;
        m_options.heuristics = false;
    }

    void check(const SolutionTree& tree) {
        m_fullDepth = tree.fullDepth;
        EXPECT_FALSE(tree.stopped) << m_name;
        for (const WhitePlay& key : tree.keys) {
            SCOPED_TRACE(m_name + " key " + TreeMoveText(key.move, 1));
            checkWhite(key, m_start, m_moves, 1);
        }
        for (const WhitePlay& attempt : tree.tries) {
            SCOPED_TRACE(m_name + " try " + TreeMoveText(attempt.move, 1));
            checkTry(attempt);
        }
        if (!tree.setPlay.empty()) {
            SCOPED_TRACE(m_name + " set play");
            auto passed = std::make_unique<TChessboard>(m_start);
            passed->m_shPliesLeft = static_cast<uint16_t>(m_start.m_shPliesLeft - 1);
            for (const BlackDefence& defence : tree.setPlay) {
                EXPECT_FALSE(defence.replies.empty());
                checkDefence(defence, *passed, m_moves - 1, 1, {});
            }
        }
    }

    int linesChecked() const { return m_lines; }

  private:
    // White's keys within `moves` from `position` (White to move) and the
    // plies at which each was first proven.
    std::map<TMove, int, MoveKeyLess> matesFrom(const TChessboard& position, int moves) {
        SolveJob job(m_problem);
        const SolveResult result = m_driver.SolveFromPosition(job, position, 2 * moves - 1, m_options);
        std::map<TMove, int, MoveKeyLess> mates;
        for (const auto& [move, entry] : result.solutions) mates[move] = entry.plies;
        return mates;
    }

    static std::set<TMove, MoveKeyLess> legalMoves(const TChessboard& position) {
        TMove moves[MAX_MOVES];
        const int count = position.whiteToMove() ? GenerateWhiteMovesOrEvasions(position, moves)
                                                 : GenerateBlackMovesOrEvasions(position, moves);
        std::set<TMove, MoveKeyLess> legal;
        for (int i = 0; i < count; ++i) {
            auto child = std::make_unique<TChessboard>();
            TMove move = moves[i];
            if (PlayMove(position, *child, move)) legal.insert(moves[i]);
        }
        return legal;
    }

    // `play` is White's move number `number` from `before` with `moves` left, itself counted.
    void checkWhite(const WhitePlay& play, const TChessboard& before, int moves, int number) {
        ++m_lines;
        auto after = std::make_unique<TChessboard>();
        TMove move = play.move.move;
        ASSERT_TRUE(PlayMove(before, *after, move)) << TreeMoveText(play.move, 1);
        EXPECT_GE(play.mateIn, 1);
        EXPECT_LE(play.mateIn, moves);
        if (play.move.mate) {
            EXPECT_TRUE(after->blackInCheck());
            EXPECT_FALSE(SideToMoveHasLegalMove(*after));
            EXPECT_EQ(play.mateIn, 1);
            return;
        }
        if (!play.threat.empty()) {
            auto passed = std::make_unique<TChessboard>(*after);
            passed->m_pParent = after.get();
            passed->m_LastMove = TMove{};
            passed->m_shPliesLeft = static_cast<uint16_t>(after->m_shPliesLeft - 1);
            const auto mates = matesFrom(*passed, play.threatMoves);
            for (const TreeMove& threat : play.threat)
                EXPECT_EQ(mates.count(threat.move), 1u) << "threat " << TreeMoveText(threat, 1);
        }
        if (play.zugzwang) {
            EXPECT_TRUE(play.threat.empty());
            EXPECT_FALSE(play.move.check);
        }
        if (play.defences.empty()) return;
        if (number <= m_fullDepth) {
            // Every legal Black move is there, as a defence or grouped with the threat.
            std::set<TMove, MoveKeyLess> shown;
            for (const BlackDefence& defence : play.defences) shown.insert(defence.move.move);
            EXPECT_EQ(shown, legalMoves(*after)) << "the defences of " << TreeMoveText(play.move, 1);
        } else {
            EXPECT_EQ(play.defences.size(), 1u) << "one line below the full tree";
        }
        for (const BlackDefence& defence : play.defences) {
            EXPECT_FALSE(defence.refutes) << TreeMoveText(defence.move, 1);
            checkDefence(defence, *after, moves - 1, number, play.threat);
        }
    }

    // Black's `defence` of move number `number` from `before`, White then having `moves` left.
    void checkDefence(const BlackDefence& defence, const TChessboard& before, int moves, int number,
                      const std::vector<TreeMove>& threat) {
        ++m_lines;
        auto after = std::make_unique<TChessboard>();
        TMove move = defence.move.move;
        ASSERT_TRUE(PlayMove(before, *after, move)) << TreeMoveText(defence.move, 1);
        const auto mates = matesFrom(*after, moves);
        if (defence.refutes) {
            EXPECT_TRUE(mates.empty()) << "refutation " << TreeMoveText(defence.move, 1);
            return;
        }
        if (number + 1 <= m_fullDepth) {
            // All White's continuations in time, none left out.
            std::set<TMove, MoveKeyLess> shown, proven;
            for (const WhitePlay& reply : defence.replies) shown.insert(reply.move.move);
            for (const auto& [mate, plies] : mates) proven.insert(mate);
            EXPECT_EQ(shown, proven) << "continuations after " << TreeMoveText(defence.move, 1);
        }
        bool threatAnswers = false;
        for (const WhitePlay& reply : defence.replies) {
            const auto found = mates.find(reply.move.move);
            ASSERT_TRUE(found != mates.end())
                << "no mate in " << moves << " by " << TreeMoveText(reply.move, 1) << " after "
                << TreeMoveText(defence.move, 1);
            EXPECT_EQ((found->second + 1) / 2, reply.mateIn) << TreeMoveText(reply.move, 1);
            EXPECT_EQ(reply.shortMate, reply.mateIn < moves);
            for (const TreeMove& t : threat) threatAnswers = threatAnswers || t.move == reply.move.move;
            checkWhite(reply, *after, moves, number + 1);
        }
        EXPECT_EQ(defence.allowsThreat, threatAnswers) << TreeMoveText(defence.move, 1);
    }

    // The refutations named are exactly the Black moves after which no mate is left.
    void checkTry(const WhitePlay& attempt) {
        ++m_lines;
        auto after = std::make_unique<TChessboard>();
        TMove move = attempt.move.move;
        ASSERT_TRUE(PlayMove(m_start, *after, move));
        std::set<TMove, MoveKeyLess> named;
        for (const BlackDefence& refutation : attempt.defences) {
            EXPECT_TRUE(refutation.refutes);
            named.insert(refutation.move.move);
        }
        EXPECT_FALSE(named.empty());
        for (const TMove& reply : legalMoves(*after)) {
            auto child = std::make_unique<TChessboard>();
            TMove played = reply;
            ASSERT_TRUE(PlayMove(*after, *child, played));
            const bool refutes = matesFrom(*child, m_moves - 1).empty();
            EXPECT_EQ(refutes, named.count(reply) == 1)
                << FormatMove(reply, after->m_aSquares[reply.from], false);
        }
    }

    TChessboard m_start;
    int m_moves;
    std::string m_name;
    TChessProblem m_problem;
    SolveDriver m_driver;
    SolveOptions m_options;
    int m_fullDepth = 0;
    int m_lines = 0;
};

} // namespace zorvane
