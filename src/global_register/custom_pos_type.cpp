#include "custom_pos_type.h"

#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>

namespace zorvane {

namespace {

// The letters of a custom text in their order; the last is the black pawn.
constexpr std::string_view CUSTOM_LETTERS = "KQRBNPkqrbnp";
constexpr uint8_t CUSTOM_PIECES[12] = {WK, WQ, WR, WB, WN, WP, BK, BQ, BR, BB, BN, BP};
constexpr int CUSTOM_BLACK_PAWN = 11;
constexpr uint8_t NO_CODE = 255;

constexpr std::array<uint8_t, 256> CUSTOM_CODE_OF_PIECE = [] {
    std::array<uint8_t, 256> codes{};
    for (auto& code : codes) code = NO_CODE;
    for (int i = 0; i < 12; ++i) codes[CUSTOM_PIECES[i]] = static_cast<uint8_t>(i);
    return codes;
}();

// Radices of the packed key: a movable man is its letter code or, for a black
// pawn, 12 + the top of its stretch; a fixed man is code * 64 + square; the
// two counts, at the low end, tell a reader where the lists part.
constexpr uint64_t MOVABLE_RADIX = 12 + 64;
constexpr uint64_t FIXED_RADIX = 12 * 64;
constexpr uint64_t COUNT_RADIX = 65;
// Packed keys end in binary 01, registered ones in 11.
constexpr uint64_t PACKED_LIMIT = (uint64_t{1} << 62) - 1;

bool pushDigit(uint64_t& v, uint64_t radix, uint64_t digit) {
    if (v > (PACKED_LIMIT - digit) / radix) return false;
    v = v * radix + digit;
    return true;
}

// A type too large to pack gets the next number of a process-wide register of
// texts: keys are never written to files, so they only have to differ.
uint64_t registeredKey(const std::string& text) {
    static std::mutex s_mutex;
    static std::map<std::string, uint64_t> s_keys;
    const std::lock_guard<std::mutex> lock(s_mutex);
    const auto [it, added] = s_keys.try_emplace(text, 0);
    if (added) it->second = (static_cast<uint64_t>(s_keys.size()) << 2) | 3;
    return it->second;
}

std::string squareName(int square) {
    return {static_cast<char>('a' + colOf(square)), static_cast<char>('1' + rowOf(square))};
}

bool isBit(uint64_t set, int square) {
    return ((set >> square) & 1) != 0;
}

} // namespace

TCustomPosType CustomPosTypeOfPosition(const TChessboard& board, uint64_t fixedSquares) {
    TCustomPosType type;
    for (int code = 0; code < CUSTOM_BLACK_PAWN; ++code)
        for (int s = 0; s < 64; ++s)
            if (!isBit(fixedSquares, s) && board.m_aSquares[s] == CUSTOM_PIECES[code])
                type.movable.push_back({CUSTOM_PIECES[code], NO_SQUARE});
    for (int file = 0; file < 8; ++file)
        for (int row = 6; row >= 1; --row) {
            const int s = squareOf(file, row);
            if (!isBit(fixedSquares, s) && board.m_aSquares[s] == BP)
                type.movable.push_back({BP, static_cast<uint8_t>(s)});
        }
    for (int code = 0; code <= CUSTOM_BLACK_PAWN; ++code)
        for (int s = 0; s < 64; ++s)
            if (isBit(fixedSquares, s) && board.m_aSquares[s] == CUSTOM_PIECES[code])
                type.fixed.push_back({CUSTOM_PIECES[code], static_cast<uint8_t>(s)});
    return type;
}

std::string CustomPosTypeText(const TCustomPosType& type) {
    std::string text;
    for (const TCustomMan& man : type.movable) {
        const uint8_t code = CUSTOM_CODE_OF_PIECE[man.piece];
        text += code == NO_CODE ? '?' : CUSTOM_LETTERS[code];
        if (man.square == NO_SQUARE) continue;
        text += '(';
        text += squareName(man.square);
        text += ')';
    }
    if (type.fixed.empty()) return text;
    text += CUSTOM_FIXED_MARK;
    uint8_t previous = 0;
    for (const TCustomMan& man : type.fixed) {
        if (man.piece != previous) {
            const uint8_t code = CUSTOM_CODE_OF_PIECE[man.piece];
            text += code == NO_CODE ? '?' : CUSTOM_LETTERS[code];
            previous = man.piece;
        }
        text += squareName(man.square);
    }
    return text;
}

uint64_t CustomPosTypeKey(const TCustomPosType& type) {
    uint64_t v = 0;
    bool fits = type.movable.size() < COUNT_RADIX && type.fixed.size() < COUNT_RADIX;
    for (const TCustomMan& man : type.movable) {
        const uint64_t code = CUSTOM_CODE_OF_PIECE[man.piece];
        fits = fits && code != NO_CODE &&
               pushDigit(v, MOVABLE_RADIX, man.square == NO_SQUARE ? code : 12 + man.square);
    }
    for (const TCustomMan& man : type.fixed) {
        const uint64_t code = CUSTOM_CODE_OF_PIECE[man.piece];
        fits = fits && code != NO_CODE && pushDigit(v, FIXED_RADIX, code * 64 + man.square);
    }
    fits = fits && pushDigit(v, COUNT_RADIX, type.fixed.size()) &&
           pushDigit(v, COUNT_RADIX, type.movable.size());
    if (fits) return (v << 2) | 1;
    return registeredKey(CustomPosTypeText(type));
}

TCustomLayout MakeCustomLayout(const TCustomPosType& type) {
    const auto fail = [&type]() {
        throw std::runtime_error("No table layout for custom type " + CustomPosTypeText(type));
    };
    TCustomLayout layout;
    layout.type = type;
    for (const TCustomMan& man : type.fixed) {
        if (man.square >= 64 || isBit(layout.setFixed, man.square) ||
            CUSTOM_CODE_OF_PIECE[man.piece] == NO_CODE)
            fail();
        layout.setFixed |= uint64_t{1} << man.square;
    }
    uint8_t free = 0;
    for (int s = 0; s < 64; ++s) {
        layout.aSquareNumber[s] = isBit(layout.setFixed, s) ? NO_SQUARE : free;
        if (!isBit(layout.setFixed, s)) layout.aSquareOfNumber[free++] = static_cast<uint8_t>(s);
    }
    if (type.movable.size() > free) fail();
    // Each letter's men, and each file's black pawns, must stand together in the list.
    int lastCode = -1;
    int lastFile = -1;
    for (size_t i = 0; i < type.movable.size(); ++i) {
        const TCustomMan& man = type.movable[i];
        const int code = CUSTOM_CODE_OF_PIECE[man.piece];
        if (code == NO_CODE || (man.square != NO_SQUARE && man.piece != BP)) fail();
        if (man.piece == BP && man.square != NO_SQUARE) {
            const int file = colOf(man.square);
            if (file < lastFile) fail();
            if (file != lastFile) layout.aPawnFileFirst[file] = static_cast<uint8_t>(i);
            layout.aPawnFileEnd[file] = static_cast<uint8_t>(i + 1);
            lastFile = file;
            lastCode = CUSTOM_BLACK_PAWN;
            // The stretch: down from the top to the first fixed man or the second row.
            int bottom = man.square;
            if (rowOf(bottom) < 1 || rowOf(bottom) > 6 || isBit(layout.setFixed, bottom)) fail();
            while (rowOf(bottom) > 1 && !isBit(layout.setFixed, bottom - 8)) bottom -= 8;
            layout.aRadix.push_back(static_cast<uint8_t>(rowOf(man.square) - rowOf(bottom) + 1));
            layout.aBottom.push_back(static_cast<uint8_t>(bottom));
            continue;
        }
        // Free black pawns have no stretch and are not listed among the others.
        if (code < lastCode || code == CUSTOM_BLACK_PAWN) fail();
        if (code != lastCode) layout.aRunFirst[code] = static_cast<uint8_t>(i);
        layout.aRunEnd[code] = static_cast<uint8_t>(i + 1);
        lastCode = code;
        layout.aRadix.push_back(free);
        layout.aBottom.push_back(NO_SQUARE);
    }
    return layout;
}

uint64_t CustomTableSize(const TCustomLayout& layout) {
    uint64_t size = 1;
    for (const uint8_t radix : layout.aRadix) {
        if (size > UINT64_MAX / radix) return 0;
        size *= radix;
    }
    return size;
}

uint64_t CustomIndexOfPosition(const TCustomLayout& layout, const TChessboard& board) {
    // 1. The squares of the movable men in the type's order.
    uint8_t squares[64] = {};
    std::array<uint8_t, 11> next = layout.aRunFirst;
    for (int s = 0; s < 64; ++s) {
        const int code = CUSTOM_CODE_OF_PIECE[board.m_aSquares[s]];
        if (code >= CUSTOM_BLACK_PAWN || isBit(layout.setFixed, s)) continue;
        if (next[code] < layout.aRunEnd[code]) squares[next[code]++] = static_cast<uint8_t>(s);
    }
    for (int file = 0; file < 8; ++file) {
        uint8_t at = layout.aPawnFileFirst[file];
        for (int row = 6; row >= 1 && at < layout.aPawnFileEnd[file]; --row) {
            const int s = squareOf(file, row);
            if (board.m_aSquares[s] == BP && !isBit(layout.setFixed, s))
                squares[at++] = static_cast<uint8_t>(s);
        }
    }
    // 2. One digit per man, the first most significant.
    uint64_t v = 0;
    for (size_t i = 0; i < layout.aRadix.size(); ++i) {
        const int s = squares[i];
        const uint64_t digit = layout.aBottom[i] == NO_SQUARE
                                   ? layout.aSquareNumber[s]
                                   : static_cast<uint64_t>((s - layout.aBottom[i]) >> 3);
        v = v * layout.aRadix[i] + digit;
    }
    return v;
}

bool CustomPositionOfIndex(const TCustomLayout& layout, uint64_t index, TChessboard& board) {
    const size_t men = layout.aRadix.size();
    uint8_t squares[64] = {};
    for (size_t i = men; i-- > 0;) {
        const uint64_t digit = index % layout.aRadix[i];
        index /= layout.aRadix[i];
        squares[i] = layout.aBottom[i] == NO_SQUARE ? layout.aSquareOfNumber[digit]
                                                    : static_cast<uint8_t>(layout.aBottom[i] + 8 * digit);
    }
    if (index != 0) return false;
    board = EmptyChessboard();
    board.m_shPliesLeft = 1;
    for (const TCustomMan& man : layout.type.fixed) PutMan(board, man.square, man.piece);
    for (size_t i = 0; i < men; ++i) {
        const uint8_t piece = layout.type.movable[i].piece;
        const int square = squares[i];
        if (board.m_aSquares[square] != 0) return false;
        if ((piece & KIND_MASK) == KIND_PAWN && (rowOf(square) == 0 || rowOf(square) == 7)) return false;
        PutMan(board, square, piece);
    }
    return true;
}

} // namespace zorvane
