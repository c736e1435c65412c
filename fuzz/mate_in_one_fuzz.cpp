// Any bytes as a position with White to move: when the FEN reader takes it,
// the fast mate at once (lists of candidates, judged by sets of squares) must
// find exactly the first mate that playing every White move finds. A position
// that no search reaches, with Black standing in check, has no right answer;
// there the routine only has to stay within its tables.
#include "core/fen.h"
#include "core/thread_context.h"
#include "engine/mate_in_one.h"
#include "mate_oracle.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    static const auto context = std::make_unique<TThreadContext>();
    TChessboard board = EmptyChessboard();
    board.m_shPliesLeft = board.m_shPliesTotal = 1;
    board.m_pThread = context.get();
    if (!ReadFen(std::string(reinterpret_cast<const char*>(data), size), board)) return 0;
    board.m_shPliesLeft = board.m_shPliesTotal = 1;
    TMove fast, played;
    const bool found = FindMateInOne(board, &fast);
    if (board.m_cBlackChecker >= 0) return 0;
    if (found != FirstMateByPlayingAll(board, played) || (found && !(fast == played))) std::abort();
    return 0;
}
