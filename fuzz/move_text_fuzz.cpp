// Any bytes through the long move reader, for both sides. Only ChessException
// may leave it; a move it reads must lie on the board and, written by the
// move writer, must read back to the same move.
#include "core/chess_exception.h"
#include "core/move.h"
#include "core/piece.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using zorvane::fuzz::check;

// The writer turns any king move over two or more files into a castling text,
// which reads back as the castling of the side: only those moves can survive.
bool writerKeepsKingMove(const zorvane::TMove& m, bool white) {
    const int dc = zorvane::colOf(m.to) - zorvane::colOf(m.from);
    if (dc >= -1 && dc <= 1) return true;
    const int home = white ? 4 : 60;
    return m.from == home && (m.to == home + 2 || m.to == home - 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const bool white : {true, false}) {
        TMove move;
        try {
            move = ParseMove(text, white);
        } catch (const ChessException&) {
            continue;
        }
        check(move.from < 64 && move.to < 64);
        check(move.enPassant == 0);
        // "-" is written for the null move but is no text the reader takes.
        if (move.isNull()) continue;
        // The reader takes P as a promotion letter, the writer puts a blank for
        // it, and the reader trims that blank away: that pair cannot agree.
        if (move.promotionKind() == KIND_PAWN) continue;
        const uint8_t own = white ? WHITE : BLACK;
        for (const uint8_t kind : {KIND_PAWN, KIND_KNIGHT, KIND_BISHOP, KIND_ROOK, KIND_QUEEN, KIND_KING}) {
            if (kind == KIND_KING && move.promotionKind() == 0 && !writerKeepsKingMove(move, white)) continue;
            for (const bool capture : {false, true}) {
                const std::string written = FormatMove(move, static_cast<uint8_t>(own | kind), capture);
                TMove back;
                try {
                    back = ParseMove(written, white);
                } catch (const ChessException&) {
                    std::abort();
                }
                check(back == move);
            }
        }
    }
    return 0;
}
