#include "move.h"

#include "chess_exception.h"
#include "piece.h"

#include <cstdio>

namespace zorvane {

namespace {

char kindLetter(uint8_t kind) {
    switch (kind & KIND_MASK) {
    case KIND_KING: return 'K';
    case KIND_PAWN: return ' ';
    case KIND_BISHOP: return 'B';
    case KIND_ROOK: return 'R';
    case KIND_QUEEN: return 'Q';
    case KIND_KNIGHT: return 'N';
    default: return 'E';
    }
}

uint8_t promotionFromLetter(char c) {
    switch (c) {
    case 'Q': return KIND_QUEEN;
    case 'R': return KIND_ROOK;
    case 'B': return KIND_BISHOP;
    case 'N': return KIND_KNIGHT;
    default: return 0;
    }
}

bool isPieceLetter(char c) { return c == 'K' || c == 'Q' || c == 'R' || c == 'B' || c == 'N' || c == 'P'; }

} // namespace

std::string FormatMove(const TMove& move, uint8_t piece, bool capture) {
    if (move.from == move.to) return "-";
    if (move.from > 63 || move.to > 63) return "";
    char text[16];
    std::snprintf(text, sizeof text, "%c%d%c%c%d", 'a' + colOf(move.from), rowOf(move.from) + 1,
                  capture ? ':' : '-', 'a' + colOf(move.to), rowOf(move.to) + 1);
    std::string result(text);
    if (move.promotionKind() != 0) return result + kindLetter(move.promotionKind());
    if ((piece & KIND_MASK) == KIND_PAWN) return result;
    if ((piece & KIND_MASK) == KIND_KING && absInt(colOf(move.to) - colOf(move.from)) >= 2)
        return colOf(move.to) == 6 ? "0-0" : "0-0-0";
    return kindLetter(piece) + result;
}

std::string FormatLogMove(const TMove& move) {
    char text[16];
    std::snprintf(text, sizeof text, "%c%d-%c%d\n", 'a' + colOf(move.from & 63), rowOf(move.from & 63) + 1,
                  'a' + colOf(move.to & 63), rowOf(move.to & 63) + 1);
    return text;
}

TMove ParseMove(const std::string& rawText, bool whiteToMove) {
    const auto first = rawText.find_first_not_of(' ');
    if (first == std::string::npos) throw ChessException("Empty string");
    const std::string text = rawText.substr(first, rawText.find_last_not_of(' ') - first + 1);

    TMove move;
    if (text == "0-0" || text == "0-0-0") {
        const int row = whiteToMove ? 0 : 7;
        move.from = static_cast<uint8_t>(squareOf(4, row));
        move.to = static_cast<uint8_t>(squareOf(text.size() == 3 ? 6 : 2, row));
        return move;
    }
    if (text.size() < 5 || text.size() > 7) throw ChessException("Improper string length");

    size_t pos = 0;
    if (isPieceLetter(text[0])) pos = 1;
    if (text.size() - pos < 5) throw ChessException("Improper full description of move");
    auto fileOk = [](char c) { return c >= 'a' && c <= 'h'; };
    auto rankOk = [](char c) { return c >= '1' && c <= '8'; };
    const char sep = text[pos + 2];
    if (!fileOk(text[pos]) || !rankOk(text[pos + 1]) || (sep != '-' && sep != ':' && sep != 'x') ||
        !fileOk(text[pos + 3]) || !rankOk(text[pos + 4]))
        throw ChessException("Improper full description of move");
    move.from = static_cast<uint8_t>(squareOf(text[pos] - 'a', text[pos + 1] - '1'));
    move.to = static_cast<uint8_t>(squareOf(text[pos + 3] - 'a', text[pos + 4] - '1'));
    const size_t rest = pos + 5;
    if (rest < text.size()) {
        if (rest + 1 != text.size() || pos != 0) throw ChessException("Improper full description of move");
        move.promotion = promotionFromLetter(text[rest]);
        if (move.promotion == 0) throw ChessException("Improper full description of move");
    }
    return move;
}

} // namespace zorvane
