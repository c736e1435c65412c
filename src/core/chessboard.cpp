#include "chessboard.h"

#include "attacks.h"
#include "chess_exception.h"

#include <cstring>

namespace zorvane {

namespace {

constexpr int EDGE_LEVEL[8] = {0, 1, 2, 3, 3, 2, 1, 0};

enum class SetupFault { None, PawnRow, Kings, BothChecked };

// Adds a white man to the lists; a man that does not fit turns them off for good.
void addToWhiteLists(TChessboard& b, int square, uint8_t kind) {
    if (!b.m_bWhiteListsValid) return;
    const auto sq = static_cast<uint8_t>(square);
    switch (kind) {
    case KIND_QUEEN:
        if (b.m_nWhiteQueens == 1)
            b.m_cWhiteQueen = sq;
        else
            b.m_bWhiteListsValid = 0;
        break;
    case KIND_ROOK:
        if (b.m_nWhiteRooks <= 2)
            b.m_aWhiteRooks[b.m_nWhiteRooks - 1] = sq;
        else
            b.m_bWhiteListsValid = 0;
        break;
    case KIND_KNIGHT:
        if (b.m_nWhiteKnights <= 2)
            b.m_aWhiteKnights[b.m_nWhiteKnights - 1] = sq;
        else
            b.m_bWhiteListsValid = 0;
        break;
    case KIND_BISHOP:
        if (b.m_nWhiteBishops == 1 ||
            (b.m_nWhiteBishops == 2 && squareColour(b.m_aWhiteBishops[0]) != squareColour(square)))
            b.m_aWhiteBishops[b.m_nWhiteBishops - 1] = sq;
        else
            b.m_bWhiteListsValid = 0;
        break;
    default:
        break;
    }
}

uint8_t& countOf(TChessboard& b, uint8_t piece) {
    const bool white = isWhite(piece);
    switch (piece & KIND_MASK) {
    case KIND_QUEEN:
        return white ? b.m_nWhiteQueens : b.m_nBlackQueens;
    case KIND_ROOK:
        return white ? b.m_nWhiteRooks : b.m_nBlackRooks;
    case KIND_BISHOP:
        return white ? b.m_nWhiteBishops : b.m_nBlackBishops;
    case KIND_KNIGHT:
        return white ? b.m_nWhiteKnights : b.m_nBlackKnights;
    default:
        return white ? b.m_nWhitePawns : b.m_nBlackPawns;
    }
}

SetupFault setup(TChessboard& b, bool bResetHeuristics) {
    // 1. Counts to zero, lists on until a man does not fit.
    b.m_nWhiteQueens = b.m_nBlackQueens = b.m_nWhiteRooks = b.m_nBlackRooks = 0;
    b.m_nWhiteBishops = b.m_nBlackBishops = b.m_nWhiteKnights = b.m_nBlackKnights = 0;
    b.m_nWhitePawns = b.m_nBlackPawns = 0;
    b.m_bWhiteListsValid = 1;
    b.m_cWhiteQueen = NO_SQUARE;
    std::memset(b.m_aWhiteRooks, NO_SQUARE, 2);
    std::memset(b.m_aWhiteBishops, NO_SQUARE, 2);
    std::memset(b.m_aWhiteKnights, NO_SQUARE, 2);
    if (bResetHeuristics) {
        b.m_wFlags = 0;
        b.m_uHeuristics = 0;
    }
    b.m_bPlayState &= static_cast<uint8_t>(~(PLAY_WHITE_CAPTURES | PLAY_BLACK_CAPTURES));

    // 2. One walk over the squares; bytes that are no man count as nothing.
    int whiteKings = 0, blackKings = 0;
    for (int sq = 0; sq < 64; ++sq) {
        const uint8_t piece = b.m_aSquares[sq];
        if (!isPieceByte(piece)) continue;
        if ((piece & KIND_MASK) == KIND_PAWN && (sq < 8 || sq >= 56)) return SetupFault::PawnRow;
        if ((piece & KIND_MASK) == KIND_KING) {
            if (isWhite(piece)) {
                ++whiteKings;
                b.m_cWhiteKingCol = static_cast<int8_t>(colOf(sq));
                b.m_cWhiteKingRow = static_cast<int8_t>(rowOf(sq));
            } else {
                ++blackKings;
                b.m_cBlackKingCol = static_cast<int8_t>(colOf(sq));
                b.m_cBlackKingRow = static_cast<int8_t>(rowOf(sq));
            }
            continue;
        }
        ++countOf(b, piece);
        if (isWhite(piece)) addToWhiteLists(b, sq, piece & KIND_MASK);
    }
    // 3. Kings, counted only after the last square.
    if (whiteKings != 1 || blackKings != 1) return SetupFault::Kings;
    // 4. Check state of both kings.
    b.m_cWhiteChecker = static_cast<int8_t>(BlackAttackers(b, b.m_cWhiteKingCol, b.m_cWhiteKingRow));
    b.m_cBlackChecker = static_cast<int8_t>(WhiteAttackers(b, b.m_cBlackKingCol, b.m_cBlackKingRow));
    // 5. Edge level and the material flags.
    UpdateEdgeLevel(b);
    UpdateWeakWhiteFlag(b);
    UpdateWrongBishopFlag(b);
    if (b.blackMenBesideKing() == 0)
        b.m_wFlags |= FLAG_BLACK_BARE_KING;
    else
        b.m_wFlags &= static_cast<uint16_t>(~FLAG_BLACK_BARE_KING);
    // 6. Both kings in check cannot be.
    if (b.m_cWhiteChecker >= 0 && b.m_cBlackChecker >= 0) return SetupFault::BothChecked;
    return SetupFault::None;
}

} // namespace

TChessboard EmptyChessboard() {
    TChessboard b{};
    std::memset(b.m_aWatched, NO_SQUARE, sizeof b.m_aWatched);
    b.m_cWhiteChecker = NO_CHECK;
    b.m_cBlackChecker = NO_CHECK;
    b.m_cWhiteQueen = NO_SQUARE;
    std::memset(b.m_aWhiteRooks, NO_SQUARE, 2);
    std::memset(b.m_aWhiteBishops, NO_SQUARE, 2);
    std::memset(b.m_aWhiteKnights, NO_SQUARE, 2);
    return b;
}

void SetupChessboard(TChessboard& board, bool bResetHeuristics) {
    switch (setup(board, bResetHeuristics)) {
    case SetupFault::None:
        return;
    case SetupFault::PawnRow:
        throw ChessException("Pawns cannot occupy 1st nor 8th line of the chessboard.");
    case SetupFault::Kings:
        throw ChessException("Illegal number of kings.");
    case SetupFault::BothChecked:
        throw ChessException("Both kings attacked.");
    }
}

bool TrySetupChessboard(TChessboard& board, bool bResetHeuristics) {
    return setup(board, bResetHeuristics) == SetupFault::None;
}

void PutMan(TChessboard& b, int square, uint8_t piece) {
    b.m_aSquares[square] = piece;
    if ((piece & KIND_MASK) == KIND_KING) {
        if (isWhite(piece)) {
            b.m_cWhiteKingCol = static_cast<int8_t>(colOf(square));
            b.m_cWhiteKingRow = static_cast<int8_t>(rowOf(square));
        } else {
            b.m_cBlackKingCol = static_cast<int8_t>(colOf(square));
            b.m_cBlackKingRow = static_cast<int8_t>(rowOf(square));
            UpdateEdgeLevel(b);
        }
        return;
    }
    if (!isPieceByte(piece)) return;
    ++countOf(b, piece);
    if (isWhite(piece)) addToWhiteLists(b, square, piece & KIND_MASK);
}

bool WhiteListsPossible(const TChessboard& b) {
    if (b.m_nWhiteQueens > 1 || b.m_nWhiteRooks > 2 || b.m_nWhiteKnights > 2 || b.m_nWhiteBishops > 2)
        return false;
    if (b.m_nWhiteBishops < 2) return true;
    const int first = FindSquare(b, WB);
    const int second = FindSquare(b, WB, first + 1);
    return second != NO_SQUARE && squareColour(first) != squareColour(second);
}

void RebuildWhiteLists(TChessboard& b) {
    if (!WhiteListsPossible(b)) {
        b.m_bWhiteListsValid = 0;
        return;
    }
    int rooks = 0, bishops = 0, knights = 0;
    b.m_cWhiteQueen = NO_SQUARE;
    std::memset(b.m_aWhiteRooks, NO_SQUARE, 2);
    std::memset(b.m_aWhiteBishops, NO_SQUARE, 2);
    std::memset(b.m_aWhiteKnights, NO_SQUARE, 2);
    for (int sq = 0; sq < 64; ++sq) {
        const auto s = static_cast<uint8_t>(sq);
        switch (b.m_aSquares[sq]) {
        case WQ:
            b.m_cWhiteQueen = s;
            break;
        case WR:
            b.m_aWhiteRooks[rooks++] = s;
            break;
        case WB:
            b.m_aWhiteBishops[bishops++] = s;
            break;
        case WN:
            b.m_aWhiteKnights[knights++] = s;
            break;
        default:
            break;
        }
    }
    b.m_bWhiteListsValid = 1;
}

int FindSquare(const TChessboard& b, uint8_t piece, int start) {
    for (int sq = start; sq < 64; ++sq)
        if (b.m_aSquares[sq] == piece) return sq;
    return NO_SQUARE;
}

int SquareEdgeLevel(int square) {
    const int c = EDGE_LEVEL[colOf(square)], r = EDGE_LEVEL[rowOf(square)];
    return c < r ? c : r;
}

void UpdateEdgeLevel(TChessboard& b) {
    b.m_wFlags2 =
        static_cast<uint16_t>((b.m_wFlags2 & ~FLAGS2_EDGE_LEVEL) | (SquareEdgeLevel(b.blackKing()) << 3));
}

void UpdateWeakWhiteFlag(TChessboard& b) {
    bool weak = b.m_nWhiteQueens == 0 && b.m_nWhiteRooks == 0 && b.m_nWhiteBishops + b.m_nWhiteKnights < 2 &&
                b.m_nWhitePawns > 0;
    if (weak) {
        // The black king must not be hemmed in by his own men: at most one
        // black neighbour, and none at all in a corner.
        const int kc = b.m_cBlackKingCol, kr = b.m_cBlackKingRow;
        int neighbours = 0, squares = 0;
        for (int dr = -1; dr <= 1; ++dr)
            for (int dc = -1; dc <= 1; ++dc) {
                const int c = kc + dc, r = kr + dr;
                if ((dc == 0 && dr == 0) || c < 0 || c > 7 || r < 0 || r > 7) continue;
                ++squares;
                neighbours += isBlack(b.m_aSquares[squareOf(c, r)]);
            }
        weak = squares == 3 ? neighbours == 0 : neighbours <= 1;
    }
    if (weak)
        b.m_wFlags |= FLAG_WEAK_WHITE;
    else
        b.m_wFlags &= static_cast<uint16_t>(~FLAG_WEAK_WHITE);
}

void UpdateWrongBishopFlag(TChessboard& b) {
    // A lone bishop whose rook's pawns all run to a promotion square of the
    // other colour: the classic ending that the bishop cannot win alone.
    bool wrong = b.m_nWhiteBishops == 1 && b.m_nWhiteKnights == 0 && b.m_nWhiteRooks == 0 &&
                 b.m_nWhiteQueens == 0 && b.m_nWhitePawns > 0;
    if (wrong) {
        int file = -1;
        for (int sq = 8; sq < 56 && wrong; ++sq) {
            if (b.m_aSquares[sq] != WP) continue;
            const int col = colOf(sq);
            if ((col != 0 && col != 7) || (file >= 0 && file != col)) wrong = false;
            file = col;
        }
        const int bishop = FindSquare(b, WB);
        wrong = wrong && bishop != NO_SQUARE && squareColour(bishop) != squareColour(squareOf(file, 7));
    }
    if (wrong)
        b.m_wFlags2 |= FLAGS2_WRONG_BISHOP;
    else
        b.m_wFlags2 &= static_cast<uint16_t>(~FLAGS2_WRONG_BISHOP);
}

} // namespace zorvane
