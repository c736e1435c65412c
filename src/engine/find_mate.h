#pragma once
// The mate proof: White's step (an OR over White's moves) and Black's step (an
// AND over Black's replies), mutually recursive over the thread's board stack,
// with flat routines for the last plies. A position is never undone: each child
// is a fresh copy in the slot of its parent's plies left.
//
// A position given to these routines has m_pThread set, with the solve in its
// context (m_pJob), and
// m_shPliesLeft odd for White's step, even for Black's.
#include "core/chessboard.h"
#include "core/move.h"
#include "engine/mate_in_one.h"
#include "engine/result_code.h"

namespace zorvane {

// White to move: does White mate within m_shPliesLeft plies?
int8_t FindMate(TChessboard& position, bool bProbe);
// Black to move: do all of Black's replies lose within m_shPliesLeft plies?
int8_t FindMateBlackStep(TChessboard& position);
// White to move: the ordered search without register and without bets, whatever
// the solve uses. The threat tests of the forcing-moves run ask it.
int8_t FindMateWithoutBets(TChessboard& position);

} // namespace zorvane
