// Any bytes as a problem's heuristic options: lines of a bit (the first byte,
// modulo 32) and its text. Reading must never crash and may fail only with
// ChessException, leaving everything as it was. A read set must print texts
// that read back to the same set, on a fresh position and on itself, and the
// stored fingerprint must be the one of the set.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "engine/heuristics_catalogue.h"
#include "fuzz_check.h"
#include "problems/problem_file.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

namespace {

using zorvane::fuzz::check;

// Black men to list, pin and watch on the long diagonals: Ke8, Rb7, pf7, Ne6,
// Bc3; White's Re2 pins the knight.
zorvane::TChessboard makeRoot() {
    zorvane::TChessboard board = zorvane::EmptyChessboard();
    board.m_shPliesLeft = board.m_shPliesTotal = 5;
    check(zorvane::ReadFen("4k3/1r3p2/4n3/8/8/2b5/4R3/6KQ w - - 0 1", board), "the root reads");
    return board;
}

struct State {
    zorvane::TChessboard board;
    zorvane::TSpecialHeuristicsParams params;
    zorvane::SolveWideHeuristicParams wide;

    std::string text() const { return zorvane::GetSpecialHeuristicsText(board, params, wide); }
    std::map<uint32_t, std::string> printedOptions() const {
        std::map<uint32_t, std::string> options;
        for (const zorvane::HeuristicName& heuristic : zorvane::HeuristicNames)
            if (board.m_uHeuristics & heuristic.bit)
                options[heuristic.bit] =
                    zorvane::GetSpecialHeuristicParamText(heuristic.bit, board, params, wide);
        return options;
    }
    bool sameAs(const State& o) const {
        return board.m_uHeuristics == o.board.m_uHeuristics &&
               board.m_uHeuristicParams == o.board.m_uHeuristicParams &&
               board.m_bPlayState == o.board.m_bPlayState &&
               std::memcmp(board.m_aWatched, o.board.m_aWatched, sizeof board.m_aWatched) == 0 &&
               text() == o.text();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    static const TChessboard root = makeRoot();

    std::map<uint32_t, std::string> options;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    while (!bytes.empty()) {
        const size_t end = bytes.find('\n');
        const std::string_view line = bytes.substr(0, end);
        if (!line.empty()) options[1u << (static_cast<uint8_t>(line[0]) % 32)] = std::string(line.substr(1));
        bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
    }

    const State fresh{root, {}, {}};
    State read = fresh;
    try {
        ApplyHeuristicOptions(options, read.board, read.params, read.wide);
    } catch (const ChessException&) {
        check(read.sameAs(fresh), "a refused read changes nothing");
        return 0;
    }
    check(read.board.m_uHeuristicParams == CalcHeuristicParams(read.board, read.params, read.board, 0),
          "the stored fingerprint is the set's");
    for (const auto& [flag, text] : options) {
        const bool off =
            text.size() == 3 && (text[0] | 0x20) == 'o' && (text[1] | 0x20) == 'f' && (text[2] | 0x20) == 'f';
        check(((read.board.m_uHeuristics & flag) != 0) == !off, "each option sets or clears its bit");
    }

    // The printed texts read back to the same set, on a fresh root and on the set itself.
    const std::map<uint32_t, std::string> printed = read.printedOptions();
    State again = fresh;
    ApplyHeuristicOptions(printed, again.board, again.params, again.wide);
    check(again.sameAs(read), "the printed texts give the same set on a fresh root");
    check(again.printedOptions() == printed, "the printed texts come back as they were");
    State self = read;
    ApplyHeuristicOptions(printed, self.board, self.params, self.wide);
    check(self.sameAs(read), "the printed texts change nothing on their own set");
    return 0;
}
