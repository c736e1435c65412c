#pragma once
// Short names of a position: a bit string of its squares, its alphanumeric text
// (the stem of per-problem files) and the hash of the temporary register.
#include <cstdint>
#include <string>
#include <utility>

namespace zorvane {

// Square by square from a1: an empty square is one 0 bit, a man a 1 bit
// followed by its four-bit code, lowest bit first.
struct TChessboardId {
    int16_t m_nBits = 0;
    uint8_t m_aBits[40] = {};
};

// Throws ChessException "Unknown figure code" for a byte that is no man.
TChessboardId ChessboardIdFromSquares(const uint8_t squares[64]);
// Throws "Wrong chessboard id" when the bits end early, "Unknown figure short code" for a code above 11.
void SquaresFromChessboardId(const TChessboardId& id, uint8_t squares[64]);

// Six bits a character: 0-9, a-z, A-Z, '(' and ')'.
std::string ToAlphanum6(const TChessboardId& id);
// Five bits a character: 0-9 and a-v.
std::string ToAlphanum5(const TChessboardId& id);
// The readers take the character count times the width as the bit count;
// false on a character outside the alphabet.
bool ChessboardIdFromAlphanum6(const std::string& text, TChessboardId& id);
bool ChessboardIdFromAlphanum5(const std::string& text, TChessboardId& id);

namespace hash_detail {
template <size_t... I> constexpr uint32_t weightedSum(const uint8_t* s, std::index_sequence<I...>) {
    return ((uint32_t{s[I]} * uint32_t{(I + 1) * (I + 1)}) + ...);
}
} // namespace hash_detail

// Sum over the squares of byte * (square + 1)^2, unrolled at compile time:
// it is computed at every register access.
inline uint32_t RegisterHash(const uint8_t squares[64]) {
    return hash_detail::weightedSum(squares, std::make_index_sequence<64>{});
}

} // namespace zorvane
