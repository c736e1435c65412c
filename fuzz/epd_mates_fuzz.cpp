// Any bytes through the reader of mate lists. Only ChessException may leave
// it; every mate it gives has White to move, a length from 1 to 255, and a
// FEN text that reads to the same squares again.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "fuzz_check.h"
#include "problems/epd_mates.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

using zorvane::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        for (const zorvane::EpdMate& mate : zorvane::ReadEpdMates(text)) {
            check(mate.moves >= 1 && mate.moves <= 255, "mate length out of range");
            check(mate.position.whiteToMove(), "Black to move");
            check(mate.line >= 1, "line number below 1");
            zorvane::TChessboard again = zorvane::EmptyChessboard();
            again.m_shPliesLeft = again.m_shPliesTotal = mate.position.m_shPliesLeft;
            check(zorvane::ReadFen(mate.fen, again), "the FEN text does not read again");
            check(std::memcmp(again.m_aSquares, mate.position.m_aSquares, 64) == 0, "the squares differ");
        }
    } catch (const zorvane::ChessException&) {
    }
    return 0;
}
