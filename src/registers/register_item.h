#pragma once
// TChessboardRegisterItem: the key of every register entry, the 64 square
// bytes of a position and nothing else. Side to move is implied by the parity
// of the ply count under which the entry is kept; castling and en passant
// positions are kept out of the register by the search, since the key cannot
// tell them apart.
//
// Keys are compared as eight signed 64-bit words, word 0 (a1..h1) first, each
// read little-endian, so that a comparison or an equality test is eight word
// loads instead of 64 byte compares.
#include "core/chessboard.h"
#include "core/position_id.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace zorvane {

struct TChessboardRegisterItem {
    uint8_t m_aSquares[64];

    // Word i of the key: squares 8i..8i+7, the lowest square in the lowest byte.
    int64_t word(int i) const {
        uint64_t w;
        std::memcpy(&w, m_aSquares + 8 * i, 8);
        if constexpr (std::endian::native == std::endian::big) w = byteswap64(w);
        return static_cast<int64_t>(w);
    }

    uint32_t hash() const { return RegisterHash(m_aSquares); }

    static TChessboardRegisterItem FromBoard(const TChessboard& board) {
        TChessboardRegisterItem item;
        std::memcpy(item.m_aSquares, board.m_aSquares, 64);
        return item;
    }

  private:
    static constexpr uint64_t byteswap64(uint64_t w) {
        uint64_t r = 0;
        for (int i = 0; i < 8; ++i) r |= ((w >> (8 * i)) & 0xFF) << (8 * (7 - i));
        return r;
    }
};

// The key is packed into the 68-byte register record and saved in files: no
// padding, no alignment above one byte.
static_assert(sizeof(TChessboardRegisterItem) == 64);
static_assert(alignof(TChessboardRegisterItem) == 1);
static_assert(offsetof(TChessboardRegisterItem, m_aSquares) == 0);
static_assert(std::is_trivially_copyable_v<TChessboardRegisterItem>);

inline bool operator==(const TChessboardRegisterItem& a, const TChessboardRegisterItem& b) {
    for (int i = 0; i < 8; ++i)
        if (a.word(i) != b.word(i)) return false;
    return true;
}

inline bool operator<(const TChessboardRegisterItem& a, const TChessboardRegisterItem& b) {
    for (int i = 0; i < 8; ++i) {
        const int64_t x = a.word(i), y = b.word(i);
        if (x != y) return x < y;
    }
    return false;
}

} // namespace zorvane
