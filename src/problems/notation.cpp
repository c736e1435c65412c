#include "notation.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/movegen.h"
#include "core/piece.h"

#include <cstring>

namespace zorvane {

namespace {

constexpr const char* IMPROPER_MOVE = "Improper move description";
constexpr const char* ILLEGAL_MOVE = "Illegal move";
constexpr const char* SHORT_NOT_SUPPORTED = "Short notation not supported.";
constexpr const char* INVALID_MAKE_MOVE = "Invalid move in MakeMove() : ";

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isFile(char c) {
    return c >= 'a' && c <= 'h';
}
bool isRank(char c) {
    return c >= '1' && c <= '8';
}

std::string trimBlanks(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string squareText(int square) {
    return std::string{static_cast<char>('a' + colOf(square)), static_cast<char>('1' + rowOf(square))};
}

int generateForSideToMove(const TChessboard& b, TMove* out) {
    return b.whiteToMove() ? GenerateWhiteMoves(b, out) : GenerateBlackMoves(b, out);
}

// A capture as the text sees it: the to-square is taken, or a pawn changes file.
bool isCaptureOn(const TChessboard& parent, const TMove& move) {
    const uint8_t mover = parent.m_aSquares[move.from];
    return parent.m_aSquares[move.to] != 0 ||
           ((mover & KIND_MASK) == KIND_PAWN && colOf(move.from) != colOf(move.to));
}

std::optional<uint8_t> kindOfLetter(char letter) {
    try {
        return KindFromLetter(letter);
    } catch (const ChessException&) {
        return std::nullopt;
    }
}

} // namespace

std::optional<int> ParseSquareName(std::string_view text) {
    if (text.size() != 2) return std::nullopt;
    const char file = static_cast<char>(text[0] >= 'A' && text[0] <= 'H' ? text[0] - 'A' + 'a' : text[0]);
    if (!isFile(file) || !isRank(text[1])) return std::nullopt;
    return squareOf(file - 'a', text[1] - '1');
}

bool PlayMove(const TChessboard& parent, TChessboard& child, TMove& move) {
    if (move.from > 63 || move.to > 63 || move.from == move.to) return false;
    const bool white = parent.whiteToMove();
    const uint8_t mover = parent.m_aSquares[move.from];
    if (!isPieceByte(mover) || isWhite(mover) != white) return false;
    const int kind = mover & KIND_MASK;
    if (kind == KIND_PAWN && move.promotionKind() == 0 && (rowOf(move.to) == 7 || rowOf(move.to) == 0))
        move.promotion = KIND_QUEEN;

    // 1. The generator decides what is pseudo-legal: rays, pawn steps, en passant, castling.
    TMove moves[MAX_MOVES];
    const int count = white ? GenerateWhiteManMoves(parent, move.from, moves)
                            : GenerateBlackManMoves(parent, move.from, moves);
    bool found = false;
    for (int i = 0; i < count && !found; ++i) found = moves[i] == move;
    if (!found) return false;

    // 2. The move on the squares, then the record rebuilt from them.
    child = parent;
    child.m_pParent = &parent;
    uint8_t* s = child.m_aSquares;
    const bool enPassant = kind == KIND_PAWN && colOf(move.from) != colOf(move.to) && s[move.to] == 0;
    s[move.to] =
        move.promotionKind() ? static_cast<uint8_t>(move.promotionKind() | (white ? WHITE : BLACK)) : mover;
    s[move.from] = 0;
    if (enPassant) s[move.to + (white ? -8 : 8)] = 0;
    if (kind == KIND_KING && absInt(colOf(move.to) - colOf(move.from)) >= 2) {
        const int home = white ? 0 : 56;
        const bool kingSide = colOf(move.to) == 6;
        s[home + (kingSide ? 5 : 3)] = s[home + (kingSide ? 7 : 0)];
        s[home + (kingSide ? 7 : 0)] = 0;
    }
    if (!TrySetupChessboard(child, false)) return false;
    // 3. The own king may not stand in check.
    if (white ? child.whiteInCheck() : child.blackInCheck()) return false;
    move.enPassant = enPassant ? 1 : 0;
    child.m_LastMove = move;
    child.m_shPliesLeft = static_cast<uint16_t>(parent.m_shPliesLeft - 1);
    return true;
}

bool SideToMoveHasLegalMove(const TChessboard& position) {
    TMove moves[MAX_MOVES];
    const int count = generateForSideToMove(position, moves);
    TChessboard child;
    for (int i = 0; i < count; ++i)
        if (PlayMove(position, child, moves[i])) return true;
    return false;
}

int CheckLevel(const TChessboard& position) {
    const int8_t checker = position.whiteToMove() ? position.m_cWhiteChecker : position.m_cBlackChecker;
    if (checker < 0) return 0;
    return checker == DOUBLE_CHECK ? 2 : 1;
}

std::string FormatLongMove(const TMove& move, uint8_t figure, bool isCapture) {
    return FormatMove(move, figure, isCapture);
}

bool TakesOn(const TChessboard& before, const TMove& move) {
    const bool pawnAside =
        (before.m_aSquares[move.from] & KIND_MASK) == KIND_PAWN && colOf(move.from) != colOf(move.to);
    return before.m_aSquares[move.to] != 0 || pawnAside;
}

std::string MoveTextOn(const TChessboard& before, const TMove& move) {
    return FormatMove(move, before.m_aSquares[move.from], TakesOn(before, move));
}

TMove ParseLongMove(const std::string& text, bool isWhite) {
    return ParseMove(text, isWhite);
}

std::string FormatShortMove(const TChessboard& position) {
    const TChessboard* parent = position.m_pParent;
    const TMove move = position.m_LastMove;
    if (move.isNull()) return "-";
    if (parent == nullptr || move.from > 63 || move.to > 63) return "";
    const uint8_t mover = parent->m_aSquares[move.from];
    const int kind = mover & KIND_MASK;

    // 1. Other men of the same kind and colour that could legally go to the same square.
    bool other[64] = {};
    int others = 0;
    TMove moves[MAX_MOVES];
    const int count = generateForSideToMove(*parent, moves);
    TChessboard scratch;
    for (int i = 0; i < count; ++i) {
        const TMove& m = moves[i];
        if (m.to != move.to || m.from == move.from || other[m.from] || parent->m_aSquares[m.from] != mover)
            continue;
        TMove tried = m;
        if (!PlayMove(*parent, scratch, tried)) continue;
        other[m.from] = true;
        ++others;
    }
    std::string disambiguator;
    if (others == 1) {
        int otherSquare = 0;
        while (!other[otherSquare]) ++otherSquare;
        disambiguator = colOf(otherSquare) == colOf(move.from)
                            ? std::string(1, static_cast<char>('1' + rowOf(move.from)))
                            : std::string(1, static_cast<char>('a' + colOf(move.from)));
    } else if (others > 1) {
        disambiguator = squareText(move.from);
    }

    // 2. Castling stands alone.
    if (kind == KIND_KING && absInt(colOf(move.to) - colOf(move.from)) == 2)
        return colOf(move.to) > colOf(move.from) ? "0-0" : "0-0-0";

    // 3.-7. Letter, disambiguator, capture sign, to-square, promotion.
    std::string text;
    if (kind != KIND_PAWN) text += FigureLetter(static_cast<uint8_t>(kind));
    text += disambiguator;
    if (isCaptureOn(*parent, move)) {
        if (kind != KIND_PAWN || !disambiguator.empty())
            text += ':';
        else
            text += static_cast<char>('a' + colOf(move.from));
    } else if (disambiguator.size() == 2) {
        text += '-';
    }
    text += squareText(move.to);
    if (move.promotionKind()) text += FigureLetter(move.promotionKind());
    return text;
}

std::optional<std::string> ConvertShortToLong(const TChessboard& position, const std::string& text) {
    // 1. What is long already.
    if (text.find('-') != std::string::npos) return std::nullopt;
    const auto colon = text.find(':');
    if (colon != std::string::npos && colon != 1) return std::nullopt;
    std::string t = text;
    while (!t.empty() && std::strchr(" +x#", t.back()) != nullptr) t.pop_back();
    t = trimBlanks(t);
    if (t.empty()) return std::nullopt;

    // 2. Pawn or figure, and a promotion at the end.
    const bool pawn = isFile(t[0]) || t.size() == 2;
    uint8_t promotion = 0;
    if (t.size() > 2 && std::strchr("QRNB", t.back()) != nullptr) {
        promotion = KindFromLetter(t.back());
        t.pop_back();
    }
    std::string leading;
    uint8_t kind = KIND_PAWN;
    std::string rest = t;
    if (!pawn) {
        const auto letterKind = kindOfLetter(t[0]);
        if (!letterKind) return std::nullopt;
        kind = *letterKind;
        leading = t.substr(0, 1);
        rest = t.substr(1);
    }
    // The capture sign says nothing the board does not say.
    std::string squares;
    for (const char c : rest)
        if (c != ':' && c != 'x') squares += c;

    // 3. The from-square: the pawn capture "ed" is White's and is found by a
    //    scan; otherwise the legal moves with the optional disambiguator.
    std::optional<TMove> chosen;
    if (pawn && squares.size() == 2 && isFile(squares[0]) && isFile(squares[1])) {
        const int fromCol = squares[0] - 'a', toCol = squares[1] - 'a';
        if (absInt(fromCol - toCol) != 1) return std::nullopt;
        for (int row = 1; row <= 5 && !chosen; ++row) {
            if (position.m_aSquares[squareOf(fromCol, row)] != WP) continue;
            const int to = squareOf(toCol, row + 1);
            const bool takesPawn = position.m_aSquares[to] == BP;
            const bool enPassant =
                row == 4 && position.m_aSquares[to] == 0 && position.m_aSquares[to - 8] == BP;
            if (!takesPawn && !enPassant) continue;
            TMove m;
            m.from = static_cast<uint8_t>(squareOf(fromCol, row));
            m.to = static_cast<uint8_t>(to);
            TChessboard child;
            if (PlayMove(position, child, m)) chosen = m;
        }
    } else {
        if (squares.size() < 2 || squares.size() > 4) return std::nullopt;
        const char toFile = squares[squares.size() - 2], toRank = squares.back();
        if (!isFile(toFile) || !isRank(toRank)) return std::nullopt;
        const int to = squareOf(toFile - 'a', toRank - '1');
        int fromCol = -1, fromRow = -1;
        for (size_t i = 0; i + 2 < squares.size(); ++i) {
            if (isFile(squares[i]))
                fromCol = squares[i] - 'a';
            else if (isRank(squares[i]))
                fromRow = squares[i] - '1';
            else
                return std::nullopt;
        }
        TMove moves[MAX_MOVES];
        const int count = generateForSideToMove(position, moves);
        int matches = 0;
        for (int i = 0; i < count; ++i) {
            TMove m = moves[i];
            const uint8_t mover = position.m_aSquares[m.from];
            if (m.to != to || (mover & KIND_MASK) != kind) continue;
            if ((fromCol >= 0 && colOf(m.from) != fromCol) || (fromRow >= 0 && rowOf(m.from) != fromRow))
                continue;
            const bool lastRow = kind == KIND_PAWN && (rowOf(to) == 7 || rowOf(to) == 0);
            if (lastRow && m.promotionKind() != (promotion ? promotion : static_cast<uint8_t>(KIND_QUEEN)))
                continue;
            if (!lastRow && promotion) continue;
            TChessboard child;
            if (!PlayMove(position, child, m)) continue;
            ++matches;
            chosen = m;
        }
        if (matches != 1) return std::nullopt;
    }
    if (!chosen) return std::nullopt;

    // 4. The long text, with the input's own figure letter.
    TMove move = *chosen;
    const bool capture = isCaptureOn(position, move);
    std::string result = leading + squareText(move.from) + (capture ? ":" : "-") + squareText(move.to);
    if (move.promotionKind()) result += FigureLetter(move.promotionKind());
    TChessboard check;
    if (!PlayMove(position, check, move)) throw ChessException(INVALID_MAKE_MOVE + result);
    return result;
}

TMove ParseMoveOnBoard(const TChessboard& position, const std::string& text) {
    if (text.empty()) throw ChessException("Empty string");
    const std::string t = trimBlanks(text);
    // 1. Texts that are no long notation.
    if (!t.empty() && (t[0] == ':' || t[0] == 'x')) throw ChessException(IMPROPER_MOVE);
    const bool castling = t == "0-0" || t == "0-0-0";
    if (!castling) {
        if (t.size() <= 4) throw ChessException(SHORT_NOT_SUPPORTED);
        for (size_t i = 1; i < t.size(); ++i)
            if ((t[i] == ':' || t[i] == 'x') && isLetter(t[i - 1])) throw ChessException(SHORT_NOT_SUPPORTED);
    }
    const bool white = position.whiteToMove();
    TMove move = ParseLongMove(t, white);

    // 2. The man on the from-square, its letter, the to-square.
    const uint8_t mover = position.m_aSquares[move.from];
    const uint8_t own = white ? WHITE : BLACK;
    if (!isPieceByte(mover) || (mover & own) == 0) throw ChessException(IMPROPER_MOVE);
    if (!castling) {
        const size_t body = isLetter(t.back()) ? t.size() - 1 : t.size();
        if (body == 6) {
            const auto kind = kindOfLetter(t[0]);
            if (!kind || *kind != (mover & KIND_MASK)) throw ChessException(IMPROPER_MOVE);
        } else if ((mover & KIND_MASK) != KIND_PAWN) {
            throw ChessException(IMPROPER_MOVE);
        }
    }
    if (position.m_aSquares[move.to] & own) throw ChessException(IMPROPER_MOVE);

    // 3. Pseudo-legal, and legal once made.
    TChessboard child;
    if (!PlayMove(position, child, move)) throw ChessException(ILLEGAL_MOVE);
    return move;
}

} // namespace zorvane
