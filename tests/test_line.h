#pragma once
// A root position with its problem, job and thread context, and lines of
// moves played from it as the search builds them: each position the child of
// the one before, so that the last move and the parents are there for the
// rules that read them.
#include "core/chessboard.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/thread_context.h"
#include "engine/solve_job.h"
#include "problems/chess_problem.h"

#include <gtest/gtest.h>

namespace zorvane {

struct Root {
    TChessProblem problem;
    SolveJob job{problem};
    TThreadContext ctx;
    TChessboard board = EmptyChessboard();
    Root(const char* fen, int plies) {
        ctx.m_pJob = &job;
        EXPECT_TRUE(ReadFen(fen, board));
        board.m_pProblem = &problem;
        board.m_pThread = &ctx;
        board.m_shPliesLeft = board.m_shPliesTotal = static_cast<uint16_t>(plies);
        SetupChessboard(board, false);
        ctx.m_pRoot = &board;
    }
};

struct Line {
    Root root;
    TChessboard boards[16];
    int length = 0;
    Line(const char* fen, int plies) : root(fen, plies) {}
    TChessboard& last() { return length ? boards[length - 1] : root.board; }
    void play(const TMove& move) {
        TChessboard& parent = last();
        TChessboard& child = boards[length++];
        CopyToChild(child, parent);
        TMove played = move;
        if (parent.whiteToMove())
            ASSERT_TRUE(MakeWhiteMove(child, played));
        else
            ASSERT_NE(MakeBlackMove(child, played, false), BLACK_MOVE_ILLEGAL);
    }
};

} // namespace zorvane
