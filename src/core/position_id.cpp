#include "position_id.h"

#include "chess_exception.h"
#include "piece.h"

namespace zorvane {

namespace {

constexpr uint8_t CODE_PIECES[12] = {WK, BK, WP, BP, WQ, BQ, WR, BR, WB, BB, WN, BN};

int codeOf(uint8_t piece) {
    for (int code = 0; code < 12; ++code)
        if (CODE_PIECES[code] == piece) return code;
    throw ChessException("Unknown figure code");
}

void appendBit(TChessboardId& id, int bit) {
    if (id.m_nBits >= 320) throw ChessException("Exception in TChessboardId");
    if (bit) id.m_aBits[id.m_nBits >> 3] |= static_cast<uint8_t>(1u << (id.m_nBits & 7));
    ++id.m_nBits;
}

int bitAt(const TChessboardId& id, int index) {
    return (id.m_aBits[index >> 3] >> (index & 7)) & 1;
}

char alphanumChar(int value, int width) {
    if (value < 10) return static_cast<char>('0' + value);
    if (value < 36) return static_cast<char>('a' + value - 10);
    if (width == 6 && value < 62) return static_cast<char>('A' + value - 36);
    if (width == 6 && value == 62) return '(';
    if (width == 6 && value == 63) return ')';
    throw ChessException(width == 6 ? "Error in ToAlphanum6" : "Error in ToAlphanum5");
}

int alphanumValue(char c, int width) {
    int value = -1;
    if (c >= '0' && c <= '9')
        value = c - '0';
    else if (c >= 'a' && c <= 'z')
        value = c - 'a' + 10;
    else if (c >= 'A' && c <= 'Z')
        value = c - 'A' + 36;
    else if (c == '(')
        value = 62;
    else if (c == ')')
        value = 63;
    return value < (1 << width) ? value : -1;
}

std::string toAlphanum(const TChessboardId& id, int width) {
    std::string text;
    for (int first = 0; first < id.m_nBits; first += width) {
        int value = 0;
        for (int i = 0; i < width; ++i) {
            const int index = first + i;
            // The last group is filled from the clear rest of the bytes.
            if (index < 320) value |= bitAt(id, index) << i;
        }
        text += alphanumChar(value, width);
    }
    return text;
}

bool fromAlphanum(const std::string& text, TChessboardId& id, int width) {
    TChessboardId result;
    for (const char c : text) {
        const int value = alphanumValue(c, width);
        if (value < 0) return false;
        for (int i = 0; i < width; ++i) {
            const int bit = (value >> i) & 1;
            // The last character of a full identifier is padded past the
            // 320th bit with zeros, which carry nothing.
            if (result.m_nBits >= 320 && bit == 0) continue;
            appendBit(result, bit);
        }
    }
    id = result;
    return true;
}

} // namespace

TChessboardId ChessboardIdFromSquares(const uint8_t squares[64]) {
    TChessboardId id;
    for (int sq = 0; sq < 64; ++sq) {
        if (!squares[sq]) {
            appendBit(id, 0);
            continue;
        }
        const int code = codeOf(squares[sq]);
        appendBit(id, 1);
        for (int i = 0; i < 4; ++i) appendBit(id, (code >> i) & 1);
    }
    return id;
}

void SquaresFromChessboardId(const TChessboardId& id, uint8_t squares[64]) {
    int index = 0;
    auto next = [&]() {
        if (index >= id.m_nBits || index >= 320) throw ChessException("Wrong chessboard id");
        return bitAt(id, index++);
    };
    for (int sq = 0; sq < 64; ++sq) {
        if (!next()) {
            squares[sq] = 0;
            continue;
        }
        int code = 0;
        for (int i = 0; i < 4; ++i) code |= next() << i;
        if (code > 11) throw ChessException("Unknown figure short code");
        squares[sq] = CODE_PIECES[code];
    }
}

std::string ToAlphanum6(const TChessboardId& id) {
    return toAlphanum(id, 6);
}
std::string ToAlphanum5(const TChessboardId& id) {
    return toAlphanum(id, 5);
}
bool ChessboardIdFromAlphanum6(const std::string& text, TChessboardId& id) {
    return fromAlphanum(text, id, 6);
}
bool ChessboardIdFromAlphanum5(const std::string& text, TChessboardId& id) {
    return fromAlphanum(text, id, 5);
}

} // namespace zorvane
