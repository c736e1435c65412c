#pragma once
// TMove: four bytes copied as one word. from == to is the null move.
#include <cstdint>
#include <string>
#include <vector>

namespace zorvane {

struct TMove {
    uint8_t from = 0;
    uint8_t to = 0;
    // Low five bits: kind promoted to; bits 32 and 64 are ordering marks.
    uint8_t promotion = 0;
    // Set by the maker for an en passant capture; doubles as the sort key.
    uint8_t enPassant = 0;

    bool isNull() const { return from == to; }
    uint8_t promotionKind() const { return promotion & 31; }
};
static_assert(sizeof(TMove) == 4);

inline bool operator==(const TMove& a, const TMove& b) {
    return a.from == b.from && a.to == b.to && ((a.promotion ^ b.promotion) & 31) == 0;
}

// Whether two lists hold the same moves, whatever their order (equality as above).
bool SameMoveSet(const std::vector<TMove>& a, const std::vector<TMove>& b);

// A move list lives in the caller's frame; its count fits one byte.
constexpr int MAX_MOVES = 256;
// The list of a search step: the generators fill it before anything reads it,
// so it is left uninitialised. Clearing its kilobyte at every node would cost
// more than the node's own work.
struct MoveBuffer {
    union {
        TMove moves[MAX_MOVES];
    };
    MoveBuffer() {}
    operator TMove*() { return moves; }
};

// Output letter of a figure kind: K, B, R, Q, N, a blank for the pawn, E for any other code.
char FigureLetter(uint8_t kind);
// Text of a move ("e2-e4", "Ng1:f3", "e7-e8Q", "0-0"); empty when a square is off the board.
// `piece` is the byte on `from`, `capture` whether the move takes a man.
std::string FormatMove(const TMove& move, uint8_t piece, bool capture);
// Short form used by the search log: "e2-e4\n".
std::string FormatLogMove(const TMove& move);
// Reads the long text of a move; throws ChessException on a bad text ("Empty
// string", "Improper string length", "Improper full description of move",
// "Unknown figure letter: X" for a final letter that names no figure).
TMove ParseMove(const std::string& text, bool whiteToMove);

} // namespace zorvane
