// Any bytes through the variant reader. Only ChessException may leave it (a
// word that is no long move); what it reads, written in the stored form
// (name, moves, comments in brackets), must read back to the same variant,
// and a second write must give the same text. The forms written against a
// board (marks, short notation, numbers, moves shared with a neighbour left
// out) must not crash on any line either.
//
// The first byte picks the options: bit 0 translates the main variant's
// name, bits 1-2 the language (3 stands for one out of range), bit 3 decodes
// Windows-1250 instead of UTF-8, bit 4 the board, bits 5-7 the board form.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "problems/text_encoding.h"
#include "problems/variant.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace zorvane;

using zorvane::fuzz::check;

bool sameVariant(const TVariant& a, const TVariant& b) {
    if (a.name != b.name || a.moves.size() != b.moves.size()) return false;
    for (size_t i = 0; i < a.moves.size(); ++i) {
        const TVariantMove &x = a.moves[i], &y = b.moves[i];
        if (!(x.move == y.move) || x.text != y.text || x.comment != y.comment) return false;
    }
    return true;
}

TChessboard boardOf(const char* fen) {
    TChessboard board = EmptyChessboard();
    board.m_shPliesLeft = board.m_shPliesTotal = 1;
    if (!ReadFen(fen, board)) std::abort();
    return board;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The opening, and a position with every castling and promotions for both sides.
    static const TChessboard boards[2] = {boardOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"),
                                          boardOf("r3k2r/1P4P1/8/8/8/8/1p4p1/R3K2R")};
    if (size == 0) return 0;
    const uint8_t options = data[0];
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const bool translate = options & 1;
    const int language = ((options >> 1) & 3) == 3 ? 7 : (options >> 1) & 3;
    const std::wstring text = options & 8 ? Windows1250ToWide(bytes) : Utf8ToWide(bytes);

    TVariant variant;
    try {
        variant = ParseVariantText(text, translate, language);
    } catch (const ChessException&) {
        return 0;
    }

    const std::wstring written =
        FormatVariantText(variant, true, 0, false, nullptr, nullptr, nullptr, false, language);
    TVariant again;
    try {
        again = ParseVariantText(written, translate, language);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "written variant does not read back: %s\n", e.what());
        std::abort();
    }
    check(sameVariant(variant, again), "the written variant reads back the same");
    check(FormatVariantText(again, true, 0, false, nullptr, nullptr, nullptr, false, language) == written,
          "a second write gives the same text");

    const TChessboard& board = boards[(options >> 4) & 1];
    const bool withNumbers = options & 0x20, useShort = options & 0x40, neighbour = options & 0x80;
    TVariant shorter = variant;
    if (!shorter.moves.empty()) shorter.moves.pop_back();
    FormatVariantText(variant, true, 1, withNumbers, neighbour ? &shorter : nullptr, nullptr, &board,
                      useShort, language);
    FormatVariantText(MirrorVariant(variant), false, -1, !withNumbers, nullptr,
                      neighbour ? &shorter : nullptr, &board, !useShort, language);
    return 0;
}
