#include "move.h"

#include "chess_exception.h"
#include "fen.h"
#include "piece.h"

#include <algorithm>
#include <cstdio>

namespace zorvane {

namespace {

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

char FigureLetter(uint8_t kind) {
    switch (kind & KIND_MASK) {
    case KIND_KING:
        return 'K';
    case KIND_PAWN:
        return ' ';
    case KIND_BISHOP:
        return 'B';
    case KIND_ROOK:
        return 'R';
    case KIND_QUEEN:
        return 'Q';
    case KIND_KNIGHT:
        return 'N';
    default:
        return 'E';
    }
}

bool SameMoveSet(const std::vector<TMove>& a, const std::vector<TMove>& b) {
    auto key = [](const TMove& m) { return (m.from << 16) | (m.to << 8) | (m.promotion & KIND_MASK); };
    std::vector<int> ka, kb;
    for (const TMove& m : a) ka.push_back(key(m));
    for (const TMove& m : b) kb.push_back(key(m));
    std::sort(ka.begin(), ka.end());
    std::sort(kb.begin(), kb.end());
    return ka == kb;
}

std::string FormatMove(const TMove& move, uint8_t piece, bool capture) {
    if (move.from == move.to) return "-";
    if (move.from > 63 || move.to > 63) return "";
    char text[16];
    std::snprintf(text, sizeof text, "%c%d%c%c%d", 'a' + colOf(move.from), rowOf(move.from) + 1,
                  capture ? ':' : '-', 'a' + colOf(move.to), rowOf(move.to) + 1);
    std::string result(text);
    if (move.promotionKind() != 0) return result + FigureLetter(move.promotionKind());
    if ((piece & KIND_MASK) == KIND_PAWN) return result;
    if ((piece & KIND_MASK) == KIND_KING && absInt(colOf(move.to) - colOf(move.from)) >= 2)
        return colOf(move.to) == 6 ? "0-0" : "0-0-0";
    return FigureLetter(piece) + result;
}

std::string FormatLogMove(const TMove& move) {
    char text[16];
    std::snprintf(text, sizeof text, "%c%d-%c%d\n", 'a' + colOf(move.from & 63), rowOf(move.from & 63) + 1,
                  'a' + colOf(move.to & 63), rowOf(move.to & 63) + 1);
    return text;
}

TMove ParseMove(const std::string& rawText, bool whiteToMove) {
    // 1. Only a text with no byte at all is empty; blanks alone fall to the length rule.
    if (rawText.empty()) throw ChessException("Empty string");
    // 2. A blank at either end trims both ends.
    std::string text = rawText;
    const auto first = text.find_first_not_of(' ');
    text = first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);

    // 3. Castling, recognised by length and content.
    TMove move;
    if (text == "0-0" || text == "0-0-0") {
        const int row = whiteToMove ? 0 : 7;
        move.from = static_cast<uint8_t>(squareOf(4, row));
        move.to = static_cast<uint8_t>(squareOf(text.size() == 3 ? 6 : 2, row));
        return move;
    }
    // 4. A final letter is the promotion figure.
    size_t length = text.size();
    if (length > 0 && isAsciiLetter(text[length - 1])) {
        move.promotion = KindFromLetter(text[length - 1]);
        --length;
    }
    // 5. Six bytes carry the piece letter in front, which is not read.
    size_t pos = 0;
    if (length == 6)
        pos = 1;
    else if (length != 5)
        throw ChessException("Improper string length");
    // 6. Letters at 0 and 3, digits at 1 and 4; the separator is not looked at.
    //    A letter or digit off the board gets the same message, so that no
    //    caller ever sees a square above 63.
    auto file = [](char c) { return c >= 'a' && c <= 'h' ? c - 'a' : c >= 'A' && c <= 'H' ? c - 'A' : -1; };
    auto rank = [](char c) { return c >= '1' && c <= '8' ? c - '1' : -1; };
    const int fromFile = file(text[pos]), fromRank = rank(text[pos + 1]);
    const int toFile = file(text[pos + 3]), toRank = rank(text[pos + 4]);
    if (fromFile < 0 || fromRank < 0 || toFile < 0 || toRank < 0)
        throw ChessException("Improper full description of move");
    move.from = static_cast<uint8_t>(squareOf(fromFile, fromRank));
    move.to = static_cast<uint8_t>(squareOf(toFile, toRank));
    return move;
}

} // namespace zorvane
