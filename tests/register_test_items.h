#pragma once
// Register keys for tests: a legal position, and families of keys that are
// built to share a hash and so a bucket.
#include "core/piece.h"
#include "registers/register_item.h"
#include "test_squares.h"

#include <cstdint>

namespace zorvane {

// White king e1, black king e8: a key whose id text can be shown.
inline TChessboardRegisterItem KingsItem() {
    TChessboardRegisterItem item{};
    item.m_aSquares[sq("e1")] = WK;
    item.m_aSquares[sq("e8")] = BK;
    return item;
}

// The kings and one more man.
inline TChessboardRegisterItem ItemWith(const char* square, uint8_t piece) {
    TChessboardRegisterItem item = KingsItem();
    item.m_aSquares[sq(square)] = piece;
    return item;
}

// Key k of a family of distinct keys with one hash: a1 (weight 1) holds
// 4 * (40 - k) and b1 (weight 4) holds k, so the sum does not depend on k.
// k runs from 0 to 40.
inline TChessboardRegisterItem SameHashItem(int k) {
    TChessboardRegisterItem item = KingsItem();
    item.m_aSquares[0] = static_cast<uint8_t>(4 * (40 - k));
    item.m_aSquares[1] = static_cast<uint8_t>(k);
    return item;
}

// Distinct keys by number, spread over the buckets: the number's bytes sit on rank 3.
inline TChessboardRegisterItem NumberedItem(uint32_t n) {
    TChessboardRegisterItem item = KingsItem();
    for (int i = 0; i < 4; ++i) item.m_aSquares[16 + i] = static_cast<uint8_t>(n >> (8 * i));
    return item;
}

} // namespace zorvane
