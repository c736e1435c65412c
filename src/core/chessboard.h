#pragma once
// TChessboard: the flat position record that the whole engine thinks in.
//
// Every ply of a search is one such record, copied whole from its parent and
// changed in place by one move; nothing is ever taken back. Besides the 64
// square bytes it keeps what the search would otherwise recompute at every
// node: king squares, check state of both sides, piece counts and the square
// lists of White's men. The move makers keep all of it true.
//
// Layout (bytes): squares 0..63, problem 64, watched 72, parent 80, thread 88,
// last move 96, plies 100/102, heuristics 104/108, flags 112/114, play state
// 116, pass 117, kings 118..121, checkers 122/123, counts 124..133, white
// lists 134..141; 144 in all.
#include "move.h"
#include "piece.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zorvane {

struct TChessProblem;
struct TThreadContext;

// m_wFlags
// Bits 2 and 32 are set by the heuristics' view of a position; the steps read
// them to decide how deep White's lists are sorted and handed to threads.
constexpr uint16_t FLAG_HEURISTIC_2 = 2;
constexpr uint16_t FLAG_HEURISTIC_32 = 32;
constexpr uint16_t FLAG_WEAK_WHITE = 8; // few White men and a black king not hemmed in
constexpr uint16_t FLAG_BLACK_BARE_KING = 0x400;
constexpr uint16_t FLAG_GLOBAL_REGISTER = 0x800;
// m_wFlags2
constexpr uint16_t FLAGS2_BLACK_PROMOTIONS = 3; // count, stuck at 3
constexpr uint16_t FLAGS2_EDGE_LEVEL = 24;      // min(level(col), level(row)) << 3
constexpr uint16_t FLAGS2_WHITE_QUEEN_PROMOTED = 128;
constexpr uint16_t FLAGS2_BAND_CHECK_DEFERRED = 0x100; // the king left the edge; the bet's check waits
constexpr uint16_t FLAGS2_WRONG_BISHOP = 0x800;        // lone bishop and a rook's pawn it cannot help
// m_bPlayState
constexpr uint8_t PLAY_ONE_COLOUR_MODE = 3;
constexpr uint8_t PLAY_WHITE_CAPTURES = 12; // count << 2, stuck at 3
constexpr uint8_t PLAY_BLACK_CAPTURES = 48; // count << 4, stuck at 3

struct TChessboard {
    uint8_t m_aSquares[64];
    TChessProblem* m_pProblem;
    uint8_t m_aWatched[8];
    const TChessboard* m_pParent;
    TThreadContext* m_pThread;
    TMove m_LastMove;
    uint16_t m_shPliesLeft;
    uint16_t m_shPliesTotal;
    uint32_t m_uHeuristics;
    uint32_t m_uHeuristicParams;
    uint16_t m_wFlags;
    uint16_t m_wFlags2;
    uint8_t m_bPlayState;
    uint8_t m_bPass;
    int8_t m_cWhiteKingCol, m_cWhiteKingRow;
    int8_t m_cBlackKingCol, m_cBlackKingRow;
    int8_t m_cWhiteChecker;
    int8_t m_cBlackChecker;
    uint8_t m_nWhiteQueens, m_nBlackQueens;
    uint8_t m_nWhiteRooks, m_nBlackRooks;
    uint8_t m_nWhiteBishops, m_nBlackBishops;
    uint8_t m_nWhiteKnights, m_nBlackKnights;
    uint8_t m_nWhitePawns, m_nBlackPawns;
    uint8_t m_aWhiteRooks[2];
    uint8_t m_aWhiteBishops[2];
    uint8_t m_aWhiteKnights[2];
    uint8_t m_cWhiteQueen;
    uint8_t m_bWhiteListsValid;

    int whiteKing() const { return squareOf(m_cWhiteKingCol, m_cWhiteKingRow); }
    int blackKing() const { return squareOf(m_cBlackKingCol, m_cBlackKingRow); }
    bool whiteToMove() const { return (m_shPliesLeft & 1) != 0; }
    bool whiteInCheck() const { return m_cWhiteChecker >= 0; }
    bool blackInCheck() const { return m_cBlackChecker >= 0; }
    int edgeLevel() const { return (m_wFlags2 & FLAGS2_EDGE_LEVEL) >> 3; }
    int blackMenBesideKing() const {
        return m_nBlackQueens + m_nBlackRooks + m_nBlackBishops + m_nBlackKnights + m_nBlackPawns;
    }
    int whiteMenBesideKing() const {
        return m_nWhiteQueens + m_nWhiteRooks + m_nWhiteBishops + m_nWhiteKnights + m_nWhitePawns;
    }
    // Queens, rooks, bishops and knights: the men beside king and pawns.
    int whiteFigures() const { return m_nWhiteQueens + m_nWhiteRooks + m_nWhiteBishops + m_nWhiteKnights; }
    int blackFigures() const { return m_nBlackQueens + m_nBlackRooks + m_nBlackBishops + m_nBlackKnights; }
};

static_assert(std::is_trivially_copyable_v<TChessboard>);
static_assert(sizeof(TChessboard) == 144, "the search copies this record at every node; keep it flat");
static_assert(offsetof(TChessboard, m_aSquares) == 0);
static_assert(offsetof(TChessboard, m_pProblem) == 64);
static_assert(offsetof(TChessboard, m_LastMove) == 96);
static_assert(offsetof(TChessboard, m_shPliesLeft) == 100);
static_assert(offsetof(TChessboard, m_wFlags) == 112);
static_assert(offsetof(TChessboard, m_cWhiteKingCol) == 118);
static_assert(offsetof(TChessboard, m_cWhiteChecker) == 122);
static_assert(offsetof(TChessboard, m_nWhiteQueens) == 124);
static_assert(offsetof(TChessboard, m_aWhiteRooks) == 134);
static_assert(offsetof(TChessboard, m_bWhiteListsValid) == 141);

// An empty record: no men, no parent, no checks, empty watched slots.
TChessboard EmptyChessboard();

// The child of `parent`: a copy with the parent link set, ready for a move maker.
inline void CopyToChild(TChessboard& child, const TChessboard& parent) {
    child = parent;
    child.m_pParent = &parent;
}

// Strict set-up from m_aSquares: fills kings, counts, lists, checks, edge level.
// Throws ChessException for a pawn on the first or eighth row, a wrong number
// of kings, or both kings attacked.
void SetupChessboard(TChessboard& board, bool bResetHeuristics);
// Testing set-up: the same checks, answered by false instead of an exception.
bool TrySetupChessboard(TChessboard& board, bool bResetHeuristics);

// Writes a man on an empty square and updates king fields, counts and list slots.
void PutMan(TChessboard& board, int square, uint8_t piece);
// Whether White's men fit the lists: at most one queen, two rooks, two knights,
// two bishops on squares of opposite colour.
bool WhiteListsPossible(const TChessboard& board);
// Refills the white lists from the squares (a1 upward) when they are possible.
void RebuildWhiteLists(TChessboard& board);

// First square from `start` holding `piece`, or NO_SQUARE.
int FindSquare(const TChessboard& board, uint8_t piece, int start = 0);

// Edge level of a square: 0 on the edge, 3 in the centre.
int SquareEdgeLevel(int square);
void UpdateEdgeLevel(TChessboard& board);
// Flag 8 of m_wFlags and 0x800 of m_wFlags2, recomputed from the position.
void UpdateWeakWhiteFlag(TChessboard& board);
void UpdateWrongBishopFlag(TChessboard& board);

} // namespace zorvane
