#include "position_type.h"

#include <stdexcept>

namespace zorvane {

namespace {

// The counts of a board in text order, each with its letter.
struct CountedLetter {
    uint8_t TChessboard::*count;
    char letter;
};
constexpr CountedLetter COUNTED_LETTERS[10] = {
    {&TChessboard::m_nWhiteQueens, 'Q'},  {&TChessboard::m_nWhiteRooks, 'R'},
    {&TChessboard::m_nWhiteBishops, 'B'}, {&TChessboard::m_nWhiteKnights, 'N'},
    {&TChessboard::m_nWhitePawns, 'P'},   {&TChessboard::m_nBlackQueens, 'q'},
    {&TChessboard::m_nBlackRooks, 'r'},   {&TChessboard::m_nBlackBishops, 'b'},
    {&TChessboard::m_nBlackKnights, 'n'}, {&TChessboard::m_nBlackPawns, 'p'},
};

} // namespace

int PosTypeLetterCode(char letter) {
    const auto at = POS_TYPE_DECODER.find(letter);
    return at == std::string_view::npos ? 0 : static_cast<int>(at) + 1;
}

char PosTypeLetterOfPiece(uint8_t piece) {
    switch (piece) {
    case WQ:
        return 'Q';
    case WR:
        return 'R';
    case WB:
        return 'B';
    case WN:
        return 'N';
    case WP:
        return 'P';
    case BQ:
        return 'q';
    case BR:
        return 'r';
    case BB:
        return 'b';
    case BN:
        return 'n';
    case BP:
        return 'p';
    default:
        return 0;
    }
}

uint8_t PieceOfPosTypeLetter(char letter) {
    switch (letter) {
    case 'Q':
        return WQ;
    case 'R':
        return WR;
    case 'B':
        return WB;
    case 'N':
        return WN;
    case 'P':
        return WP;
    case 'q':
        return BQ;
    case 'r':
        return BR;
    case 'b':
        return BB;
    case 'n':
        return BN;
    case 'p':
        return BP;
    default:
        return 0;
    }
}

uint64_t PosTypeKey(std::string_view type) {
    uint64_t key = 0;
    for (const char letter : type) key = key * 16 + static_cast<uint64_t>(PosTypeLetterCode(letter));
    return key * 2;
}

std::string PosTypeText(const TChessboard& board) {
    std::string text;
    for (const auto& counted : COUNTED_LETTERS) text.append(board.*counted.count, counted.letter);
    return text;
}

uint64_t PosTypeKeyOfPosition(const TChessboard& board) {
    uint64_t key = 0;
    int men = 0;
    for (int code = 1; code <= 10; ++code) {
        const int count = board.*COUNTED_LETTERS[code - 1].count;
        men += count;
        if (men > MAX_REGULAR_TYPE_MEN) return 0;
        for (int i = 0; i < count; ++i) key = key * 16 + static_cast<uint64_t>(code);
    }
    return key * 2;
}

std::string RemoveFromPosType(const std::string& type, char letter) {
    const auto at = type.find(letter);
    if (at == std::string::npos)
        throw std::runtime_error("Error in RemoveFromPosType: pos.type " + type + " does not contain " +
                                 std::string(1, letter));
    std::string rest = type;
    rest.erase(at, 1);
    return rest;
}

int GetIndexToRemoveToObtainOtherPosType(const std::string& typeA, const std::string& typeB) {
    if (typeA.size() != typeB.size() + 1)
        throw std::runtime_error("Error in GetIndexToRemoveToObtainOtherPosType: " + typeA + " and " + typeB +
                                 " passed to function");
    // A cut at i keeps A's letters before i and compares the rest shifted by one.
    const std::string_view a = typeA;
    const std::string_view b = typeB;
    for (size_t i = 0; i < a.size(); ++i)
        if (a.substr(0, i) == b.substr(0, i) && a.substr(i + 1) == b.substr(i)) return static_cast<int>(i);
    return -1;
}

} // namespace zorvane
