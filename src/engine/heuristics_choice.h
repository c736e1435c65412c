#pragma once
// The automatic choice of the set of heuristics that a solve starts with: a
// reading of the material and of the black king's room, as a problemist
// would guess the shape of the solution before trying it.
#include "core/chessboard.h"
#include "core/thread_context.h"

#include <cstdint>

namespace zorvane {

// Bits of the position-type word that the choice returns for the progress display.
constexpr uint32_t POSITION_MINIATURE = 1;       // fewer than 8 men
constexpr uint32_t POSITION_KING_ON_EDGE = 2;    // black king on the edge line
constexpr uint32_t POSITION_KING_IN_BAND = 4;    // black king on the line beside it
constexpr uint32_t POSITION_KING_HEMMED = 8;     // at most two free squares about him
constexpr uint32_t POSITION_WHITE_STRONGER = 16; // White's material at least twice Black's
constexpr uint32_t POSITION_BLACK_PAWNS = 32;    // Black can still promote

// Material in the engine's weights.
constexpr int QUEEN_MATERIAL = 9;
constexpr int ROOK_MATERIAL = 5;
constexpr int MINOR_MATERIAL = 3;
constexpr int PAWN_MATERIAL = 1;
int WhiteMaterial(const TChessboard& position);
int BlackMaterial(const TChessboard& position);

// Clears the thread's parameters to a fresh solve's values, writes the chosen
// set into root.m_uHeuristics and returns the position-type word.
uint32_t InitialPositionTypeCheck(TChessboard& root, TThreadContext& ctx);

} // namespace zorvane
