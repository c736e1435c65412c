#pragma once
// Perft: the number of leaves of the legal-move tree, every move made by the
// engine's own makers. The correctness check of generation and making.
#include "chessboard.h"

#include <cstdint>

namespace zorvane {

// `root` must be set up; the side to move follows the parity of m_shPliesLeft.
uint64_t Perft(const TChessboard& root, int depth);

} // namespace zorvane
