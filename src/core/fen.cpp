#include "fen.h"

#include "castling.h"
#include "chess_exception.h"

#include <cstdio>
#include <cstring>
#include <sstream>
#include <string_view>
#include <vector>

namespace zorvane {

uint8_t KindFromLetter(char letter) {
    switch (letter) {
    case 'B':
    case 'b':
    case 'G':
    case 'g':
        return KIND_BISHOP;
    case 'Q':
    case 'q':
    case 'H':
    case 'h':
        return KIND_QUEEN;
    case 'K':
    case 'k':
        return KIND_KING;
    case 'N':
    case 'n':
    case 'S':
    case 's':
        return KIND_KNIGHT;
    case 'P':
    case 'p':
        return KIND_PAWN;
    case 'R':
    case 'r':
    case 'W':
    case 'w':
        return KIND_ROOK;
    default:
        throw ChessException(std::string("Unknown figure letter: ") + letter);
    }
}

namespace {

char letterOf(uint8_t piece) {
    char c;
    switch (piece & KIND_MASK) {
    case KIND_KING:
        c = 'K';
        break;
    case KIND_PAWN:
        c = 'P';
        break;
    case KIND_BISHOP:
        c = 'B';
        break;
    case KIND_ROOK:
        c = 'R';
        break;
    case KIND_QUEEN:
        c = 'Q';
        break;
    case KIND_KNIGHT:
        c = 'N';
        break;
    default:
        c = '?';
        break;
    }
    return isBlack(piece) ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isAsciiAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

bool ReadFenPlacement(const std::string& placement, uint8_t squares[64]) {
    std::memset(squares, 0, 64);
    int row = 7, col = 0;
    for (const char c : placement) {
        if (c == '/') {
            if (col != 8 || row == 0) return false;
            --row;
            col = 0;
            continue;
        }
        if (c >= '1' && c <= '8') {
            col += c - '0';
            if (col > 8) return false;
            continue;
        }
        if (!isAsciiAlpha(c) || col >= 8) return false;
        uint8_t kind;
        try {
            kind = KindFromLetter(c);
        } catch (const ChessException&) {
            return false;
        }
        const bool upper = c >= 'A' && c <= 'Z';
        squares[squareOf(col, row)] = static_cast<uint8_t>(kind + (upper ? WHITE : BLACK));
        ++col;
    }
    return row == 0 && col == 8;
}

std::string WriteFen(const TChessboard& b, bool bPlacementOnly) {
    std::string fen;
    for (int row = 7; row >= 0; --row) {
        int empty = 0;
        for (int col = 0; col < 8; ++col) {
            const uint8_t piece = b.m_aSquares[squareOf(col, row)];
            if (!isPieceByte(piece)) {
                ++empty;
                continue;
            }
            if (empty) fen += std::to_string(empty);
            empty = 0;
            fen += letterOf(piece);
        }
        if (empty) fen += std::to_string(empty);
        if (row) fen += '/';
    }
    if (bPlacementOnly) return fen;

    fen += b.whiteToMove() ? " w" : " b";
    std::string rights;
    if (WhiteCastlingRight(b, KING_SIDE)) rights += 'K';
    if (WhiteCastlingRight(b, QUEEN_SIDE)) rights += 'Q';
    if (BlackCastlingRight(b, KING_SIDE)) rights += 'k';
    if (BlackCastlingRight(b, QUEEN_SIDE)) rights += 'q';
    fen += rights.empty() ? " -" : " " + rights;

    const TMove last = b.m_LastMove;
    const bool doubleStep = b.m_pParent && (b.m_aSquares[last.to] & KIND_MASK) == KIND_PAWN &&
                            absInt(rowOf(last.to) - rowOf(last.from)) == 2 &&
                            colOf(last.to) == colOf(last.from);
    if (doubleStep) {
        const int behind = (last.from + last.to) / 2;
        fen += ' ';
        fen += static_cast<char>('a' + colOf(behind));
        fen += static_cast<char>('1' + rowOf(behind));
    } else {
        fen += " -";
    }
    const int pliesDone = b.m_shPliesTotal >= b.m_shPliesLeft ? b.m_shPliesTotal - b.m_shPliesLeft : 0;
    fen += " 0 " + std::to_string(pliesDone / 2 + 1);
    return fen;
}

bool ReadFen(const std::string& text, TChessboard& board, FenNotes* notes) {
    if (text.find('{') != std::string::npos || text.find('/') == std::string::npos) return false;
    const auto start = text.find_first_not_of(' ');
    const auto blank = text.find(' ', start);
    const std::string placement =
        text.substr(start, blank == std::string::npos ? std::string::npos : blank - start);
    const std::string rest = blank == std::string::npos ? std::string() : text.substr(blank);

    // Castling letters are looked for anywhere after the placement; one field means all four.
    std::vector<std::string> fields;
    {
        std::istringstream in(rest);
        for (std::string field; in >> field;) fields.push_back(field);
    }
    const bool allRights = fields.empty();
    const bool rightK = allRights || rest.find('K') != std::string::npos;
    const bool rightQ = allRights || rest.find('Q') != std::string::npos;
    const bool rightk = allRights || rest.find('k') != std::string::npos;
    const bool rightq = allRights || rest.find('q') != std::string::npos;
    size_t castlingField = 0;
    // Not strchr: it would find a NUL byte of the text at the end of "wbWB".
    if (!fields.empty() && fields[0].size() == 1 &&
        std::string_view("wbWB").find(fields[0][0]) != std::string_view::npos)
        castlingField = 1;
    const bool enPassant = fields.size() > castlingField + 1 && fields[castlingField + 1] != "-";
    int enPassantSquare = -1;
    if (enPassant) {
        const std::string& field = fields[castlingField + 1];
        if (field.size() == 2 && field[0] >= 'a' && field[0] <= 'h' && field[1] >= '1' && field[1] <= '8')
            enPassantSquare = squareOf(field[0] - 'a', field[1] - '1');
    }

    uint8_t squares[64];
    if (!ReadFenPlacement(placement, squares)) return false;
    TChessboard candidate = board;
    std::memcpy(candidate.m_aSquares, squares, 64);
    if (!TrySetupChessboard(candidate, true)) return false;
    board = candidate;

    if (notes) {
        const uint8_t* s = board.m_aSquares;
        uint8_t denied = 0;
        if (s[4] == WK && s[7] == WR && !rightK) denied |= WHITE_SHORT_CASTLING;
        if (s[4] == WK && s[0] == WR && !rightQ) denied |= WHITE_LONG_CASTLING;
        if (s[60] == BK && s[63] == BR && !rightk) denied |= BLACK_SHORT_CASTLING;
        if (s[60] == BK && s[56] == BR && !rightq) denied |= BLACK_LONG_CASTLING;
        notes->castlingDenied = denied != 0;
        notes->deniedCastling = denied;
        notes->enPassantNamed = enPassant;
        notes->enPassantSquare = enPassantSquare;
        notes->sideToMove = castlingField ? static_cast<char>(fields[0][0] | 0x20) : 0;
    }
    return true;
}

bool SetUpDoubleStepHistory(TChessboard& position, TChessboard& parent, int square) {
    if (square < 0 || square > 63 || rowOf(square) != 5) return false;
    const int landed = square - 8, started = square + 8;
    uint8_t* s = position.m_aSquares;
    if (s[landed] != BP || s[square] != 0 || s[started] != 0) return false;
    parent = position;
    parent.m_aSquares[landed] = 0;
    parent.m_aSquares[started] = BP;
    parent.m_pParent = nullptr;
    parent.m_LastMove = TMove{};
    position.m_pParent = &parent;
    position.m_LastMove = TMove{};
    position.m_LastMove.from = static_cast<uint8_t>(started);
    position.m_LastMove.to = static_cast<uint8_t>(landed);
    return true;
}

} // namespace zorvane
