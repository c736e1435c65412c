#pragma once
// Positions for tests: a board from FEN with its plies (odd: White to move),
// and a game line whose positions keep their parents.
#include "core/fen.h"
#include "core/make_move.h"
#include "core/thread_context.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace zorvane {

inline TChessboard boardFromFen(const std::string& fen, int pliesLeft, TThreadContext* thread = nullptr) {
    TChessboard b = EmptyChessboard();
    b.m_shPliesLeft = static_cast<uint16_t>(pliesLeft);
    b.m_shPliesTotal = static_cast<uint16_t>(pliesLeft);
    b.m_pThread = thread;
    EXPECT_TRUE(ReadFen(fen, b)) << fen;
    return b;
}

// Each child is made on a fresh copy of the last position and kept only when
// the maker accepts the move.
class GameLine {
  public:
    explicit GameLine(const TChessboard& root) { m_boards.push_back(root); }
    const TChessboard& last() const { return m_boards.back(); }
    const TMove& lastMove() const { return m_lastMove; }
    // Plays a move given as text; false (and nothing kept) when refused.
    [[nodiscard]] bool play(const std::string& moveText) {
        return play(ParseMove(moveText, last().whiteToMove()));
    }
    [[nodiscard]] bool play(TMove m) {
        const TChessboard& parent = m_boards.back();
        TChessboard child;
        CopyToChild(child, parent);
        const bool made =
            parent.whiteToMove() ? MakeWhiteMove(child, m) : MakeBlackMove(child, m, false) == 1;
        if (!made) return false;
        m_lastMove = m;
        m_boards.push_back(child);
        return true;
    }

  private:
    std::deque<TChessboard> m_boards; // a deque keeps the parents where they are
    TMove m_lastMove;
};

} // namespace zorvane
