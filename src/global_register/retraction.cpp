#include "retraction.h"

namespace zorvane {

namespace {

constexpr int KING_STEPS[8][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
constexpr int KNIGHT_JUMPS[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
constexpr int LINE_STEPS[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
constexpr int DIAGONAL_STEPS[4][2] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

bool onBoard(int col, int row) {
    return col >= 0 && col < 8 && row >= 0 && row < 8;
}

void add(TRetraction* out, int& n, int from, int to) {
    out[n].from = static_cast<uint8_t>(from);
    out[n].to = static_cast<uint8_t>(to);
    ++n;
}

// Single squares around the man: king steps or knight jumps onto empty squares.
void steps(const uint8_t* s, int square, const int (*deltas)[2], TRetraction* out, int& n) {
    for (int i = 0; i < 8; ++i) {
        const int col = colOf(square) + deltas[i][0], row = rowOf(square) + deltas[i][1];
        if (onBoard(col, row) && s[squareOf(col, row)] == 0) add(out, n, squareOf(col, row), square);
    }
}

// Every empty square along the rays until the first man.
void rays(const uint8_t* s, int square, const int (*deltas)[2], TRetraction* out, int& n) {
    for (int i = 0; i < 4; ++i) {
        int col = colOf(square) + deltas[i][0], row = rowOf(square) + deltas[i][1];
        while (onBoard(col, row) && s[squareOf(col, row)] == 0) {
            add(out, n, squareOf(col, row), square);
            col += deltas[i][0];
            row += deltas[i][1];
        }
    }
}

template <bool White> int generate(const TChessboard& board, TRetraction* out) {
    const uint8_t* s = board.m_aSquares;
    const uint8_t colour = White ? WHITE : BLACK;
    // A pawn steps back towards its own first row.
    const int back = White ? -8 : 8;
    const int doubleStepRow = White ? 3 : 4;
    int n = 0;
    for (int square = 0; square < 64; ++square) {
        const uint8_t man = s[square];
        if ((man & colour) == 0) continue;
        const int kind = man & KIND_MASK;
        if (kind == KIND_KING) {
            steps(s, square, KING_STEPS, out, n);
        } else if (kind == KIND_KNIGHT) {
            steps(s, square, KNIGHT_JUMPS, out, n);
        } else if (kind == KIND_PAWN) {
            const int one = square + back;
            // A pawn on its second row has no row behind it to come from.
            if (rowOf(one) == 0 || rowOf(one) == 7 || s[one] != 0) continue;
            add(out, n, one, square);
            if (rowOf(square) == doubleStepRow && s[one + back] == 0) add(out, n, one + back, square);
        } else {
            if (kind & KIND_ROOK) rays(s, square, LINE_STEPS, out, n);
            if (kind & KIND_BISHOP) rays(s, square, DIAGONAL_STEPS, out, n);
        }
    }
    return n;
}

} // namespace

int GenerateWhiteRetractions(const TChessboard& board, TRetraction* out) {
    return generate<true>(board, out);
}

int GenerateBlackRetractions(const TChessboard& board, TRetraction* out) {
    return generate<false>(board, out);
}

void ApplyRetraction(TChessboard& board, const TRetraction& r) {
    const uint8_t man = board.m_aSquares[r.to];
    board.m_aSquares[r.from] = man;
    board.m_aSquares[r.to] = 0;
    if (man == WK) {
        board.m_cWhiteKingCol = static_cast<int8_t>(colOf(r.from));
        board.m_cWhiteKingRow = static_cast<int8_t>(rowOf(r.from));
    } else if (man == BK) {
        board.m_cBlackKingCol = static_cast<int8_t>(colOf(r.from));
        board.m_cBlackKingRow = static_cast<int8_t>(rowOf(r.from));
    }
    board.m_bWhiteListsValid = 0;
}

} // namespace zorvane
