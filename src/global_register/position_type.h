#pragma once
// Position types of the endgame tables: the text that names a material
// balance, and the key that names it in every map of the register.
//
// A regular text lists the men beside the two kings, white queens, rooks,
// bishops, knights and pawns, then the black ones in the same order, one
// letter per man: king and queen against king and rook is "Qr". The key packs
// the letters four bits each, most significant first, and ends with a zero
// bit; custom types (custom_pos_type.h) end with a one bit instead, so that
// the two kinds never meet in one map.
#include "core/chessboard.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zorvane {

// Letter of code c is POS_TYPE_DECODER[c - 1]. X and x name no man the
// program forms from a position; they are kept for types that widen a table.
inline constexpr std::string_view POS_TYPE_DECODER = "QRBNPqrbnpXx";
constexpr int POS_TYPE_CODE_X = 11;
constexpr int POS_TYPE_CODE_SMALL_X = 12;
// A position with more men beside its kings than this has no regular key of a
// position: the register tries a custom type for it.
constexpr int MAX_REGULAR_TYPE_MEN = 5;
// The longest text a u64 key holds: 4 bits a letter and the final bit.
constexpr int MAX_KEY_LETTERS = 15;

// 1..12 for a letter of the decoder, 0 for anything else.
int PosTypeLetterCode(char letter);
// The letter of a regular man's piece byte (queen to pawn, either colour), or 0.
char PosTypeLetterOfPiece(uint8_t piece);
// The piece byte of a letter, 0 for X, x and anything else.
uint8_t PieceOfPosTypeLetter(char letter);
inline bool IsPawnLetter(char letter) {
    return letter == 'P' || letter == 'p';
}

// Key of a regular text. Letters outside the decoder count as 0, and a text
// longer than MAX_KEY_LETTERS loses its first letters: callers pass real types.
uint64_t PosTypeKey(std::string_view type);
inline bool IsCustomPosTypeKey(uint64_t key) {
    return (key & 1) != 0;
}

// The regular text of the men on `board`, read from its counts.
std::string PosTypeText(const TChessboard& board);
// The regular key of the men on `board`, without building the text; 0 when
// the board has no men beside the kings (bare kings have no table) or more
// than MAX_REGULAR_TYPE_MEN of them.
uint64_t PosTypeKeyOfPosition(const TChessboard& board);

// `type` with its first `letter` taken out. Throws std::runtime_error when it
// has none.
std::string RemoveFromPosType(const std::string& type, char letter);
// The index i such that `typeA` without its letter at i is `typeB`, or -1.
// Throws std::runtime_error unless `typeA` is one letter longer than `typeB`.
int GetIndexToRemoveToObtainOtherPosType(const std::string& typeA, const std::string& typeB);

} // namespace zorvane
